// Rooms, equipment and groups of it.

#include <array>

#include "server/base/catalogue_text.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

struct RoomTypeRow {
  const char* name;
  bool storage;
  int rooms;
  int smallest;
  int largest;
};
constexpr std::array roomTypeRows{
    RoomTypeRow{"Classroom", false, 12, 20, 40},     RoomTypeRow{"Conference Room", false, 8, 6, 24},
    RoomTypeRow{"Lecture Hall", false, 3, 80, 240},  RoomTypeRow{"Screening Room", false, 4, 12, 60},
    RoomTypeRow{"Computer Lab", false, 4, 12, 30},   RoomTypeRow{"Recording Studio", false, 3, 2, 6},
    RoomTypeRow{"Equipment Storage", true, 4, 0, 0}, RoomTypeRow{"Media Storage", true, 2, 0, 0},
};

struct EquipmentTypeRow {
  const char* name;
  const char* label;
  int pieces;
  int setup;
  int cleanup;
  const char* maker;
  const char* model;
  const char* format;
  int dollars;
};
constexpr std::array equipmentTypeRows{
    EquipmentTypeRow{"Laptop", "LAP", 60, 5, 10, "Orvane", "Note 14", "14 Inch", 900},
    EquipmentTypeRow{"Data Projector", "PRJ", 40, 15, 10, "Lumeris", "LX-300", "WXGA", 750},
    EquipmentTypeRow{"Overhead Projector", "OHP", 20, 10, 5, "Lumeris", "OH-12", "A4", 240},
    EquipmentTypeRow{"Slide Projector", "SLP", 14, 10, 10, "Kessel", "Carousel 80", "35 mm", 310},
    EquipmentTypeRow{"DVD Player", "DVD", 34, 5, 5, "Tovan", "D-220", "DVD", 90},
    EquipmentTypeRow{"Television", "TV", 26, 10, 10, "Tovan", "V-55", "55 Inch", 520},
    EquipmentTypeRow{"Video Recorder", "VCR", 18, 5, 5, "Tovan", "R-8", "VHS", 130},
    EquipmentTypeRow{"Camcorder", "CAM", 30, 5, 10, "Kessel", "Pro HD", "HD", 680},
    EquipmentTypeRow{"Digital Camera", "DIG", 32, 5, 5, "Kessel", "S-24", "APS-C", 560},
    EquipmentTypeRow{"Microphone", "MIC", 40, 5, 5, "Sonarc", "M-58", "XLR", 110},
    EquipmentTypeRow{"Portable Speaker", "SPK", 24, 10, 5, "Sonarc", "Stage 10", "10 Inch", 280},
    EquipmentTypeRow{"Audio Recorder", "AUD", 22, 5, 5, "Sonarc", "Field 4", "WAV", 190},
    EquipmentTypeRow{"Document Camera", "DOC", 14, 10, 5, "Lumeris", "DC-7", "XGA", 420},
    EquipmentTypeRow{"Projection Screen", "SCR", 16, 15, 15, "Palleon", "Tripod", "180 cm", 160},
    EquipmentTypeRow{"Headset", "HST", 10, 0, 5, "Sonarc", "H-2", "Stereo", 45},
};

struct GroupTypeRow {
  const char* name;
  const char* label;
  int groups;
  std::array<int, 3> members;  ///< places in the table above
};
constexpr std::array groupTypeRows{
    GroupTypeRow{"Presentation Set", "PSET", 10, {0, 1, 13}}, GroupTypeRow{"Video Set", "VSET", 8, {4, 5, 6}},
    GroupTypeRow{"Conference Set", "CSET", 5, {1, 9, 10}},    GroupTypeRow{"Film Kit", "FILM", 4, {7, 9, 11}},
    GroupTypeRow{"Photo Kit", "FOTO", 3, {8, 8, 0}},
};

constexpr const char* dealers[] = {"Brightline Supplies", "Campus Audio Visual", "Northern Office Trade"};

/// Four in seven things belong to the first desk, one to the second, two to the third.
std::size_t placeOf(int number) {
  constexpr std::array<std::size_t, 7> turns{0, 2, 0, 1, 0, 2, 0};
  return turns[static_cast<std::size_t>(number) % turns.size()];
}

