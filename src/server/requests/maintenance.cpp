// Records of maintenance.

#include <algorithm>
#include <array>

#include "server/base/fold_text.h"
#include "server/base/number_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/inventory_writer.h"
#include "server/desk/maintenance_store.h"
#include "server/desk/remark_store.h"
#include "server/desk/thing_store.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// What staff should know of a stay: bookings keep the piece that is in maintenance.
std::string serverNote(Context& context, const MaintenanceRecord& record) {
  constexpr std::size_t mostTold = 5;
  const std::vector<std::int64_t> bookings =
      bookingsMeeting(context.db, record, context.session.locationId, mostTold + 1);
  if (bookings.empty()) return {};
  std::string text = "Booked during this maintenance: ";
  for (std::size_t place = 0; place < std::min(bookings.size(), mostTold); ++place)
    text += (place == 0 ? "" : ", ") + confirmationNumber(bookings[place]);
  return text + (bookings.size() > mostTold ? " and others." : ".");
}

Reply maintenanceRecord(Context& context, const Message& message) {
  const std::optional<MaintenanceRecord> record = findMaintenance(context.db, message.number(tags::MID));
  if (!record) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::EID, record->pieceId)
      .head(tags::ETY, record->typeName)
      .head(tags::ENO, record->number)
      .head(tags::BNO, record->barcode)
      .head(tags::MDI, dayText(record->cameInOn))
      .head(tags::MDO, dayText(record->wentOutOn))
      .head(tags::ENM, dayText(record->nextMaintenanceOn))
      .head(tags::MNO, record->note)
      .head(tags::STY, record->status)
      .head(tags::MNT, serverNote(context, *record));
  addStamps(reply, record->stamps);
  for (const MaintenanceLine& line : linesOfMaintenance(context.db, record->id)) {
    reply.record()
        .set(tags::MDID, line.id)
        .set(tags::MTI, line.typeId)
        .set(tags::MTY, line.typeName)
        .set(tags::MCO, line.content);
  }
  return reply;
}

Reply maintenanceOfMonth(Context& context, const Message& message) {
  const Moment month = startOfMonth(dayOf(message, tags::MSD));
  Reply reply;
  for (const MaintenanceRow& row :
       maintenanceOf(context.db, message.number(tags::EID), month, startOfMonth(month, 1))) {
    reply.record()
        .set(tags::MID, row.id)
        .set(tags::MDYI, dayText(row.cameInOn))
        .set(tags::MDYO, dayText(row.wentOutOn))
        .set(tags::ON, row.operatorName)
        .set(tags::MTY, row.types)
        .set(tags::ETY, row.equipmentType)
        .set(tags::ENO, row.number);
  }
  return reply;
}

Reply maintenanceTypeList(Context& context, const Message&) {
  Reply reply;
  for (const NamedRow& row : maintenanceTypes(context.db))
    reply.record().set(tags::MTI, row.id).set(tags::MTY, row.name);
  return reply;
}

std::vector<MaintenanceLine> linesOf(Context& context, const Message& message) {
  std::vector<MaintenanceLine> lines;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::MTI)
      lines.push_back({.id = 0, .typeId = numberOf(pair.value), .typeName = {}, .content = {}});
    if (pair.tag == tags::MCO && !lines.empty()) lines.back().content = pair.value;
  }
  for (const MaintenanceLine& line : lines) {
    if (!hasMaintenanceType(context.db, line.typeId)) refuseTag(tags::MTI);
  }
  return lines;
}

/// The barcode dialog sends the piece alone, without its days.
bool isShort(const Message& message) {
  return !message.has(tags::MDI);
}

/// Only pieces go to maintenance: a group's members go one by one.
void readPiece(Context& context, const Message& message, MaintenanceRecord& record) {
  const std::optional<Piece> piece = findPiece(context.db, message.number(tags::EID));
  if (!piece || piece->isGroup) refuseTag(tags::EID);
  record.pieceId = piece->id;
}

void readDays(const Message& message, MaintenanceRecord& record) {
  record.cameInOn = dayOf(message, tags::MDI);
  if (record.cameInOn == 0) refuseTag(tags::MDI);
  record.wentOutOn = dayOf(message, tags::MDO);
  if (record.wentOutOn != 0 && record.wentOutOn < record.cameInOn) refuseTag(tags::MDO);
  record.nextMaintenanceOn = dayOf(message, tags::ENM);
  record.note = message.text(tags::MNO);
}

/// The record tells the piece's active barcode by itself. One of another piece was scanned by mistake.
/// Windows show barcodes in capitals.
void checkBarcode(Context& context, const Message& message, std::int64_t pieceId) {
  const std::string barcode = foldText(trimmedText(message, tags::BNO));
  if (barcode.empty()) return;
  const auto isIt = [&](const BarcodeRow& row) { return foldText(row.barcode) == barcode; };
  if (std::ranges::none_of(barcodesOf(context.db, pieceId), isIt)) refuseTag(tags::BNO);
}

Reply newMaintenance(Context& context, const Message& message) {
  MaintenanceRecord record;
  readPiece(context, message, record);
  checkBarcode(context, message, record.pieceId);
  record.cameInOn = startOfDay(context.now);
  if (!isShort(message)) readDays(message, record);
  if (record.nextMaintenanceOn == 0)
    record.nextMaintenanceOn = findEquipmentRecord(context.db, record.pieceId)->nextMaintenanceOn;
  const std::int64_t id =
      writeMaintenance(context.db, record, linesOf(context, message), stampOf(context, 0));
  return createdReply(context, tags::MID, id).head(tags::ENM, dayText(record.nextMaintenanceOn));
}

Reply changeMaintenance(Context& context, const Message& message) {
  std::optional<MaintenanceRecord> record = findMaintenance(context.db, message.number(tags::MID));
  if (!record) return Reply(rc::notFound);
  readPiece(context, message, *record);
  if (!isShort(message)) readDays(message, *record);
  const Stamp stamp = stampOf(context, record->stamps.updatedAt);
  writeMaintenance(context.db, *record,
                   isShort(message) ? linesOfMaintenance(context.db, record->id) : linesOf(context, message),
                   stamp);
  return updatedReply(context, stamp);
}

Reply removeMaintenance(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::MID);
  deleteMaintenance(context.db, id);
  return Reply();
}

constexpr std::array rows{
    HandlerRow{"GETMDTL", maintenanceRecord},    HandlerRow{"GETMITM", maintenanceOfMonth},
    HandlerRow{"GETMDTY", maintenanceTypeList},  HandlerRow{"NEWEMAINTD", newMaintenance},
    HandlerRow{"UPDEMAINTD", changeMaintenance}, HandlerRow{"REMMAINT", removeMaintenance},
};

}  // namespace

std::span<const HandlerRow> maintenanceHandlers() {
  return rows;
}

}  // namespace vantry::server
