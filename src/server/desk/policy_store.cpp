#include "server/desk/policy_store.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

char unitOf(const std::string& text) {
  return text.empty() ? 'U' : text.front();
}

/// The policy's own figures with its locations: one row for each, and one at least.
std::shared_ptr<Query> askPlaces(Connection& db, std::int64_t locationId, std::int64_t groupId) {
  auto query = std::make_shared<Query>(
      db,
      "select p.id, p.most_bookings, p.most_items, p.most_equipment, p.most_late_returns, "
      "p.most_cancelled, p.most_unclaimed, p.most_fees, p.warning_minutes, p.early_charge_minutes, "
      "l.location_id, l.security from policies p left join policy_locations l on l.policy_id = p.id "
      "where p.location_id = :location_id and coalesce(p.patron_group_id, 0) = :group_id");
  query->bind("location_id", locationId).bind("group_id", groupId).send();
  return query;
}

/// Without a policy a desk has its own things. Gives the key of the policy, or 0.
std::int64_t readPlaces(Query& query, std::int64_t locationId, DeskPolicy& policy) {
  std::int64_t id = 0;
  std::int64_t location = 0;
  bool security = false;
  PatronLimits& limits = policy.limits;
  query.into(id, limits.bookings, limits.items, limits.equipment, limits.lateReturns, limits.cancelled,
             limits.unclaimed, limits.fees, policy.warningMinutes, policy.earlyChargeMinutes, location,
             security);
  while (query.next()) {
    if (location != 0) policy.locations[location] = security;
  }
  if (id == 0) policy.locations[locationId] = true;
  return id;
}

std::map<std::int64_t, TypeRule> readTypeRules(Query& query) {
  std::map<std::int64_t, TypeRule> rules;
  std::int64_t type = 0;
  TypeRule rule;
  std::string unit;
  query.into(type, rule.mayBook, rule.mayDeliver, rule.mayPickUp, rule.longest.count, unit);
  while (query.next()) {
    rule.longest.unit = unitOf(unit);
    rules[type] = rule;
  }
  return rules;
}

void readRoomRules(Query& query, DeskPolicy& policy) {
  std::int64_t type = 0;
  RoomRule rule;
  std::string unit;
  query.into(type, rule.mayDeliver, rule.maySchedule, rule.longest.count, unit);
  while (query.next()) {
    rule.longest.unit = unitOf(unit);
    policy.roomTypes[type] = rule;
  }
}

void readRooms(Query& query, DeskPolicy& policy) {
  std::int64_t room = 0;
  LongestUse longest;
  std::string unit;
  query.into(room, longest.count, unit);
  while (query.next()) {
    longest.unit = unitOf(unit);
    policy.rooms[room] = longest;
  }
}

/// What else a policy consists of, asked by desk and group as the policy itself is, so that none of it waits
/// for the policy's key.
std::string ofPolicy(const char* columnsAndTable) {
  return std::string("select ") + columnsAndTable +
         " where policy_id in (select p.id from policies p where p.location_id = :location_id and "
         "coalesce(p.patron_group_id, 0) = :group_id)";
}

bool covers(const CalendarRow& row, std::span<const Period> periods) {
  return std::any_of(periods.begin(), periods.end(), [&](const Period& each) {
    const Moment first = startOfDay(each.from);
    const Moment last = startOfDay(endAsJudged(each));
    return (row.startsOn <= first && first <= row.endsOn) || (row.startsOn <= last && last <= row.endsOn);
  });
}

bool hasActiveBarcode(Connection& db, std::int64_t patronId, std::int64_t groupId) {
  int count = 0;
  Query query(db,
              "select count(*) from patron_barcodes b join barcode_statuses s on s.id = b.status_id "
              "where b.patron_id = :patron_id and s.active = 1 and "
              "(:any_group = 0 or b.patron_group_id = :group_id)");
  query.bind("patron_id", patronId).bind("any_group", groupId).bind("group_id", groupId);
  fetchOne(query, count);
  return count > 0;
}

}  // namespace

