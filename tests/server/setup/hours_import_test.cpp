// Opening hours out of an iCalendar.

#include "server/setup/hours_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/base/user_error.h"
#include "server/setup/rules_file_words.h"
#include "server/store/settings.h"
#include "support/server_case.h"
#include "support/server_marc_file.h"

namespace vantry::server {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr Moment now = 1'795'000'000;

std::string event(const std::string& summary, const std::string& rest) {
  return "BEGIN:VEVENT\nUID:" + summary + "\nSUMMARY:" + summary + "\n" + rest + "\nEND:VEVENT\n";
}

std::string document(const std::string& events) {
  return "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//test//\n" + events + "END:VCALENDAR\n";
}

/// December 2026, which begins with a Tuesday.
HoursImport december() {
  return {.location = "Main Desk",
          .kind = CalendarKind::Room,
          .name = "December",
          .from = makeMoment(2026, 12, 1),
          .until = makeMoment(2026, 12, 31)};
}

struct Read {
  std::string calendar;  ///< the week from Sunday and the exceptions, parted by blanks
  std::vector<std::string> faults;
  std::vector<std::string> leftOut;
};

Read read(const std::string& events, const std::string& zone = "Europe/Berlin",
          const HoursImport& what = december()) {
  FileFaults faults;
  const HoursEvents found =
      readHoursEvents(document(events), {{what.from, what.until + day, 0}, what.closedWords, zone}, faults);
  Read read;
  read.leftOut = found.leftOut;
  const CalendarEntry calendar = calendarOf(what, found, faults, read.leftOut);
  for (const HoursEntry& each : calendar.week) read.calendar += hoursText(each) + " ";
  for (const ExceptionEntry& each : calendar.exceptions)
    read.calendar += dateText(each.date).substr(8) + "=" + hoursText(each.hours) + " ";
  read.faults = faults.told();
  return read;
}

const std::string mondays =
    event("Open",
          "DTSTART;TZID=Europe/Berlin:20261005T090000\nDTEND;TZID=Europe/Berlin:20261005T170000\n"
          "RRULE:FREQ=WEEKLY;BYDAY=MO");
const std::string closedBut = "closed 09:00-17:00 closed closed closed closed closed ";

TEST(HoursFile, BecomesAWeekWithExceptions) {
  struct Case {
    const char* what;
    std::string events;
    std::string calendar;
  };
  const std::string dated =
      "DTSTART;TZID=Europe/Berlin:20261005T090000\nDURATION:PT8H\nRRULE:FREQ=WEEKLY;BYDAY=MO\n";
  const std::vector<Case> cases{
      {"a rule without an end", mondays, closedBut},
      {"days that are taken out and added",
       event("Open", dated + "EXDATE;TZID=Europe/Berlin:20261207T090000,20261214T090000\n"
                             "RDATE;TZID=Europe/Berlin:20261208T090000"),
       closedBut + "07=closed 08=09:00-17:00 14=closed "},
      {"a day of closure", mondays + event("We are CLOSED!", "DTSTART;VALUE=DATE:20261228"),
       closedBut + "28=closed "},
      {"days of closure", mondays + event("Closed", "DTSTART;VALUE=DATE:20261220\nDTEND;VALUE=DATE:20270105"),
       closedBut + "21=closed 28=closed "},
      {"hours of closure",
       mondays + event("Closed early", "DTSTART:20261207T130000Z\nDTEND:20261207T200000Z"),
       closedBut + "07=09:00-14:00 "},
      {"one recurrence that another event changes",
       event("Open", dated) + event("Open",
                                    "RECURRENCE-ID;TZID=Europe/Berlin:20261214T090000\n"
                                    "DTSTART;TZID=Europe/Berlin:20261214T120000\nDURATION:PT2H"),
       closedBut + "14=12:00-14:00 "},
      {"what is cancelled",
       mondays + event("Late", "STATUS:CANCELLED\nDTSTART:20261201T080000Z\nDURATION:PT1H"), closedBut},
      {"events that overlap or touch",
       mondays + event("Desk", "DTSTART:20261207T070000Z\nDTEND:20261207T090000Z") +
           event("Late", "DTSTART:20261207T160000Z\nDTEND:20261207T190000Z"),
       closedBut + "07=08:00-20:00 "},
      {"times without a zone", event("Open", "DTSTART:20261201T090000\nDURATION:PT1H"),
       "closed closed closed closed closed closed closed 01=09:00-10:00 "},
      {"several days without a night", event("Sale", "DTSTART:20261202T100000\nDTEND:20261205T120000"),
       "closed closed closed closed closed closed closed 02=10:00-24:00 03=00:00-24:00 04=00:00-24:00 "
       "05=00:00-12:00 "}};
  for (const Case& each : cases) {
    const Read got = read(each.events);
    EXPECT_EQ(got.calendar, each.calendar) << each.what;
    EXPECT_THAT(got.faults, testing::IsEmpty()) << each.what;
  }
}

TEST(HoursFile, AZoneOfItsOwnMayComeWithIt) {
  const std::string zone =
      "BEGIN:VTIMEZONE\nTZID:Ours\nBEGIN:STANDARD\nDTSTART:19700101T000000\nTZOFFSETFROM:-0500\n"
      "TZOFFSETTO:-0500\nEND:STANDARD\nEND:VTIMEZONE\n";
  EXPECT_THAT(read(zone + event("Open", "DTSTART;TZID=Ours:20261201T090000\nDTEND;TZID=Ours:20261201T100000"))
                  .calendar,
              HasSubstr("01=15:00-16:00"));
  EXPECT_THAT(read(event("Open", "DTSTART;TZID=Nowhere/City:20261201T090000\nDURATION:PT1H")).faults,
              ElementsAre("line 4, \"Open\" from 2026-12-01: its time zone is not known."));
}

TEST(HoursFile, WhatACalendarCannotHoldIsTold) {
  const std::string withNight = event("Open", "DTSTART:20261202T090000\nDURATION:PT8H") +
                                event("Night", "DTSTART:20261201T200000\nDURATION:PT6H");
  EXPECT_THAT(
      read(withNight).faults,
      ElementsAre("2026-12-02: is open 00:00-02:00 (line 10) and 09:00-17:00 (line 4), and a calendar "
                  "holds one time a day. --bridge-breaks takes the time from the first opening to the "
                  "last closing."));
  EXPECT_THAT(
      read(event("Blink", "DTSTART:20261201T000000\nDURATION:PT1M\nRRULE:FREQ=MINUTELY")).faults,
      testing::Contains("line 4, \"Blink\" from 2026-12-01: it recurs more than 1000 times in these days."));
  EXPECT_THAT(
      read(event("Long ago", "DTSTART:19700101T000000\nDURATION:PT1S\nRRULE:FREQ=SECONDLY")).faults.size(),
      0U)
      << "less than a minute is nothing";
  EXPECT_THAT(read(event("Long ago", "DTSTART:19700101T000000\nDURATION:PT1M\nRRULE:FREQ=SECONDLY")).faults,
              ElementsAre("line 4, \"Long ago\" from 1970-01-01: it recurs too often to be opening hours."));
  EXPECT_THAT(read(event("Odd", "DTSTART:20261201T090000\nDURATION:PT1H\nRRULE:FREQ=SOMETIMES")).faults,
              ElementsAre("line 4, \"Odd\" from 2026-12-01: its RRULE cannot be read."));
  EXPECT_THAT(read(event("Story week", "DTSTART;VALUE=DATE:20261201")).leftOut,
              ElementsAre(HasSubstr("does not say that it closes")));
}

TEST(HoursFile, BreaksAreLeftOutOnRequest) {
  HoursImport what = december();
  what.bridgesBreaks = true;
  const std::string weekly = "DURATION:PT3H\nRRULE:FREQ=WEEKLY;BYDAY=TU";
  const Read got = read(event("Morning", "DTSTART:20261201T090000\n" + weekly) +
                            event("Afternoon", "DTSTART:20261201T140000\n" + weekly),
                        "Europe/Berlin", what);
  EXPECT_EQ(got.calendar, "closed closed 09:00-17:00 closed closed closed closed ");
  EXPECT_THAT(got.leftOut, ElementsAre("Days whose breaks are left out: 5, the first 2026-12-01."));
  EXPECT_THAT(got.faults, testing::IsEmpty());
}

class HoursImported : public OnEachDatabase {
 protected:
  HoursReport take(const std::string& text, const HoursImport& what, RulesUse use = RulesUse::Take) {
    const test::TempFolder folder;
    writeFile(folder.file("hours.ics"), text);
    return importHours(library().database(), folder.file("hours.ics"), what, use, now);
  }
};

TEST_P(HoursImported, AgainChangesNothingAndAllOrNone) {
  library().database().write([](Connection& db) { setSetting(db, "time_zone", "Europe/Berlin"); });
  execute("delete from calendars");
  const auto counts = [](const HoursReport& report) { return countsText(report.rules.counts.at(0)); };
  const std::string file = document(mondays);
  EXPECT_EQ(counts(take(file, december(), RulesUse::CheckOnly)),
            "Calendars: 1 added, 0 changed, 0 as they were");
  EXPECT_EQ(counts(take(file, december())), "Calendars: 1 added, 0 changed, 0 as they were");
  EXPECT_EQ(counts(take(file, december())), "Calendars: 0 added, 0 changed, 1 as they were");
  HoursImport other = december();
  other.name = "Another";
  EXPECT_THAT(
      take(file, other).rules.faults.told(),
      ElementsAre("calendar \"Another\": it overlaps \"December\", for the same at the same location."));
  EXPECT_THROW(take(file.substr(0, file.size() - 10), december()), UserError);
  EXPECT_THROW(take(document(""), december()), UserError);
  EXPECT_THROW(take("Dear library", december()), UserError);
  other.location = "Moon";
  EXPECT_THROW(take(file, other), UserError);
  EXPECT_EQ(value("select count(*) from calendars"), "1");
}

INSTANTIATE_TEST_SUITE_P(Databases, HoursImported, eachDatabase, databaseName);

}  // namespace
}  // namespace vantry::server
