#include "inventory/modRoom.h"

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "words/tags.h"

namespace vantry {

void FillLocations(const App& app, ComboBox& locations) {
  locations.Clear();
  for (const bool own : {true, false}) {
    for (const Location& location : app.context.allLocations) {
      if ((location.id == app.context.locationId) == own) locations.AddItem(location.name, location.id);
    }
  }
}

int EntryOfLocation(ComboBox& locations, const std::string& id, const std::string& name) {
  if (!id.empty() && locations.indexOfData(id) < 0) locations.AddItem(name, id);
  return locations.indexOfData(id);
}

std::string RoomEntry(const std::string& number, const std::string& name) {
  return name.empty() ? number : number + " - " + name;
}

void FillRoomsOfLocation(App& app, const Ask& ask, ComboBox& rooms, std::string_view locationId) {
  rooms.Clear();
  if (locationId.empty()) return;
  ask("GETARLOC", {{tags::LOC, locationId}}, [&] {
    while (app.message.NextRecord(tags::RID))
      rooms.AddItem(RoomEntry(app.message.Get(tags::RNO), app.message.Get(tags::RNM)),
                    app.message.Get(tags::RID));
  });
  if (rooms.ListCount() > 0) rooms.ListIndex = 0;
}

}  // namespace vantry
