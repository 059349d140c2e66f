#pragma once

#include <vector>

#include "platform/printer.h"

namespace vantry::test {

/// A printer that keeps its documents as text. A paragraph is a line; a table's row is a line too, its cells
/// joined by " | "; a rule is "----". A line in another font than the one before begins with that font:
/// "{16 bold} Title". A document in preview is kept apart; one that is stopped or fails is not kept.
class ScriptedPrinter : public Printer {
 public:
  std::vector<std::string> printed;
  std::vector<std::string> previewed;
  PrintResult result;  ///< what becomes of each document
  int stopAfter = -1;  ///< rows after which the operator stops a document; -1: never

  void StartDoc() override;
  PrintResult EndDoc() override;
  void Paragraph(std::string_view text) override;
  void DrawLine(int x1, int y1, int x2, int y2) override;
  void AddTable(std::string_view widths, std::string_view headings, std::string_view rows) override;
  bool advance(int done, int) override { return stopAfter < 0 || done < stopAfter; }
  int CurrentX() const override { return kMargin; }
  int CurrentY() const override { return kMargin + lines_ * kLineHeight; }
  int PageWidth() const override;

 private:
  static constexpr int kMargin = 1440;
  static constexpr int kLineHeight = 240;
  void write(std::string_view line);
  void writeRow(const std::vector<std::string>& cells, std::size_t columns);
  std::string font() const;

  bool open_ = false;
  int lines_ = 0;
  std::string text_;
  std::string lastFont_;
};

}  // namespace vantry::test
