// Making, changing and deleting equipment, groups and rooms. Each decides against the bookings within its own
// transaction.

#include <array>

#include "server/base/money_text.h"
#include "server/base/number_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/remark_writer.h"
#include "server/desk/thing_store.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// What VERDELE asks about, as its VTY tells it.
enum class Kind { Room = 0, Equipment = 1, Group = 2 };

std::string requiredText(const Message& message, std::string_view tag) {
  const std::string_view text = trimmedText(message, tag);
  if (text.empty()) refuseTag(tag);
  return std::string(text);
}

std::int64_t locationOf(Context& context, const Message& message) {
  const std::int64_t location = message.number(tags::LOC);
  if (!hasLocation(context.db, location)) refuseTag(tags::LOC);
  return location;
}

/// A thing is kept in a room of its own location.
std::int64_t roomOf(Context& context, const Message& message, std::int64_t location) {
  const std::optional<BookableRoom> room = findRoom(context.db, message.number(tags::RID));
  if (!room || room->locationId != location) refuseTag(tags::RID);
  return room->id;
}

void readShared(Context& context, const Message& message, EquipmentRecord& record) {
  record.typeId = message.number(tags::ETI);
  const TypeKind kind = record.isGroup ? TypeKind::Groups : TypeKind::Pieces;
  if (!hasEquipmentType(context.db, record.typeId, kind)) refuseTag(tags::ETI);
  record.number = requiredText(message, tags::ENO);
  record.locationId = locationOf(context, message);
  record.roomId = roomOf(context, message, record.locationId);
  if (isEquipmentNumberTaken(context.db, record)) refuseTag(tags::ENO);
}

void readPiece(Context& context, const Message& message, EquipmentRecord& record) {
  readShared(context, message, record);
  record.maker = message.text(tags::EMA);
  record.format = message.text(tags::EFO);
  record.model = message.text(tags::EMO);
  record.serial = message.text(tags::ESN);
  record.purchaseValue = centsOf(message, tags::EQVP);
  record.replacementValue = centsOf(message, tags::EQVR);
  record.supplier = message.text(tags::ESU);
  record.acquiredOn = dayOf(message, tags::EDP);
  record.nextMaintenanceOn = dayOf(message, tags::ENM);
}

using ReadRecord = void (*)(Context&, const Message&, EquipmentRecord&);

Reply newEquipment(Context& context, const Message& message, EquipmentRecord record, ReadRecord read) {
  read(context, message, record);
  const std::string_view barcode = trimmedText(message, tags::BNO);
  if (!barcode.empty() && isBarcodeTaken(context.db, barcode, 0)) refuseTag(tags::BNO);
  const std::int64_t id = writeEquipment(context.db, record, stampOf(context, 0));
  if (!barcode.empty()) writeBarcode(context.db, id, barcode, barcodeStatus::active);
  Reply reply = createdReply(context, tags::EID, id);
  // A window that shows a group next to the new piece asks what the group is worth.
  if (const std::int64_t group = message.number(tags::GRPID); group != 0)
    reply.head(tags::MVL, moneyText(valueOfGroup(context.db, group)));
  return reply;
}

Reply changeEquipment(Context& context, const Message& message, bool isGroup, ReadRecord read) {
  const std::optional<EquipmentRecord> before = findEquipmentRecord(context.db, message.number(tags::EID));
  if (!before || before->isGroup != isGroup) return Reply(rc::notFound);
  EquipmentRecord record = *before;
  read(context, message, record);
  if (const auto refusal = refusalToKeepIn(context.db, *before, record.roomId)) return Reply(*refusal);
  const Stamp stamp = stampOf(context, before->stamps.updatedAt);
  writeEquipment(context.db, record, stamp);
  if (isGroup) moveMembers(context.db, record);
  if (before->locationId != record.locationId && !areNumbersUnique(context.db, Moved::Thing, record.id))
    refuseTag(tags::ENO);
  Reply reply = updatedReply(context, stamp);
  if (record.groupId != 0) reply.head(tags::MVL, moneyText(valueOfGroup(context.db, record.groupId)));
  return reply;
}

Reply newPiece(Context& context, const Message& message) {
  return newEquipment(context, message, {}, readPiece);
}
Reply changePiece(Context& context, const Message& message) {
  return changeEquipment(context, message, false, readPiece);
}
Reply newGroup(Context& context, const Message& message) {
  EquipmentRecord record;
  record.isGroup = true;
  return newEquipment(context, message, record, readShared);
}
Reply changeGroup(Context& context, const Message& message) {
  return changeEquipment(context, message, true, readShared);
}