DeskPolicy loadPolicy(Connection& db, std::int64_t locationId, std::int64_t groupId) {
  static const std::string equipment = ofPolicy(
      "equipment_type_id, may_book, may_deliver, may_pick_up, longest, longest_unit from "
      "policy_equipment_types");
  static const std::string media = ofPolicy(
      "media_type_id, may_book, may_deliver, may_pick_up, longest, longest_unit from policy_media_types");
  static const std::string roomTypes =
      ofPolicy("room_type_id, may_deliver, may_schedule, longest, longest_unit from policy_room_types");
  static const std::string rooms = ofPolicy("room_id, longest, longest_unit from policy_rooms");
  DeskPolicy policy;
  const std::shared_ptr<Query> places = askPlaces(db, locationId, groupId);
  Query ofEquipment(db, equipment);
  Query ofMedia(db, media);
  Query ofRoomTypes(db, roomTypes);
  Query ofRooms(db, rooms);
  for (Query* each : {&ofEquipment, &ofMedia, &ofRoomTypes, &ofRooms})
    each->bind("location_id", locationId).bind("group_id", groupId).send();
  if (readPlaces(*places, locationId, policy) == 0) return policy;
  policy.equipmentTypes = readTypeRules(ofEquipment);
  policy.mediaTypes = readTypeRules(ofMedia);
  readRoomRules(ofRoomTypes, policy);
  readRooms(ofRooms, policy);
  return policy;
}

DeskPolicy loadPolicyLocations(Connection& db, std::int64_t locationId, std::int64_t groupId) {
  return askPolicyLocations(db, locationId, groupId).get();
}

Pending<DeskPolicy> askPolicyLocations(Connection& db, std::int64_t locationId, std::int64_t groupId) {
  return Pending<DeskPolicy>([query = askPlaces(db, locationId, groupId), locationId] {
    DeskPolicy policy;
    readPlaces(*query, locationId, policy);
    return policy;
  });
}

std::vector<OpenCalendar> loadCalendars(Connection& db, std::int64_t locationId, CalendarKind kind,
                                        std::span<const Period> periods) {
  std::vector<CalendarRow> rows = calendarsOf(db, locationId, kind);
  std::erase_if(rows, [&](const CalendarRow& row) { return !covers(row, periods); });
  std::vector<std::pair<Pending<std::array<OpenHours, 7>>, Pending<std::vector<OpenException>>>> hours;
  for (const CalendarRow& row : rows) hours.emplace_back(askWeek(db, row.id), askExceptions(db, row.id));
  std::vector<OpenCalendar> calendars;
  for (std::size_t each = 0; each < rows.size(); ++each)
    calendars.push_back(
        {rows[each].startsOn, rows[each].endsOn, hours[each].first.get(), hours[each].second.get()});
  return calendars;
}

std::optional<PatronState> loadPatronState(Connection& db, std::int64_t patronId, std::int64_t groupId) {
  PatronState state;
  Moment expires = 0;
  Query query(db,
              "select hold_mail, coalesce(expires_at, 0), late_returns, cancelled_bookings, "
              "unclaimed_bookings, fees from patrons where id = :id");
  query.bind("id", patronId);
  if (!fetchOne(query, state.holdMail, expires, state.lateReturns, state.cancelled, state.unclaimed,
                state.fees)) {
    return std::nullopt;
  }
  state.expiresAt = orNothing(expires);
  state.barcodeActive = hasActiveBarcode(db, patronId, groupId);
  Query current(db,
                "select count(*), coalesce(sum(item_count), 0), coalesce(sum(equipment_count), 0) "
                "from bookings where patron_id = :patron_id and status in (0, 99, 999)");
  current.bind("patron_id", patronId);
  fetchOne(current, state.bookings, state.items, state.equipment);
  return state;
}

}  // namespace vantry::server
