#pragma once

#include <string>
#include <string_view>

namespace vantry {

class App;
class Ask;
class ComboBox;

/// Fills a list with all locations, their ids as data; none is selected. The operator's own is the first,
/// with which new records begin.
void FillLocations(const App& app, ComboBox& locations);
/// The entry of a location. One that the list lacks is added, since a record is there.
[[nodiscard]] int EntryOfLocation(ComboBox& locations, const std::string& id, const std::string& name);
/// A room as the lists show it: its number, and its name if it has one.
[[nodiscard]] std::string RoomEntry(const std::string& number, const std::string& name);
/// Fills a list with the rooms of a location, their ids as data, and selects the first. It is empty without a
/// location and after a failure, which is reported in the name of `ask`.
void FillRoomsOfLocation(App& app, const Ask& ask, ComboBox& rooms, std::string_view locationId);

}  // namespace vantry
