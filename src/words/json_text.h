#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace vantry {

/// Appends the text as a JSON string with its quotes. Each byte that is no UTF-8 becomes U+FFFD, so that a
/// damaged text still gives sound JSON.
void appendJsonText(std::string& json, std::string_view text);

/// Appends "key":"value".
void appendJsonMember(std::string& json, std::string_view key, std::string_view value);

/// An object whose members are texts.
[[nodiscard]] std::string jsonObject(
    std::initializer_list<std::pair<std::string_view, std::string_view>> members);

}  // namespace vantry
