#pragma once

#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

// The step by which the search finds its way: folded copies of what people look for, and indexes of what it
// begins with.

extern const std::string_view searchTables;

/// Fills the folded copies, and lets the catalogue be indexed anew.
void foldForSearch(Connection& db);

}  // namespace vantry::server
