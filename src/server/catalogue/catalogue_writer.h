#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>

#include "server/catalogue/marc_record.h"
#include "server/catalogue/title_identity.h"
#include "server/store/database.h"

namespace vantry::server {

struct StoredTitle {
  std::int64_t id = 0;
  CatalogueTitle row;
};

struct CatalogueHolding {
  std::int64_t titleId = 0;
  std::int64_t locationId = 0;
  std::string callNumber = {};
  std::string callNumberKind = {};
  std::string controlNumber = {};  ///< of a record of holdings
  auto operator<=>(const CatalogueHolding&) const = default;
};

struct CatalogueItem {
  std::int64_t holdingId = 0;
  std::int64_t titleId = 0;
  std::int64_t locationId = 0;
  std::string barcode;
  std::string enumeration;
  std::string chronology;
  std::string year;
  std::string status;
  int copy = 1;
  bool operator==(const CatalogueItem&) const = default;
};
struct StoredItem {
  std::int64_t id = 0;
  CatalogueItem row;
};
/// What an item gets when it is new and keeps from then on: staff may change it.
struct NewItem {
  std::int64_t mediaTypeId = 0;
  std::string itemType;
  std::string description;
};

/// Titles, holdings and items on their way into the store. When it does not write, it remembers what would be
/// there, under ids below 0, so that the rest of a file is judged as if it was. Changes are counted by the
/// caller, who is told whether there are any.
class CatalogueWriter {
 public:
  enum class Writes { Yes, No };
  CatalogueWriter(Connection& db, Writes writes) : db_(db), writes_(writes == Writes::Yes) {}

  [[nodiscard]] std::optional<StoredTitle> findTitle(const TitleFacts& facts);
  /// The title that a record of holdings names. A stored one without a source may be of any.
  [[nodiscard]] std::optional<StoredTitle> titleNumbered(const std::string& number,
                                                         const std::string& source);
  std::int64_t addTitle(const TitleFacts& facts);
  bool changeTitle(const StoredTitle& title, const CatalogueTitle& row);
  /// Of the title, or with a `holdingId` of its holdings.
  bool putRecord(std::int64_t titleId, std::int64_t holdingId, const MarcRecord& record);
  [[nodiscard]] std::optional<MarcRecord> recordOf(std::int64_t titleId);
  void index(std::int64_t titleId);

  /// Holdings at the same place under the same call number, 0 for none; and those of a record of holdings.
  [[nodiscard]] std::int64_t findHolding(const CatalogueHolding& row);
  [[nodiscard]] std::int64_t holdingNumbered(std::int64_t titleId, const std::string& number);
  std::int64_t addHolding(const CatalogueHolding& row);
  bool changeHolding(std::int64_t id, const CatalogueHolding& row);

  /// By the barcode; without one, within the holdings by copy and issue.
  [[nodiscard]] std::optional<StoredItem> findItem(const CatalogueItem& row);
  /// Whether it is the active barcode of a piece of equipment or a group.
  [[nodiscard]] bool belongsToEquipment(const std::string& barcode);
  std::int64_t addItem(const CatalogueItem& row, const NewItem& fresh);
  bool changeItem(const StoredItem& item, const CatalogueItem& row);

  [[nodiscard]] Connection& db() { return db_; }

 private:
  [[nodiscard]] static std::string itemKey(const CatalogueItem& row);

  Connection& db_;
  bool writes_;
  std::int64_t lastId_ = 0;
  std::unordered_map<std::string, StoredTitle> titles_;  ///< that would be new, by what they are known by
  std::unordered_map<std::string, StoredItem> items_;
  std::map<CatalogueHolding, std::int64_t> holdings_;
  std::unordered_map<std::int64_t, std::size_t> records_;  ///< hashes of their stored forms
};

}  // namespace vantry::server
