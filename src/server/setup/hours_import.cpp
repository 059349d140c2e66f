#include "server/setup/hours_import.h"

#include <algorithm>
#include <map>

#include "server/base/user_error.h"
#include "server/setup/csv_table.h"
#include "server/setup/file_text.h"
#include "server/setup/rules_file_store.h"
#include "server/setup/rules_file_words.h"
#include "server/store/library_clock.h"

namespace vantry::server {

namespace {

constexpr Moment longestSpan = 3660 * day;

using DayStretches = std::map<Moment, std::vector<Stretch>>;

/// Cuts a stretch at each midnight.
void addByDay(DayStretches& days, Stretch stretch) {
  while (stretch.from < stretch.until) {
    const Moment midnight = startOfDay(stretch.from) + day;
    days[startOfDay(stretch.from)].push_back({stretch.from, std::min(stretch.until, midnight), stretch.line});
    stretch.from = midnight;
  }
}

/// What overlaps or touches becomes one.
std::vector<Stretch> merged(std::vector<Stretch> stretches) {
  std::ranges::sort(stretches, {}, &Stretch::from);
  std::vector<Stretch> whole;
  for (const Stretch& each : stretches) {
    if (whole.empty() || whole.back().until < each.from) {
      whole.push_back(each);
    } else {
      whole.back().until = std::max(whole.back().until, each.until);
    }
  }
  return whole;
}

std::vector<Stretch> without(const std::vector<Stretch>& stretches, const Stretch& closed) {
  std::vector<Stretch> rest;
  for (const Stretch& each : stretches) {
    const Stretch before{each.from, std::min(each.until, closed.from), each.line};
    const Stretch after{std::max(each.from, closed.until), each.until, each.line};
    if (before.from < before.until) rest.push_back(before);
    if (after.from < after.until) rest.push_back(after);
  }
  return rest;
}

std::string hoursTextOf(const Stretch& stretch) {
  const Moment midnight = startOfDay(stretch.from);
  return hoursText({.open = true,
                    .opensAt = static_cast<int>((stretch.from - midnight) / minute),
                    .closesAt = static_cast<int>((stretch.until - midnight) / minute)});
}

void tellSeveral(Moment date, const std::vector<Stretch>& open, FileFaults& faults) {
  std::string hours;
  for (const Stretch& each : open) {
    hours += (hours.empty() ? "" : " and ") + hoursTextOf(each);
    if (each.line != 0) hours += " (" + linePlace(each.line) + ")";
  }
  faults.add(dateText(date), "is open " + hours +
                                 ", and a calendar holds one time a day. --bridge-breaks takes the time from "
                                 "the first opening to the last closing.");
}

/// The times at which each day of the span is open, the first day first.
std::vector<std::vector<Stretch>> openByDay(const HoursImport& what, const HoursEvents& events) {
  DayStretches openings;
  DayStretches closings;
  for (const Stretch& each : events.open) addByDay(openings, each);
  for (const Stretch& each : events.closed) addByDay(closings, each);
  std::vector<std::vector<Stretch>> days;
  for (Moment date = what.from; date <= what.until; date += day) {
    std::vector<Stretch>& open = days.emplace_back(merged(openings[date]));
    for (const Stretch& each : closings[date]) open = without(open, each);
  }
  return days;
}

/// The hours of a day that begins at this moment.
HoursEntry hoursOf(Moment date, const std::vector<Stretch>& open) {
  if (open.empty()) return {};
  return {.open = true,
          .opensAt = static_cast<int>((open.front().from - date) / minute),
          .closesAt = static_cast<int>((open.back().until - date) / minute)};
}

void tellBridged(const std::vector<Moment>& days, std::vector<std::string>& leftOut) {
  if (days.empty()) return;
  leftOut.push_back("Days whose breaks are left out: " + std::to_string(days.size()) + ", the first " +
                    dateText(days.front()) + ".");
}

std::vector<HoursEntry> hoursByDay(const HoursImport& what, const HoursEvents& events, FileFaults& faults,
                                   std::vector<std::string>& leftOut) {
  std::vector<HoursEntry> hours;
  std::vector<Moment> bridged;
  Moment date = what.from;
  for (const std::vector<Stretch>& open : openByDay(what, events)) {
    if (open.size() > 1 && what.bridgesBreaks) bridged.push_back(date);
    if (open.size() > 1 && !what.bridgesBreaks) tellSeveral(date, open, faults);
    hours.push_back(hoursOf(date, open));
    date += day;
  }
  tellBridged(bridged, leftOut);
  return hours;
}

/// The hours that most of these days have; when as many are closed, those of the open ones.
HoursEntry usualHours(const std::vector<HoursEntry>& days) {
  HoursEntry usual;
  std::ptrdiff_t most = 0;
  for (const HoursEntry& each : days) {
    const std::ptrdiff_t count = std::ranges::count(days, each);
    if (count < most || (count == most && usual.open)) continue;
    most = count;
    usual = each;
  }
  return usual;
}

void checkSpan(const HoursImport& what) {
  if (what.until < what.from) throw UserError("The last day lies before the first.");
  if (what.until - what.from > longestSpan) throw UserError("The days are more than ten years.");
}

/// Faults of a file of rules name its entry, which here is the one calendar.
FileFaults namedFaults(const FileFaults& faults, const std::string& calendar) {
  constexpr std::string_view place = "calendars[0]: ";
  FileFaults named;
  for (const std::string& each : faults.told()) {
    const std::string_view fault = each;
    const std::size_t end = fault.find(": ");
    const bool isOwn = fault.starts_with(place);
    named.add(isOwn ? "calendar \"" + calendar + "\"" : std::string(fault.substr(0, end)),
              fault.substr(end + 2));
  }
  return named;
}

/// The library's time zone, once the location is known to be there.
std::string zoneFor(Database& database, const std::string& location) {
  std::string zone;
  bool isThere = false;
  database.read([&](Connection& db) {
    const std::vector<std::string> known = readKnownPlaces(db).locations;
    isThere = std::ranges::find(known, location) != known.end();
    zone = timeZoneOf(db);
  });
  if (!isThere) throw UserError("There is no location named \"" + location + "\".");
  return zone;
}

}  // namespace

CalendarEntry calendarOf(const HoursImport& what, const HoursEvents& events, FileFaults& faults,
                         std::vector<std::string>& leftOut) {
  CalendarEntry calendar{what.location, what.kind, what.name, what.from, what.until, {}, {}};
  const std::vector<HoursEntry> hours = hoursByDay(what, events, faults, leftOut);
  for (std::size_t first = 0; first < std::min<std::size_t>(hours.size(), 7); ++first) {
    std::vector<HoursEntry> sameDays;
    for (std::size_t at = first; at < hours.size(); at += 7) sameDays.push_back(hours[at]);
    const Moment date = what.from + static_cast<Moment>(first) * day;
    calendar.week.at(static_cast<std::size_t>(weekdayOf(date))) = usualHours(sameDays);
  }
  for (std::size_t at = 0; at < hours.size(); ++at) {
    const Moment date = what.from + static_cast<Moment>(at) * day;
    const HoursEntry& usual = calendar.week.at(static_cast<std::size_t>(weekdayOf(date)));
    if (hours[at] != usual) calendar.exceptions.push_back({date, hours[at]});
  }
  return calendar;
}

HoursReport importHours(Database& database, const std::string& path, const HoursImport& what, RulesUse use,
                        Moment now) {
  checkSpan(what);
  HoursReading how{{what.from, what.until + day, 0}, what.closedWords, zoneFor(database, what.location)};
  FileFaults faults;
  const HoursEvents events = readHoursEvents(wholeFile(path), how, faults);
  if (events.open.empty() && faults.count() == 0)
    throw UserError("Nothing was taken. The file tells no opening hours from " + dateText(what.from) +
                    " to " + dateText(what.until) + ".");
  HoursReport report{{}, {}, events.leftOut};
  report.calendar = calendarOf(what, events, faults, report.leftOut);
  Rules rules;
  rules.calendars.push_back(report.calendar);
  report.rules = takeReadRules(database, {path, rules, faults}, use, now);
  report.rules.faults = namedFaults(report.rules.faults, what.name);
  return report;
}

}  // namespace vantry::server
