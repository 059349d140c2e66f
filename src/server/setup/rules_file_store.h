#pragma once

#include "server/setup/rules_file_check.h"
#include "server/setup/rules_file_entries.h"
#include "server/store/database.h"

namespace vantry::server {

/// The rules in the store, in the order in which they were added.
[[nodiscard]] Rules readRules(Connection& db);
[[nodiscard]] KnownPlaces readKnownPlaces(Connection& db);

/// Writes new entries. Names within them must be stored already, or among them.
void addRules(Connection& db, const Rules& rules);
/// Gives entries that are there the values of these. The rows of policies and calendars are replaced; their
/// keys stay.
void changeRules(Connection& db, const Rules& rules);

}  // namespace vantry::server
