#include "server/base/catalogue_text.h"

#include <algorithm>

#include <unicode/uchar.h>

#include "server/base/fold_text.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

/// Keys are cut, so that an index can hold them.
constexpr std::size_t longestKey = 240;

/// Strokes that part no words.
bool isDropped(UChar32 value) {
  return value == '\'' || value == 0x2019 || value == 0x2018 || value == 0x2bc || value == 0x2b9;
}

bool isPartOfWord(UChar32 value) {
  constexpr std::uint32_t gaps =
      U_GC_C_MASK | U_GC_Z_MASK | U_GC_P_MASK | U_GC_SM_MASK | U_GC_SC_MASK | U_GC_SK_MASK;
  return (U_GET_GC_MASK(value) & gaps) == 0;
}

}  // namespace

std::string catalogueKey(std::string_view text) {
  // What lies far behind the end of the key need not be folded.
  const std::string folded = foldText(cutText(text, longestKey * 4));
  std::string_view rest = folded;
  std::string key;
  while (!rest.empty() && key.size() <= longestKey) {
    const auto value = static_cast<UChar32>(takeCharacter(rest));
    if (isDropped(value)) continue;
    if (isPartOfWord(value)) {
      appendCharacter(key, static_cast<char32_t>(value));
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
