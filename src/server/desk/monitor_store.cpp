#include "server/desk/monitor_store.h"

#include <algorithm>
#include <utility>

#include "server/base/person_name.h"
#include "server/desk/library_border.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

struct NameParts {
  std::string last;
  std::string first;
  std::string middle;
  [[nodiscard]] std::string whole() const { return personName(last, first, middle); }
};

constexpr const char* columns =
    "select b.id, b.location_id, b.patron_group_id, b.booking_type, b.status, b.starts_at, b.ends_at, "
    "b.setup_minutes, b.cleanup_minutes, b.charged_at, b.administrative, p.withheld, p.last_name, "
    "p.first_name, p.middle_name, q.withheld, q.last_name, q.first_name, q.middle_name, coalesce(r.name, "
    "l.name, t.name, ''), b.setup_staff_id, s.last_name, s.first_name, s.middle_name, b.cleanup_staff_id, "
    "c.last_name, c.first_name, c.middle_name, b.note, b.item_count, b.equipment_count, "
    "case when b.item_count > 0 or b.equipment_count > 0 then 1 else 0 end "
    "from $FROM left join patrons p on p.id = b.patron_id left join patrons q on q.id = "
    "b.pickup_patron_id left join rooms r on r.id = b.room_id left join locations l on l.id = "
    "b.pickup_location_id left join room_types t on t.id = b.wanted_room_type_id left join patrons s on "
    "s.id = b.setup_staff_id left join patrons c on c.id = b.cleanup_staff_id where ";

std::string columnsFrom(std::string_view from) {
  constexpr std::string_view mark = "$FROM";
  std::string sql = columns;
  return sql.replace(sql.find(mark), mark.size(), from);
}

/// A save takes no longer one.
constexpr Moment longestSetup = 999 * minute;

constexpr const char* byStart = " order by b.starts_at, b.id";

/// There are few bookings at a time, whose parts are best reached one by one.
void visitRows(Connection& db, Query& query, const MonitorVisitor& visit) {
  MonitorBooking row;
  WatchedBooking& watched = row.watched;
  NameParts requester;
  NameParts pickup;
  NameParts setup;
  NameParts cleanup;
  int status = 0;
  Moment setupMinutes = 0;
  Moment cleanupMinutes = 0;
  std::int64_t cleanupStaffId = 0;
  query.into(row.id, row.deskId, row.groupId, watched.type, status, watched.times.from, watched.times.until,
             setupMinutes, cleanupMinutes, watched.chargedAt, row.administrative, row.withheld,
             requester.last, requester.first, requester.middle, row.pickupWithheld, pickup.last, pickup.first,
             pickup.middle, row.place, row.setupStaffId, setup.last, setup.first, setup.middle,
             cleanupStaffId, cleanup.last, cleanup.first, cleanup.middle, row.note, row.items, row.equipment,
             watched.brings);
  planForSearch(db);
  while (query.next()) {
    watched.status = static_cast<BookingStatus>(status);
    watched.taken = takenFor(watched.times, setupMinutes, cleanupMinutes);
    watched.fetched = cleanupMinutes > 0 || cleanupStaffId != 0;
    row.requester = requester.whole();
    row.pickupPatron = pickup.whole();
    row.setupStaff = setup.whole();
    row.cleanupStaff = cleanup.whole();
    visit(row);
  }
  planAsUsual(db);
}

struct OpenSpan {
  Watch watch;
  Moment until;   ///< of the set-up's begin
  Moment latest;  ///< of the start: the index knows no other moment
};

constexpr std::string_view conditionOf(Watch watch) {
  switch (watch) {
    case Watch::All:
      return "";
    case Watch::Brought:
      return " and b.booking_type in (1, 2)";
    case Watch::Waiting:
      return " and b.booking_type = 3 and b.status = 0";
    case Watch::LibraryRooms:
      return " and b.booking_type = 1";
  }
  return "";
}

