#pragma once

#include <string>

#include "server/base/moment.h"
#include "server/setup/table_report.h"
#include "server/store/database.h"

namespace vantry::server {

struct PatronReport : TableReport {
  int newPatrons = 0;
  int changedPatrons = 0;
  int newCards = 0;
  int changedCards = 0;
  int sameRows = 0;
  int retiredCards = 0;
};

/// Takes patrons out of a CSV file, all of them or none. A patron is known by the card, else by the
/// institution id. What the file has no column for stays as it is, and nobody is ever deleted: the cards that
/// the file lacks become inactive where it asks for that. Throws UserError for a file that cannot be read.
[[nodiscard]] PatronReport importPatrons(Database& database, const std::string& path, const ImportUse& use,
                                         Moment now);

/// All cards with their patrons as such a file. Patrons without a card are left out.
[[nodiscard]] std::string patronTable(Connection& db);

}  // namespace vantry::server
