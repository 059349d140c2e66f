#include "server/desk/thing_store.h"

#include <algorithm>

#include "server/desk/status_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// One row for each piece.
std::string pieceColumns() {
  return "select e.id, e.is_group, e.group_id, e.number, e.equipment_type_id, t.name, "
         "e.location_id, e.room_id, coalesce(r.name, ''), coalesce(k.storage, 0), " +
         activeBarcodeSql() +
         " from equipment e join equipment_types t on t.id = e.equipment_type_id "
         "left join rooms r on r.id = e.room_id left join room_types k on k.id = r.room_type_id ";
}

std::vector<Piece> readPieces(Query& query) {
  std::vector<Piece> pieces;
  Piece row;
  query.into(row.id, row.isGroup, row.groupId, row.number, row.typeId, row.typeName, row.locationId,
             row.roomId, row.roomName, row.inStorage, row.barcode);
  while (query.next()) pieces.push_back(row);
  return pieces;
}

std::vector<AppliedStatus> readStatuses(Query& query) {
  std::vector<AppliedStatus> statuses;
  AppliedStatus row;
  int effect = 0;
  query.into(row.name, effect, row.appliedAt, row.note);
  while (query.next()) {
    row.effect = static_cast<StatusEffect>(effect);
    statuses.push_back(row);
  }
  return statuses;
}

std::vector<BookableRoom> readRooms(Query& query) {
  std::vector<BookableRoom> rooms;
  BookableRoom row;
  query.into(row.id, row.number, row.name, row.typeId, row.storage, row.locationId, row.capacity);
  while (query.next()) rooms.push_back(row);
  return rooms;
}

std::string nameBy(Connection& db, const char* sql, std::int64_t id) {
  std::string name;
  Query query(db, sql);
  query.bind("id", id);
  fetchOne(query, name);
  return name;
}

std::string notesBy(Connection& db, const char* sql, std::int64_t id, std::int64_t occasion) {
  std::string all;
  std::string note;
  Query query(db, sql);
  query.bind("id", id).bind("occasion", occasion).into(note);
  while (query.next()) {
    if (note.empty()) continue;
    all += (all.empty() ? "" : "\r\n") + note;
  }
  return all;
}

}  // namespace

Pieces findPieces(Connection& db, std::span<const std::int64_t> ids) {
  return askPieces(db, ids).get();
}

Pending<Pieces> askPieces(Connection& db, std::span<const std::int64_t> ids) {
  static const std::string sql = pieceColumns() + "where e.id in (" + keyList() + ")";
  return Pending<Pieces>([queries = askByKeys(db, sql, ids)] {
    Pieces pieces;
    for (Query& query : *queries) {
      for (Piece& piece : readPieces(query)) pieces.emplace(piece.id, std::move(piece));
    }
    return pieces;
  });
}

