// The rules into the store.

#include "server/setup/rules_file_store.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

void runWithName(Connection& db, const char* sql, const std::string& name) {
  Query query(db, sql);
  query.bind("name", name).run();
}

void runFor(Connection& db, const char* sql, std::int64_t id) {
  Query query(db, sql);
  query.bind("id", id).run();
}

void writeRoomType(Connection& db, const char* sql, const RoomTypeEntry& type) {
  Query query(db, sql);
  query.bind("storage", type.storage).bind("name", type.name).run();
}

void writeEquipmentType(Connection& db, const char* sql, const EquipmentTypeEntry& type, bool ofGroups) {
  Query query(db, sql);
  query.bind("setup", type.setupMinutes).bind("cleanup", type.cleanupMinutes);
  query.bind("name", type.name).bind("of_groups", ofGroups).run();
}

void writeNeeds(Connection& db, const MediaTypeEntry& type) {
  runWithName(db,
              "delete from media_type_equipment where media_type_id = "
              "(select id from media_types where name = :name)",
              type.name);
  for (const bool ofGroups : {false, true}) {
    for (const std::string& needed : ofGroups ? type.groupTypes : type.equipmentTypes) {
      Query query(db,
                  "insert into media_type_equipment (media_type_id, equipment_type_id) values "
                  "((select id from media_types where name = :name), "
                  "(select id from equipment_types where name = :needed and of_groups = :of_groups))");
      query.bind("name", type.name).bind("needed", needed).bind("of_groups", ofGroups).run();
    }
  }
}

void writeStatus(Connection& db, const char* sql, const StatusEntry& status) {
  Query query(db, sql);
  query.bind("priority", status.priority).bind("effect", status.effect);
  query.bind("name", status.name).bind("for_rooms", status.forRooms).run();
}

void writeNoteType(Connection& db, const char* sql, const NoteTypeEntry& type) {
  Query query(db, sql);
  query.bind("popup", type.popupKind).bind("name", type.name).bind("for_rooms", type.forRooms).run();
}

void writeHours(Query& query, const HoursEntry& hours) {
  query.bind("is_open", hours.open).bind("opens_at", hours.opensAt).bind("closes_at", hours.closesAt).run();
}

void writeDays(Connection& db, std::int64_t id, const CalendarEntry& calendar) {
  runFor(db, "delete from calendar_days where calendar_id = :id", id);
  runFor(db, "delete from calendar_exceptions where calendar_id = :id", id);
  for (std::size_t day = 0; day < calendar.week.size(); ++day) {
    Query query(db,
                "insert into calendar_days (calendar_id, weekday, is_open, opens_at, closes_at) values "
                "(:id, :weekday, :is_open, :opens_at, :closes_at)");
    query.bind("id", id).bind("weekday", static_cast<int>(day));
    writeHours(query, calendar.week.at(day));
  }
  for (const ExceptionEntry& exception : calendar.exceptions) {
    Query query(db,
                "insert into calendar_exceptions (calendar_id, on_date, is_open, opens_at, closes_at) values "
                "(:id, :on_date, :is_open, :opens_at, :closes_at)");
    query.bind("id", id).bind("on_date", exception.date);
    writeHours(query, exception.hours);
  }
}

void addCalendar(Connection& db, const CalendarEntry& calendar) {
  std::int64_t id = 0;
  Query query(db,
              "insert into calendars (location_id, kind, description, starts_on, ends_on) values "
              "((select id from locations where name = :location), :kind, :name, :starts_on, :ends_on) "
              "returning id");
  query.bind("location", calendar.location).bind("kind", static_cast<int>(calendar.kind));
  query.bind("name", calendar.name).bind("starts_on", calendar.startsOn).bind("ends_on", calendar.endsOn);
  fetchOne(query, id);
  writeDays(db, id, calendar);
}

void changeCalendar(Connection& db, const CalendarEntry& calendar) {
  std::int64_t id = 0;
  Query query(db,
              "update calendars set starts_on = :starts_on, ends_on = :ends_on where location_id = "
              "(select id from locations where name = :location) and kind = :kind and description = :name "
              "returning id");
  query.bind("starts_on", calendar.startsOn).bind("ends_on", calendar.endsOn);
  query.bind("location", calendar.location).bind("kind", static_cast<int>(calendar.kind));
  query.bind("name", calendar.name);
  fetchOne(query, id);
  writeDays(db, id, calendar);
}

