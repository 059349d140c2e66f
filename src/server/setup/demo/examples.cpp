// What policy refuses and chance would not make for sure: patrons who are over a limit, and bookings whose
// wishes cannot be filled. Made without dice, so that they are the same in every demo library.

#include <array>
#include <stdexcept>

#include "server/base/catalogue_text.h"
#include "server/desk/occupancy.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// A patron with these figures; the group's limits are 2 bookings, 2 late returns, 5 cancelled and 3
/// unclaimed bookings, and 5.00 in fees.
struct PatronRow {
  const char* last;
  const char* first;
  int late;
  int cancelled;
  int unclaimed;
  int fees;  ///< cents
};
constexpr std::array patronRows{
    PatronRow{"Booker", "Bea", 0, 0, 0, 0},     PatronRow{"Tardy", "Theo", 3, 0, 0, 0},
    PatronRow{"Canceller", "Cora", 0, 6, 0, 0}, PatronRow{"Noshow", "Ned", 0, 0, 4, 0},
    PatronRow{"Owing", "Olive", 0, 0, 0, 550},
};
constexpr std::int64_t cityResident = 8;

constexpr std::int64_t lectureHall = 3;
constexpr std::int64_t hearingLoop = 21;

std::int64_t oneOf(Connection& db, std::string_view sql) {
  std::int64_t found = 0;
  Query query(db, sql);
  if (!fetchOne(query, found)) throw std::runtime_error("the demo library lacks what its examples stand on");
  return found;
}

void addPatron(Connection& db, const World& world, const PatronRow& row, std::int64_t id) {
  Query query(
      db,
      "insert into patrons (id, last_name, first_name, search_name, search_first, search_institution, "
      "institution_id, city, expires_at, late_returns, cancelled_bookings, unclaimed_bookings, fees) values "
      "(:id, :last_name, :first_name, :search_name, :search_first, :search_institution, :institution_id, "
      "'Riverside', :expires_at, :late, :cancelled, :unclaimed, :fees)");
  query.bind("id", id).bind("last_name", row.last).bind("first_name", row.first);
  const std::string institution = numbered("U", 20000 + id, 6);
  query.bind("search_name", catalogueKey(row.last)).bind("search_first", catalogueKey(row.first));
  query.bind("institution_id", institution).bind("search_institution", catalogueKey(institution));
  query.bind("expires_at", world.today + 900 * day).bind("late", row.late).bind("cancelled", row.cancelled);
  query.bind("unclaimed", row.unclaimed).bind("fees", row.fees).run();
  Query card(db,
             "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) "
             "values (:patron_id, :group_id, :barcode, 1)");
  card.bind("patron_id", id).bind("group_id", cityResident).bind("barcode", numbered("2100", id, 6)).run();
}

/// The two bookings at the first desk that lie farthest ahead become this patron's.
void giveTwoBookings(Connection& db, std::int64_t patronId) {
  Query query(db,
              "update bookings set patron_id = :patron_id, patron_group_id = :group_id where id in "
              "(select id from bookings where location_id = 1 and status = 0 and administrative = 0 and "
              "item_count <= 1 and equipment_count <= 1 order by starts_at desc, id desc limit 2)");
  query.bind("patron_id", patronId).bind("group_id", cityResident).run();
}

struct Example {
  std::int64_t id = 0;
  int type = 3;
  int items = 0;
  int pieces = 0;
};

/// A week from today's opening, so that it can be tried at any hour of these days.
Occupation weekFor(const World& world, std::int64_t bookingId, std::optional<std::int64_t> line) {
  return {.bookingId = bookingId,
          .lineId = line,
          .startsAt = world.today + 8 * hour,
          .endsAt = world.today + 7 * day + 20 * hour};
}

void addBooking(Connection& db, const World& world, const Example& example) {
  const std::int64_t desk = world.locations.front().id;
  const Occupation week = weekFor(world, example.id, std::nullopt);
  const bool wishesRoom = example.type == 1;
  const auto only = [](bool condition, std::int64_t id) {
    return condition ? std::optional(id) : std::nullopt;
  };
  Query query(db,
              "insert into bookings (id, location_id, booking_type, administrative, starts_at, ends_at, "
              "pickup_location_id, wanted_room_type_id, wanted_location_id, wanted_capacity, item_count, "
              "equipment_count, note, created_at, created_by, created_location, updated_at) values (:id, "
              ":location_id, :type, 1, :starts, :ends, :pickup, :wanted_type, :wanted_location, :capacity, "
              ":items, :pieces, 'Cannot be charged as it stands.', :made, 1, :made_at, :made)");
  query.bind("id", example.id).bind("location_id", desk).bind("type", example.type);
  query.bind("starts", week.startsAt).bind("ends", week.endsAt).bind("pickup", only(!wishesRoom, desk));
  query.bind("wanted_type", only(wishesRoom, lectureHall)).bind("wanted_location", only(wishesRoom, desk));
  query.bind("capacity", wishesRoom ? 500 : 0).bind("items", example.items).bind("pieces", example.pieces);
  query.bind("made", world.today - 3 * day).bind("made_at", desk).run();
}

/// No lecture hall of the desk has so many seats.
void wishForRoom(Connection& db, const World& world, std::int64_t id) {
  addBooking(db, world, {.id = id, .type = 1});
  addOccupancy(db, {ThingKind::RoomWish, lectureHall}, weekFor(world, id, std::nullopt));
}

/// A title of which every item is lost.
void wishForItem(Connection& db, const World& world, std::int64_t id) {
  const std::int64_t title = oneOf(
      db,
      "select title_id from items group by title_id having min(status) = 'Lost' order by title_id limit 1");
  const std::int64_t line = oneOf(db, "select coalesce(max(id), 0) + 1 from booking_items");
  addBooking(db, world, {.id = id, .items = 1});
  Query query(
      db,
      "insert into booking_items (id, booking_id, place, media_type_id, title_id, is_generic) "
      "values (:id, :booking_id, 1, (select min(media_type_id) from items where title_id = :title_id), "
      ":title_id, 1)");
  query.bind("id", line).bind("booking_id", id).bind("title_id", title).run();
  addOccupancy(db, {ThingKind::ItemWish, title}, weekFor(world, id, line));
}

/// Nobody has bought one yet.
void wishForPiece(Connection& db, const World& world, std::int64_t id) {
  const std::int64_t line = oneOf(db, "select coalesce(max(id), 0) + 1 from booking_equipment");
  addBooking(db, world, {.id = id, .pieces = 1});
  Query query(db,
              "insert into booking_equipment (id, booking_id, place, equipment_type_id, is_generic) "
              "values (:id, :booking_id, 1, :type_id, 1)");
  query.bind("id", line).bind("booking_id", id).bind("type_id", hearingLoop).run();
  addOccupancy(db, {ThingKind::EquipmentWish, hearingLoop}, weekFor(world, id, line));
}

}  // namespace

void makeExamplePatrons(Connection& db, const World& world) {
  const auto first = static_cast<std::int64_t>(world.patrons.size()) + 1;
  std::int64_t id = first;
  for (const PatronRow& row : patronRows) addPatron(db, world, row, id++);
  giveTwoBookings(db, first);
}

void makeExampleBookings(Connection& db, const World& world) {
  wishForRoom(db, world, 1);
  wishForItem(db, world, 2);
  wishForPiece(db, world, 3);
}

}  // namespace vantry::server
