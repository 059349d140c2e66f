#include "server/setup/rules_file_check.h"

#include <algorithm>

namespace vantry::server {

namespace {

using Names = std::vector<std::string>;

constexpr const char* twice = " stands there twice.";

bool holds(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string quoted(const std::string& name) {
  return "\"" + name + "\"";
}

std::string roomText(const RoomPlace& room) {
  return "room " + quoted(room.number) + " at " + quoted(room.location);
}

std::string at(std::string_view list, std::size_t number) {
  return std::string(list) + "[" + std::to_string(number) + "]";
}

template <class Entry>
using ListOf = std::vector<Entry> Rules::*;

template <class Entry>
const Entry* findThing(const std::vector<Entry>& entries, const Entry& wanted) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const Entry& each) { return isSameThing(each, wanted); });
  return found == entries.end() ? nullptr : &*found;
}

template <class Entry>
Names namesOf(const std::vector<Entry>& some, const std::vector<Entry>& others) {
  Names names;
  for (const Entry& each : some) names.push_back(each.name);
  for (const Entry& each : others) names.push_back(each.name);
  return names;
}

/// Whether both its dates could be read.
bool isWhole(const CalendarEntry& calendar) {
  return calendar.startsOn != 0 && calendar.endsOn != 0;
}

/// The names that a file may use: those that stand, and those that it adds itself.
struct Usable {
  const KnownPlaces& places;
  Names equipmentTypes;
  Names groupTypes;
  Names mediaTypes;
  Names roomTypes;
};

class Checker {
 public:
  Checker(const Rules& wanted, const Rules& standing, const KnownPlaces& known, FileFaults& faults)
      : wanted_(wanted),
        standing_(standing),
        faults_(faults),
        usable_{known, namesOf(wanted.equipmentTypes, standing.equipmentTypes),
                namesOf(wanted.groupTypes, standing.groupTypes),
                namesOf(wanted.mediaTypes, standing.mediaTypes),
                namesOf(wanted.roomTypes, standing.roomTypes)} {}

  void run() {
    checkEntries("room_types", &Rules::roomTypes);
    checkEntries("equipment_types", &Rules::equipmentTypes);
    checkEntries("group_types", &Rules::groupTypes);
    checkEntries("media_types", &Rules::mediaTypes);
    checkEntries("room_detail_types", &Rules::roomDetailTypes);
    checkEntries("maintenance_types", &Rules::maintenanceTypes);
    checkEntries("statuses", &Rules::statuses);
    checkEntries("note_types", &Rules::noteTypes);
    checkEntries("calendars", &Rules::calendars);
    for (std::size_t number = 0; number < wanted_.mediaTypes.size(); ++number) checkMediaType(number);
    for (std::size_t number = 0; number < wanted_.statuses.size(); ++number) checkStatus(number);
    for (std::size_t number = 0; number < wanted_.calendars.size(); ++number) checkCalendar(number);
    for (std::size_t number = 0; number < wanted_.policies.size(); ++number) checkPolicy(number);
  }

 private:
  template <class Entry>
  void checkEntries(std::string_view list, ListOf<Entry> entries) {
    const std::vector<Entry>& wanted = wanted_.*entries;
    for (auto entry = wanted.begin(); entry != wanted.end(); ++entry) {
      if (entry->name.empty()) continue;
      const std::string place = at(list, static_cast<std::size_t>(entry - wanted.begin()));
      const auto same = [&](const Entry& each) { return isSameThing(each, *entry); };
      if (std::any_of(wanted.begin(), entry, same)) faults_.add(place, quoted(entry->name) + twice);
      const auto& standing = standing_.*entries;
      if (std::count_if(standing.begin(), standing.end(), same) < 2) continue;
      faults_.add(place, "the database has " + quoted(entry->name) +
                             " more than once, and only one may be named so.");
    }
  }

  /// A name that could not be read is empty, and was told.
  void checkName(const std::string& place, const std::string& name, const Names& known,
                 std::string_view what) {
    if (name.empty() || holds(known, name)) return;
    faults_.add(place, "there is no " + std::string(what) + " " + quoted(name) + ".");
  }

  /// Where names stand, and what they may be.
  struct NameList {
    std::string place;
    std::string_view what;
    const Names& known;
    std::string_view member;  ///< of each element, behind its place
  };