std::optional<Piece> findPiece(Connection& db, std::int64_t id) {
  static const std::string sql = pieceColumns() + "where e.id = :id";
  Query query(db, sql);
  query.bind("id", id);
  const std::vector<Piece> found = readPieces(query);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<Piece> membersOf(Connection& db, std::int64_t groupId) {
  static const std::string sql = pieceColumns() + "where e.group_id = :group_id order by e.id";
  Query query(db, sql);
  query.bind("group_id", groupId);
  return readPieces(query);
}

std::vector<Piece> piecesInRoom(Connection& db, std::int64_t roomId) {
  static const std::string sql =
      pieceColumns() + "where e.room_id = :room_id and k.storage = 0 order by e.number, e.id";
  Query query(db, sql);
  query.bind("room_id", roomId);
  return readPieces(query);
}

std::optional<MediaItem> findItem(Connection& db, std::int64_t id) {
  MediaItem row;
  Query query(db,
              "select i.id, i.holding_id, i.title_id, i.location_id, i.media_type_id, t.title, "
              "coalesce(m.name, ''), l.name, h.call_number, i.barcode, i.item_type, i.description, "
              "i.enumeration, i.chronology, i.year, i.copy, i.status "
              "from items i join titles t on t.id = i.title_id join holdings h on h.id = i.holding_id "
              "join locations l on l.id = i.location_id left join media_types m on m.id = i.media_type_id "
              "where i.id = :id");
  query.bind("id", id);
  const bool found =
      fetchOne(query, row.id, row.holdingId, row.titleId, row.locationId, row.mediaTypeId, row.title,
               row.mediaTypeName, row.location, row.callNumber, row.barcode, row.itemType, row.description,
               row.enumeration, row.chronology, row.year, row.copy, row.status);
  return found ? std::optional(row) : std::nullopt;
}

std::optional<BookableRoom> findRoom(Connection& db, std::int64_t id) {
  Query query(db,
              "select r.id, r.number, r.name, r.room_type_id, t.storage, r.location_id, r.capacity "
              "from rooms r join room_types t on t.id = r.room_type_id where r.id = :id");
  query.bind("id", id);
  const std::vector<BookableRoom> found = readRooms(query);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::vector<BookableRoom> bookableRooms(Connection& db) {
  Query query(db,
              "select r.id, r.number, r.name, r.room_type_id, t.storage, r.location_id, r.capacity "
              "from rooms r join room_types t on t.id = r.room_type_id where t.storage = 0 "
              "order by r.name, r.id");
  return readRooms(query);
}

std::vector<AppliedStatus> statusesOfPiece(Connection& db, std::int64_t id) {
  Query query(db,
              "select t.name, t.effect, s.applied_at, s.note from equipment_statuses s "
              "join status_types t on t.id = s.status_id where s.equipment_id = :id or s.equipment_id in "
              "(select m.id from equipment m where m.group_id = :id) order by t.priority, t.id");
  query.bind("id", id);
  return readStatuses(query);
}

std::map<std::int64_t, std::vector<AppliedStatus>> statusesOfPieces(Connection& db,
                                                                    std::span<const std::int64_t> ids) {
  static const std::string sql =
      "select o.id, t.name, t.effect, s.applied_at, s.note from (select e.id, e.id as thing from equipment e "
      "where e.id in (" +
      keyList() + ") union all select m.group_id, m.id from equipment m where m.group_id in (" + keyList() +
      ")) o join equipment_statuses s on s.equipment_id = o.thing join status_types t on t.id = "
      "s.status_id order by t.priority, t.id";
  std::map<std::int64_t, std::vector<AppliedStatus>> statuses;
  for (; !ids.empty(); ids = ids.subspan(std::min(keysAtOnce, ids.size()))) {
    std::int64_t piece = 0;
    AppliedStatus row;
    int effect = 0;
    Query query(db, sql);
    bindKeys(query, ids.first(std::min(keysAtOnce, ids.size())));
    query.into(piece, row.name, effect, row.appliedAt, row.note);
    while (query.next()) {
      row.effect = static_cast<StatusEffect>(effect);
      statuses[piece].push_back(row);
    }
  }
  return statuses;
}

std::vector<AppliedStatus> statusesOfRoom(Connection& db, std::int64_t id) {
  Query query(db,
              "select t.name, t.effect, s.applied_at, s.note from room_statuses s "
              "join status_types t on t.id = s.status_id where s.room_id = :id order by t.priority, t.id");
  query.bind("id", id);
  return readStatuses(query);
}

std::vector<Piece> withMembers(Connection& db, std::int64_t pieceId) {
  std::vector<Piece> pieces;
  const std::optional<Piece> piece = findPiece(db, pieceId);
  if (!piece) return pieces;
  if (piece->isGroup) pieces = membersOf(db, pieceId);
  pieces.insert(pieces.begin(), *piece);
  return pieces;
}

bool mayBeUsed(Connection& db, std::int64_t pieceId) {
  const std::vector<AppliedStatus> statuses = statusesOfPiece(db, pieceId);
  return forbiddingStatus(statuses) == nullptr;
}

Pending<std::vector<ForbiddenPiece>> askForbidden(Connection& db, std::span<const std::int64_t> ids) {
  static const std::string sql =
      "select e.id, e.group_id, t.name from equipment e join equipment_statuses s on s.equipment_id = e.id "
      "join status_types t on t.id = s.status_id and t.effect = 3 where e.id in (" +
      keyList() + ") or e.group_id in (" + keyList() + ") order by t.priority, e.id";
  return Pending<std::vector<ForbiddenPiece>>([queries = askByKeys(db, sql, ids)] {
    std::vector<ForbiddenPiece> all;
    ForbiddenPiece row;
    for (Query& query : *queries) {
      query.into(row.id, row.groupId, row.status);
      while (query.next()) all.push_back(row);
    }
    return all;
  });
}

std::string popupNoteOfPiece(Connection& db, std::int64_t id, std::int64_t occasion) {
  return notesBy(db,
                 "select n.content from equipment_notes n join note_types t on t.id = n.note_type_id "
                 "where n.equipment_id = :id and cast(t.popup_kind as bigint) = :occasion order by t.id desc",
                 id, occasion);
}

std::string popupNoteOfRoom(Connection& db, std::int64_t id, std::int64_t occasion) {
  return notesBy(db,
                 "select n.content from room_notes n join note_types t on t.id = n.note_type_id "
                 "where n.room_id = :id and cast(t.popup_kind as bigint) = :occasion order by t.id desc",
                 id, occasion);
}

Handling handlingOfType(Connection& db, std::int64_t typeId) {
  Handling handling;
  Query query(db, "select setup_minutes, cleanup_minutes from equipment_types where id = :id");
  query.bind("id", typeId);
  fetchOne(query, handling.setup, handling.cleanup);
  return handling;
}

std::string equipmentTypeName(Connection& db, std::int64_t id) {
  return nameBy(db, "select name from equipment_types where id = :id", id);
}
std::string mediaTypeName(Connection& db, std::int64_t id) {
  return nameBy(db, "select name from media_types where id = :id", id);
}
std::int64_t titleOfHolding(Connection& db, std::int64_t id) {
  std::int64_t title = 0;
  Query query(db, "select title_id from holdings where id = :id");
  query.bind("id", id);
  fetchOne(query, title);
  return title;
}
std::string titleOf(Connection& db, std::int64_t id) {
  return nameBy(db, "select title from titles where id = :id", id);
}

}  // namespace vantry::server
