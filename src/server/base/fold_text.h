#pragma once

#include <string>
#include <string_view>

namespace vantry::server {

/// A text without case, accents and the forms in which a character may be written: "Łódź" and "ŁO\u0301DZ"
/// give "lodz", "Straße" gives "strasse". Takes UTF-8; bytes that are not UTF-8 are left out.
[[nodiscard]] std::string foldText(std::string_view text);

}  // namespace vantry::server
