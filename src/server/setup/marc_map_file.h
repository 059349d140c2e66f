#pragma once

#include <string>
#include <string_view>

#include "server/catalogue/marc_map.h"
#include "server/setup/file_faults.h"
#include "server/store/database.h"

namespace vantry::server {

/// Reads the text of a map file. What is wrong is told by its place.
[[nodiscard]] MarcMap readMarcMap(std::string_view json, FileFaults& faults);

/// The text of a file with this map.
[[nodiscard]] std::string marcMapText(const MarcMap& map);

/// Reads a map file whose locations and media types must be the library's. Throws UserError for a file that
/// cannot be read.
[[nodiscard]] MarcMap readMarcMapFile(Database& database, const std::string& path, FileFaults& faults);

}  // namespace vantry::server
