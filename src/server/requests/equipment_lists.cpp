// Equipment to choose from when a booking is made: types, their pieces and groups, and what a barcode or a
// number stands for.

#include <array>

#include "server/desk/equipment_store.h"
#include "server/desk/list_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

void addPlace(Reply& reply, const EquipmentRow& row) {
  reply.record()
      .set(tags::EID, row.id)
      .set(tags::BNO, row.barcode)
      .set(tags::ENO, row.number)
      .set(tags::LNA, row.location)
      .set(tags::RNM, row.room)
      .set(tags::STY, row.status)
      .set(tags::MNC, row.note);
}

void addPieceRecord(Reply& reply, const EquipmentRow& row) {
  addPlace(reply, row);
  reply.set(tags::EMA, row.maker)
      .set(tags::EMO, row.model)
      .set(tags::ESN, row.serial)
      .set(tags::GRPNO, row.group)
      .set(tags::GRPNA, row.groupName)
      .set(tags::EFO, row.format);
}

void addLooseRecord(Reply& reply, const EquipmentRow& row) {
  addPieceRecord(reply, row);
  reply.set(tags::EIU, row.isGroup ? "Y" : "N").set(tags::RID, row.roomId);
}

void addGroupRecord(Reply& reply, const EquipmentRow& row) {
  addPlace(reply, row);
  reply.set(tags::ECNT, row.members).set(tags::EIU, row.isGroup ? "Y" : "N").set(tags::RID, row.roomId);
}

void addFoundRecord(Reply& reply, const EquipmentRow& row) {
  reply.record()
      .set(tags::EID, row.id)
      .set(tags::ENO, row.number)
      .set(tags::BNO, row.barcode)
      .set(tags::STY, row.status)
      .set(tags::ETY, row.typeName)
      .set(tags::EIU, row.isGroup ? "Y" : "N")
      .set(tags::RID, row.roomId);
}

Reply piecesOfType(Context& context, const Message& message) {
  Reply reply;
  visitEquipmentOfType(context.db, message.number(tags::ETI),
                       [&](const EquipmentRow& row) { addPieceRecord(reply, row); });
  return reply;
}

/// Bookings choose pieces by this request as well as groups.
Reply groupsOfType(Context& context, const Message& message) {
  Reply reply;
  visitEquipmentOfType(context.db, message.number(tags::ETI),
                       [&](const EquipmentRow& row) { addGroupRecord(reply, row); });
  return reply;
}

/// What is in the room already is no choice for it.
Reply loosePieces(Context& context, const Message& message) {
  Reply reply;
  visitLooseEquipment(context.db, message.number(tags::ETI), message.number(tags::RID),
                      [&](const EquipmentRow& row) { addLooseRecord(reply, row); });
  return reply;
}

Reply typesWithLoosePieces(Context& context, const Message& message) {
  Reply reply;
  for (const CategoryRow& row : typesWithLooseEquipment(context.db, message.number(tags::RID)))
    reply.record().set(tags::ETI, row.id).set(tags::ETY, row.name).set(tags::MIC, row.count);
  return reply;
}

/// Maintenance (1) and membership (2) are for pieces; rooms and bookings (3) take groups too.
Reply lookUp(Context& context, const Message& message) {
  const std::int64_t purpose = message.number(tags::EPT);
  const WithGroups groups = purpose == 0 || purpose == 3 ? WithGroups::Yes : WithGroups::No;
  Reply reply;
  const auto add = [&](const EquipmentRow& row) { addFoundRecord(reply, row); };
  if (message.has(tags::ENO)) {
    visitEquipmentOfNumber(context.db, message.text(tags::ENO), groups, add);
  } else {
    visitEquipmentOfBarcode(context.db, message.text(tags::BNO), groups, add);
  }
  return reply.head(tags::SRCHCNT, reply.recordCount());
}

constexpr std::array rows{
    HandlerRow{"GETEAVC", typesWithLoosePieces},
    HandlerRow{"GETEITM", piecesOfType},
    HandlerRow{"GETGITM", groupsOfType},
    HandlerRow{"GETNGRPE", loosePieces},
    HandlerRow{"GETIBYB", lookUp},
};

}  // namespace

std::span<const HandlerRow> equipmentListHandlers() {
  return rows;
}

}  // namespace vantry::server
