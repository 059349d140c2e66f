#include "server/desk/policy_store.h"

#include <algorithm>
#include <string>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

char unitOf(const std::string& text) {
  return text.empty() ? 'U' : text.front();
}

/// The policy's own figures with its locations: one row for each, and one at least. Without a policy a desk
/// has its own things. Gives the key of the policy, or 0.
std::int64_t readPlaces(Connection& db, std::int64_t locationId, std::int64_t groupId, DeskPolicy& policy) {
  std::int64_t id = 0;
  std::int64_t location = 0;
  bool security = false;
  PatronLimits& limits = policy.limits;
  Query query(db,
              "select p.id, p.most_bookings, p.most_items, p.most_equipment, p.most_late_returns, "
              "p.most_cancelled, p.most_unclaimed, p.most_fees, p.warning_minutes, p.early_charge_minutes, "
              "l.location_id, l.security from policies p left join policy_locations l on l.policy_id = p.id "
              "where p.location_id = :location_id and coalesce(p.patron_group_id, 0) = :group_id");
  query.bind("location_id", locationId).bind("group_id", groupId);
  query.into(id, limits.bookings, limits.items, limits.equipment, limits.lateReturns, limits.cancelled,
             limits.unclaimed, limits.fees, policy.warningMinutes, policy.earlyChargeMinutes, location,
             security);
  while (query.next()) {
    if (location != 0) policy.locations[location] = security;
  }
  if (id == 0) policy.locations[locationId] = true;
  return id;
}

std::map<std::int64_t, TypeRule> readTypeRules(Connection& db, std::int64_t policyId, const char* sql) {
  std::map<std::int64_t, TypeRule> rules;
  std::int64_t type = 0;
  TypeRule rule;
  std::string unit;
  Query query(db, sql);
  query.bind("policy_id", policyId)
      .into(type, rule.mayBook, rule.mayDeliver, rule.mayPickUp, rule.longest.count, unit);
  while (query.next()) {
    rule.longest.unit = unitOf(unit);
    rules[type] = rule;
  }
  return rules;
}

void readRoomRules(Connection& db, std::int64_t policyId, DeskPolicy& policy) {
  std::int64_t type = 0;
  RoomRule rule;
  std::string unit;
  Query query(db,
              "select room_type_id, may_deliver, may_schedule, longest, longest_unit from policy_room_types "
              "where policy_id = :policy_id");
  query.bind("policy_id", policyId).into(type, rule.mayDeliver, rule.maySchedule, rule.longest.count, unit);
  while (query.next()) {
    rule.longest.unit = unitOf(unit);
    policy.roomTypes[type] = rule;
  }
}

void readRooms(Connection& db, std::int64_t policyId, DeskPolicy& policy) {
  std::int64_t room = 0;
  LongestUse longest;
  std::string unit;
  Query query(db, "select room_id, longest, longest_unit from policy_rooms where policy_id = :policy_id");
  query.bind("policy_id", policyId).into(room, longest.count, unit);
  while (query.next()) {
    longest.unit = unitOf(unit);
    policy.rooms[room] = longest;
  }
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
  DeskPolicy policy;
  const std::int64_t id = readPlaces(db, locationId, groupId, policy);
  if (id == 0) return policy;
  policy.equipmentTypes =
      readTypeRules(db, id,
                    "select equipment_type_id, may_book, may_deliver, may_pick_up, longest, longest_unit "
                    "from policy_equipment_types where policy_id = :policy_id");
  policy.mediaTypes =
      readTypeRules(db, id,
                    "select media_type_id, may_book, may_deliver, may_pick_up, longest, longest_unit "
                    "from policy_media_types where policy_id = :policy_id");
  readRoomRules(db, id, policy);
  readRooms(db, id, policy);
  return policy;
}

DeskPolicy loadPolicyLocations(Connection& db, std::int64_t locationId, std::int64_t groupId) {
  DeskPolicy policy;
  readPlaces(db, locationId, groupId, policy);
  return policy;
}

std::vector<OpenCalendar> loadCalendars(Connection& db, std::int64_t locationId, CalendarKind kind,
                                        std::span<const Period> periods) {
  std::vector<OpenCalendar> calendars;
  for (const CalendarRow& row : calendarsOf(db, locationId, kind)) {
    if (!covers(row, periods)) continue;
    calendars.push_back({row.startsOn, row.endsOn, weekOf(db, row.id), exceptionsOf(db, row.id)});
  }
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