/// Binds the values that the rules of all types have.
void writeRule(Query& query, std::int64_t policyId, const std::string& type, const LengthEntry& longest) {
  query.bind("id", policyId).bind("type", type).bind("longest", longest.count);
  query.bind("unit", std::string(1, longest.unit)).run();
}

void bindUses(Query& query, const TypeRuleEntry& rule) {
  query.bind("book", rule.mayBook).bind("deliver", rule.mayDeliver).bind("pick_up", rule.mayPickUp);
}

void addEquipmentRules(Connection& db, std::int64_t id, const PolicyEntry& policy, bool ofGroups) {
  for (const TypeRuleEntry& rule : ofGroups ? policy.groupTypes : policy.equipmentTypes) {
    Query query(db,
                "insert into policy_equipment_types (policy_id, equipment_type_id, may_book, may_deliver, "
                "may_pick_up, longest, longest_unit) values (:id, "
                "(select id from equipment_types where name = :type and of_groups = :of_groups), "
                ":book, :deliver, :pick_up, :longest, :unit)");
    query.bind("of_groups", ofGroups);
    bindUses(query, rule);
    writeRule(query, id, rule.type, rule.longest);
  }
}

void addMediaRules(Connection& db, std::int64_t id, const PolicyEntry& policy) {
  for (const TypeRuleEntry& rule : policy.mediaTypes) {
    Query query(
        db,
        "insert into policy_media_types (policy_id, media_type_id, may_book, may_deliver, may_pick_up, "
        "longest, longest_unit) values (:id, (select id from media_types where name = :type), :book, "
        ":deliver, :pick_up, :longest, :unit)");
    bindUses(query, rule);
    writeRule(query, id, rule.type, rule.longest);
  }
}

void addRoomRules(Connection& db, std::int64_t id, const PolicyEntry& policy) {
  for (const RoomRuleEntry& rule : policy.roomTypes) {
    Query query(db,
                "insert into policy_room_types (policy_id, room_type_id, may_deliver, may_schedule, longest, "
                "longest_unit) values (:id, (select id from room_types where name = :type), :deliver, "
                ":schedule, :longest, :unit)");
    query.bind("deliver", rule.mayDeliver).bind("schedule", rule.maySchedule);
    writeRule(query, id, rule.type, rule.longest);
  }
}

void addSingleRooms(Connection& db, std::int64_t id, const PolicyEntry& policy) {
  for (const SingleRoomEntry& entry : policy.rooms) {
    Query query(db,
                "insert into policy_rooms (policy_id, room_id, longest, longest_unit) values (:id, "
                "(select r.id from rooms r join locations l on l.id = r.location_id "
                "where l.name = :location and r.number = :number), :longest, :unit)");
    query.bind("id", id).bind("location", entry.room.location).bind("number", entry.room.number);
    query.bind("longest", entry.longest.count).bind("unit", std::string(1, entry.longest.unit)).run();
  }
}

void addPolicyLocations(Connection& db, std::int64_t id, const PolicyEntry& policy) {
  for (const bool security : {true, false}) {
    for (const std::string& location : security ? policy.locations : policy.withheldLocations) {
      Query query(db,
                  "insert into policy_locations (policy_id, location_id, security) values (:id, "
                  "(select id from locations where name = :location), :security)");
      query.bind("id", id).bind("location", location).bind("security", security).run();
    }
  }
}

/// All but the policy's key.
void writePolicy(Connection& db, std::int64_t id, const PolicyEntry& policy) {
  const LimitsEntry& limits = policy.limits;
  Query query(
      db,
      "update policies set most_bookings = :bookings, most_items = :items, most_equipment = :equipment, "
      "most_late_returns = :late, most_cancelled = :cancelled, most_unclaimed = :unclaimed, "
      "most_fees = :fees, warning_minutes = :warning, early_charge_minutes = :early where id = :id");
  query.bind("bookings", limits.bookings).bind("items", limits.items).bind("equipment", limits.equipment);
  query.bind("late", limits.lateReturns)
      .bind("cancelled", limits.cancelled)
      .bind("unclaimed", limits.unclaimed);
  query.bind("fees", limits.fees)
      .bind("warning", policy.warningMinutes)
      .bind("early", policy.earlyChargeMinutes);
  query.bind("id", id).run();
  runFor(db, "delete from policy_locations where policy_id = :id", id);
  runFor(db, "delete from policy_equipment_types where policy_id = :id", id);
  runFor(db, "delete from policy_media_types where policy_id = :id", id);
  runFor(db, "delete from policy_room_types where policy_id = :id", id);
  runFor(db, "delete from policy_rooms where policy_id = :id", id);
  addPolicyLocations(db, id, policy);
  addEquipmentRules(db, id, policy, false);
  addEquipmentRules(db, id, policy, true);
  addMediaRules(db, id, policy);
  addRoomRules(db, id, policy);
  addSingleRooms(db, id, policy);
}

