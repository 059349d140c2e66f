#pragma once

#include <string>
#include <vector>

#include "server/store/database.h"

namespace vantry::server {

/// What a record itself does not say.
struct ImportOptions {
  std::string location;   ///< of holdings whose own place is none of the library's; empty: they are left out
  std::string mediaType;  ///< of items whose carrier names no media type of the library; empty: none
};

struct ImportReport {
  int newTitles = 0;
  int changedTitles = 0;
  int newHoldings = 0;
  int newItems = 0;
  int changedItems = 0;
  int bad = 0;      ///< records of which nothing was taken
  int leftOut = 0;  ///< holdings and items that were left out
  std::vector<std::string>
      faults;  ///< of bad records and of what was left out, the first hundred, in sentences
};

/// Imports a file of MARC 21 or MARCXML into the catalogue, titles with their holdings and items, a few
/// hundred records in one transaction. A title is identified by its control number, an item by its barcode:
/// what was imported before is updated, and nothing is ever deleted. Records that cannot be read are counted
/// and told. Throws UserError for a location or media type that is not there, and std::runtime_error for a
/// file that cannot be read.
ImportReport importMarc(Database& database, const std::string& path, const ImportOptions& options);

}  // namespace vantry::server
