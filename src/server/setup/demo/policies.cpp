// Calendars, and who may book what.

#include <algorithm>
#include <array>

#include "server/desk/calendar_store.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

struct WeekRow {
  int opensAt;
  int closesAt;
};
/// From Sunday; open on every day, so that every day has bookings.
constexpr std::array<WeekRow, 7> week{{{12, 18}, {8, 21}, {8, 21}, {8, 21}, {8, 21}, {8, 20}, {9, 18}}};

/// Month and day of the closed days of a year.
constexpr std::array<std::array<int, 2>, 6> closedDates{
    {{1, 1}, {5, 1}, {7, 4}, {12, 24}, {12, 25}, {12, 31}}};

std::vector<Moment> closedDaysOf(int year) {
  std::vector<Moment> days;
  for (const auto& date : closedDates) days.push_back(makeMoment(year, date[0], date[1]));
  return days;
}

void addException(Connection& db, std::int64_t calendarId, Moment date, const OpenHours& hours) {
  Query query(db,
              "insert into calendar_exceptions (calendar_id, on_date, is_open, opens_at, closes_at) "
              "values (:calendar_id, :on_date, :is_open, :opens_at, :closes_at)");
  query.bind("calendar_id", calendarId).bind("on_date", date).bind("is_open", hours.open);
  query.bind("opens_at", hours.opensAt).bind("closes_at", hours.closesAt).run();
}

void addCalendar(Connection& db, std::int64_t id, std::int64_t locationId, CalendarKind kind, int year) {
  constexpr std::array<const char*, 3> names{"Deliveries ", "Rooms ", "Pick-Ups "};
  Query query(db,
              "insert into calendars (id, location_id, kind, description, starts_on, ends_on) "
              "values (:id, :location_id, :kind, :description, :starts_on, :ends_on)");
  query.bind("id", id).bind("location_id", locationId).bind("kind", static_cast<int>(kind));
  query.bind("description", names[static_cast<std::size_t>(kind)] + std::to_string(year));
  query.bind("starts_on", makeMoment(year, 1, 1)).bind("ends_on", makeMoment(year, 12, 31)).run();
  for (std::size_t weekday = 0; weekday < week.size(); ++weekday) {
    Query dayQuery(db,
                   "insert into calendar_days (calendar_id, weekday, is_open, opens_at, closes_at) "
                   "values (:calendar_id, :weekday, :is_open, :opens_at, :closes_at)");
    // Nobody drives on Sundays.
    const bool open = kind != CalendarKind::Delivery || weekday != 0;
    dayQuery.bind("calendar_id", id).bind("weekday", static_cast<int>(weekday)).bind("is_open", open);
    dayQuery.bind("opens_at", week[weekday].opensAt * 60)
        .bind("closes_at", week[weekday].closesAt * 60)
        .run();
  }
  for (const Moment date : closedDaysOf(year)) addException(db, id, date, {});
  addException(db, id, makeMoment(year, 6, 15), {.open = true, .opensAt = 10 * 60, .closesAt = 16 * 60});
}

void makeCalendars(Connection& db, World& world) {
  std::int64_t id = 0;
  const int thisYear = yearOf(world.today);
  for (int year = thisYear - 1; year <= thisYear + 1; ++year) {
    for (const World::Location& location : world.locations) {
      for (const CalendarKind kind : {CalendarKind::Delivery, CalendarKind::Room, CalendarKind::Pickup}) {
        addCalendar(db, ++id, location.id, kind, year);
      }
    }
    const std::vector<Moment> closed = closedDaysOf(year);
    world.closedDays.insert(world.closedDays.end(), closed.begin(), closed.end());
  }
}

/// Limits by how much a group is trusted: 0 not at all, 3 without limits.
struct LimitRow {
  int bookings;
  int items;
  int equipment;
  int late;
  int cancelled;
  int unclaimed;
  int fees;  ///< cents
};
constexpr std::array<LimitRow, 4> limits{{{2, 2, 2, 2, 5, 3, 500},
                                          {5, 5, 4, 5, 10, 6, 2000},
                                          {15, 10, 10, 20, 40, 20, 5000},
                                          {-1, -1, -1, -1, -1, -1, -1}}};

std::size_t trustOf(std::int64_t groupId) {
  constexpr std::array<std::size_t, 13> trust{3, 1, 2, 3, 2, 3, 3,
                                              0, 0, 2, 1, 2, 1};  // place 0: administrative
  return trust[static_cast<std::size_t>(groupId)];
}

