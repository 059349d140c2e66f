#include "reports/list_report.h"

#include <algorithm>
#include <vector>

#include "reports/report_page.h"

namespace vantry {

namespace {

constexpr double kListSize = 6;
constexpr int kFootBlanks = 2;

/// The title of a list of bookings: what precedes and follows the text that fills it.
struct TitleRow {
  int viewKind;
  std::string_view before;
  std::string_view after = {};
};

// clang-format off
constexpr TitleRow kScheduleTitles[] = {
    {9, "Bookings for "},
    {16, "Conflicts"},
    {17, "Deliveries Scheduled for next ", " hours"},
    {18, "Pickups Scheduled for next ", " hours"},
    {19, "Schedule for Room: "},
    {20, "Library Media Scheduled Rooms for next ", " hours"},
    {25, "Equipment Pick Up List: "},
    {26, "Item Pick Up List: "},
};
// clang-format on

/// By the kind of the records.
constexpr std::string_view kInventoryTitles[] = {"Equipment Inventory", "Group Inventory", "Room Inventory",
                                                 "Maintenance"};
constexpr std::string_view kPageHeading = "Brindlex Library - ";

/// Columns that only serve the sorting.
constexpr std::string_view kSortingColumns[] = {"Start Time24", "End Time24", "Time24"};

std::vector<int> printedColumns(const Grid& grid) {
  std::vector<int> columns;
  for (int col = 0; col < grid.Cols; ++col) {
    const auto& heading = grid.TextMatrix(0, col);
    const bool serves = std::find(std::begin(kSortingColumns), std::end(kSortingColumns), heading) !=
                        std::end(kSortingColumns);
    if (grid.ColWidth(col) > 0 && !serves) columns.push_back(col);
  }
  return columns;
}

std::string rowText(const Grid& grid, int row, const std::vector<int>& columns) {
  std::vector<std::string> cells;
  for (const int col : columns) cells.push_back(grid.TextMatrix(row, col));
  return tableRow(cells);
}

std::string widthsOf(const Grid& grid, const std::vector<int>& columns) {
  std::vector<std::string> widths;
  for (const int col : columns) widths.push_back(std::to_string(grid.ColWidth(col)));
  return tableRow(widths);
}

/// The rows are read first: while a long report shows its progress, a view may be read anew.
PrintResult printList(App& app, const std::string& title, const Grid& grid) {
  const std::vector<int> columns = printedColumns(grid);
  const std::string widths = widthsOf(grid, columns);
  const std::string headings = rowText(grid, 0, columns);
  std::vector<std::string> rows;
  for (int row = grid.FixedRows; row < grid.Rows; ++row) rows.push_back(rowText(grid, row, columns));

  ReportPage page(app, title, kReportFont);
  Printer& printer = page.printer();
  startLandscape(printer);
  printer.StartDoc();
  printer.PageBorder = 0;
  printer.TableBorder = 0;
  printer.Orientation = Printer::PageOrientation::Landscape;
  page.title(title);
  printer.FontSize = kListSize;
  page.rule();
  printer.FontBold = true;
  printer.AddTable(widths, headings, "");
  printer.FontBold = false;
  const int total = static_cast<int>(rows.size());
  for (int row = 0; row < total && printer.advance(row, total); ++row)
    printer.AddTable(widths, "", rows[static_cast<std::size_t>(row)]);
  return page.finish(kFootBlanks);
}

}  // namespace

PrintResult PrintScheduleList(App& app, const ListReport& list) {
  const auto row = std::find_if(std::begin(kScheduleTitles), std::end(kScheduleTitles),
                                [&](const TitleRow& each) { return each.viewKind == list.viewKind; });
  if (row == std::end(kScheduleTitles)) return {PrintResult::Outcome::Stopped};
  return printList(app, std::string(row->before) + list.text + std::string(row->after), list.grid);
}

PrintResult PrintInventoryList(App& app, const ListReport& list) {
  std::string title(kPageHeading);
  title += kInventoryTitles[list.viewKind];
  if (!list.text.empty()) title += " - " + list.text;
  return printList(app, title, list.grid);
}

}  // namespace vantry
