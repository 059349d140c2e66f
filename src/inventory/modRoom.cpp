#include "inventory/modRoom.h"

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "words/tags.h"

namespace vantry {

void FillLocations(const App& app, ComboBox& locations) {
  locations.Clear();
  for (const Location& location : app.context.allLocations) locations.AddItem(location.name, location.id);
}

std::string RoomEntry(const TagMessage& message) {
  const std::string name = message.Get(tags::RNM);
  return name.empty() ? message.Get(tags::RNO) : message.Get(tags::RNO) + " - " + name;
}

void FillRoomsOfLocation(App& app, const Ask& ask, ComboBox& rooms, std::string_view locationId) {
  rooms.Clear();
  if (locationId.empty()) return;
  ask("GETARLOC", {{tags::LOC, locationId}}, [&] {
    while (app.message.NextRecord(tags::RID))
      rooms.AddItem(RoomEntry(app.message), app.message.Get(tags::RID));
  });
  if (rooms.ListCount() > 0) rooms.ListIndex = 0;
}

}  // namespace vantry
