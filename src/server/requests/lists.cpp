// The categories of the inventory's trees.

#include <array>

#include "server/desk/list_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply equipmentTypesReply(const std::vector<CategoryRow>& types) {
  Reply reply;
  for (const CategoryRow& row : types) {
    reply.record().set(tags::ETI, row.id).set(tags::ETY, row.name).set(tags::MIC, row.count);
  }
  return reply;
}

Reply equipmentCategories(Context& context, const Message&) {
  return equipmentTypesReply(equipmentTypes(context.db, false));
}

/// From a room's window the groups that stand in the room already are no choice, and are not counted.
Reply groupCategories(Context& context, const Message& message) {
  const std::int64_t room = message.number(tags::RID);
  return equipmentTypesReply(room == 0 ? equipmentTypes(context.db, true)
                                       : groupTypesOutside(context.db, room));
}

Reply roomCategories(Context& context, const Message&) {
  Reply reply;
  for (const CategoryRow& row : roomTypes(context.db)) {
    reply.record()
        .set(tags::RTI, row.id)
        .set(tags::RTY, row.name)
        .set(tags::MIC, row.count)
        .set(tags::RST, row.storage ? "Y" : "N");
  }
  return reply;
}

Reply maintenanceYears(Context& context, const Message&) {
  Reply reply;
  for (const int year : yearsOfMaintenance(context.db)) reply.record().set(tags::MYE, year);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GETECAT", equipmentCategories},
    HandlerRow{"GETGCAT", groupCategories},
    HandlerRow{"GETRCAT", roomCategories},
    HandlerRow{"GETMYER", maintenanceYears},
};

}  // namespace

std::span<const HandlerRow> listHandlers() {
  return rows;
}

}  // namespace vantry::server