void addRoom(Connection& db, World& world, const RoomTypeRow& type, std::int64_t typeId, int number,
             Dice& dice) {
  const auto id = static_cast<std::int64_t>(world.rooms.size()) + 1;
  const World::Location& location =
      world.locations[type.storage ? static_cast<std::size_t>(number) % 3 : placeOf(number)];
  const std::string label = numbered("", 100 * location.id + id, 3);
  Query query(
      db,
      "insert into rooms (id, location_id, room_type_id, number, name, search_number, search_name, capacity, "
      "created_at, created_by, created_location) values (:id, :location_id, :room_type_id, :number, :name, "
      ":search_number, :search_name, :capacity, :created_at, 1, :created_location)");
  query.bind("id", id)
      .bind("location_id", location.id)
      .bind("room_type_id", typeId)
      .bind("number", label)
      .bind("name", std::string(type.name) + " " + label)
      .bind("search_number", catalogueKey(label))
      .bind("search_name", catalogueKey(std::string(type.name) + " " + label))
      .bind("capacity", type.largest == 0 ? 0 : dice.between(type.smallest, type.largest))
      .bind("created_at", world.today - 900 * day)
      .bind("created_location", location.id)
      .run();
  world.rooms.push_back({id, location.id, typeId, type.storage});
}

void makeRooms(Connection& db, World& world, Dice& dice) {
  for (const RoomTypeRow& row : roomTypeRows) {
    const auto id = static_cast<std::int64_t>(world.roomTypes.size()) + 1;
    Query query(db, "insert into room_types (id, name, storage) values (:id, :name, :storage)");
    query.bind("id", id).bind("name", row.name).bind("storage", row.storage).run();
    world.roomTypes.push_back(id);
    for (int number = 0; number < row.rooms; ++number) addRoom(db, world, row, id, number, dice);
  }
  constexpr std::array details{"Seating", "Fixed Equipment", "Access", "Blackout"};
  for (const char* detail : details) {
    Query query(db, "insert into room_detail_types (name) values (:name)");
    query.bind("name", detail).run();
  }
  for (const World::Room& room : world.rooms) {
    if (room.storage) continue;
    Query query(
        db,
        "insert into room_details (room_id, room_detail_type_id, content) values (:room_id, 1, :content)");
    query.bind("room_id", room.id).bind("content", dice.percent(50) ? "Rows" : "Movable tables").run();
  }
}

void makeEquipmentTypes(Connection& db, World& world) {
  const auto add = [&](const char* name, bool ofGroups, int setup, int cleanup) {
    const auto id = static_cast<std::int64_t>(world.equipmentTypes.size()) + 1;
    Query query(db,
                "insert into equipment_types (id, name, of_groups, setup_minutes, cleanup_minutes) "
                "values (:id, :name, :of_groups, :setup, :cleanup)");
    query.bind("id", id).bind("name", name).bind("of_groups", ofGroups).bind("setup", setup);
    query.bind("cleanup", cleanup).run();
    world.equipmentTypes.push_back({id, ofGroups});
  };
  for (const EquipmentTypeRow& row : equipmentTypeRows) add(row.name, false, row.setup, row.cleanup);
  for (const GroupTypeRow& row : groupTypeRows) add(row.name, true, 15, 15);
  add("Hearing Loop", false, 5, 5);  // wanted, and not bought yet
}

/// A room of the location, a storage room or not; 0 when it has none.
std::int64_t roomAt(const World& world, std::int64_t locationId, bool storage, Dice& dice) {
  std::vector<std::int64_t> found;
  for (const World::Room& room : world.rooms) {
    if (room.locationId == locationId && room.storage == storage) found.push_back(room.id);
  }
  return found.empty() ? 0 : dice.of(std::span<const std::int64_t>(found));
}

void addBarcode(Connection& db, std::int64_t pieceId, const std::string& barcode, int status) {
  Query query(db,
              "insert into equipment_barcodes (equipment_id, barcode, status_id) "
              "values (:equipment_id, :barcode, :status_id)");
  query.bind("equipment_id", pieceId).bind("barcode", barcode).bind("status_id", status).run();
}

struct NewPiece {
  std::string number;
  std::int64_t typeId;
  std::int64_t locationId;
  std::int64_t roomId;
  const EquipmentTypeRow* details = nullptr;  ///< none for a group
};

