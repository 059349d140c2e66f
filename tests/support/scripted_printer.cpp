#include "support/scripted_printer.h"

#include <gtest/gtest.h>

namespace vantry::test {
namespace {

constexpr int kLetterWidth = 12240;
constexpr int kLetterHeight = 15840;

}  // namespace

std::string ScriptedPrinter::font() const {
  std::string text = FontName.empty() ? "" : FontName + ' ';
  text += std::to_string(static_cast<int>(FontSize));
  return text + (FontBold ? " bold" : "") + (FontItalic ? " italic" : "");
}

int ScriptedPrinter::PageWidth() const {
  return Orientation == PageOrientation::Landscape ? kLetterHeight : kLetterWidth;
}

void ScriptedPrinter::StartDoc() {
  EXPECT_FALSE(open_) << "a document was started within another one";
  open_ = true;
  lines_ = 0;
  lastFont_.clear();
  text_ = Orientation == PageOrientation::Landscape ? "{landscape}\n" : "";
}

PrintResult ScriptedPrinter::EndDoc() {
  EXPECT_TRUE(open_) << "no document was started";
  open_ = false;
  using enum PrintResult::Outcome;
  const bool kept = result.outcome == Printed || result.outcome == Filed;
  if (Preview || kept) (Preview ? previewed : printed).push_back(std::move(text_));
  text_.clear();
  return result;
}

void ScriptedPrinter::write(std::string_view line) {
  EXPECT_TRUE(open_) << "written outside of a document: " << line;
  if (!line.empty() && font() != lastFont_) {
    lastFont_ = font();
    text_ += '{' + lastFont_ + "} ";
  }
  text_ += std::string(line) + '\n';
  ++lines_;
}

void ScriptedPrinter::Paragraph(std::string_view text) {
  write(text);
}

void ScriptedPrinter::DrawLine(int x1, int y1, int x2, int y2) {
  EXPECT_TRUE(open_ && x1 >= 0 && x2 <= PageWidth() && y1 >= 0 && y2 >= 0) << "a rule beyond the page";
  text_ += "----\n";
}

void ScriptedPrinter::writeRow(const std::vector<std::string>& cells, std::size_t columns) {
  std::string line;
  for (const std::string& cell : cells) line += (&cell == cells.data() ? "" : " | ") + cell;
  EXPECT_LE(cells.size(), columns) << "more cells than columns: " << line;
  write(line);
}

void ScriptedPrinter::AddTable(std::string_view widths, std::string_view headings, std::string_view rows) {
  const std::size_t columns = tableRows(widths).at(0).size();
  for (const auto& row : tableRows(headings)) writeRow(row, columns);
  for (const auto& row : tableRows(rows)) writeRow(row, columns);
}

}  // namespace vantry::test