std::vector<RoomDetail> detailsOf(Context& context, const Message& message) {
  std::vector<RoomDetail> details;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::RDI)
      details.push_back({.typeId = numberOf(pair.value), .typeName = {}, .content = {}});
    if (pair.tag == tags::RDTL && !details.empty()) details.back().content = pair.value;
  }
  for (const RoomDetail& detail : details) {
    if (!hasRoomDetailType(context.db, detail.typeId)) refuseTag(tags::RDI);
  }
  return details;
}

void readRoom(Context& context, const Message& message, RoomRecord& record) {
  record.typeId = message.number(tags::RTI);
  const std::optional<bool> storage = storageOfRoomType(context.db, record.typeId);
  if (!storage) refuseTag(tags::RTI);
  record.storage = *storage;
  record.number = requiredText(message, tags::RNO);
  record.name = message.text(tags::RNM);
  record.locationId = locationOf(context, message);
  record.capacity = message.number(tags::RCA);
  if (record.capacity < 0 || record.capacity > mostCapacity) refuseTag(tags::RCA);
  if (isRoomNumberTaken(context.db, record)) refuseTag(tags::RNO);
}

Reply newRoom(Context& context, const Message& message) {
  RoomRecord record;
  readRoom(context, message, record);
  const std::int64_t id = writeRoom(context.db, record, detailsOf(context, message), stampOf(context, 0));
  return createdReply(context, tags::RID, id);
}

Reply changeRoom(Context& context, const Message& message) {
  const std::optional<RoomRecord> before = findRoomRecord(context.db, message.number(tags::RID));
  if (!before) return Reply(rc::notFound);
  RoomRecord record = *before;
  readRoom(context, message, record);
  if (const auto refusal = refusalToChangeRoom(context.db, *before, record)) return Reply(*refusal);
  const Stamp stamp = stampOf(context, before->stamps.updatedAt);
  writeRoom(context.db, record, detailsOf(context, message), stamp);
  if (before->locationId != record.locationId && !areNumbersUnique(context.db, Moved::Room, record.id))
    refuseTag(tags::ENO);
  return updatedReply(context, stamp);
}

/// Why the record may not be deleted; a record that is not there is no failure of a deletion.
std::optional<int> refusalToDelete(Context& context, Kind kind, std::int64_t id) {
  return kind == Kind::Room ? refusalToRemove(useOfRoom(context.db, id))
                            : refusalToRemove(useOfEquipment(context.db, id));
}

Reply mayDelete(Context& context, const Message& message) {
  const std::int64_t kind = message.number(tags::VTY);
  if (kind < 0 || kind > 2) refuseTag(tags::VTY);
  const auto refusal = refusalToDelete(context, static_cast<Kind>(kind), message.number(tags::VID));
  return Reply(refusal.value_or(0));
}

/// Another desk may have booked it since it was asked.
Reply remove(Context& context, Kind kind, std::int64_t id) {
  if (const auto refusal = refusalToDelete(context, kind, id)) return Reply(*refusal);
  if (kind == Kind::Room) {
    deleteRoom(context.db, id);
  } else {
    deleteEquipment(context.db, id);
  }
  return Reply();
}

Reply removeEquipment(Context& context, const Message& message, Kind kind) {
  const std::optional<EquipmentRecord> record = findEquipmentRecord(context.db, message.number(tags::EID));
  if (record && record->isGroup != (kind == Kind::Group)) refuseTag(tags::EID);
  return remove(context, kind, message.number(tags::EID));
}

Reply removePiece(Context& context, const Message& message) {
  return removeEquipment(context, message, Kind::Equipment);
}
Reply removeGroup(Context& context, const Message& message) {
  return removeEquipment(context, message, Kind::Group);
}
Reply removeRoom(Context& context, const Message& message) {
  return remove(context, Kind::Room, message.number(tags::RID));
}

constexpr std::array rows{
    HandlerRow{"NEWEQIPD", newPiece},  HandlerRow{"UPDEQIPD", changePiece},
    HandlerRow{"NEWGRPD", newGroup},   HandlerRow{"UPDGRPD", changeGroup},
    HandlerRow{"NEWROOMD", newRoom},   HandlerRow{"UPDROOMD", changeRoom},
    HandlerRow{"VERDELE", mayDelete},  HandlerRow{"REMEQIP", removePiece},
    HandlerRow{"REMGRP", removeGroup}, HandlerRow{"REMROOM", removeRoom},
};

}  // namespace

std::span<const HandlerRow> inventoryWriteHandlers() {
  return rows;
}

}  // namespace vantry::server
