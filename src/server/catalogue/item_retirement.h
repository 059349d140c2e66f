#pragma once

#include "server/catalogue/marc_importer.h"

namespace vantry::server {

/// Marks the items that a file lacks as withdrawn, of the imported titles whose numbers are those of one that
/// gave numbers to titles of the file. Items that cannot be used already stay as they are; one that is booked
/// is told.
void retireMissing(Connection& db, const ImportedSoFar& soFar, bool checkOnly, ImportReport& report);

}  // namespace vantry::server
