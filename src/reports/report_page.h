#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/app.h"
#include "platform/printer.h"

namespace vantry {

inline constexpr std::string_view kReportFont = "Times Roman";

/// What all reports have in common: title, sections, tables and foot. All windows are busy until the report
/// is finished.
class ReportPage {
 public:
  using Cells = std::vector<std::string>;

  /// An empty font is the printer's own.
  ReportPage(App& app, std::string name, std::string_view font = {});
  ReportPage(const ReportPage&) = delete;

  Printer& printer() { return printer_; }
  /// Starts the document in portrait with its title.
  void start(std::string_view titleText);
  void title(std::string_view text);
  /// A rule across the page, and the section's heading.
  void section(std::string_view heading);
  void rule();
  void line(std::string_view text) { printer_.Paragraph(text); }
  void blankLines(int lines);
  void bold(std::string_view text);
  void italic(std::string_view text);
  /// Headings of a table; its rows have the same widths.
  void head(std::string_view widths, const Cells& headings);
  void row(std::string_view widths, const Cells& cells);
  /// Writes the foot, behind a last line where one is given, prints the report, and tells the operator what
  /// they cannot see.
  PrintResult finish(int blanks, std::string_view lastLine = {});

 private:
  void tell(const PrintResult& result);

  App& app_;
  Printer& printer_;
};

/// A list report lies in landscape, which a first and empty document sets up.
void startLandscape(Printer& printer);

/// Cells as a row of a table.
[[nodiscard]] std::string tableRow(const std::vector<std::string>& cells);

}  // namespace vantry
