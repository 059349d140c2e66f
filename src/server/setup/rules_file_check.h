#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "server/setup/rules_file_entries.h"
#include "server/setup/rules_file_value.h"

namespace vantry::server {

/// What rules speak of and do not make.
struct KnownPlaces {
  std::vector<std::string> locations;
  std::vector<std::string> groups;  ///< of patrons
  std::vector<RoomPlace> rooms;
};

/// Finds what is wrong with the rules of a file beside the stored ones: names that nothing has, or
/// several things, repeated entries, calendars that overlap, statuses of one priority.
void checkRules(const Rules& wanted, const Rules& standing, const KnownPlaces& known, FileFaults& faults);

/// How many entries of one kind are new, changed, and already as the file says.
struct KindCounts {
  std::string_view kind;
  int added = 0;
  int changed = 0;
  int same = 0;
};

/// What is to be written so that the rules of a file hold.
struct RulesPlan {
  Rules added;
  Rules changed;
  std::vector<KindCounts> counts;  ///< of the kinds that the file names
};
[[nodiscard]] RulesPlan planRules(const Rules& wanted, const Rules& standing);

}  // namespace vantry::server
