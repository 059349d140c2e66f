#pragma once

#include <string>
#include <string_view>

namespace vantry {

class App;

/// The search window's name among the makers. As a picker it is given a tag that says what is sought, and its
/// tag brings back the row that was chosen; empty, or as it was given, when nothing was.
inline constexpr std::string_view kSearchWindow = "frmFind";

/// Asks for a patron; brings back name "|" id.
inline constexpr std::string_view kFindPatronTag = "6";
/// Ask for one room, by search or out of suggestions; bring back id "|" text.
inline constexpr std::string_view kFindRoomTag = "7";
inline constexpr std::string_view kSuggestRoomTag = "S|||";

/// Shows the search window until it is answered; what it brings back, empty when nothing was chosen.
[[nodiscard]] std::string pickBySearch(App& app, std::string_view tag);

}  // namespace vantry