void visitOpen(Connection& db, const Desks& desks, const OpenSpan& span, const MonitorVisitor& visit) {
  const std::string keys = keysIn(db, "desks");
  std::string open = " and b.status in (0, 99, 999) and b.starts_at < :latest";
  if (span.latest != span.until) open += " and b.starts_at - b.setup_minutes * 60 < :until_at";
  open += conditionOf(span.watch);
  std::vector<MonitorBooking> all;
  // Each has an index of its own, which one statement for both would not use. The desks come first: SQLite
  // would begin with all that is not over.
  const std::string from = columnsFrom("(" + keys + ") d cross join bookings b");
  for (const std::string& place :
       {std::string("b.location_id = d.value"),
        "b.pickup_location_id = d.value and " + isOfLibrary("b.location_id", keys)}) {
    Query query(db, from + place + open);
    query.bind("desks", keysText(desks)).bind("latest", span.latest);
    if (span.latest != span.until) query.bind("until_at", span.until);
    visitRows(db, query, [&](const MonitorBooking& row) { all.push_back(row); });
  }
  const auto place = [](const MonitorBooking& row) { return std::pair(row.watched.times.from, row.id); };
  std::ranges::sort(all, {}, place);
  std::int64_t last = 0;
  for (const MonitorBooking& row : all) {
    if (std::exchange(last, row.id) != row.id) visit(row);
  }
}

}  // namespace

Desks watchedDesks(Connection& db, const Desks& asked, std::int64_t sessionDesk) {
  Desks desks;
  std::int64_t id = 0;
  Query query(db, "select l.id from locations l where " + isOfLibrary("l.id") + " and l.id in (" +
                      keysIn(db, "asked") + ") order by l.id");
  query.bind("desk", sessionDesk).bind("asked", keysText(asked)).into(id);
  while (query.next()) desks.push_back(id);
  return desks;
}

void visitOpenBookings(Connection& db, const Desks& desks, Moment until, const MonitorVisitor& visit,
                       Watch watch) {
  visitOpen(db, desks, {watch, until, until}, visit);
}

void visitBookingsToSetUp(Connection& db, const Desks& desks, Moment until, const MonitorVisitor& visit,
                          Watch watch) {
  visitOpen(db, desks, {watch, until, until + longestSetup}, visit);
}

void visitEndedEarly(Connection& db, const Desks& desks, Moment now, Moment until,
                     const MonitorVisitor& visit) {
  Query query(db, columnsFrom("bookings b") +
                      // The sign keeps SQLite from walking through all that the desks ever had.
                      ("+b.location_id in (" + keysIn(db, "desks") +
                       ") and b.status in (1, 2, 3, 4) and b.ends_at >= :now and b.starts_at < "
                       ":until_at") +
                      byStart);
  query.bind("desks", keysText(desks)).bind("now", now).bind("until_at", until);
  visitRows(db, query, visit);
}

void visitBookingsOfRoom(Connection& db, std::int64_t roomId, std::int64_t sessionDesk, Moment until,
                         const MonitorVisitor& visit) {
  Query query(db, columnsFrom("bookings b") +
                      "b.room_id = :room_id and b.status in (0, 99, 999) and b.starts_at < :until_at and " +
                      isOfLibrary("b.location_id") + byStart);
  query.bind("room_id", roomId).bind("until_at", until).bind("desk", sessionDesk);
  visitRows(db, query, visit);
}

std::vector<ThingOfBooking> thingsOfBooking(Connection& db, std::int64_t bookingId) {
  std::vector<ThingOfBooking> things;
  ThingOfBooking row;
  Query pieces(db,
               "select e.id, t.name, e.number from booking_equipment l join equipment_types t on t.id = "
               "l.equipment_type_id left join equipment e on e.id = l.equipment_id where l.booking_id = "
               ":booking_id and l.in_room = 0 order by l.place, l.id");
  pieces.bind("booking_id", bookingId).into(row.id, row.type, row.name);
  while (pieces.next()) things.push_back(row);
  row.id = 0;
  Query items(db,
              "select m.name, t.title from booking_items l join titles t on t.id = l.title_id left join "
              "media_types m on m.id = l.media_type_id where l.booking_id = :booking_id order by l.place, "
              "l.id");
  items.bind("booking_id", bookingId).into(row.type, row.name);
  while (items.next()) things.push_back(row);
  return things;
}

}  // namespace vantry::server
