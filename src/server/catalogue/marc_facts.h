#pragma once

#include <string>
#include <vector>

#include "server/catalogue/marc_map.h"
#include "server/catalogue/marc_record.h"

namespace vantry::server {

// What the library's own tables store of the records of a catalogue.

struct TitleFacts {
  std::string controlNumber;  ///< 001
  std::string controlSource;  ///< 003: whose number it is
  std::string title;          ///< empty when the record names none
  std::string author;
  std::string edition;
  std::string published;    ///< a year
  std::string itemType;     ///< the carrier, as the record names it
  std::string description;  ///< extent
};
[[nodiscard]] TitleFacts titleFacts(const MarcRecord& record);

struct ItemFacts {
  std::string barcode;
  std::string enumeration;
  std::string chronology;
  std::string year;
  std::string status;     ///< why it cannot be used; empty when it can
  std::string mediaType;  ///< as the record names it; empty when it does not
  int copy = 1;
};

struct HoldingFacts {
  std::vector<std::string> locations;  ///< where it is kept, the most precise first, as the record names it
  std::string callNumber;
  std::string callNumberKind;  ///< as the searches name it: MLC#, MDEW, MNLM, MSUD or MOTH
  std::vector<ItemFacts> items;
};

/// The holdings in a record, of a title or of holdings, by the first practice of the map that finds a
/// barcode, else by the first that finds anything: one for each field of holdings, with the items that belong
/// to it, or the one whose barcode the field itself gives; or one for each item that tells its own place.
[[nodiscard]] std::vector<HoldingFacts> holdingsIn(const MarcRecord& record, const MarcMap& map);

/// The record's texts about its carrier, for finding a media type by name.
[[nodiscard]] std::vector<std::string> carrierTexts(const MarcRecord& record);

}  // namespace vantry::server
