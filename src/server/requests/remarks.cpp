// Notes, statuses and barcodes of equipment, groups and rooms.

#include <array>

#include "server/base/tag_refusal.h"
#include "server/desk/maintenance_store.h"
#include "server/desk/remark_store.h"
#include "server/desk/remark_writer.h"
#include "server/requests/inventory_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The tags by which equipment and rooms tell the same.
struct Wire {
  Owner owner;
  std::string_view key;
  std::string_view noteId;
  std::string_view noteName;
};
constexpr Wire equipment{Owner::Equipment, tags::EID, tags::ENID, tags::ENTY};
constexpr Wire room{Owner::Room, tags::RID, tags::RNID, tags::RNTY};

template <const Wire& wire>
Reply noteTypes(Context& context, const Message& message) {
  Reply reply;
  for (const NoteType& type : noteTypesOf(context.db, wire.owner, message.number(wire.key))) {
    reply.record()
        .set(wire.noteId, type.id)
        .set(tags::NX, type.filled ? "Y" : "N")
        .set(wire.noteName, type.name);
  }
  return reply;
}

/// A type without a note gives an empty one.
template <const Wire& wire>
Reply note(Context& context, const Message& message) {
  const std::optional<Note> found =
      findNote(context.db, wire.owner, message.number(wire.key), message.number(wire.noteId));
  Reply reply;
  if (!found) return reply;
  return reply.head(tags::MNO, found->content)
      .head(tags::UDT, momentText(found->updatedAt))
      .head(tags::ON, found->operatorName);
}

template <const Wire& wire>
Reply statusList(Context& context, const Message&) {
  Reply reply;
  for (const StatusType& type : statusTypes(context.db, wire.owner))
    reply.record().set(tags::SID, type.id).set(tags::SPR, type.rank).set(tags::STY, type.name);
  return reply;
}

/// A maintenance record tells the statuses of its piece.
std::int64_t thingOf(Context& context, const Message& message, const Wire& wire) {
  if (!message.has(tags::MID)) return message.number(wire.key);
  const auto record = findMaintenance(context.db, message.number(tags::MID));
  if (!record) refuseTag(tags::MID);
  return record->pieceId;
}

template <const Wire& wire>
Reply statusesInForce(Context& context, const Message& message) {
  Reply reply;
  for (const StatusRow& row : appliedStatuses(context.db, wire.owner, thingOf(context, message, wire))) {
    reply.record()
        .set(tags::SID, row.id)
        .set(tags::SPR, row.rank)
        .set(tags::SDT, dateText(row.appliedAt))
        .set(tags::SNO, row.note);
  }
  return reply;
}

Reply barcodes(Context& context, const Message& message) {
  Reply reply;
  for (const BarcodeRow& row : barcodesOf(context.db, message.number(tags::EID)))
    reply.record().set(tags::BNO, row.barcode).set(tags::BSI, row.statusId);
  return reply;
}

Reply barcodeStatusList(Context& context, const Message&) {
  Reply reply;
  for (const NamedRow& row : barcodeStatuses(context.db))
    reply.record().set(tags::BSI, row.id).set(tags::BST, row.name);
  return reply;
}

/// The record of the message, which has to exist. Throws Refused for one that somebody has deleted.
std::int64_t requireThing(Context& context, const Message& message, const Wire& wire) {
  const std::int64_t id = thingOf(context, message, wire);
  if (!hasRecord(context.db, wire.owner, id)) throw Refused{Reply(rc::notFound)};
  return id;
}

template <const Wire& wire>
Reply putNote(Context& context, const Message& message) {
  const std::int64_t type = message.number(wire.noteId);
  if (!hasNoteType(context.db, wire.owner, type)) refuseTag(wire.noteId);
  writeNote(context.db, wire.owner, requireThing(context, message, wire), type, message.text(tags::MNO),
            stampOf(context, 0));
  return Reply();
}

template <const Wire& wire>
Reply dropNote(Context& context, const Message& message) {
  removeNote(context.db, wire.owner, message.number(wire.key), message.number(wire.noteId));
  return Reply();
}

/// No hand sets what the system does.
template <const Wire& wire>
Reply putStatus(Context& context, const Message& message) {
  const std::int64_t status = message.number(tags::SID);
  if (isSystemStatus(status) || !hasStatusType(context.db, wire.owner, status)) refuseTag(tags::SID);
  const std::int64_t id = requireThing(context, message, wire);
  applyStatus(context.db, wire.owner, id, status, message.text(tags::SNO), context.now);
  Reply reply;
  return reply.head(tags::UDT, momentText(context.now));
}

/// One that is not applied is as good as removed.
template <const Wire& wire>
Reply dropStatus(Context& context, const Message& message) {
  const std::int64_t status = message.number(tags::SID);
  if (isSystemStatus(status)) refuseTag(tags::SID);
  const std::int64_t id = thingOf(context, message, wire);
  removeStatus(context.db, wire.owner, id, status);
  return Reply();
}

Reply putBarcode(Context& context, const Message& message) {
  const std::int64_t status = message.number(tags::BSI);
  const std::string_view barcode = trimmedText(message, tags::BNO);
  if (!hasBarcodeStatus(context.db, status)) refuseTag(tags::BSI);
  const std::int64_t id = requireThing(context, message, equipment);
  const bool clashes = status == barcodeStatus::active && isBarcodeTaken(context.db, barcode, id);
  if (barcode.empty() || clashes) refuseTag(tags::BNO);
  writeBarcode(context.db, id, barcode, status);
  return Reply();
}

Reply dropBarcode(Context& context, const Message& message) {
  const std::int64_t id = message.number(tags::EID);
  removeBarcode(context.db, id, message.text(tags::BNO));
  return Reply();
}

constexpr std::array rows{
    HandlerRow{"GETEGNS", noteTypes<equipment>},
    HandlerRow{"GETEGN", note<equipment>},
    HandlerRow{"GETRNS", noteTypes<room>},
    HandlerRow{"GETRN", note<room>},
    HandlerRow{"GETEGSTY", statusList<equipment>},
    HandlerRow{"GETEGSTS", statusesInForce<equipment>},
    HandlerRow{"GETRSTY", statusList<room>},
    HandlerRow{"GETRSTS", statusesInForce<room>},
    HandlerRow{"GETEGBAR", barcodes},
    HandlerRow{"GETEGBTY", barcodeStatusList},
    HandlerRow{"AUEGNOTE", putNote<equipment>},
    HandlerRow{"REMEGN", dropNote<equipment>},
    HandlerRow{"AURNOTE", putNote<room>},
    HandlerRow{"REMRN", dropNote<room>},
    HandlerRow{"NEWEGSTS", putStatus<equipment>},
    HandlerRow{"REMEGSTS", dropStatus<equipment>},
    HandlerRow{"NEWRMSTS", putStatus<room>},
    HandlerRow{"REMRMSTS", dropStatus<room>},
    HandlerRow{"NEWEGBAR", putBarcode},
    HandlerRow{"REMEGBAR", dropBarcode},
};

}  // namespace

std::span<const HandlerRow> remarkHandlers() {
  return rows;
}

}  // namespace vantry::server
