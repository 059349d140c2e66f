// The rules out of the store.

#include <map>

#include "server/desk/list_store.h"
#include "server/setup/administration.h"
#include "server/setup/rules_file_store.h"
#include "server/setup/rules_file_words.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

std::vector<PlainTypeEntry> readPlainTypes(Connection& db, const char* sql) {
  std::vector<PlainTypeEntry> types;
  PlainTypeEntry type;
  Query query(db, sql);
  query.into(type.name);
  while (query.next()) types.push_back(type);
  return types;
}

std::vector<RoomTypeEntry> readRoomTypes(Connection& db) {
  std::vector<RoomTypeEntry> types;
  RoomTypeEntry type;
  Query query(db, "select name, storage from room_types order by id");
  query.into(type.name, type.storage);
  while (query.next()) types.push_back(type);
  return types;
}

std::vector<EquipmentTypeEntry> readEquipmentTypes(Connection& db, bool ofGroups) {
  std::vector<EquipmentTypeEntry> types;
  EquipmentTypeEntry type;
  Query query(db,
              "select name, setup_minutes, cleanup_minutes from equipment_types where of_groups = :of_groups "
              "order by id");
  query.bind("of_groups", ofGroups).into(type.name, type.setupMinutes, type.cleanupMinutes);
  while (query.next()) types.push_back(type);
  return types;
}

std::vector<MediaTypeEntry> readMediaTypes(Connection& db) {
  std::vector<MediaTypeEntry> types;
  MediaTypeEntry type;
  std::string needed;
  bool ofGroups = false;
  Query query(db,
              "select m.name, t.name, t.of_groups from media_types m "
              "left join media_type_equipment n on n.media_type_id = m.id "
              "left join equipment_types t on t.id = n.equipment_type_id order by m.id, t.id");
  query.into(type.name, needed, ofGroups);
  while (query.next()) {
    if (types.empty() || types.back().name != type.name) types.push_back(type);
    if (needed.empty()) continue;
    (ofGroups ? types.back().groupTypes : types.back().equipmentTypes).push_back(needed);
  }
  return types;
}

std::vector<StatusEntry> readStatuses(Connection& db) {
  std::vector<StatusEntry> statuses;
  StatusEntry status;
  Query query(db,
              "select name, for_rooms, priority, effect from status_types order by for_rooms, priority, id");
  query.into(status.name, status.forRooms, status.priority, status.effect);
  while (query.next()) statuses.push_back(status);
  return statuses;
}

std::vector<NoteTypeEntry> readNoteTypes(Connection& db) {
  std::vector<NoteTypeEntry> types;
  NoteTypeEntry type;
  Query query(db, "select name, for_rooms, popup_kind from note_types order by for_rooms, id");
  query.into(type.name, type.forRooms, type.popupKind);
  while (query.next()) types.push_back(type);
  return types;
}

/// What a closed day has in its hours does not count.
HoursEntry hoursOf(const OpenHours& hours) {
  return hours.open ? HoursEntry{true, hours.opensAt, hours.closesAt} : HoursEntry{};
}

std::vector<CalendarEntry> readCalendars(Connection& db) {
  std::vector<CalendarEntry> calendars;
  for (const LocationRow& location : allLocations(db)) {
    for (const CalendarKind kind : {CalendarKind::Delivery, CalendarKind::Room, CalendarKind::Pickup}) {
      for (const CalendarRow& row : calendarsOf(db, location.id, kind)) {
        CalendarEntry& entry = calendars.emplace_back();
        entry = {location.name, kind, row.description, row.startsOn, row.endsOn, {}, {}};
        const std::array<OpenHours, 7> week = weekOf(db, row.id);
        for (std::size_t day = 0; day < week.size(); ++day) entry.week.at(day) = hoursOf(week.at(day));
        for (const OpenException& each : exceptionsOf(db, row.id)) {
          entry.exceptions.push_back({each.date, hoursOf(each.hours)});
        }
      }
    }
  }
  return calendars;
}

/// A length without a count or with an unknown unit bounds nothing.
LengthEntry lengthOf(std::int64_t count, const std::string& unit) {
  const bool bounds = count > 0 && unit.size() == 1 && !wordFor(unitWords, unit.front()).empty();
  return bounds ? LengthEntry{count, unit.front()} : LengthEntry{};
}

using PolicyPlaces = std::map<std::int64_t, PolicyEntry*>;

void readPolicyLocations(Connection& db, PolicyPlaces& policies) {
  std::int64_t policy = 0;
  std::string name;
  bool security = false;
  Query query(db,
              "select p.policy_id, l.name, p.security from policy_locations p "
              "join locations l on l.id = p.location_id order by p.policy_id, l.id");
  query.into(policy, name, security);
  while (query.next()) {
    PolicyEntry& entry = *policies.at(policy);
    (security ? entry.locations : entry.withheldLocations).push_back(name);
  }
}

void readTypeRules(Query& query, PolicyPlaces& policies, std::vector<TypeRuleEntry> PolicyEntry::*list) {
  std::int64_t policy = 0;
  TypeRuleEntry rule;
  std::int64_t count = 0;
  std::string unit;
  query.into(policy, rule.type, rule.mayBook, rule.mayDeliver, rule.mayPickUp, count, unit);
  while (query.next()) {
    rule.longest = lengthOf(count, unit);
    (policies.at(policy)->*list).push_back(rule);
  }
}

