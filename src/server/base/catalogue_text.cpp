#include "server/base/catalogue_text.h"

#include <algorithm>

#include "words/utf8.h"

namespace vantry::server {

namespace {

/// Keys are cut, so that an index can hold them.
constexpr std::size_t longestKey = 240;

/// The letters from U+00C0 to U+017F without their marks, one place each; '*' where two letters stand for
/// one.
constexpr std::string_view plainLetters =
    "aaaaaa*ceeeeiiiidnooooo ouuuuyt*aaaaaa*ceeeeiiiidnooooo ouuuuyty"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiii**jjkkklllllll"
    "lllnnnnnnnnnoooooo**rrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(plainLetters.size() == 0x180 - 0xc0);

struct LetterPair {
  char32_t letter;
  std::string_view plain;
};
constexpr LetterPair letterPairs[] = {{0xc6, "ae"},  {0xdf, "ss"},  {0xe6, "ae"}, {0x132, "ij"},
                                      {0x133, "ij"}, {0x152, "oe"}, {0x153, "oe"}};

/// Greek and Cyrillic have their small letters at a fixed distance.
char32_t smallLetter(char32_t value) {
  if (value >= 0x391 && value <= 0x3a9) return value + 0x20;
  if (value >= 0x410 && value <= 0x42f) return value + 0x20;
  if (value >= 0x400 && value <= 0x40f) return value + 0x50;
  return value;
}

/// Marks that stand on the letter before, and strokes that part no words.
bool isDropped(char32_t value) {
  return (value >= 0x300 && value <= 0x36f) || value == '\'' || value == 0x2019 || value == 0x2018 ||
         value == 0x2bc || value == 0x2b9 || value == 0xfe20 || value == 0xfe21 || value == noCharacter;
}

bool isBlank(char32_t value) {
  return value < 0x80 || (value >= 0x80 && value < 0xc0) || (value >= 0x2000 && value <= 0x206f) ||
         value == 0xd7 || value == 0xf7;
}

void appendAbove(std::string& key, char32_t value) {
  if (value >= 0xc0 && value < 0x180) {
    for (const LetterPair& pair : letterPairs) {
      if (pair.letter == value) {
        key += pair.plain;
        return;
      }
    }
    key += plainLetters[value - 0xc0];
    return;
  }
  appendCharacter(key, smallLetter(value));
}

}  // namespace

std::string catalogueKey(std::string_view text) {
  std::string key;
  while (!text.empty() && key.size() <= longestKey) {
    const char32_t value = takeCharacter(text);
    if (isDropped(value)) continue;
    const bool letter = (value >= 'a' && value <= 'z') || (value >= '0' && value <= '9');
    if (letter) {
      key += static_cast<char>(value);
    } else if (value >= 'A' && value <= 'Z') {
      key += static_cast<char>(value - 'A' + 'a');
    } else if (!isBlank(value)) {
      appendAbove(key, value);
    } else if (!key.empty() && key.back() != ' ') {
      key += ' ';
    }
  }
  key = cutText(key, longestKey);
  while (key.ends_with(' ')) key.pop_back();
  return key;
}

std::vector<std::string> catalogueWords(std::string_view key) {
  std::vector<std::string> words;
  while (!key.empty()) {
    const std::string_view word = key.substr(0, key.find(' '));
    if (!word.empty()) words.emplace_back(word);
    key.remove_prefix(std::min(word.size() + 1, key.size()));
  }
  std::ranges::sort(words);
  const auto repeated = std::ranges::unique(words);
  words.erase(repeated.begin(), repeated.end());
  return words;
}

TextRange catalogueRange(std::string_view text) {
  while (text.ends_with(' ')) text.remove_suffix(1);
  const std::string key = catalogueKey(text);
  if (key.empty()) return {};
  return textRange(text.ends_with('?') ? key + "?" : key);
}

std::vector<TextRange> wordRanges(std::string_view text) {
  std::vector<TextRange> ranges;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    // Marks within a part may divide it; the question mark belongs to its last word.
    const std::vector<std::string> words = catalogueWords(catalogueKey(part));
    if (words.empty()) continue;
    if (words.size() == 1) {
      ranges.push_back(catalogueRange(part));
    } else {
      for (const std::string& word : words) ranges.push_back(textRange(word));
    }
  }
  return ranges;
}

}  // namespace vantry::server
