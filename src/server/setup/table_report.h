#pragma once

#include <string>
#include <vector>

#include "server/setup/file_faults.h"

namespace vantry::server {

struct ImportUse {
  bool checkOnly = false;                 ///< nothing is written
  bool retireMissing = false;             ///< what the file lacks is retired
  std::vector<std::string> leftOut = {};  ///< columns of the file that are not taken
  std::string retiredStatus = {};  ///< what retired things of the inventory get; empty for the usual one
};

/// What an import did, or would do.
struct TableReport {
  FileFaults faults;                 ///< with any, nothing was taken
  std::vector<std::string> unknown;  ///< columns that were left out
  std::vector<std::string> told;     ///< what becomes of each row that changes something
  std::string summary;               ///< the counts, as a sentence
};

}  // namespace vantry::server