void readRoomRules(Connection& db, PolicyPlaces& policies) {
  std::int64_t policy = 0;
  RoomRuleEntry rule;
  std::int64_t count = 0;
  std::string unit;
  Query query(
      db,
      "select p.policy_id, t.name, p.may_deliver, p.may_schedule, p.longest, p.longest_unit "
      "from policy_room_types p join room_types t on t.id = p.room_type_id order by p.policy_id, t.id");
  query.into(policy, rule.type, rule.mayDeliver, rule.maySchedule, count, unit);
  while (query.next()) {
    rule.longest = lengthOf(count, unit);
    policies.at(policy)->roomTypes.push_back(rule);
  }
}

void readSingleRooms(Connection& db, PolicyPlaces& policies) {
  std::int64_t policy = 0;
  SingleRoomEntry entry;
  std::int64_t count = 0;
  std::string unit;
  Query query(db,
              "select p.policy_id, l.name, r.number, p.longest, p.longest_unit from policy_rooms p "
              "join rooms r on r.id = p.room_id join locations l on l.id = r.location_id "
              "order by p.policy_id, r.id");
  query.into(policy, entry.room.location, entry.room.number, count, unit);
  while (query.next()) {
    entry.longest = lengthOf(count, unit);
    policies.at(policy)->rooms.push_back(entry);
  }
}

std::vector<RoomPlace> readRoomPlaces(Connection& db) {
  std::vector<RoomPlace> rooms;
  RoomPlace room;
  Query query(db, "select l.name, r.number from rooms r join locations l on l.id = r.location_id");
  query.into(room.location, room.number);
  while (query.next()) rooms.push_back(room);
  return rooms;
}

/// The policies without their lists, under their keys.
std::vector<std::pair<std::int64_t, PolicyEntry>> readPolicyRows(Connection& db) {
  std::vector<std::pair<std::int64_t, PolicyEntry>> rows;
  std::int64_t id = 0;
  PolicyEntry row;
  LimitsEntry& limits = row.limits;
  Query query(
      db,
      "select p.id, l.name, coalesce(g.name, ''), case when p.patron_group_id is null then 1 else 0 end, "
      "p.most_bookings, p.most_items, p.most_equipment, p.most_late_returns, p.most_cancelled, "
      "p.most_unclaimed, p.most_fees, p.warning_minutes, p.early_charge_minutes from policies p "
      "join locations l on l.id = p.location_id left join patron_groups g on g.id = p.patron_group_id "
      "order by l.name, coalesce(g.id, 0), p.id");
  query.into(id, row.location, row.group, row.administrative, limits.bookings, limits.items, limits.equipment,
             limits.lateReturns, limits.cancelled, limits.unclaimed, limits.fees, row.warningMinutes,
             row.earlyChargeMinutes);
  while (query.next()) rows.emplace_back(id, row);
  return rows;
}

std::vector<PolicyEntry> readPolicies(Connection& db) {
  auto rows = readPolicyRows(db);
  PolicyPlaces places;
  for (auto& [id, policy] : rows) places[id] = &policy;
  readPolicyLocations(db, places);
  for (const bool ofGroups : {false, true}) {
    Query query(
        db,
        "select p.policy_id, t.name, p.may_book, p.may_deliver, p.may_pick_up, p.longest, p.longest_unit "
        "from policy_equipment_types p join equipment_types t on t.id = p.equipment_type_id "
        "where t.of_groups = :of_groups order by p.policy_id, t.id");
    query.bind("of_groups", ofGroups);
    readTypeRules(query, places, ofGroups ? &PolicyEntry::groupTypes : &PolicyEntry::equipmentTypes);
  }
  Query media(
      db,
      "select p.policy_id, t.name, p.may_book, p.may_deliver, p.may_pick_up, p.longest, p.longest_unit "
      "from policy_media_types p join media_types t on t.id = p.media_type_id order by p.policy_id, t.id");
  readTypeRules(media, places, &PolicyEntry::mediaTypes);
  readRoomRules(db, places);
  readSingleRooms(db, places);
  std::vector<PolicyEntry> policies;
  for (auto& [id, policy] : rows) policies.push_back(std::move(policy));
  return policies;
}

}  // namespace

Rules readRules(Connection& db) {
  Rules rules;
  rules.roomTypes = readRoomTypes(db);
  rules.equipmentTypes = readEquipmentTypes(db, false);
  rules.groupTypes = readEquipmentTypes(db, true);
  rules.mediaTypes = readMediaTypes(db);
  rules.roomDetailTypes = readPlainTypes(db, "select name from room_detail_types order by id");
  rules.maintenanceTypes = readPlainTypes(db, "select name from maintenance_types order by id");
  rules.statuses = readStatuses(db);
  rules.noteTypes = readNoteTypes(db);
  rules.calendars = readCalendars(db);
  rules.policies = readPolicies(db);
  return rules;
}

KnownPlaces readKnownPlaces(Connection& db) {
  KnownPlaces known;
  for (const LocationRow& row : allLocations(db)) known.locations.push_back(row.name);
  for (const NamedRow& row : patronGroups(db)) known.groups.push_back(row.name);
  known.rooms = readRoomPlaces(db);
  return known;
}

}  // namespace vantry::server