  void checkNames(const NameList& list, const Names& names) {
    for (std::size_t number = 0; number < names.size(); ++number) {
      const std::string place = at(list.place, number) + std::string(list.member);
      const auto own = names.begin() + static_cast<std::ptrdiff_t>(number);
      checkName(place, *own, list.known, list.what);
      if (!own->empty() && std::find(names.begin(), own, *own) != own)
        faults_.add(place, quoted(*own) + twice);
    }
  }

  void checkMediaType(std::size_t number) {
    const MediaTypeEntry& type = wanted_.mediaTypes[number];
    const std::string place = at("media_types", number);
    checkNames({place + ".equipment_types", "equipment type", usable_.equipmentTypes, {}},
               type.equipmentTypes);
    checkNames({place + ".group_types", "group type", usable_.groupTypes, {}}, type.groupTypes);
  }

  /// A desk shows the status of the lowest number, so two of one number would leave it to chance.
  void checkStatus(std::size_t number) {
    const StatusEntry& status = wanted_.statuses[number];
    const auto rivals = [&](const StatusEntry& each) {
      return each.forRooms == status.forRooms && each.priority == status.priority &&
             each.name != status.name && !each.name.empty() && !status.name.empty();
    };
    const auto tell = [&](const StatusEntry& rival) {
      faults_.add(at("statuses", number) + ".priority", quoted(rival.name) + " has this priority.");
    };
    const auto own = wanted_.statuses.begin() + static_cast<std::ptrdiff_t>(number);
    const auto before = std::find_if(wanted_.statuses.begin(), own, rivals);
    if (before != own) return tell(*before);
    for (const StatusEntry& each : standing_.statuses) {
      if (rivals(each) && findThing(wanted_.statuses, each) == nullptr) return tell(each);
    }
  }

  void checkCalendar(std::size_t number) {
    const CalendarEntry& calendar = wanted_.calendars[number];
    const std::string place = at("calendars", number);
    checkName(place + ".location", calendar.location, usable_.places.locations, "location");
    for (auto day = calendar.exceptions.begin(); day != calendar.exceptions.end(); ++day) {
      const bool doubled = std::any_of(calendar.exceptions.begin(), day,
                                       [&](const ExceptionEntry& each) { return each.date == day->date; });
      if (!doubled || day->date == 0) continue;
      const auto place_ = static_cast<std::size_t>(day - calendar.exceptions.begin());
      faults_.add(at(place + ".exceptions", place_), quoted(dateText(day->date)) + twice);
    }
    if (const CalendarEntry* other = overlappedBy(number)) {
      faults_.add(place, "it overlaps " + quoted(other->name) + ", for the same at the same location.");
    }
  }

  /// A calendar before it in the file, or one that stands and that the file leaves as it is.
  const CalendarEntry* overlappedBy(std::size_t number) const {
    const CalendarEntry& calendar = wanted_.calendars[number];
    const auto overlaps = [&](const CalendarEntry& each) {
      return isWhole(each) && isWhole(calendar) && !isSameThing(each, calendar) &&
             each.location == calendar.location && each.kind == calendar.kind &&
             each.startsOn <= calendar.endsOn && calendar.startsOn <= each.endsOn;
    };
    for (std::size_t before = 0; before < number; ++before) {
      if (overlaps(wanted_.calendars[before])) return &wanted_.calendars[before];
    }
    for (const CalendarEntry& each : standing_.calendars) {
      if (overlaps(each) && findThing(wanted_.calendars, each) == nullptr) return &each;
    }
    return nullptr;
  }

  void checkPolicy(std::size_t number) {
    const PolicyEntry& policy = wanted_.policies[number];
    const std::string place = at("policies", number);
    checkName(place + ".location", policy.location, usable_.places.locations, "location");
    checkName(place + ".group", policy.group, usable_.places.groups, "patron group");
    const Names& locations = usable_.places.locations;
    checkNames({place + ".locations", "location", locations, {}}, policy.locations);
    checkNames({place + ".withheld_locations", "location", locations, {}}, policy.withheldLocations);
    for (std::size_t each = 0; each < policy.withheldLocations.size(); ++each) {
      if (!holds(policy.locations, policy.withheldLocations[each])) continue;
      faults_.add(at(place + ".withheld_locations", each), "stands in \"locations\" as well.");
    }
    checkRulesOf({place + ".equipment_types", "equipment type", usable_.equipmentTypes, ".type"},
                 policy.equipmentTypes);
    checkRulesOf({place + ".group_types", "group type", usable_.groupTypes, ".type"}, policy.groupTypes);
    checkRulesOf({place + ".media_types", "media type", usable_.mediaTypes, ".type"}, policy.mediaTypes);
    checkRulesOf({place + ".room_types", "room type", usable_.roomTypes, ".type"}, policy.roomTypes);
    checkRooms(place + ".rooms", policy.rooms);
    tellDoubledPolicy(number);
  }

