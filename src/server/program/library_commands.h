#pragma once

#include <string>

#include "server/setup/patron_import.h"

namespace vantry::server {

/// Imports a CSV file of patrons and prints the counts; a check prints each row that would change something.
/// Faults are printed to the standard error. Throws std::runtime_error with a sentence when nothing was
/// taken.
void importPatronFile(const std::string& database, const std::string& file, const PatronImportUse& use);
/// Prints what is wrong with the library's set-up, or will be soon; true when nothing is.
[[nodiscard]] bool runDoctor(const std::string& database);

}  // namespace vantry::server
