// What chance would not put into the inventory for sure: each status, each kind of note and barcode, and a
// piece that has all of them. Made without dice, and of pieces that no booking takes.

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

/// Statuses of equipment that hands apply, by their priority.
constexpr std::array statusKeys{1, 9, 2, 3, 4, 5, 7};
constexpr int inMaintenance = 9;
constexpr std::int64_t closedRoom = 34;

void applyStatus(Connection& db, std::int64_t pieceId, int status, Moment at, std::string_view note) {
  Query query(db,
              "insert into equipment_statuses (equipment_id, status_id, applied_at, note) values "
              "(:id, :status_id, :at, :note) on conflict do nothing");
  query.bind("id", pieceId).bind("status_id", status).bind("at", at).bind("note", note).run();
}

void addBarcode(Connection& db, std::int64_t pieceId, const std::string& barcode, int status) {
  Query query(
      db,
      "insert into equipment_barcodes (equipment_id, barcode, status_id) values (:id, :barcode, :status) "
      "on conflict do nothing");
  query.bind("id", pieceId).bind("barcode", barcode).bind("status", status).run();
}

void addNote(Connection& db, std::int64_t pieceId, int type, std::string_view content, Moment at) {
  Query query(
      db,
      "insert into equipment_notes (equipment_id, note_type_id, content, updated_at, operator_id) values "
      "(:id, :type_id, :content, :at, 1) on conflict do nothing");
  query.bind("id", pieceId).bind("type_id", type).bind("content", content).bind("at", at).run();
}

/// A stay with a line of each type. Without an end the piece is still away.
void addStay(Connection& db, std::int64_t pieceId, Moment in, std::optional<Moment> out,
             std::string_view note) {
  std::int64_t id = 0;
  Query query(
      db,
      "insert into maintenance (id, equipment_id, came_in_on, went_out_on, note, created_at, created_by, "
      "created_location) select coalesce(max(id), 0) + 1, :piece, :came_in, :went_out, :note, :came_in, 1, 1 "
      "from maintenance returning id");
  query.bind("piece", pieceId).bind("came_in", in).bind("went_out", out).bind("note", note).into(id);
  while (query.next()) {
  }
  constexpr std::array contents{"Dust filter changed.", "Loose plug replaced.",
                                "Passed, valid for two years.", "1,480 hours on the old lamp."};
  for (std::size_t type = 0; type < contents.size(); ++type) {
    Query line(db,
               "insert into maintenance_lines (maintenance_id, maintenance_type_id, content) values "
               "(:id, :type_id, :content)");
    line.bind("id", id)
        .bind("type_id", static_cast<std::int64_t>(type) + 1)
        .bind("content", contents[type])
        .run();
  }
}

/// Puts down who has changed the records of one key.
void stampChange(Connection& db, const std::string& table, const std::string& key, std::int64_t id,
                 Moment at) {
  Query query(db, "update " + table + " set updated_at = :at, updated_by = 1, updated_location = 1 where " +
                      key + " = :id");
  query.bind("at", at).bind("id", id).run();
}

/// Pieces of the first desk that stand in rooms, where nobody books them.
std::vector<std::int64_t> unbookedPieces(const World& world) {
  std::vector<std::int64_t> ids;
  for (const World::Piece& piece : world.pieces) {
    const bool own = piece.locationId == world.locations.front().id;
    if (own && !piece.group && piece.groupId == 0 && !piece.bookable) ids.push_back(piece.id);
  }
  return ids;
}

void fillOnePiece(Connection& db, const World& world, std::int64_t pieceId) {
  for (const int status : statusKeys)
    applyStatus(db, pieceId, status, world.today - status * day, "Found at the yearly check.");
  constexpr std::array notes{"Bought with the grant for media education.", "Ask for the adapter as well.",
                             "Hand out with the padded bag.", "Count the three cables."};
  for (std::size_t type = 0; type < notes.size(); ++type)
    addNote(db, pieceId, static_cast<int>(type) + 1, notes[type], world.today - 12 * day);
  for (int status = 2; status <= 4; ++status)
    addBarcode(db, pieceId, numbered("381" + std::to_string(status), pieceId, 5), status);
  addStay(db, pieceId, world.today - 2 * day, std::nullopt, "Waits for a spare part.");
  for (int years = 1; years <= 2; ++years) {
    const Moment in = world.today - years * 365 * day;
    addStay(db, pieceId, in, in + 6 * day, "Yearly inspection.");
  }
  stampChange(db, "equipment", "id", pieceId, world.today - 2 * day);
  stampChange(db, "maintenance", "equipment_id", pieceId, world.today - day);
}

void addRoomDetails(Connection& db, const World& world) {
  constexpr std::array contents{"Screen and loudspeakers", "Step-free", "Curtains"};
  for (const World::Room& room : world.rooms) {
    if (room.storage) continue;
    for (std::size_t type = 0; type < contents.size(); ++type) {
      if (room.id % static_cast<std::int64_t>(type + 2) != 0) continue;
      Query query(db,
                  "insert into room_details (room_id, room_detail_type_id, content) values (:id, :type_id, "
                  ":content)");
      query.bind("id", room.id).bind("type_id", static_cast<std::int64_t>(type) + 2);
      query.bind("content", contents[type]).run();
    }
  }
}

}  // namespace

void makeExampleInventory(Connection& db, const World& world) {
  const std::vector<std::int64_t> pieces = unbookedPieces(world);
  if (!pieces.empty()) fillOnePiece(db, world, pieces.front());
  for (std::size_t place = 1; place < std::min(pieces.size(), statusKeys.size() + 1); ++place) {
    const int status = statusKeys[place - 1];
    applyStatus(db, pieces[place], status, world.today - 9 * day, "");
    if (status == inMaintenance)
      addStay(db, pieces[place], world.today - 9 * day, std::nullopt, "Sent by the desk.");
  }
  Query closed(
      db, "insert into room_statuses (room_id, status_id, applied_at, note) values (:id, 11, :at, :note)");
  closed.bind("id", closedRoom).bind("at", world.today - day).bind("note", "Water damage.").run();
  stampChange(db, "rooms", "id", closedRoom, world.today - day);
  const auto group = std::ranges::find_if(world.pieces, &World::Piece::group);
  if (group != world.pieces.end()) stampChange(db, "equipment", "id", group->id, world.today - 5 * day);
  addRoomDetails(db, world);
}

}  // namespace vantry::server
