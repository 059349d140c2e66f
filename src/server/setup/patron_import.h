#pragma once

#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/setup/file_faults.h"
#include "server/store/database.h"

namespace vantry::server {

struct PatronImportUse {
  bool checkOnly = false;      ///< nothing is written
  bool retireMissing = false;  ///< active cards that the file lacks become inactive
};

struct PatronReport {
  FileFaults faults;                 ///< with any, nothing was taken
  std::vector<std::string> unknown;  ///< columns that were left out
  std::vector<std::string> told;     ///< what becomes of each row, for a check
  int newPatrons = 0;
  int changedPatrons = 0;
  int newCards = 0;
  int changedCards = 0;
  int sameRows = 0;
  int retiredCards = 0;
};

/// Takes patrons out of a CSV file, all of them or none. A patron is known by the card, else by the
/// institution id. What the file has no column for stays as it is, and nobody is ever deleted. Throws
/// UserError for a file that cannot be read.
[[nodiscard]] PatronReport importPatrons(Database& database, const std::string& path,
                                         const PatronImportUse& use, Moment now);

}  // namespace vantry::server