  void checkRooms(std::string_view list, const std::vector<SingleRoomEntry>& entries) {
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
      const std::string place = at(list, static_cast<std::size_t>(entry - entries.begin()));
      checkRoom(place, entry->room);
      const auto same = [&](const SingleRoomEntry& each) { return each.room == entry->room; };
      const bool whole = !entry->room.location.empty() && !entry->room.number.empty();
      if (whole && std::any_of(entries.begin(), entry, same)) {
        faults_.add(place, roomText(entry->room) + twice);
      }
    }
  }

  void checkRoom(const std::string& place, const RoomPlace& room) {
    const KnownPlaces& places = usable_.places;
    checkName(place + ".location", room.location, places.locations, "location");
    if (room.number.empty() || !holds(places.locations, room.location)) return;
    const auto count = std::count(places.rooms.begin(), places.rooms.end(), room);
    if (count == 0) faults_.add(place, "there is no " + roomText(room) + ".");
    if (count > 1) faults_.add(place, "there is more than one " + roomText(room) + ".");
  }

  void tellDoubledPolicy(std::size_t number) {
    const PolicyEntry& policy = wanted_.policies[number];
    if (policy.location.empty() || (policy.group.empty() && !policy.administrative)) return;
    for (std::size_t before = 0; before < number; ++before) {
      if (!isSameThing(wanted_.policies[before], policy)) continue;
      faults_.add(at("policies", number),
                  "it is for the same location and group as " + at("policies", before) + ".");
      return;
    }
  }

  template <class Rule>
  void checkRulesOf(const NameList& list, const std::vector<Rule>& rules) {
    Names names;
    for (const Rule& rule : rules) names.push_back(rule.type);
    checkNames(list, names);
  }

  const Rules& wanted_;
  const Rules& standing_;
  FileFaults& faults_;
  Usable usable_;
};

template <class Entry>
void planKind(std::string_view kind, ListOf<Entry> list, const Rules& wanted, const Rules& standing,
              RulesPlan& plan) {
  KindCounts counts{.kind = kind};
  for (const Entry& each : wanted.*list) {
    const Entry* found = findThing(standing.*list, each);
    if (found == nullptr) {
      (plan.added.*list).push_back(each);
      ++counts.added;
    } else if (*found == each) {
      ++counts.same;
    } else {
      (plan.changed.*list).push_back(each);
      ++counts.changed;
    }
  }
  if (!(wanted.*list).empty()) plan.counts.push_back(counts);
}

}  // namespace

void checkRules(const Rules& wanted, const Rules& standing, const KnownPlaces& known, FileFaults& faults) {
  Checker(wanted, standing, known, faults).run();
}

RulesPlan planRules(const Rules& wanted, const Rules& standing) {
  RulesPlan plan;
  planKind("Room types", &Rules::roomTypes, wanted, standing, plan);
  planKind("Equipment types", &Rules::equipmentTypes, wanted, standing, plan);
  planKind("Group types", &Rules::groupTypes, wanted, standing, plan);
  planKind("Media types", &Rules::mediaTypes, wanted, standing, plan);
  planKind("Room detail types", &Rules::roomDetailTypes, wanted, standing, plan);
  planKind("Maintenance types", &Rules::maintenanceTypes, wanted, standing, plan);
  planKind("Statuses", &Rules::statuses, wanted, standing, plan);
  planKind("Note types", &Rules::noteTypes, wanted, standing, plan);
  planKind("Calendars", &Rules::calendars, wanted, standing, plan);
  planKind("Policies", &Rules::policies, wanted, standing, plan);
  return plan;
}

}  // namespace vantry::server
