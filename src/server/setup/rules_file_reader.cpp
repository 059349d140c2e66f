// From the text of a file of rules to plain values.

#include "server/setup/rules_file_text.h"

namespace vantry::server {

namespace {

PlainTypeEntry readPlainType(const FileNode& node) {
  return {node.name()};
}

RoomTypeEntry readRoomType(const FileNode& node) {
  node.expectMembers({"name", "storage"});
  return {node.member("name").name(), node.member("storage").flagOr(false)};
}

EquipmentTypeEntry readEquipmentType(const FileNode& node) {
  node.expectMembers({"name", "setup_minutes", "cleanup_minutes"});
  return {node.member("name").name(), node.member("setup_minutes").numberOr(0),
          node.member("cleanup_minutes").numberOr(0)};
}

std::vector<std::string> readNames(const FileNode& node) {
  std::vector<std::string> names;
  for (const FileNode& each : node.elements()) names.push_back(each.name());
  return names;
}

MediaTypeEntry readMediaType(const FileNode& node) {
  node.expectMembers({"name", "equipment_types", "group_types"});
  return {node.member("name").name(), readNames(node.member("equipment_types")),
          readNames(node.member("group_types"))};
}

StatusEntry readStatus(const FileNode& node) {
  node.expectMembers({"for", "name", "priority", "effect"});
  StatusEntry status;
  status.forRooms = node.member("for").word(ownerWords) != 0;
  status.name = node.member("name").name();
  status.priority = node.member("priority").number();
  status.effect = node.member("effect").word(effectWords);
  return status;
}

NoteTypeEntry readNoteType(const FileNode& node) {
  node.expectMembers({"for", "name", "popup"});
  NoteTypeEntry type;
  type.forRooms = node.member("for").word(ownerWords) != 0;
  type.name = node.member("name").name();
  type.popupKind = node.member("popup").word(popupWords(type.forRooms));
  return type;
}

HoursEntry readHoursOf(const FileNode& node) {
  const auto hours = node.textAs(readHours, "must be \"closed\", or hours as \"08:00-21:00\".");
  if (hours.open && hours.closesAt <= hours.opensAt) node.refuse("closes before it opens.");
  return hours;
}

Moment readDateOf(const FileNode& node) {
  return node.textAs(readDate, "must be a date as \"2026-11-25\".");
}

ExceptionEntry readException(const FileNode& node) {
  node.expectMembers({"date", "hours"});
  return {readDateOf(node.member("date")), readHoursOf(node.member("hours"))};
}

std::array<HoursEntry, 7> readWeek(const FileNode& node) {
  std::array<HoursEntry, 7> week{};
  node.expectMembers({weekdayWords.begin(), weekdayWords.end()});
  for (std::size_t day = 0; day < week.size(); ++day) {
    const FileNode hours = node.member(weekdayWords.at(day));
    if (hours.isGiven()) week.at(day) = readHoursOf(hours);
  }
  return week;
}

CalendarEntry readCalendar(const FileNode& node) {
  node.expectMembers({"location", "for", "name", "from", "until", "week", "exceptions"});
  CalendarEntry calendar;
  calendar.location = node.member("location").name();
  calendar.kind = static_cast<CalendarKind>(node.member("for").word(calendarWords));
  calendar.name = node.member("name").name();
  calendar.startsOn = readDateOf(node.member("from"));
  calendar.endsOn = readDateOf(node.member("until"));
  calendar.week = readWeek(node.member("week"));
  const bool spans = calendar.startsOn != 0 && calendar.endsOn != 0;
  if (spans && calendar.endsOn < calendar.startsOn) node.member("until").refuse("lies before its start.");
  for (const FileNode& each : node.member("exceptions").elements()) {
    const ExceptionEntry& read = calendar.exceptions.emplace_back(readException(each));
    const bool inside = calendar.startsOn <= read.date && read.date <= calendar.endsOn;
    if (spans && read.date != 0 && !inside) each.member("date").refuse("lies outside the calendar.");
  }
  return calendar;
}

LengthEntry readLengthOf(const FileNode& node) {
  return node.textAs(
      readLength,
      "must be \"unlimited\", or a length as \"90 minutes\", \"8 hours\", \"7 days\", \"1 term\".");
}

LengthEntry readLengthOrNone(const FileNode& node) {
  return node.isGiven() ? readLengthOf(node) : LengthEntry{};
}

TypeRuleEntry readTypeRule(const FileNode& node) {
  node.expectMembers({"type", "book", "deliver", "pick_up", "longest"});
  TypeRuleEntry rule;
  rule.type = node.member("type").name();
  rule.mayBook = node.member("book").flagOr(true);
  rule.mayDeliver = node.member("deliver").flagOr(true);
  rule.mayPickUp = node.member("pick_up").flagOr(true);
  rule.longest = readLengthOrNone(node.member("longest"));
  return rule;
}

RoomRuleEntry readRoomRule(const FileNode& node) {
  node.expectMembers({"type", "deliver", "schedule", "longest"});
  RoomRuleEntry rule;
  rule.type = node.member("type").name();
  rule.mayDeliver = node.member("deliver").flagOr(true);
  rule.maySchedule = node.member("schedule").flagOr(true);
  rule.longest = readLengthOrNone(node.member("longest"));
  return rule;
}

/// The longest time is all that an entry says, and "unlimited" would overrule the room's type: it cannot be
/// left out.
SingleRoomEntry readSingleRoom(const FileNode& node) {
  node.expectMembers({"location", "number", "longest"});
  return {{node.member("location").name(), node.member("number").name()},
          readLengthOf(node.member("longest"))};
}

std::int64_t readLimit(const FileNode& node) {
  if (!node.isGiven() || node.isText("none")) return -1;
  return node.number("must be \"none\", or a whole number from 0 to 1000000000.");
}

LimitsEntry readLimits(const FileNode& node) {
  LimitsEntry limits;
  if (!node.isGiven()) return limits;
  node.expectMembers(
      {"bookings", "items", "equipment", "late_returns", "cancelled", "unclaimed", "fees_in_cents"});
  limits.bookings = readLimit(node.member("bookings"));
  limits.items = readLimit(node.member("items"));
  limits.equipment = readLimit(node.member("equipment"));
  limits.lateReturns = readLimit(node.member("late_returns"));
  limits.cancelled = readLimit(node.member("cancelled"));
  limits.unclaimed = readLimit(node.member("unclaimed"));
  limits.fees = readLimit(node.member("fees_in_cents"));
  return limits;
}

void readGroup(const FileNode& node, PolicyEntry& policy) {
  const FileNode group = node.member("group");
  policy.administrative = node.member("administrative").flagOr(false);
  if (!policy.administrative) {
    if (group.isGiven()) policy.group = group.name();
    if (!group.isGiven()) group.refuse("is missing, or \"administrative\": true in its place.");
  } else if (group.isGiven()) {
    group.refuse("an administrative policy has no group.");
  }
}

template <class Entry>
std::vector<Entry> readAll(const FileNode& list, Entry (*read)(const FileNode&)) {
  std::vector<Entry> entries;
  for (const FileNode& each : list.elements()) entries.push_back(read(each));
  return entries;
}

PolicyEntry readPolicy(const FileNode& node) {
  node.expectMembers({"location", "group", "administrative", "limits", "warning_minutes",
                      "early_charge_minutes", "locations", "withheld_locations", "equipment_types",
                      "group_types", "media_types", "room_types", "rooms"});
  PolicyEntry policy;
  policy.location = node.member("location").name();
  readGroup(node, policy);
  policy.limits = readLimits(node.member("limits"));
  policy.warningMinutes = node.member("warning_minutes").numberOr(0);
  policy.earlyChargeMinutes = node.member("early_charge_minutes").numberOr(60);
  // Without locations nothing at all could be booked, which nobody means who leaves the member out.
  if (!node.member("locations").isGiven()) node.member("locations").refuse("is missing.");
  policy.locations = readNames(node.member("locations"));
  policy.withheldLocations = readNames(node.member("withheld_locations"));
  policy.equipmentTypes = readAll(node.member("equipment_types"), readTypeRule);
  policy.groupTypes = readAll(node.member("group_types"), readTypeRule);
  policy.mediaTypes = readAll(node.member("media_types"), readTypeRule);
  policy.roomTypes = readAll(node.member("room_types"), readRoomRule);
  policy.rooms = readAll(node.member("rooms"), readSingleRoom);
  return policy;
}

}  // namespace

Rules readRulesText(std::string_view json, FileFaults& faults) {
  const FileValue value = readFileValue(json, faults);
  const FileNode file(&value, {}, faults);
  file.expectMembers({"room_types", "equipment_types", "group_types", "media_types", "room_detail_types",
                      "maintenance_types", "statuses", "note_types", "calendars", "policies"});
  Rules rules;
  rules.roomTypes = readAll(file.member("room_types"), readRoomType);
  rules.equipmentTypes = readAll(file.member("equipment_types"), readEquipmentType);
  rules.groupTypes = readAll(file.member("group_types"), readEquipmentType);
  rules.mediaTypes = readAll(file.member("media_types"), readMediaType);
  rules.roomDetailTypes = readAll(file.member("room_detail_types"), readPlainType);
  rules.maintenanceTypes = readAll(file.member("maintenance_types"), readPlainType);
  rules.statuses = readAll(file.member("statuses"), readStatus);
  rules.noteTypes = readAll(file.member("note_types"), readNoteType);
  rules.calendars = readAll(file.member("calendars"), readCalendar);
  rules.policies = readAll(file.member("policies"), readPolicy);
  return rules;
}

}  // namespace vantry::server