void addPolicy(Connection& db, const PolicyEntry& policy) {
  std::int64_t id = 0;
  Query query(db,
              "insert into policies (location_id, patron_group_id) values ((select id from locations where "
              "name = :location), (select id from patron_groups where name = :patron_group)) returning id");
  query.bind("location", policy.location).bind("patron_group", policy.group);
  fetchOne(query, id);
  writePolicy(db, id, policy);
}

void changePolicy(Connection& db, const PolicyEntry& policy) {
  std::int64_t id = 0;
  {
    Query query(
        db,
        "select p.id from policies p join locations l on l.id = p.location_id left join patron_groups g "
        "on g.id = p.patron_group_id where l.name = :location and coalesce(g.name, '') = :patron_group");
    query.bind("location", policy.location).bind("patron_group", policy.group);
    fetchOne(query, id);
  }
  writePolicy(db, id, policy);
}

}  // namespace

void addRules(Connection& db, const Rules& rules) {
  for (const RoomTypeEntry& each : rules.roomTypes) {
    writeRoomType(db, "insert into room_types (storage, name) values (:storage, :name)", each);
  }
  for (const bool ofGroups : {false, true}) {
    for (const EquipmentTypeEntry& each : ofGroups ? rules.groupTypes : rules.equipmentTypes) {
      writeEquipmentType(
          db,
          "insert into equipment_types (setup_minutes, cleanup_minutes, name, of_groups) values "
          "(:setup, :cleanup, :name, :of_groups)",
          each, ofGroups);
    }
  }
  for (const MediaTypeEntry& each : rules.mediaTypes) {
    runWithName(db, "insert into media_types (name) values (:name)", each.name);
    writeNeeds(db, each);
  }
  for (const PlainTypeEntry& each : rules.roomDetailTypes) {
    runWithName(db, "insert into room_detail_types (name) values (:name)", each.name);
  }
  for (const PlainTypeEntry& each : rules.maintenanceTypes) {
    runWithName(db, "insert into maintenance_types (name) values (:name)", each.name);
  }
  for (const StatusEntry& each : rules.statuses) {
    writeStatus(db,
                "insert into status_types (priority, effect, name, for_rooms) values "
                "(:priority, :effect, :name, :for_rooms)",
                each);
  }
  for (const NoteTypeEntry& each : rules.noteTypes) {
    writeNoteType(
        db, "insert into note_types (popup_kind, name, for_rooms) values (:popup, :name, :for_rooms)", each);
  }
  for (const CalendarEntry& each : rules.calendars) addCalendar(db, each);
  for (const PolicyEntry& each : rules.policies) addPolicy(db, each);
}

void changeRules(Connection& db, const Rules& rules) {
  for (const RoomTypeEntry& each : rules.roomTypes) {
    writeRoomType(db, "update room_types set storage = :storage where name = :name", each);
  }
  for (const bool ofGroups : {false, true}) {
    for (const EquipmentTypeEntry& each : ofGroups ? rules.groupTypes : rules.equipmentTypes) {
      writeEquipmentType(db,
                         "update equipment_types set setup_minutes = :setup, cleanup_minutes = :cleanup "
                         "where name = :name and of_groups = :of_groups",
                         each, ofGroups);
    }
  }
  for (const MediaTypeEntry& each : rules.mediaTypes) writeNeeds(db, each);
  for (const StatusEntry& each : rules.statuses) {
    writeStatus(db,
                "update status_types set priority = :priority, effect = :effect where name = :name and "
                "for_rooms = :for_rooms",
                each);
  }
  for (const NoteTypeEntry& each : rules.noteTypes) {
    writeNoteType(
        db, "update note_types set popup_kind = :popup where name = :name and for_rooms = :for_rooms", each);
  }
  for (const CalendarEntry& each : rules.calendars) changeCalendar(db, each);
  for (const PolicyEntry& each : rules.policies) changePolicy(db, each);
}

}  // namespace vantry::server
