#pragma once

#include <string>
#include <string_view>

#include "server/setup/rules_file_entries.h"
#include "server/setup/rules_file_value.h"

namespace vantry::server {

/// Reads the text of a file of rules. What is wrong in itself is told; every entry of the file is kept all
/// the same, with what could be read of it, so that places count as in the file.
[[nodiscard]] Rules readRulesText(std::string_view json, FileFaults& faults);

/// The text of a file with these rules.
[[nodiscard]] std::string rulesText(const Rules& rules);

}  // namespace vantry::server
