// What the windows of the inventory list and choose from: rooms, members of groups, types.

#include <array>

#include "server/desk/equipment_store.h"
#include "server/desk/inventory_record.h"
#include "server/desk/list_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply roomsOfCategory(Context& context, const Message& message) {
  Reply reply;
  for (const RoomRow& row : roomsOfType(context.db, message.number(tags::RTI))) {
    reply.record()
        .set(tags::RID, row.id)
        .set(tags::RNO, row.number)
        .set(tags::RNM, row.name)
        .set(tags::LNA, row.location)
        .set(tags::STY, row.status)
        .set(tags::RCA, row.capacity);
  }
  return reply;
}

Reply roomsAtLocation(Context& context, const Message& message) {
  Reply reply;
  for (const RoomRow& row : roomsOfLocation(context.db, message.number(tags::LOC)))
    reply.record().set(tags::RID, row.id).set(tags::RNM, row.name).set(tags::RNO, row.number);
  return reply;
}

Reply typesOfMembers(Context& context, const Message& message) {
  Reply reply;
  for (const CategoryRow& row : typesInGroup(context.db, message.number(tags::EID)))
    reply.record().set(tags::ETI, row.id).set(tags::ETY, row.name).set(tags::MIC, row.count);
  return reply;
}

void addPiece(Reply& reply, const EquipmentRow& row) {
  reply.record()
      .set(tags::EID, row.id)
      .set(tags::BNO, row.barcode)
      .set(tags::ENO, row.number)
      .set(tags::RNM, row.room)
      .set(tags::STY, row.status)
      .set(tags::EMA, row.maker)
      .set(tags::EMO, row.model)
      .set(tags::ESN, row.serial)
      .set(tags::EFO, row.format);
}

Reply membersOfGroup(Context& context, const Message& message) {
  Reply reply;
  visitMembers(context.db, message.number(tags::EID), [&](const EquipmentRow& row) {
    addPiece(reply, row);
    reply.set(tags::ETY, row.typeName);
  });
  return reply;
}

/// Pieces of the type that are in any group: the candidates show whose they are.
Reply groupedPieces(Context& context, const Message& message) {
  Reply reply;
  visitGroupedEquipment(context.db, message.number(tags::ETI), [&](const EquipmentRow& row) {
    addPiece(reply, row);
    reply.set(tags::LNA, row.location).set(tags::GRPNO, row.group);
  });
  return reply;
}

Reply roomDetailTypeList(Context& context, const Message&) {
  Reply reply;
  for (const NamedRow& row : roomDetailTypes(context.db))
    reply.record().set(tags::RDI, row.id).set(tags::RDTY, row.name);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GETRITM", roomsOfCategory}, HandlerRow{"GETARLOC", roomsAtLocation},
    HandlerRow{"GETEASC", typesOfMembers},  HandlerRow{"GETGEQ", membersOfGroup},
    HandlerRow{"GETGRPE", groupedPieces},   HandlerRow{"GETRDTLTY", roomDetailTypeList},
};

}  // namespace

std::span<const HandlerRow> inventoryListHandlers() {
  return rows;
}

}  // namespace vantry::server
