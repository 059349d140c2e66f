#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "server/base/search_text.h"

namespace vantry::server {

/// A text as the catalogue compares it: small letters without accents, one blank between words, no
/// punctuation. Takes UTF-8; bytes that are not UTF-8 are left out.
[[nodiscard]] std::string catalogueKey(std::string_view text);

/// The words of a key, each once.
[[nodiscard]] std::vector<std::string> catalogueWords(std::string_view key);

/// The range of keys that a search text means. `high` is empty when the text contains nothing to search for.
/// A text that ends in "?" means every key that begins with it.
[[nodiscard]] TextRange catalogueRange(std::string_view text);

/// One range for each word of a search text; a word that ends in "?" means every word that begins with it.
[[nodiscard]] std::vector<TextRange> wordRanges(std::string_view text);

}  // namespace vantry::server
