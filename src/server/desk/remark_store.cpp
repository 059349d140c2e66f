#include "server/desk/remark_store.h"

#include <algorithm>

#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// The tables of an owner's remarks.
struct Tables {
  const char* notes;
  const char* statuses;
  const char* key;
  int forRooms;
};
constexpr Tables equipmentTables{"equipment_notes", "equipment_statuses", "equipment_id", 0};
constexpr Tables roomTables{"room_notes", "room_statuses", "room_id", 1};

const Tables& tablesOf(Owner owner) {
  return owner == Owner::Equipment ? equipmentTables : roomTables;
}

int rankOf(const std::vector<StatusType>& types, std::int64_t id) {
  const auto found = std::ranges::find(types, id, &StatusType::id);
  return found == types.end() ? 0 : found->rank;
}

/// What the system says about the record by itself.
StatusRow systemStatusOf(Connection& db, Owner owner, std::int64_t id) {
  StatusRow row;
  if (owner == Owner::Room) {
    row.id = systemStatus::available;
    Query query(db, "select created_at from rooms where id = :id");
    query.bind("id", id);
    fetchOne(query, row.appliedAt);
    return row;
  }
  static const std::string sql =
      std::string("select e.created_at, case when ") + isOutSql() +
      " then (select max(l.charged_at) from booking_equipment l where l.charged_at is not null and "
      "l.returned_at is null and l.in_room = 0 and l.equipment_id in (select m.id from equipment m where "
      "m.id = e.id or m.id = e.group_id or m.group_id = e.id)) end from equipment e where e.id = :id";
  Moment created = 0;
  Moment charged = 0;
  Query query(db, sql);
  query.bind("id", id);
  fetchOne(query, created, charged);
  row.id = charged == 0 ? systemStatus::notCharged : systemStatus::charged;
  row.appliedAt = charged == 0 ? created : charged;
  return row;
}

}  // namespace

std::vector<NoteType> noteTypesOf(Connection& db, Owner owner, std::int64_t id) {
  const Tables& tables = tablesOf(owner);
  const std::string sql = std::string("select t.id, t.name, case when n.content is null then 0 else 1 end ") +
                          "from note_types t left join " + tables.notes +
                          " n on n.note_type_id = t.id and n." + tables.key +
                          " = :id where t.for_rooms = :for_rooms order by t.name, t.id";
  std::vector<NoteType> types;
  NoteType row;
  Query query(db, sql);
  query.bind("id", id).bind("for_rooms", tables.forRooms).into(row.id, row.name, row.filled);
  while (query.next()) types.push_back(row);
  return types;
}

std::optional<Note> findNote(Connection& db, Owner owner, std::int64_t id, std::int64_t typeId) {
  const Tables& tables = tablesOf(owner);
  const std::string sql = std::string("select n.content, n.updated_at, o.name from ") + tables.notes +
                          " n left join operators o on o.id = n.operator_id where n." + tables.key +
                          " = :id and n.note_type_id = :type_id";
  Note note;
  Query query(db, sql);
  query.bind("id", id).bind("type_id", typeId);
  return fetchOne(query, note.content, note.updatedAt, note.operatorName) ? std::optional(note)
                                                                          : std::nullopt;
}

bool isSystemStatus(std::int64_t statusId) {
  return statusId == systemStatus::notCharged || statusId == systemStatus::charged ||
         statusId == systemStatus::available;
}

std::vector<StatusType> statusTypes(Connection& db, Owner owner) {
  std::vector<StatusType> types;
  if (owner == Owner::Equipment) types.push_back({.id = systemStatus::charged, .rank = 0, .name = "Charged"});
  StatusType row;
  Query query(db, "select id, name from status_types where for_rooms = :for_rooms order by priority, id");
  query.bind("for_rooms", tablesOf(owner).forRooms).into(row.id, row.name);
  while (query.next()) types.push_back(row);
  if (owner == Owner::Equipment) {
    types.push_back({.id = systemStatus::notCharged, .rank = 0, .name = "Not Charged"});
  } else {
    types.push_back({.id = systemStatus::available, .rank = 0, .name = "Available"});
  }
  for (std::size_t place = 0; place < types.size(); ++place) types[place].rank = static_cast<int>(place) + 1;
  return types;
}

std::vector<StatusRow> appliedStatuses(Connection& db, Owner owner, std::int64_t id) {
  const Tables& tables = tablesOf(owner);
  const std::string sql = std::string("select status_id, applied_at, note from ") + tables.statuses +
                          " where " + tables.key + " = :id";
  std::vector<StatusRow> rows{systemStatusOf(db, owner, id)};
  StatusRow row;
  Query query(db, sql);
  query.bind("id", id).into(row.id, row.appliedAt, row.note);
  while (query.next()) rows.push_back(row);
  const std::vector<StatusType> types = statusTypes(db, owner);
  for (StatusRow& each : rows) each.rank = rankOf(types, each.id);
  std::ranges::sort(rows, {}, &StatusRow::rank);
  return rows;
}

std::vector<BarcodeRow> barcodesOf(Connection& db, std::int64_t equipmentId) {
  std::vector<BarcodeRow> rows;
  BarcodeRow row;
  Query query(db,
              "select b.barcode, b.status_id from equipment_barcodes b join barcode_statuses s on "
              "s.id = b.status_id where b.equipment_id = :id order by s.active desc, b.barcode");
  query.bind("id", equipmentId).into(row.barcode, row.statusId);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::vector<NamedRow> barcodeStatuses(Connection& db) {
  Query query(db, "select id, name from barcode_statuses order by id");
  return namedRows(query);
}

}  // namespace vantry::server
