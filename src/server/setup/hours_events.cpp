#include "server/setup/hours_events.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>

#include <libical/ical.h>

#include "server/base/catalogue_text.h"
#include "server/base/user_error.h"
#include "server/setup/csv_table.h"

namespace vantry::server {

namespace {

constexpr int mostRecurrences = 1000;  // of one event within the span
constexpr int mostSteps = 100'000;     // of one rule, from its start on
constexpr std::size_t mostEvents = 20'000;

struct FreeIcal {
  void operator()(icalcomponent* component) const { icalcomponent_free(component); }
  void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};
using Document = std::unique_ptr<icalcomponent, FreeIcal>;

std::string_view viewOf(const char* text) {
  return text == nullptr ? std::string_view() : std::string_view(text);
}

std::vector<icalcomponent*> componentsOf(icalcomponent* parent, icalcomponent_kind kind) {
  std::vector<icalcomponent*> components;
  for (icalcomponent* each = icalcomponent_get_first_component(parent, kind); each != nullptr;
       each = icalcomponent_get_next_component(parent, kind))
    components.push_back(each);
  return components;
}

std::vector<icalproperty*> propertiesOf(icalcomponent* component, icalproperty_kind kind) {
  std::vector<icalproperty*> properties;
  for (icalproperty* each = icalcomponent_get_first_property(component, kind); each != nullptr;
       each = icalcomponent_get_next_property(component, kind))
    properties.push_back(each);
  return properties;
}

struct Event {
  icalcomponent* component = nullptr;
  std::size_t line = 0;
};

/// The lines at which events begin.
std::vector<std::size_t> eventLines(std::string_view text) {
  constexpr std::string_view begin = "BEGIN:VEVENT";
  std::vector<std::size_t> lines;
  for (std::size_t line = 1; !text.empty(); ++line) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (text.starts_with(begin) &&
        text.substr(begin.size(), end - begin.size()).find_first_not_of(" \r") == std::string_view::npos)
      lines.push_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// In the order of the file.
std::vector<Event> eventsOf(icalcomponent* root, std::string_view text) {
  std::vector<icalcomponent*> events = componentsOf(root, ICAL_VEVENT_COMPONENT);
  for (icalcomponent* calendar : componentsOf(root, ICAL_VCALENDAR_COMPONENT)) {
    const std::vector<icalcomponent*> more = componentsOf(calendar, ICAL_VEVENT_COMPONENT);
    events.insert(events.end(), more.begin(), more.end());
  }
  const std::vector<std::size_t> lines = eventLines(text);
  std::vector<Event> placed;
  for (icalcomponent* event : events)
    // A file that hides events in other components has more lines than events.
    placed.push_back({event, lines.size() == events.size() ? lines[placed.size()] : 0});
  return placed;
}

/// A moment that is the same in all zones.
std::string momentKey(icalcomponent* event, icaltimetype time) {
  const icaltimetype common = time.is_date || icaltime_is_utc(time) || time.zone == nullptr
                                  ? time
                                  : icaltime_convert_to_zone(time, icaltimezone_get_utc_timezone());
  std::array<char, 32> text{};
  const int size = std::snprintf(text.data(), text.size(), "%04d%02d%02d%02d%02d", common.year, common.month,
                                 common.day, common.is_date ? 99 : common.hour, common.minute);
  return std::string(viewOf(icalcomponent_get_uid(event))) + "\n" +
         std::string(text.data(), static_cast<std::size_t>(std::max(size, 0)));
}

/// The events of one document.
class EventReader {
 public:
  EventReader(const HoursReading& how, FileFaults& faults) : how_(how), faults_(faults) {
    if (how.zone.empty()) return;
    zone_ = icaltimezone_get_builtin_timezone(how.zone.c_str());
    if (zone_ == nullptr) throw UserError("There is no time zone \"" + how.zone + "\".");
  }

  HoursEvents read(const std::vector<Event>& events) {
    for (const auto& [event, line] : events) {
      icalproperty* changes = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
      if (changes != nullptr)
        changed_.insert(momentKey(event, icalproperty_get_datetime_with_component(changes, event)));
    }
    for (const auto& [event, line] : events) {
      line_ = line;
      readEvent(event);
    }
    return std::move(found_);
  }

 private:
  static bool changesOne(icalcomponent* event) {
    return icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
  }

  void fault(icalcomponent* event, std::string_view sentence) {
    faults_.add((line_ == 0 ? "" : linePlace(line_) + ", ") + nameOf(event), sentence);
  }

  /// "Late night" from 2026-11-24
  static std::string nameOf(icalcomponent* event) {
    const icaltimetype start = icalcomponent_get_dtstart(event);
    const std::string_view summary = viewOf(icalcomponent_get_summary(event));
    const std::string name = "\"" + std::string(summary.empty() ? "no summary" : summary) + "\"";
    return icaltime_is_null_time(start)
               ? name
               : name + " from " + dateText(makeMoment(start.year, start.month, start.day));
  }

  void readEvent(icalcomponent* event) {
    if (icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED) return;
    if (!isSound(event)) return;
    event_ = event;
    start_ = icalcomponent_get_dtstart(event);
    length_ = lengthOf(event);
    saysClosed_ = hasClosedWord(event);
    if (length_ <= 0) return;
    recurrences_ = 0;
    // The same moment may be told by a rule and by a date.
    seen_.clear();
    take(start_);
    for (icalproperty* rule : propertiesOf(event, ICAL_RRULE_PROPERTY))
      takeRule(icalproperty_get_rrule(rule));
    for (icalproperty* date : propertiesOf(event, ICAL_RDATE_PROPERTY)) takeDate(date);
  }

  bool isSound(icalcomponent* event) {
    constexpr std::array telling{"DTSTART", "DTEND", "DURATION", "RRULE", "RDATE", "EXDATE", "RECURRENCE-ID"};
    for (icalproperty* error : propertiesOf(event, ICAL_XLICERROR_PROPERTY)) {
      const std::string_view text = viewOf(icalproperty_get_xlicerror(error));
      for (const std::string_view each : telling) {
        if (text.find(std::string(each) + " property") == std::string_view::npos) continue;
        fault(event, "its " + std::string(each) + " cannot be read.");
        return false;
      }
    }
    icalproperty* start = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
    if (start == nullptr || icaltime_is_null_time(icalcomponent_get_dtstart(event))) {
      fault(event, "it has no start.");
      return false;
    }
    if (icalproperty_get_first_parameter(start, ICAL_TZID_PARAMETER) != nullptr &&
        icalcomponent_get_dtstart(event).zone == nullptr) {
      fault(event, "its time zone is not known.");
      return false;
    }
    icalproperty* changes = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
    if (changes != nullptr && icalproperty_get_first_parameter(changes, ICAL_RANGE_PARAMETER) != nullptr) {
      fault(event, "it changes all later recurrences as well, which cannot be taken.");
      return false;
    }
    return true;
  }

  static Moment plainMoment(const icaltimetype& time) {
    return makeMoment(time.year, time.month, time.day, time.is_date ? 0 : time.hour,
                      time.is_date ? 0 : time.minute);
  }

  /// An event of whole days that tells no end is over with its day.
  static Moment lengthOf(icalcomponent* event) {
    const icaltimetype start = icalcomponent_get_dtstart(event);
    const icaltimetype end = icalcomponent_get_dtend(event);
    if (icaltime_is_null_time(end)) return start.is_date ? day : 0;
    const icaltimetype alike = start.zone == nullptr || end.zone == nullptr || start.is_date
                                   ? end
                                   : icaltime_convert_to_zone(end, const_cast<icaltimezone*>(start.zone));
    const Moment length = plainMoment(alike) - plainMoment(start);
    return start.is_date && length == 0 ? day : length;
  }

  bool hasClosedWord(icalcomponent* event) const {
    const std::string summary = " " + catalogueKey(viewOf(icalcomponent_get_summary(event))) + " ";
    return std::ranges::any_of(how_.closedWords, [&](const std::string& word) {
      return summary.find(" " + catalogueKey(word) + " ") != std::string::npos;
    });
  }

  void takeRule(const icalrecurrencetype& rule) {
    const std::unique_ptr<icalrecur_iterator, FreeIcal> iterator(icalrecur_iterator_new(rule, start_));
    if (iterator == nullptr) return fault(event_, "its RRULE cannot be read.");
    int steps = 0;
    for (icaltimetype next = icalrecur_iterator_next(iterator.get()); !icaltime_is_null_time(next);
         next = icalrecur_iterator_next(iterator.get())) {
      next.zone = start_.zone;
      if (wallMoment(next) >= how_.span.until) return;
      if (++steps > mostSteps) return fault(event_, "it recurs too often to be opening hours.");
      if (!take(next)) return;
    }
  }

  void takeDate(icalproperty* property) {
    const icaldatetimeperiodtype date = icalproperty_get_rdate(property);
    if (!icalperiodtype_is_null_period(date.period))
      return fault(event_, "its RDATE is a period, which cannot be taken.");
    icaltimetype time = icalproperty_get_datetime_with_component(property, event_);
    if (time.zone == nullptr) time.zone = start_.zone;
    take(time);
  }

  /// False when there are too many.
  bool take(icaltimetype time) {
    const std::string key = momentKey(event_, time);
    if (!seen_.insert(key).second) return true;
    if (!changesOne(event_) && changed_.contains(key)) return true;
    if (icalproperty_recurrence_is_excluded(event_, &start_, &time)) return true;
    const Moment from = wallMoment(time);
    if (from >= how_.span.until || from + length_ <= how_.span.from) return true;
    if (++recurrences_ > mostRecurrences) {
      fault(event_, "it recurs more than " + std::to_string(mostRecurrences) + " times in these days.");
      return false;
    }
    keep({std::max(from, how_.span.from), std::min(from + length_, how_.span.until), line_},
         time.is_date != 0);
    return true;
  }

  void keep(const Stretch& stretch, bool ofWholeDays) {
    if (saysClosed_) {
      found_.closed.push_back(stretch);
    } else if (!ofWholeDays) {
      found_.open.push_back(stretch);
    } else if (recurrences_ == 1) {
      found_.leftOut.push_back(nameOf(event_) +
                               " is of whole days and does not say that it closes. It is left out.");
    }
  }

  Moment wallMoment(const icaltimetype& time) const {
    const bool isElsewhere = !time.is_date && time.zone != nullptr && zone_ != nullptr;
    return plainMoment(isElsewhere ? icaltime_convert_to_zone(time, zone_) : time);
  }

  const HoursReading& how_;
  FileFaults& faults_;
  icaltimezone* zone_ = nullptr;
  HoursEvents found_;
  std::set<std::string> changed_;  ///< recurrences that another event takes the place of

  // Of the event that is read:
  std::size_t line_ = 0;
  icalcomponent* event_ = nullptr;
  icaltimetype start_{};
  Moment length_ = 0;
  bool saysClosed_ = false;
  int recurrences_ = 0;
  std::set<std::string> seen_;
};

/// Half a file may still be read as a calendar, and nobody would see what is missing.
void checkWhole(std::string_view text) {
  constexpr std::string_view begin = "BEGIN:VCALENDAR";
  constexpr std::string_view end = "END:VCALENDAR";
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  while (!text.empty() && std::string_view(" \r\n\t").find(text.front()) != std::string_view::npos)
    text.remove_prefix(1);
  while (!text.empty() && std::string_view(" \r\n\t").find(text.back()) != std::string_view::npos)
    text.remove_suffix(1);
  if (!text.starts_with(begin)) throw UserError("The file is no iCalendar.");
  if (!text.ends_with(end)) throw UserError("The file is cut off: the end of its iCalendar is missing.");
}

}  // namespace

HoursEvents readHoursEvents(const std::string& text, const HoursReading& how, FileFaults& faults) {
  checkWhole(text);
  const Document document(icalparser_parse_string(text.c_str()));
  if (document == nullptr) throw UserError("The file is no iCalendar.");
  const std::vector<Event> events = eventsOf(document.get(), text);
  if (events.size() > mostEvents)
    throw UserError("The file has more than " + std::to_string(mostEvents) +
                    " events, too many for opening hours.");
  return EventReader(how, faults).read(events);
}

}  // namespace vantry::server
