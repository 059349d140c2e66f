#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "server/base/search_text.h"

namespace vantry::server {

/// A text as the catalogue compares it: small letters without accents, one blank between words, no
/// punctuation. Takes UTF-8; bytes that are none are left out.
[[nodiscard]] std::string catalogueKey(std::string_view text);

/// The words of a key, each once.
[[nodiscard]] std::vector<std::string> catalogueWords(std::string_view key);

/// What a search text stands for among keys; an empty `high` when nothing of it is left to look for. A text
/// that ends in "?" stands for every key that begins so.
[[nodiscard]] TextRange catalogueRange(std::string_view text);

/// One range for each word of a search text; a word that ends in "?" stands for every word that begins so.
[[nodiscard]] std::vector<TextRange> wordRanges(std::string_view text);

}  // namespace vantry::server