void addPiece(Connection& db, World& world, const NewPiece& fresh, Dice& dice) {
  const auto id = static_cast<std::int64_t>(world.pieces.size()) + 1;
  const EquipmentTypeRow* details = fresh.details;
  const std::int64_t value = details == nullptr ? 0 : details->dollars * 100;
  const Moment acquired = world.today - dice.between(60, 1500) * day;
  Query query(
      db,
      "insert into equipment (id, is_group, equipment_type_id, number, maker, model, serial, format, "
      "supplier, purchase_value, replacement_value, acquired_on, next_maintenance_on, location_id, room_id, "
      "search_number, search_maker, search_model, search_serial, created_at, created_by, "
      "created_location) values (:id, :is_group, :type_id, :number, :maker, :model, :serial, :format, "
      ":supplier, "
      ":purchase_value, :replacement_value, :acquired_on, :next_on, :location_id, :room_id, "
      ":search_number, :search_maker, :search_model, :search_serial, :created_at, 1, :created_location)");
  query.bind("id", id).bind("is_group", details == nullptr).bind("type_id", fresh.typeId);
  query.bind("number", fresh.number).bind("maker", details == nullptr ? "" : details->maker);
  query.bind("model", details == nullptr ? "" : details->model);
  query.bind("serial", details == nullptr ? std::string() : numbered("S", 48611 + 977 * id, 7));
  query.bind("format", details == nullptr ? "" : details->format).bind("supplier", dice.of(dealers));
  query.bind("purchase_value", value).bind("replacement_value", value + value / 10);
  query.bind("acquired_on", acquired).bind("next_on", world.today + dice.between(5, 300) * day);
  query.bind("location_id", fresh.locationId).bind("room_id", fresh.roomId);
  query.bind("search_number", catalogueKey(fresh.number));
  query.bind("search_maker", details == nullptr ? std::string() : catalogueKey(details->maker));
  query.bind("search_model", details == nullptr ? std::string() : catalogueKey(details->model));
  query.bind("search_serial", details == nullptr ? std::string() : numbered("s", 48611 + 977 * id, 7));
  query.bind("created_at", acquired).bind("created_location", fresh.locationId).run();
  addBarcode(db, id, numbered(details == nullptr ? "3900" : "3800", id, 6), 1);
  if (dice.percent(5)) addBarcode(db, id, numbered("3801", id, 6), 2);
  world.pieces.push_back({id, fresh.typeId, fresh.locationId, 0, details == nullptr, true, {}});
}

void makePieces(Connection& db, World& world, Dice& dice) {
  for (std::size_t type = 0; type < equipmentTypeRows.size(); ++type) {
    const EquipmentTypeRow& row = equipmentTypeRows[type];
    for (int number = 1; number <= row.pieces; ++number) {
      const std::int64_t location = world.locations[placeOf(number)].id;
      const bool standsInRoom = dice.percent(12);
      addPiece(db, world,
               {.number = row.label + std::to_string(number),
                .typeId = world.equipmentTypes[type].id,
                .locationId = location,
                .roomId = roomAt(world, location, !standsInRoom, dice),
                .details = &row},
               dice);
      world.pieces.back().bookable = !standsInRoom;
    }
  }
}

/// A piece of the type that may still join a group of the location; the count of pieces when there is none.
std::size_t looseMember(const World& world, std::int64_t typeId, std::int64_t locationId) {
  for (std::size_t place = 0; place < world.pieces.size(); ++place) {
    const World::Piece& piece = world.pieces[place];
    const bool loose = !piece.group && piece.groupId == 0 && piece.bookable;
    if (loose && piece.typeId == typeId && piece.locationId == locationId) return place;
  }
  return world.pieces.size();
}

void addMembers(Connection& db, World& world, std::size_t group, const GroupTypeRow& row) {
  const std::int64_t groupId = world.pieces[group].id;
  for (const int type : row.members) {
    const std::size_t member = looseMember(world, world.equipmentTypes[static_cast<std::size_t>(type)].id,
                                           world.pieces[group].locationId);
    if (member == world.pieces.size()) continue;
    world.pieces[member].groupId = groupId;
    world.pieces[group].members.push_back(member);
    Query query(
        db,
        "update equipment set group_id = :group_id, room_id = (select g.room_id from equipment g where "
        "g.id = :group_id) where id = :id");
    query.bind("group_id", groupId).bind("id", world.pieces[member].id).run();
  }
  Query query(db,
              "update equipment set replacement_value = (select coalesce(sum(m.replacement_value), 0) from "
              "equipment m "
              "where m.group_id = :group_id) where id = :id");
  query.bind("group_id", groupId).bind("id", groupId).run();
}

void makeGroups(Connection& db, World& world, Dice& dice) {
  for (std::size_t type = 0; type < groupTypeRows.size(); ++type) {
    const GroupTypeRow& row = groupTypeRows[type];
    for (int number = 1; number <= row.groups; ++number) {
      const std::int64_t location = world.locations[placeOf(number)].id;
      addPiece(db, world,
               {.number = row.label + std::to_string(number),
                .typeId = world.equipmentTypes[equipmentTypeRows.size() + type].id,
                .locationId = location,
                .roomId = roomAt(world, location, true, dice)},
               dice);
      addMembers(db, world, world.pieces.size() - 1, row);
    }
  }
}

/// The fixed status types of equipment that hands apply.
constexpr int statuses[] = {1, 2, 3, 4, 5, 7};

