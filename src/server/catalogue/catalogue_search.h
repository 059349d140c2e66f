#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/catalogue/catalogue_store.h"
#include "server/store/database.h"

namespace vantry::server {

struct FoundTitle {
  std::int64_t id = 0;
  std::string title;
  std::string author;
  std::string published;
};

/// A search returns so many titles at most, and one more where there are more.
inline constexpr std::size_t mostTitles = 500;

/// The titles that have a key of the kind within the range that the text means, in the order of their keys.
[[nodiscard]] std::vector<FoundTitle> titlesByKey(Connection& db, KeyKind kind, std::string_view text);

/// The titles that have all words of the text, by title; with `holdings` also those that have some of them in
/// their holdings. Words beyond the eighth are not looked for.
[[nodiscard]] std::vector<FoundTitle> titlesByWords(Connection& db, std::string_view text, bool holdings);

}  // namespace vantry::server
