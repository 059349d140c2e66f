#include "words/utf8.h"

#include <algorithm>

namespace vantry {

namespace {

unsigned byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

bool continues(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The length that the first byte tells; 0 for one that begins no character.
std::size_t lengthOfLead(unsigned lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
}

}  // namespace

std::size_t characterLength(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned lead = byteAt(text, 0);
  const std::size_t length = lengthOfLead(lead);
  if (length <= 1) return length;
  if (text.size() < length) return 0;
  const std::string_view rest = text.substr(1, length - 1);
  if (!std::all_of(rest.begin(), rest.end(), continues)) return 0;
  // Overlong forms, surrogates, and what lies beyond the last plane.
  const unsigned second = byteAt(text, 1);
  const bool wrong = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                     (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return wrong ? 0 : length;
}

char32_t takeCharacter(std::string_view& text) {
  const std::size_t length = characterLength(text);
  if (length <= 1) {
    const char32_t value = length == 1 ? byteAt(text, 0) : noCharacter;
    text.remove_prefix(1);
    return value;
  }
  char32_t value = byteAt(text, 0) & (0x7FU >> length);
  for (std::size_t at = 1; at < length; ++at) value = value << 6U | (byteAt(text, at) & 0x3FU);
  text.remove_prefix(length);
  return value;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void appendCharacter(std::string& text, char32_t character) {
  const auto tail = [&](unsigned shift) {
    text += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0U | (character >> 6U));
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0U | (character >> 12U));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0U | (character >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::string_view cutText(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && continues(text[bytes])) --bytes;
  return text.substr(0, bytes);
}

}  // namespace vantry
