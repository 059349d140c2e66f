#include "server/setup/hours_import.h"

#include <algorithm>
#include <map>

#include "server/base/user_error.h"
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
    days[startOfDay(stretch.from)].push_back({stretch.from, std::min(stretch.until, midnight)});
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
    const Stretch before{each.from, std::min(each.until, closed.from)};
    const Stretch after{std::max(each.from, closed.until), each.until};
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
  for (const Stretch& each : open) hours += (hours.empty() ? "" : " and ") + hoursTextOf(each);
  faults.add(dateText(date), "is open " + hours + ", and a calendar holds one time a day.");
}

/// The hours of each day of the span, the first day first.
std::vector<HoursEntry> hoursByDay(const HoursImport& what, const HoursEvents& events, FileFaults& faults) {
  DayStretches openings;
  DayStretches closings;
  for (const Stretch& each : events.open) addByDay(openings, each);
  for (const Stretch& each : events.closed) addByDay(closings, each);
  std::vector<HoursEntry> hours;
  for (Moment date = what.from; date <= what.until; date += day) {
    std::vector<Stretch> open = merged(openings[date]);
    for (const Stretch& each : closings[date]) open = without(open, each);
    HoursEntry& entry = hours.emplace_back();
    if (open.size() > 1) tellSeveral(date, open, faults);
    if (open.size() != 1) continue;
    entry.open = true;
    entry.opensAt = static_cast<int>((open[0].from - date) / minute);
    entry.closesAt = static_cast<int>((open[0].until - date) / minute);
  }
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

CalendarEntry calendarOf(const HoursImport& what, const HoursEvents& events, FileFaults& faults) {
  CalendarEntry calendar{what.location, what.kind, what.name, what.from, what.until, {}, {}};
  const std::vector<HoursEntry> hours = hoursByDay(what, events, faults);
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
  HoursReading how{{what.from, what.until + day}, what.closedWords, zoneFor(database, what.location)};
  FileFaults faults;
  const HoursEvents events = readHoursEvents(wholeFile(path), how, faults);
  if (events.open.empty() && faults.count() == 0)
    throw UserError("Nothing was taken. The file tells no opening hours from " + dateText(what.from) +
                    " to " + dateText(what.until) + ".");
  HoursReport report{{}, calendarOf(what, events, faults), events.leftOut};
  Rules rules;
  rules.calendars.push_back(report.calendar);
  report.rules = takeReadRules(database, {path, rules, faults}, use, now);
  report.rules.faults = namedFaults(report.rules.faults, what.name);
  return report;
}

}  // namespace vantry::server
