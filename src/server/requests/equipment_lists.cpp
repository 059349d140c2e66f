// Equipment to choose from when a booking is made: types, their pieces and groups, and what a barcode or a
// number stands for.

#include <array>

#include "server/requests/handlers.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct EquipmentRow {
  std::int64_t id = 0;
  bool isGroup = false;
  std::string number, name, typeName, maker, model, serial, format, location, room, group, groupName;
  std::int64_t roomId = 0;
  std::int64_t members = 0;
  std::string barcode;
  std::string status;
};

constexpr const char* columns =
    "select e.id, e.is_group, e.number, e.name, t.name, e.maker, e.model, e.serial, e.format, l.name, "
    "r.name, "
    "g.number, g.name, e.room_id, (select count(*) from equipment m where m.group_id = e.id), "
    "coalesce((select min(b.barcode) from equipment_barcodes b join barcode_statuses s on s.id = b.status_id "
    "where b.equipment_id = e.id and s.active = 1), ''), "
    "coalesce((select y.name from equipment_statuses s join status_types y on y.id = s.status_id "
    "where s.equipment_id = e.id order by y.priority, y.id limit 1), '') "
    "from equipment e join equipment_types t on t.id = e.equipment_type_id "
    "join locations l on l.id = e.location_id left join rooms r on r.id = e.room_id "
    "left join equipment g on g.id = e.group_id ";

using AddRecord = void (*)(Reply&, const EquipmentRow&);

void addRecords(Reply& reply, Query& query, AddRecord add) {
  EquipmentRow row;
  query.into(row.id, row.isGroup, row.number, row.name, row.typeName, row.maker, row.model, row.serial,
             row.format, row.location, row.room, row.group, row.groupName, row.roomId, row.members,
             row.barcode, row.status);
  while (query.next()) add(reply, row);
}

void addPlace(Reply& reply, const EquipmentRow& row) {
  reply.record()
      .set(tags::EID, row.id)
      .set(tags::BNO, row.barcode)
      .set(tags::ENO, row.number)
      .set(tags::LNA, row.location)
      .set(tags::RNM, row.room)
      .set(tags::STY, row.status);
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

Reply ofType(Context& context, const Message& message, AddRecord add) {
  static const std::string sql =
      std::string(columns) + "where e.equipment_type_id = :type_id order by e.number, e.id";
  Reply reply;
  Query query(context.db, sql);
  query.bind("type_id", message.number(tags::ETI));
  addRecords(reply, query, add);
  return reply;
}

Reply piecesOfType(Context& context, const Message& message) {
  return ofType(context, message, addPieceRecord);
}

/// Bookings choose pieces by this request as well as groups.
Reply groupsOfType(Context& context, const Message& message) {
  return ofType(context, message, addGroupRecord);
}

/// What stands in the room already is no choice for it.
Reply loosePieces(Context& context, const Message& message) {
  static const std::string sql = std::string(columns) +
                                 "where e.equipment_type_id = :type_id and e.group_id is null and "
                                 "coalesce(e.room_id, 0) <> :room_id order by e.number, e.id";
  Reply reply;
  Query query(context.db, sql);
  const std::int64_t room = message.number(tags::RID);
  query.bind("type_id", message.number(tags::ETI)).bind("room_id", room == 0 ? -1 : room);
  addRecords(reply, query, addLooseRecord);
  return reply;
}

Reply typesWithLoosePieces(Context& context, const Message& message) {
  std::int64_t id = 0;
  std::string name;
  std::int64_t count = 0;
  const std::int64_t room = message.number(tags::RID);
  Query query(context.db,
              "select t.id, t.name, (select count(*) from equipment e where e.equipment_type_id = t.id and "
              "e.group_id is null and coalesce(e.room_id, 0) <> :room_id) from equipment_types t "
              "where t.of_groups = 0 order by t.name");
  query.bind("room_id", room == 0 ? -1 : room).into(id, name, count);
  Reply reply;
  while (query.next()) {
    if (count > 0) reply.record().set(tags::ETI, id).set(tags::ETY, name).set(tags::MIC, count);
  }
  return reply;
}

/// Maintenance (1) and membership (2) are for pieces; rooms and bookings (3) take groups too.
Reply lookUp(Context& context, const Message& message) {
  static const std::string byBarcode =
      std::string(columns) +
      "where e.id in (select c.equipment_id from equipment_barcodes c where c.barcode = :text) and "
      "(e.is_group = 0 or :with_groups = 1) order by e.id";
  static const std::string byNumber =
      std::string(columns) + "where e.number = :text and (e.is_group = 0 or :with_groups = 1) order by e.id";
  const std::int64_t purpose = message.number(tags::EPT);
  const bool number = message.has(tags::ENO);
  Reply reply;
  Query query(context.db, number ? byNumber : byBarcode);
  query.bind("text", message.text(number ? tags::ENO : tags::BNO));
  query.bind("with_groups", purpose == 0 || purpose == 3);
  addRecords(reply, query, addFoundRecord);
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

std::span<const HandlerRow> equipmentListRequests() {
  return rows;
}

}  // namespace vantry::server