void addPolicy(Connection& db, std::int64_t id, std::int64_t locationId, std::int64_t groupId) {
  const LimitRow& limit = limits[trustOf(groupId)];
  Query query(
      db,
      "insert into policies (id, location_id, patron_group_id, most_bookings, most_items, most_equipment, "
      "most_late_returns, most_cancelled, most_unclaimed, most_fees, warning_minutes, early_charge_minutes) "
      "values (:id, :location_id, :group_id, :bookings, :items, :equipment, :late, :cancelled, :unclaimed, "
      ":fees, 30, 60)");
  query.bind("id", id).bind("location_id", locationId);
  query.bind("group_id", groupId == 0 ? std::nullopt : std::optional(groupId));
  query.bind("bookings", limit.bookings).bind("items", limit.items).bind("equipment", limit.equipment);
  query.bind("late", limit.late).bind("cancelled", limit.cancelled).bind("unclaimed", limit.unclaimed);
  query.bind("fees", limit.fees).run();
}

void addPolicyLocations(Connection& db, const World& world, std::int64_t id, std::int64_t locationId) {
  // The two desks of the city share their things, and see what the college would have if it let them; the
  // college keeps to itself.
  const bool college = locationId == world.locations[2].id;
  for (const World::Location& location : world.locations) {
    const bool ofCollege = location.id == world.locations[2].id;
    if (college && !ofCollege) continue;
    Query query(db,
                "insert into policy_locations (policy_id, location_id, security) "
                "values (:policy_id, :location_id, :security)");
    query.bind("policy_id", id).bind("location_id", location.id).bind("security", college == ofCollege).run();
  }
}

struct TypeRule {
  std::int64_t typeId;
  bool book;
  bool deliver;
  bool pickUp;
  int longest;
  const char* unit;
};

void addTypeRule(Connection& db, const char* sql, std::int64_t policyId, const TypeRule& rule) {
  Query query(db, sql);
  query.bind("policy_id", policyId).bind("type_id", rule.typeId).bind("may_book", rule.book);
  query.bind("may_deliver", rule.deliver).bind("may_pick_up", rule.pickUp);
  query.bind("longest", rule.longest).bind("unit", rule.unit).run();
}

void addTypeRules(Connection& db, const World& world, std::int64_t id, std::size_t trust) {
  const int days = trust == 0 ? 1 : 7;
  for (const World::EquipmentType& type : world.equipmentTypes) {
    const bool dear = type.id == 8 || type.id == 9;  // camcorders and cameras are not for everybody
    const bool fixed = type.id == 14;                // screens are brought, and never fetched
    addTypeRule(db,
                "insert into policy_equipment_types (policy_id, equipment_type_id, may_book, may_deliver, "
                "may_pick_up, longest, longest_unit) values (:policy_id, :type_id, :may_book, :may_deliver, "
                ":may_pick_up, :longest, :unit)",
                id, {type.id, trust > 0 || !dear, true, !fixed, days, "D"});
  }
  for (const std::int64_t type : world.mediaTypes) {
    const bool slides = type == 3;
    const bool maps = type == 6;
    addTypeRule(
        db,
        "insert into policy_media_types (policy_id, media_type_id, may_book, may_deliver, may_pick_up, "
        "longest, longest_unit) values (:policy_id, :type_id, :may_book, :may_deliver, :may_pick_up, "
        ":longest, :unit)",
        id, {type, trust > 0 || !slides, !maps, true, days * 2, "D"});
  }
}

void addRoomRules(Connection& db, const World& world, std::int64_t id, std::size_t trust) {
  for (const std::int64_t type : world.roomTypes) {
    const bool storage = type >= 7;
    const bool studio = type == 6;
    Query query(db,
                "insert into policy_room_types (policy_id, room_type_id, may_deliver, may_schedule, longest, "
                "longest_unit) values (:policy_id, :type_id, :may_deliver, :may_schedule, :longest, :unit)");
    query.bind("policy_id", id).bind("type_id", type).bind("may_deliver", !storage && !studio);
    query.bind("may_schedule", !storage && type != 1 && (trust > 0 || !studio));
    query.bind("longest", trust == 3 ? 0 : 8).bind("unit", trust == 3 ? "U" : "H").run();
  }
}

/// One hall is in such demand that nobody has it for long.
void addRoomLimit(Connection& db, std::int64_t id) {
  constexpr std::int64_t firstLectureHall = 21;
  Query query(db,
              "insert into policy_rooms (policy_id, room_id, longest, longest_unit) "
              "values (:policy_id, :room_id, 4, 'H')");
  query.bind("policy_id", id).bind("room_id", firstLectureHall).run();
}

}  // namespace

void makePolicies(Connection& db, World& world, Dice&) {
  makeCalendars(db, world);
  std::int64_t id = 0;
  for (const World::Location& location : world.locations) {
    for (std::int64_t group = 0; group <= static_cast<std::int64_t>(world.patronGroups.size()); ++group) {
      addPolicy(db, ++id, location.id, group);
      addPolicyLocations(db, world, id, location.id);
      addTypeRules(db, world, id, trustOf(group));
      addRoomRules(db, world, id, trustOf(group));
      addRoomLimit(db, id);
    }
  }
}

}  // namespace vantry::server
