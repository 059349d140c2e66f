// From plain values to the text of a file of rules.

#include <algorithm>

#include <nlohmann/json.hpp>

#include "server/setup/rules_file_text.h"
#include "server/setup/rules_file_words.h"

namespace vantry::server {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t widest = 160;

Json asJson(const PlainTypeEntry& type) {
  return type.name;
}

Json asJson(const RoomTypeEntry& type) {
  return {{"name", type.name}, {"storage", type.storage}};
}

Json asJson(const EquipmentTypeEntry& type) {
  return {
      {"name", type.name}, {"setup_minutes", type.setupMinutes}, {"cleanup_minutes", type.cleanupMinutes}};
}

Json asJson(const MediaTypeEntry& type) {
  Json json{{"name", type.name}, {"equipment_types", type.equipmentTypes}};
  if (!type.groupTypes.empty()) json["group_types"] = type.groupTypes;
  return json;
}

Json asJson(const StatusEntry& status) {
  return {{"for", wordFor(ownerWords, status.forRooms)},
          {"name", status.name},
          {"priority", status.priority},
          {"effect", wordFor(effectWords, status.effect)}};
}

Json asJson(const NoteTypeEntry& type) {
  return {{"for", wordFor(ownerWords, type.forRooms)},
          {"name", type.name},
          {"popup", wordFor(popupWords(type.forRooms), type.popupKind)}};
}

Json asJson(const ExceptionEntry& exception) {
  return {{"date", dateText(exception.date)}, {"hours", hoursText(exception.hours)}};
}

Json asJson(const TypeRuleEntry& rule) {
  return {{"type", rule.type},
          {"book", rule.mayBook},
          {"deliver", rule.mayDeliver},
          {"pick_up", rule.mayPickUp},
          {"longest", lengthText(rule.longest)}};
}

Json asJson(const RoomRuleEntry& rule) {
  return {{"type", rule.type},
          {"deliver", rule.mayDeliver},
          {"schedule", rule.maySchedule},
          {"longest", lengthText(rule.longest)}};
}

Json asJson(const SingleRoomEntry& entry) {
  return {{"location", entry.room.location},
          {"number", entry.room.number},
          {"longest", lengthText(entry.longest)}};
}

Json limitJson(std::int64_t limit) {
  return limit < 0 ? Json("none") : Json(limit);
}

Json asJson(const LimitsEntry& limits) {
  return {{"bookings", limitJson(limits.bookings)},   {"items", limitJson(limits.items)},
          {"equipment", limitJson(limits.equipment)}, {"late_returns", limitJson(limits.lateReturns)},
          {"cancelled", limitJson(limits.cancelled)}, {"unclaimed", limitJson(limits.unclaimed)},
          {"fees_in_cents", limitJson(limits.fees)}};
}

Json asJson(const CalendarEntry& calendar);
Json asJson(const PolicyEntry& policy);

template <class Entry>
Json listOf(const std::vector<Entry>& entries) {
  Json list = Json::array();
  for (const Entry& each : entries) list.push_back(asJson(each));
  return list;
}

Json asJson(const CalendarEntry& calendar) {
  Json week = Json::object();
  for (std::size_t day = 0; day < weekdayWords.size(); ++day) {
    week[std::string(weekdayWords.at(day))] = hoursText(calendar.week.at(day));
  }
  return {{"location", calendar.location},
          {"for", wordFor(calendarWords, static_cast<int>(calendar.kind))},
          {"name", calendar.name},
          {"from", dateText(calendar.startsOn)},
          {"until", dateText(calendar.endsOn)},
          {"week", week},
          {"exceptions", listOf(calendar.exceptions)}};
}

Json asJson(const PolicyEntry& policy) {
  Json json{{"location", policy.location}};
  if (policy.administrative) {
    json["administrative"] = true;
  } else {
    json["group"] = policy.group;
  }
  json["limits"] = asJson(policy.limits);
  json["warning_minutes"] = policy.warningMinutes;
  json["early_charge_minutes"] = policy.earlyChargeMinutes;
  json["locations"] = policy.locations;
  json["withheld_locations"] = policy.withheldLocations;
  json["equipment_types"] = listOf(policy.equipmentTypes);
  json["group_types"] = listOf(policy.groupTypes);
  json["media_types"] = listOf(policy.mediaTypes);
  json["room_types"] = listOf(policy.roomTypes);
  json["rooms"] = listOf(policy.rooms);
  return json;
}

/// A damaged name is written with replacement characters, and is then no longer known when it is read.
std::string plainText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// What is short and holds nothing but values and lists of them stands on one line.
bool fitsOneLine(const Json& value, std::size_t indent) {
  for (const Json& part : value) {
    const bool plain =
        std::none_of(part.begin(), part.end(), [](const Json& each) { return each.is_structured(); });
    if (part.is_object() || (part.is_array() && !plain)) return false;
  }
  return indent + plainText(value).size() + 2 * value.size() < widest;
}

void append(std::string& to, const Json& value, std::size_t indent) {
  if (!value.is_structured() || value.empty()) {
    to += plainText(value);
    return;
  }
  const bool oneLine = fitsOneLine(value, indent);
  const std::string apart = oneLine ? std::string(" ") : "\n" + std::string(indent + 2, ' ');
  to += value.is_array() ? '[' : '{';
  bool first = true;
  for (const auto& [name, part] : value.items()) {
    if (!first) to += ",";
    if (!first || !oneLine) to += apart;
    if (value.is_object()) to += plainText(name) + ": ";
    append(to, part, indent + 2);
    first = false;
  }
  if (!oneLine) to += "\n" + std::string(indent, ' ');
  to += value.is_array() ? ']' : '}';
}

}  // namespace

std::string rulesText(const Rules& rules) {
  Json json{{"room_types", listOf(rules.roomTypes)},
            {"equipment_types", listOf(rules.equipmentTypes)},
            {"group_types", listOf(rules.groupTypes)},
            {"media_types", listOf(rules.mediaTypes)},
            {"room_detail_types", listOf(rules.roomDetailTypes)},
            {"maintenance_types", listOf(rules.maintenanceTypes)},
            {"statuses", listOf(rules.statuses)},
            {"note_types", listOf(rules.noteTypes)},
            {"calendars", listOf(rules.calendars)},
            {"policies", listOf(rules.policies)}};
  std::string text;
  append(text, json, 0);
  return text + "\n";
}

}  // namespace vantry::server
