#pragma once

#include <string>
#include <vector>

#include "server/setup/rules_file_check.h"
#include "server/store/database.h"

namespace vantry::server {

/// The rules of the library as the text of a file, which `takeRules` takes and then changes nothing.
[[nodiscard]] std::string showRules(Database& database);

struct RulesReport {
  std::vector<KindCounts> counts;
  FileFaults faults;
};

enum class RulesUse { Take, CheckOnly };

/// Makes the rules of a file those of the library, in one transaction: adds what is not there, changes what
/// differs, and leaves what the file does not name. With a fault, or when it only checks, nothing is written;
/// a check counts what would be. Leaves a row in the audit when it changed something. Throws
/// UserError for a file that cannot be read.
[[nodiscard]] RulesReport takeRules(Database& database, const std::string& path, RulesUse use, Moment now);

/// Rules out of a file of whatever form.
struct ReadRules {
  std::string path;
  Rules rules;
  FileFaults faults;
};
[[nodiscard]] RulesReport takeReadRules(Database& database, const ReadRules& read, RulesUse use, Moment now);

/// The counts of a kind in words: "Room types: 1 added, 2 changed, 5 as they were".
[[nodiscard]] std::string countsText(const KindCounts& counts);

}  // namespace vantry::server
