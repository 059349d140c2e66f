#include "desktop/text_widths.h"

#include "words/utf8.h"

namespace vantry {

/// Letters up to here have a place of their own in the table of widths.
static constexpr std::size_t kCommonLetters = 0x600;

TextWidths::TextWidths(const QFont& font) : metrics_(font), common_(kCommonLetters, -1.0F) {}

double TextWidths::of(std::string_view text) {
  double width = 0;
  while (!text.empty()) {
    const char32_t letter = takeCharacter(text);
    width += advance(letter == noCharacter ? U'?' : letter);
  }
  return width;
}

double TextWidths::advance(char32_t letter) {
  float& width = letter < kCommonLetters ? common_[letter] : rare_.try_emplace(letter, -1.0F).first->second;
  if (width < 0) width = static_cast<float>(metrics_.horizontalAdvance(QString::fromUcs4(&letter, 1)));
  return static_cast<double>(width);
}

}  // namespace vantry
