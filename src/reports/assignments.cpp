#include "reports/assignments.h"

#include "reports/record_sections.h"
#include "reports/report_page.h"

namespace vantry {

static constexpr std::string_view kMediaWidths = "3200|1700|1700|1200|2000;";
static constexpr std::string_view kPieceWidths = "3000|2500|1300|2500;";
static constexpr int kFootBlanks = 2;

/// A list that does not show has nothing to print.
static void printList(ReportPage& page, const Label& label, const Grid& grid, std::string_view widths,
                      const std::vector<PrintedColumn>& columns) {
  if (!grid.Visible) return;
  page.section(label.Caption.get());
  printGrid(page, widths, columns, grid);
}

PrintResult PrintAssignments(App& app, const frmGenAssign& window) {
  ReportPage page(app, window.Caption.get(), kReportFont);
  page.start(window.Caption.get());
  if (window.lblRoom.Visible) {
    page.section(window.lblRoomCaption.Caption.get());
    page.line(window.lblRoom.Caption.get());
  }
  printList(page, window.lblGenItems, window.faGenMedia, kMediaWidths,
            {{"Title"}, {"Media Type"}, {"Location"}, {"Copy Number"}, {"Enumeration"}});
  printList(page, window.lblGenEquip, window.faGenEquip, kPieceWidths,
            {{"Equipment Type"}, {"Equipment Number"}, {"Group?"}, {"Room"}});
  return page.finish(kFootBlanks);
}

}  // namespace vantry
