// Records of equipment, groups and rooms, as their windows show them.

#include <array>

#include "server/base/money_text.h"
#include "server/desk/booking_store.h"
#include "server/desk/inventory_record.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// What a piece and a group have in common.
void addShared(Reply& reply, Context& context, const EquipmentRecord& record) {
  reply.head(tags::ENO, record.number)
      .head(tags::BNO, record.barcode)
      .head(tags::STY, record.status)
      .head(tags::EQVR, moneyText(record.replacementValue))
      .head(tags::EHB, countPastOfEquipment(context.db, record.id, context.session.locationId))
      .head(tags::LNA, record.location)
      .head(tags::LOC, record.locationId)
      .head(tags::RNM, record.room)
      .head(tags::RID, record.roomId)
      .head(tags::TRNM, record.currentRoom);
  addStamps(reply, record.stamps);
}

Reply pieceRecord(Context& context, const Message& message) {
  const std::optional<EquipmentRecord> record = findEquipmentRecord(context.db, message.number(tags::EID));
  if (!record || record->isGroup) return Reply(rc::notFound);
  Reply reply;
  addShared(reply, context, *record);
  reply.head(tags::EMA, record->maker)
      .head(tags::EFO, record->format)
      .head(tags::EMO, record->model)
      .head(tags::ESN, record->serial)
      .head(tags::EQVP, moneyText(record->purchaseValue))
      .head(tags::ESU, record->supplier)
      .head(tags::EDP, dayText(record->acquiredOn))
      .head(tags::ENM, dayText(record->nextMaintenanceOn))
      .head(tags::EHM, record->pastMaintenance);
  if (record->groupId == 0) return reply;
  return reply.head(tags::GRPNO, record->groupNumber).head(tags::GRPID, record->groupId);
}

Reply groupRecord(Context& context, const Message& message) {
  const std::optional<EquipmentRecord> record = findEquipmentRecord(context.db, message.number(tags::EID));
  if (!record || !record->isGroup) return Reply(rc::notFound);
  Reply reply;
  addShared(reply, context, *record);
  return reply;
}

Reply equipmentTypeOf(Context& context, const Message& message) {
  const std::optional<EquipmentRecord> record = findEquipmentRecord(context.db, message.number(tags::EID));
  if (!record) return Reply(rc::notFound);
  Reply reply;
  return reply.head(tags::ETY, record->typeName).head(tags::ETI, record->typeId);
}

Reply roomRecord(Context& context, const Message& message) {
  const std::optional<RoomRecord> record = findRoomRecord(context.db, message.number(tags::RID));
  if (!record) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::RNO, record->number)
      .head(tags::LOC, record->locationId)
      .head(tags::RNM, record->name)
      .head(tags::RCA, record->capacity)
      .head(tags::STY, record->status)
      .head(tags::LNA, record->location)
      .head(tags::RST, record->storage ? "Y" : "N")
      .head(tags::CLI, record->stamps.createdLocationId)
      .head(tags::EHB, countPastOfRoom(context.db, record->id, context.session.locationId));
  addStamps(reply, record->stamps);
  for (const RoomDetail& detail : detailsOfRoom(context.db, record->id)) {
    reply.record()
        .set(tags::RDI, detail.typeId)
        .set(tags::RDTY, detail.typeName)
        .set(tags::RDTL, detail.content);
  }
  return reply;
}

Reply roomTypeOf(Context& context, const Message& message) {
  const std::optional<RoomRecord> record = findRoomRecord(context.db, message.number(tags::RID));
  if (!record) return Reply(rc::notFound);
  Reply reply;
  return reply.head(tags::RTY, record->typeName).head(tags::RTI, record->typeId);
}

/// In place of the name of a patron who asked not to be remembered: without any, the windows would say that
/// the booking is administrative.
constexpr std::string_view nameNotKept = "(name not kept)";

void addBooking(Reply& reply, const ThingBooking& booking) {
  reply.record()
      .set(tags::BOOKID, booking.id)
      .set(tags::CNUM, confirmationNumber(booking.id))
      .set(tags::STIME, momentText(booking.startsAt))
      .set(tags::ETIME_, momentText(booking.endsAt));
  const bool withheld = isWithheld(booking.withheld, static_cast<BookingStatus>(booking.status));
  reply.set(tags::PATNM, withheld ? nameNotKept : std::string_view(booking.patron));
}

Reply equipmentBookings(Context& context, const Message& message, Past past) {
  Reply reply;
  for (const ThingBooking& booking :
       bookingsOfEquipment(context.db, message.number(tags::EID), past, context.session.locationId)) {
    addBooking(reply, booking);
    reply.set(tags::PGNM, booking.patronGroup).set(tags::BTYP, bookingTypeName(booking.type));
  }
  return reply;
}

Reply pastEquipmentBookings(Context& context, const Message& message) {
  return equipmentBookings(context, message, Past::Yes);
}
Reply currentEquipmentBookings(Context& context, const Message& message) {
  return equipmentBookings(context, message, Past::No);
}

Reply roomBookings(Context& context, const Message& message, Past past) {
  Reply reply;
  for (const ThingBooking& booking :
       bookingsOfRoom(context.db, message.number(tags::RID), past, context.session.locationId))
    addBooking(reply, booking);
  return reply;
}

Reply pastRoomBookings(Context& context, const Message& message) {
  return roomBookings(context, message, Past::Yes);
}
Reply currentRoomBookings(Context& context, const Message& message) {
  return roomBookings(context, message, Past::No);
}

constexpr std::array rows{
    HandlerRow{"GETEDTL", pieceRecord},
    HandlerRow{"GETGDTL", groupRecord},
    HandlerRow{"GETEGTN", equipmentTypeOf},
    HandlerRow{"GETRDTL", roomRecord},
    HandlerRow{"GETRTN", roomTypeOf},
    HandlerRow{"GETHEB", pastEquipmentBookings},
    HandlerRow{"GETCEB", currentEquipmentBookings},
    HandlerRow{"GETHRB", pastRoomBookings},
    HandlerRow{"GETCRB", currentRoomBookings},
};

}  // namespace

std::span<const HandlerRow> inventoryRecordHandlers() {
  return rows;
}

}  // namespace vantry::server
