#include "server/setup/starter_rules.h"

#include <stdexcept>

#include "server/setup/rules_file_text.h"

namespace vantry::server {

namespace {

constexpr std::string_view types = R"({
  "room_types": [{"name": "Classroom"}, {"name": "Meeting Room"}, {"name": "Storage", "storage": true}],
  "equipment_types": [{"name": "Camera"}, {"name": "Laptop"}, {"name": "Loudspeaker"}, {"name": "Projector"}],
  "group_types": [{"name": "Set"}],
  "media_types": [{"name": "Film", "equipment_types": []}, {"name": "Sound Recording", "equipment_types": []}],
  "room_detail_types": ["Seating"],
  "maintenance_types": ["Repair"]
})";

constexpr HoursEntry workingDay{.open = true, .opensAt = 8 * 60, .closesAt = 18 * 60};
constexpr std::array<HoursEntry, 7> week{HoursEntry{}, workingDay, workingDay,  workingDay,
                                         workingDay,   workingDay, HoursEntry{}};

}  // namespace

Rules starterTypes() {
  FileFaults faults;
  Rules rules = readRulesText(types, faults);
  if (faults.count() > 0) throw std::logic_error("the rules to begin with: " + faults.told().front());
  return rules;
}

std::vector<CalendarEntry> starterCalendars(const std::string& desk, int year) {
  std::vector<CalendarEntry> calendars;
  for (const CalendarKind kind : {CalendarKind::Delivery, CalendarKind::Room, CalendarKind::Pickup}) {
    for (const int each : {year, year + 1}) {
      calendars.push_back({.location = desk,
                           .kind = kind,
                           .name = std::to_string(each),
                           .startsOn = makeMoment(each, 1, 1),
                           .endsOn = makeMoment(each, 12, 31),
                           .week = week,
                           .exceptions = {}});
    }
  }
  return calendars;
}

PolicyEntry starterPolicy(const std::string& desk, const std::string& group,
                          const std::vector<std::string>& desks) {
  PolicyEntry policy;
  policy.location = desk;
  policy.administrative = group.empty();
  policy.group = group;
  policy.locations = desks;
  return policy;
}

}  // namespace vantry::server
