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

/// Tells what is wrong with the rules of a file beside those that stand: names that nothing has, or
/// more than one thing, entries that stand twice, calendars that overlap, statuses of one priority.
void checkRules(const Rules& wanted, const Rules& standing, const KnownPlaces& known, RuleFaults& faults);

/// How many entries of one kind are new, are changed, and stand already as the file says.
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
