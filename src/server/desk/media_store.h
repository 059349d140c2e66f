#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "server/store/database.h"

namespace vantry::server {

/// An item with its title and holdings.
struct ItemRow {
  std::int64_t id = 0;  ///< 0 for holdings without items
  std::int64_t titleId = 0;
  std::int64_t holdingId = 0;
  std::string title;
  std::int64_t mediaTypeId = 0;
  std::string mediaTypeName;
  std::string location;
  std::string callNumber;
  std::string enumeration;
  std::string chronology;
  std::string year;
  std::int64_t copy = 0;
};
/// None for an empty barcode. Location, call number and what tells the copy are left empty.
[[nodiscard]] std::vector<ItemRow> itemsOfBarcode(Connection& db, std::string_view barcode);
/// The items of a title, or of one of its holdings unless that is 0. Holdings without items give a row too.
[[nodiscard]] std::vector<ItemRow> itemsOfTitle(Connection& db, std::int64_t titleId, std::int64_t holdingId);

struct HoldingRow {
  std::int64_t id = 0;
  std::string callNumber;
  std::string location;
};
/// The holdings of the title, and the one with that id.
[[nodiscard]] std::vector<HoldingRow> holdingsOf(Connection& db, std::int64_t titleId,
                                                 std::int64_t holdingId);

}  // namespace vantry::server
