#include "server/feeds/calendar_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <libical/ical.h>

#include "words/utf8.h"

namespace vantry::server {
namespace {

using testing::HasSubstr;
using testing::Not;

const Moment nine = makeMoment(2026, 11, 24, 9);

CalendarEvent event() {
  return {.number = "7",
          .startsAt = nine,
          .endsAt = nine + hour,
          .createdAt = nine - day,
          .changedAt = nine - day + 90,
          .summary = "Pick-Up 0000007",
          .place = {},
          .description = {}};
}

std::string textIn(const std::string& zone, const CalendarEvent& only) {
  return calendarText({.name = "Main Desk", .zone = zone, .origin = "abc", .events = {only}});
}

/// The event as a reader of calendars sees it.
struct ReadEvent {
  explicit ReadEvent(const std::string& text) : root(icalparser_parse_string(text.c_str())) {
    event = icalcomponent_get_first_component(root, ICAL_VEVENT_COMPONENT);
  }
  ~ReadEvent() { icalcomponent_free(root); }
  ReadEvent(const ReadEvent&) = delete;
  ReadEvent& operator=(const ReadEvent&) = delete;

  icalcomponent* root;
  icalcomponent* event;
};

bool isWhole(std::string_view text) {
  while (!text.empty()) {
    if (takeCharacter(text) == noCharacter) return false;
  }
  return true;
}

TEST(CalendarText, TellsAnEventInTheLibrarysZone) {
  const std::string text = textIn("Europe/Berlin", event());
  EXPECT_THAT(text, HasSubstr("BEGIN:VEVENT\r\nUID:7@abc\r\nDTSTAMP:20261123T080130Z\r\n"
                              "LAST-MODIFIED:20261123T080130Z\r\nSEQUENCE:90\r\n"
                              "DTSTART;TZID=Europe/Berlin:20261124T090000\r\n"
                              "DTEND;TZID=Europe/Berlin:20261124T100000\r\nSUMMARY:Pick-Up 0000007\r\n"
                              "STATUS:CONFIRMED\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"));
  EXPECT_THAT(text, HasSubstr("BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"));
  EXPECT_THAT(text, HasSubstr("X-WR-CALNAME:Main Desk\r\n"));
  const ReadEvent read(text);
  EXPECT_EQ(icalcomponent_count_errors(read.root), 0);
  const icaltimetype start = icalcomponent_get_dtstart(read.event);
  EXPECT_EQ(icaltime_as_timet_with_zone(start, start.zone), nine - hour) << "in UTC";
}

TEST(CalendarText, KnowsSummerTimeUtcAndNoZone) {
  EXPECT_EQ(utcOf(makeMoment(2026, 7, 1, 12), "Europe/Berlin"), makeMoment(2026, 7, 1, 10));
  EXPECT_EQ(utcOf(makeMoment(2026, 1, 1, 12), "Europe/Berlin"), makeMoment(2026, 1, 1, 11));
  EXPECT_EQ(utcOf(nine, ""), nine);
  EXPECT_THAT(textIn("UTC", event()), HasSubstr("DTSTART:20261124T090000Z\r\n"));
  const std::string floating = textIn("", event());
  EXPECT_THAT(floating, HasSubstr("DTSTART:20261124T090000\r\n"));
  EXPECT_THAT(floating, Not(HasSubstr("VTIMEZONE")));
}

TEST(CalendarText, LeavesOutTheEndWhereThereIsNone) {
  CalendarEvent immediate = event();
  immediate.endsAt = immediate.startsAt;
  immediate.changedAt = immediate.createdAt - 5;  // a clock that was set back
  const std::string text = textIn("", immediate);
  EXPECT_THAT(text, Not(HasSubstr("DTEND")));
  EXPECT_THAT(text, HasSubstr("SEQUENCE:0\r\n"));
}

TEST(CalendarText, KeepsAnyTextWholeInLinesOf75Bytes) {
  const std::string title = "Bees \xF0\x9F\x90\x9D, wasps; \"hornets\" \\ M\xC3\xBCller: 1";
  std::string lines;
  for (int line = 0; line < 20; ++line) lines += (line == 0 ? "" : "\n") + title;
  CalendarEvent full = event();
  full.summary = title;
  full.place = "Ro\x07om\r\nEND:VCALENDAR";
  full.description = lines;
  const std::string text = textIn("Europe/Berlin", full);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find("\r\n", at);
    ASSERT_NE(end, std::string::npos);
    const std::string line = text.substr(at, end - at);
    EXPECT_LE(line.size(), 75U) << line;
    EXPECT_TRUE(isWhole(line)) << line;
    at = end + 2;
  }
  const ReadEvent read(text);
  EXPECT_EQ(icalcomponent_count_errors(read.root), 0);
  EXPECT_EQ(icalcomponent_get_summary(read.event), title);
  EXPECT_EQ(icalcomponent_get_description(read.event), lines);
  EXPECT_STREQ(icalcomponent_get_location(read.event), "Ro om\nEND:VCALENDAR");
}

}  // namespace
}  // namespace vantry::server
