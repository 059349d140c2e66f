#pragma once

#include <string>

#include "server/catalogue/marc_facts.h"

namespace vantry::server {

// Which records are of one title.

/// What a title without a control number is known by: what it is called, by whom, and which edition on which
/// carrier. Empty for a title that has a number.
[[nodiscard]] std::string fingerprintOf(const TitleFacts& facts);

/// What the library keeps of a title beside its record.
struct CatalogueTitle {
  std::string title;
  std::string author;
  std::string published;
  std::string controlNumber;
  std::string controlSource;
  bool operator==(const CatalogueTitle&) const = default;
};
[[nodiscard]] CatalogueTitle rowOf(const TitleFacts& facts);

/// Whether neither title nor author have anything in common: then the number was given to another title.
[[nodiscard]] bool isQuiteAnother(const CatalogueTitle& a, const CatalogueTitle& b);

}  // namespace vantry::server
