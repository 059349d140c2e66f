#include "reports/report_page.h"

#include "platform/datetime.h"

namespace vantry {

static constexpr double kTitleSize = 16;
static constexpr double kTextSize = 10;

ReportPage::ReportPage(App& app, std::string name, std::string_view font)
    : app_(app), printer_(app.desktop.printer()) {
  app_.global.BusyAllForms();
  app_.main().showStatus(MainWindow::kPrintingPanel, "");
  printer_.Preview = false;
  printer_.Orientation = Printer::PageOrientation::Portrait;
  printer_.FontName = font;
  printer_.FontBold = printer_.FontItalic = false;
  printer_.DocumentName = std::move(name);
}

void startLandscape(Printer& printer) {
  printer.Preview = true;
  printer.StartDoc();
  printer.Orientation = Printer::PageOrientation::Landscape;
  static_cast<void>(printer.EndDoc());
  printer.Preview = false;
}

std::string tableRow(const std::vector<std::string>& cells) {
  std::string row;
  for (const std::string& cell : cells)
    row += (row.empty() && &cell == cells.data() ? "" : "|") + tableCell(cell);
  return row + ';';
}

void ReportPage::start(std::string_view titleText) {
  printer_.StartDoc();
  printer_.PageBorder = 0;
  printer_.TableBorder = 0;
  title(titleText);
}

void ReportPage::title(std::string_view text) {
  printer_.FontSize = kTitleSize;
  bold(text);
  printer_.FontSize = kTextSize;
  line("");
}

void ReportPage::rule() {
  const int left = printer_.CurrentX();
  const int height = printer_.CurrentY();
  printer_.DrawLine(left, height, printer_.PageWidth() - left, height);
}

void ReportPage::section(std::string_view heading) {
  rule();
  line("");
  bold(heading);
  line("");
}

void ReportPage::blankLines(int lines) {
  for (int i = 0; i < lines; ++i) line("");
}

void ReportPage::bold(std::string_view text) {
  printer_.FontBold = true;
  line(text);
  printer_.FontBold = false;
}

void ReportPage::italic(std::string_view text) {
  printer_.FontItalic = true;
  line(text);
  printer_.FontItalic = false;
}

void ReportPage::head(std::string_view widths, const Cells& headings) {
  printer_.FontBold = true;
  printer_.AddTable(widths, tableRow(headings), "");
  printer_.FontBold = false;
}

void ReportPage::row(std::string_view widths, const Cells& cells) {
  printer_.AddTable(widths, "", tableRow(cells));
}

PrintResult ReportPage::finish(int blanks, std::string_view lastLine) {
  blankLines(blanks);
  printer_.FontBold = false;
  if (!lastLine.empty()) line(lastLine);
  const DateTime now = app_.clock.now();
  line("Printed: " + formatDate(now.date, "MM/dd/yyyy") + "  " + hourMinuteAmPm(now.time));
  const PrintResult result = printer_.EndDoc();
  app_.global.ReadyAllForms();
  tell(result);
  return result;
}

void ReportPage::tell(const PrintResult& result) {
  switch (result.outcome) {
    case PrintResult::Outcome::Printed:
      return;
    case PrintResult::Outcome::Filed:
      return app_.main().showStatus(MainWindow::kPrintingPanel, "Printed to \"" + result.text + "\"");
    case PrintResult::Outcome::Stopped:
      return app_.main().showStatus(MainWindow::kPrintingPanel, "Printing was stopped.");
    case PrintResult::Outcome::Failed:
      return criticalBox(app_.desktop, "The report could not be printed.\n\n" + result.text);
  }
}

}  // namespace vantry
