#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// What became of a document.
struct PrintResult {
  enum class Outcome {
    Printed,  ///< on paper
    Filed,    ///< in a file, since there is no printer
    Stopped,  ///< by the operator; nothing was printed
    Failed
  };
  Outcome outcome = Outcome::Printed;
  std::string text = {};  ///< the name of the file, or the reason of the failure
};

/// Prints a report as a sequence of paragraphs, rules and tables, each below the one before it, in the font
/// that is set when it is written. Lengths are in twips (1440 to the inch), from the page's upper left
/// corner.
class Printer {
 public:
  virtual ~Printer() = default;

  enum class PageOrientation { Portrait, Landscape };

  /// While it is on, a document is laid out and nothing is printed.
  bool Preview = false;
  /// Counts for the document that is started after it is set.
  PageOrientation Orientation = PageOrientation::Portrait;
  int PageBorder = 0;  ///< style of the line around each page; 0: none
  int TableBorder = 0;
  std::string FontName;
  double FontSize = 10;  ///< in points
  bool FontBold = false;
  bool FontItalic = false;
  /// Names the document in the printer's queue, and the file where there is no printer.
  std::string DocumentName;

  virtual void StartDoc() = 0;
  /// Prints what was written since `StartDoc`.
  [[nodiscard]] virtual PrintResult EndDoc() = 0;
  /// Writes a paragraph and starts a new line; an empty text makes a blank line.
  virtual void Paragraph(std::string_view text) = 0;
  virtual void DrawLine(int x1, int y1, int x2, int y2) = 0;
  /// Widths of the columns as "1500|2000;", headings in the same shape or empty. Rows end in ";", their cells
  /// are joined by "|". Headings and rows are made of `tableCell`. Calls with equal widths continue one
  /// table, whose headings are repeated on each page.
  virtual void AddTable(std::string_view widths, std::string_view headings, std::string_view rows) = 0;
  /// Tells how far a long document is. False once the operator has stopped it: what is written from then on
  /// is not printed.
  [[nodiscard]] virtual bool advance(int done, int total) = 0;

  /// The place where the next paragraph starts.
  [[nodiscard]] virtual int CurrentX() const = 0;
  [[nodiscard]] virtual int CurrentY() const = 0;
  [[nodiscard]] virtual int PageWidth() const = 0;
};

/// A text as a cell of a table: signs that separate cells and rows are marked as part of the text.
[[nodiscard]] std::string tableCell(std::string_view text);
/// The rows of a table as `AddTable` takes them, and the texts of their cells.
[[nodiscard]] std::vector<std::vector<std::string>> tableRows(std::string_view rows);

}  // namespace vantry
