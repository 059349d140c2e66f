#pragma once

#include <string>

#include "server/base/moment.h"
#include "server/setup/table_report.h"
#include "server/store/database.h"

namespace vantry::server {

/// Puts patrons onto the staff list as a CSV file names them by their cards, all of them or none. Nobody is
/// taken off the list: those whom the file lacks become inactive where that is asked for. Throws UserError
/// for a file that cannot be read.
[[nodiscard]] TableReport importStaff(Database& database, const std::string& path, const ImportUse& use,
                                      Moment now);

/// The staff list as such a file. Who has no card is left out.
[[nodiscard]] std::string staffTable(Connection& db);

}  // namespace vantry::server
