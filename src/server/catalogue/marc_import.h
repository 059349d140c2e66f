#pragma once

#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/catalogue/marc_map.h"
#include "server/store/database.h"

namespace vantry::server {

/// What a record itself does not say.
struct ImportOptions {
  std::string location =
      {};  ///< of holdings whose own place is none of the library's; empty: they are left out
  std::string mediaType = {};  ///< of items whose carrier names no media type of the library; empty: none
  std::string encoding = {};   ///< the code page of all records; empty: what each says
  MarcMap map = usualMarcMap();
  bool checkOnly = false;      ///< nothing is written
  bool retireMissing = false;  ///< items that the file lacks become withdrawn
  bool replaceTitles = false;  ///< also a record of quite another title takes the place of a stored one
};

struct ImportCounts {
  int newTitles = 0;
  int changedTitles = 0;
  int sameTitles = 0;
  int newHoldings = 0;
  int newItems = 0;
  int changedItems = 0;
  int sameItems = 0;
  int retiredItems = 0;
  int passedOver = 0;  ///< records that the map does not want
  int bad = 0;         ///< records of which nothing was taken
  int lostFields = 0;  ///< that could not be read, of records that were taken
  int leftOut = 0;     ///< holdings and items that were left out
};

struct ImportReport : ImportCounts {
  [[nodiscard]] const ImportCounts& counts() const { return *this; }

  std::vector<std::string> faults;  ///< of all that was not taken, the first hundred, in sentences
  std::vector<std::string> hints;   ///< about the file as a whole
  std::vector<std::string> told;    ///< what becomes of each record, for a check
};

/// Whether anything of the file is in the catalogue now.
[[nodiscard]] bool tookAnything(const ImportReport& report);

/// Imports a file of MARC 21 or MARCXML into the catalogue, titles with their holdings and items, a few
/// hundred records in one transaction. A title is identified by its control number and whose number it is, or
/// by its fingerprint; an item by its barcode. What was imported before is updated, and nothing is ever
/// deleted. Fields and records that cannot be read are counted and told. Leaves a row in the audit when it
/// changed something. Throws UserError for a location or media type that is not there, and std::runtime_error
/// for a file that cannot be read.
[[nodiscard]] ImportReport importMarc(Database& database, const std::string& path,
                                      const ImportOptions& options, Moment now);

}  // namespace vantry::server