void applyStatus(Connection& db, std::int64_t pieceId, int status, Moment at, const char* note) {
  Query query(db,
              "insert into equipment_statuses (equipment_id, status_id, applied_at, note) "
              "values (:equipment_id, :status_id, :applied_at, :note)");
  query.bind("equipment_id", pieceId)
      .bind("status_id", status)
      .bind("applied_at", at)
      .bind("note", note)
      .run();
}

/// Something is always broken.
void makeStatuses(Connection& db, World& world, Dice& dice) {
  for (World::Piece& piece : world.pieces) {
    if (piece.group || piece.groupId != 0 || !dice.percent(6)) continue;
    const int status = statuses[static_cast<std::size_t>(dice.below(6))];
    applyStatus(db, piece.id, status, world.today - dice.between(1, 40) * day, "Seen at the last return.");
    if (status <= 2) piece.bookable = false;
  }
  Query query(db,
              "insert into room_statuses (room_id, status_id, applied_at, note) values "
              "(17, 12, :at1, 'Until the end of the term.'), (30, 13, :at2, 'The projector flickers.'), "
              "(15, 14, :at3, 'Ask the head of the department.')");
  query.bind("at1", world.today - 20 * day)
      .bind("at2", world.today - 3 * day)
      .bind("at3", world.today - 60 * day);
  query.run();
}

void makeNotes(Connection& db, const World& world, Dice& dice) {
  constexpr const char* texts[] = {"Check that the remote control is in the bag.",
                                   "Two cables belong to this piece.", "The battery needs an hour to charge.",
                                   "Handle with gloves."};
  for (const World::Piece& piece : world.pieces) {
    if (!dice.percent(8)) continue;
    Query query(db,
                "insert into equipment_notes (equipment_id, note_type_id, content, updated_at, operator_id) "
                "values (:equipment_id, :note_type_id, :content, :updated_at, 1)");
    query.bind("equipment_id", piece.id)
        .bind("note_type_id", dice.between(1, 4))
        .bind("content", dice.of(texts));
    query.bind("updated_at", world.today - dice.between(1, 300) * day).run();
  }
  constexpr std::array<int, 6> notedRooms{1, 2, 5, 13, 22, 28};
  for (const int room : notedRooms) {
    Query query(db,
                "insert into room_notes (room_id, note_type_id, content, updated_at, operator_id) "
                "values (:room_id, :note_type_id, 'The key is kept at the desk.', :updated_at, 1)");
    query.bind("room_id", room)
        .bind("note_type_id", 11 + room % 4)
        .bind("updated_at", world.today - 30 * day)
        .run();
  }
}

}  // namespace

void makeInventory(Connection& db, World& world, Dice& dice) {
  makeRooms(db, world, dice);
  makeEquipmentTypes(db, world);
  makePieces(db, world, dice);
  makeGroups(db, world, dice);
  makeStatuses(db, world, dice);
  makeNotes(db, world, dice);
}

void makeMaintenance(Connection& db, const World& world, Dice& dice) {
  constexpr std::array types{"Cleaning", "Repair", "Safety Test", "Lamp Change"};
  for (const char* type : types) {
    Query query(db, "insert into maintenance_types (name) values (:name)");
    query.bind("name", type).run();
  }
  for (std::int64_t id = 1; id <= 160; ++id) {
    const World::Piece& drawn = dice.of(std::span<const World::Piece>(world.pieces));
    // Of a group a member is sent.
    const World::Piece& piece = drawn.members.empty() ? drawn : world.pieces[drawn.members.front()];
    const Moment in = world.today - dice.between(1, 800) * day;
    const bool back = world.today - in > 10 * day;
    Query query(
        db,
        "insert into maintenance (id, equipment_id, came_in_on, went_out_on, note, created_at, created_by, "
        "created_location) values (:id, :equipment_id, :came_in_on, :went_out_on, :note, :created_at, 1, "
        ":created_location)");
    query.bind("id", id).bind("equipment_id", piece.id).bind("came_in_on", in);
    query.bind("went_out_on",
               back ? std::optional<std::int64_t>(in + dice.between(1, 9) * day) : std::nullopt);
    query.bind("note", "Sent by the desk.")
        .bind("created_at", in)
        .bind("created_location", piece.locationId)
        .run();
    Query line(db,
               "insert into maintenance_lines (maintenance_id, maintenance_type_id, content) "
               "values (:maintenance_id, :type_id, :content)");
    line.bind("maintenance_id", id)
        .bind("type_id", dice.between(1, 4))
        .bind("content", "Done in the workshop.")
        .run();
  }
}

}  // namespace vantry::server
