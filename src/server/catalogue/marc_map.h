#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "server/catalogue/marc_record.h"

namespace vantry::server {

// How the records of a library tell of its items.

/// One way to tell of items. Subfields are named by their codes in a row; the first that is there counts, but
/// for call numbers, which all of them make together.
struct ItemPractice {
  std::vector<std::string> items;  ///< tags of the fields that are an item each
  std::string holdings;            ///< tag of the fields that tell where the items are; empty: the items tell
  std::string holdingsBarcode;     ///< of a field of holdings to which no field of an item belongs
  std::string barcode;
  std::string location;    ///< in the field of holdings where there is one, as is the call number
  std::string callNumber;  ///< empty in a record: the title's own
  std::string copy;
  std::string status;
  std::string mediaType;  ///< not told: the title's carrier is looked at
  std::string issue;
  bool operator==(const ItemPractice&) const = default;
};

/// The library's own name for what the records name by a code.
struct CodeName {
  std::string code;
  std::string name;
  bool operator==(const CodeName&) const = default;
};

/// What a record of a title must pass to be taken.
struct RecordTest {
  enum class Kind { Has, HasNot, Contains };
  std::string field;      ///< a tag, or "LDR" for the leader
  std::string subfields;  ///< their codes; empty: all
  Kind kind = Kind::Has;
  std::string text;  ///< what it contains, without regard to case and accents
  int place = -1;    ///< the character, counted from 0, at which the text is; -1: anywhere
  bool operator==(const RecordTest&) const = default;
};

struct MarcMap {
  std::vector<ItemPractice> practices;  ///< the first that finds a barcode in a record counts for it
  std::vector<CodeName> locations;
  std::vector<CodeName> mediaTypes;
  std::vector<std::string> withdrawn;  ///< how statuses begin with which an item cannot be used
  std::vector<RecordTest> records;     ///< all must hold
  bool operator==(const MarcMap&) const = default;
};

/// The practice of the format itself: items in 876 to 878, places in 852.
[[nodiscard]] MarcMap usualMarcMap();

/// Whether a record of a title passes the tests.
[[nodiscard]] bool isWanted(const MarcMap& map, const MarcRecord& record);

/// Whether an item of this status cannot be used.
[[nodiscard]] bool isWithdrawn(const MarcMap& map, std::string_view status);

/// The name for a code; the code itself where the map has none. Case and accents do not count.
[[nodiscard]] std::string_view nameFor(const std::vector<CodeName>& names, std::string_view code);

}  // namespace vantry::server
