#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/desk/calendar_store.h"

namespace vantry::server {

// The rules of a library as a file names them: by names, without keys. Entries can be compared, so that
// a file can be compared with the store; `isSameThing` tells which entries are about one thing.
// The order of what lists hold does not count.

template <class Entry>
[[nodiscard]] bool holdSame(const std::vector<Entry>& a, const std::vector<Entry>& b) {
  return std::is_permutation(a.begin(), a.end(), b.begin(), b.end());
}

/// A type that has nothing but its name.
struct PlainTypeEntry {
  std::string name;
  bool operator==(const PlainTypeEntry&) const = default;
};

struct RoomTypeEntry {
  std::string name;
  bool storage = false;
  bool operator==(const RoomTypeEntry&) const = default;
};

struct EquipmentTypeEntry {
  std::string name;
  std::int64_t setupMinutes = 0;
  std::int64_t cleanupMinutes = 0;
  bool operator==(const EquipmentTypeEntry&) const = default;
};

struct MediaTypeEntry {
  std::string name;
  std::vector<std::string> equipmentTypes;  ///< that it needs, as the next
  std::vector<std::string> groupTypes;
  bool operator==(const MediaTypeEntry& other) const {
    return name == other.name && holdSame(equipmentTypes, other.equipmentTypes) &&
           holdSame(groupTypes, other.groupTypes);
  }
};

struct StatusEntry {
  std::string name;
  bool forRooms = false;
  std::int64_t priority = 0;
  int effect = 0;  ///< a StatusEffect
  bool operator==(const StatusEntry&) const = default;
};

struct NoteTypeEntry {
  std::string name;
  bool forRooms = false;
  int popupKind = 0;
  bool operator==(const NoteTypeEntry&) const = default;
};

/// The hours of a day, in minutes since midnight. A closed day has none.
struct HoursEntry {
  bool open = false;
  int opensAt = 0;
  int closesAt = 0;
  bool operator==(const HoursEntry&) const = default;
};

struct ExceptionEntry {
  Moment date = 0;
  HoursEntry hours;
  bool operator==(const ExceptionEntry&) const = default;
};

struct CalendarEntry {
  std::string location;
  CalendarKind kind = CalendarKind::Delivery;
  std::string name;
  Moment startsOn = 0;
  Moment endsOn = 0;                 ///< the last day
  std::array<HoursEntry, 7> week{};  ///< from Sunday
  std::vector<ExceptionEntry> exceptions;
  bool operator==(const CalendarEntry& other) const {
    return location == other.location && kind == other.kind && name == other.name &&
           startsOn == other.startsOn && endsOn == other.endsOn && week == other.week &&
           holdSame(exceptions, other.exceptions);
  }
};

/// The longest time for which something may be booked; unit U for no bound, and then a count of 0.
struct LengthEntry {
  std::int64_t count = 0;
  char unit = 'U';
  bool operator==(const LengthEntry&) const = default;
};

struct TypeRuleEntry {
  std::string type;
  bool mayBook = true;
  bool mayDeliver = true;
  bool mayPickUp = true;
  LengthEntry longest;
  bool operator==(const TypeRuleEntry&) const = default;
};

struct RoomRuleEntry {
  std::string type;
  bool mayDeliver = true;
  bool maySchedule = true;
  LengthEntry longest;
  bool operator==(const RoomRuleEntry&) const = default;
};

/// Rooms have no name that is theirs alone.
struct RoomPlace {
  std::string location;
  std::string number;
  bool operator==(const RoomPlace&) const = default;
};

/// A room's own longest time, in place of its type's.
struct SingleRoomEntry {
  RoomPlace room;
  LengthEntry longest;
  bool operator==(const SingleRoomEntry&) const = default;
};

/// -1 for no limit; fees in cents.
struct LimitsEntry {
  std::int64_t bookings = -1;
  std::int64_t items = -1;
  std::int64_t equipment = -1;
  std::int64_t lateReturns = -1;
  std::int64_t cancelled = -1;
  std::int64_t unclaimed = -1;
  std::int64_t fees = -1;
  bool operator==(const LimitsEntry&) const = default;
};

struct PolicyEntry {
  std::string location;
  bool administrative = false;
  std::string group;  ///< of patrons; empty for administrative bookings
  LimitsEntry limits;
  std::int64_t warningMinutes = 0;
  std::int64_t earlyChargeMinutes = 60;
  std::vector<std::string> locations;
  std::vector<std::string> withheldLocations;  ///< in the policy, and kept out by their security
  std::vector<TypeRuleEntry> equipmentTypes;
  std::vector<TypeRuleEntry> groupTypes;
  std::vector<TypeRuleEntry> mediaTypes;
  std::vector<RoomRuleEntry> roomTypes;
  std::vector<SingleRoomEntry> rooms;
  bool operator==(const PolicyEntry& other) const {
    return location == other.location && administrative == other.administrative && group == other.group &&
           limits == other.limits && warningMinutes == other.warningMinutes &&
           earlyChargeMinutes == other.earlyChargeMinutes && holdSame(locations, other.locations) &&
           holdSame(withheldLocations, other.withheldLocations) &&
           holdSame(equipmentTypes, other.equipmentTypes) && holdSame(groupTypes, other.groupTypes) &&
           holdSame(mediaTypes, other.mediaTypes) && holdSame(roomTypes, other.roomTypes) &&
           holdSame(rooms, other.rooms);
  }
};

struct Rules {
  std::vector<RoomTypeEntry> roomTypes;
  std::vector<EquipmentTypeEntry> equipmentTypes;
  std::vector<EquipmentTypeEntry> groupTypes;
  std::vector<MediaTypeEntry> mediaTypes;
  std::vector<PlainTypeEntry> roomDetailTypes;
  std::vector<PlainTypeEntry> maintenanceTypes;
  std::vector<StatusEntry> statuses;
  std::vector<NoteTypeEntry> noteTypes;
  std::vector<CalendarEntry> calendars;
  std::vector<PolicyEntry> policies;
};

template <class TypeEntry>
[[nodiscard]] bool isSameThing(const TypeEntry& a, const TypeEntry& b) {
  return a.name == b.name;
}
[[nodiscard]] inline bool isSameThing(const StatusEntry& a, const StatusEntry& b) {
  return a.forRooms == b.forRooms && a.name == b.name;
}
[[nodiscard]] inline bool isSameThing(const NoteTypeEntry& a, const NoteTypeEntry& b) {
  return a.forRooms == b.forRooms && a.name == b.name;
}
[[nodiscard]] inline bool isSameThing(const CalendarEntry& a, const CalendarEntry& b) {
  return a.location == b.location && a.kind == b.kind && a.name == b.name;
}
[[nodiscard]] inline bool isSameThing(const PolicyEntry& a, const PolicyEntry& b) {
  return a.location == b.location && a.administrative == b.administrative && a.group == b.group;
}

}  // namespace vantry::server
