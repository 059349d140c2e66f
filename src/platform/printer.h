#pragma once

#include <string>
#include <string_view>

namespace vantry {

/// Prints a report as a sequence of paragraphs, rules and tables, each below the one before it, in the font
/// that is set when it is written. Lengths are in twips (1440 to the inch), from the page's upper left
/// corner.
class Printer {
 public:
  virtual ~Printer() = default;

  enum class PageOrientation { Portrait, Landscape };

  /// While it is on, a document is laid out and nothing is printed.
  bool Preview = false;
  /// Counts for the pages that are started after it is set.
  PageOrientation Orientation = PageOrientation::Portrait;
  int PageBorder = 0;  ///< style of the line around each page; 0: none
  int TableBorder = 0;
  std::string FontName;
  double FontSize = 10;  ///< in points
  bool FontBold = false;
  bool FontItalic = false;

  virtual void StartDoc() = 0;
  virtual void EndDoc() = 0;
  /// Writes a paragraph and starts a new line; an empty text makes a blank line.
  virtual void Paragraph(std::string_view text) = 0;
  virtual void DrawLine(int x1, int y1, int x2, int y2) = 0;
  /// Widths of the columns as "1500|2000;", headings in the same shape or empty. Rows end in ";", their cells
  /// are joined by "|".
  virtual void AddTable(std::string_view widths, std::string_view headings, std::string_view rows) = 0;

  /// The place where the next paragraph starts.
  [[nodiscard]] virtual int CurrentX() const = 0;
  [[nodiscard]] virtual int CurrentY() const = 0;
  [[nodiscard]] virtual int PageWidth() const = 0;
};

}  // namespace vantry
