#pragma once

#include <string>
#include <string_view>

namespace vantry {

class App;
class Ask;
class ComboBox;
class TagMessage;

/// Fills a list with all locations, their ids as data; none is selected.
void FillLocations(const App& app, ComboBox& locations);
/// The current record of a walk over rooms as the lists show it: its number, and its name where it has one.
[[nodiscard]] std::string RoomEntry(const TagMessage& message);
/// Fills a list with the rooms of a location, their ids as data, and selects the first. It is empty without a
/// location and after a failure, which is reported in the name of `ask`.
void FillRoomsOfLocation(App& app, const Ask& ask, ComboBox& rooms, std::string_view locationId);

}  // namespace vantry
