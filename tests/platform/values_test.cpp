#include <gtest/gtest.h>

#include <limits>

#include "platform/datetime.h"
#include "platform/text.h"
#include "platform/typed_moments.h"

namespace vantry {

void PrintTo(const Date& date, std::ostream* out) {
  *out << serverDate(date);
}
void PrintTo(const Time& time, std::ostream* out) {
  *out << hourMinute(time);
}

namespace test {
namespace {

TEST(Numbers, AreReadFromTheStartOfATextAsFarAsTheyGo) {
  const std::vector<std::pair<std::string_view, double>> cases = {
      {"12", 12},      {" -3.5 rooms", -3.5},
      {"+7", 7},       {".5", .5},
      {"1e3", 1},      {"1,000", 1},
      {"", 0},         {"abc", 0},
      {"-", 0},        {"--1", 0},
      {"+-1", 0},      {"nan", 0},
      {"infinity", 0}, {"-inf", 0},
      {".", 0},        {"0x10", 0},
      {"12:30", 12},   {"007", 7},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(val(text), number) << text;
  EXPECT_EQ(intOf("2.9"), 2);
  EXPECT_EQ(intOf("-2.9"), -2);
  EXPECT_EQ(intOf("99999999999"), std::numeric_limits<int>::max());
  EXPECT_EQ(intOf("-99999999999"), std::numeric_limits<int>::min());
  EXPECT_EQ(intOf("nan"), 0);
}

TEST(Numbers, AreWholeTexts) {
  for (const char* text : {"1", " -1.5 ", "+2", ".5", "0"}) EXPECT_TRUE(isNumber(text)) << text;
  for (const char* text : {"", " ", "1 2", "1a", "1e3", "nan", "Inf", "-", "+", ".", "12:30", "1.2.3", "+-1"})
    EXPECT_FALSE(isNumber(text)) << text;
}

TEST(Texts, CompareWithoutRegardToTheCaseOfAsciiLetters) {
  EXPECT_TRUE(equalNoCase("LastView", "LASTVIEW"));
  EXPECT_FALSE(equalNoCase("LastView", "LastVie"));
  EXPECT_EQ(lower("ÄB"), "Äb");
  EXPECT_EQ(trim(" \t a b\r\n"), "a b");
  EXPECT_EQ(trim("  "), "");
}

TEST(Dates, ExistOnlyInTheCalendar) {
  EXPECT_TRUE(isDate({2024, 2, 29}));
  EXPECT_TRUE(isDate({2000, 2, 29}));
  for (const Date& date : {Date{2026, 2, 29}, Date{1900, 2, 29}, Date{2026, 4, 31}, Date{2026, 0, 1},
                           Date{2026, 13, 1}, Date{2026, 1, 0}, Date{0, 1, 1}, Date{10000, 1, 1}})
    EXPECT_FALSE(isDate(date));
}

TEST(Dates, MoveOverTheEndsOfMonthsAndYears) {
  EXPECT_EQ(addDays({2026, 12, 31}, 1), (Date{2027, 1, 1}));
  EXPECT_EQ(addDays({2024, 3, 1}, -1), (Date{2024, 2, 29}));
  EXPECT_EQ(addDays({1970, 1, 1}, -1), (Date{1969, 12, 31}));
  EXPECT_EQ(addMonths({2026, 1, 31}, 1), (Date{2026, 2, 28}));
  EXPECT_EQ(addMonths({2026, 1, 31}, -2), (Date{2025, 11, 30}));
  EXPECT_EQ(addMonths({2026, 11, 15}, 14), (Date{2028, 1, 15}));
  for (const int number : {-1, 0, 59, 20'000}) EXPECT_EQ(dayNumber(dateOfDayNumber(number)), number);
  EXPECT_EQ(weekday({2026, 11, 22}), 1) << "a Sunday";
  EXPECT_EQ(weekday({2026, 11, 28}), 7);
}

TEST(ServerMoments, AreReadOnlyInTheirForm) {
  EXPECT_EQ(serverTime({{26, 3, 4}, {5, 6, 7}}), "0026-03-04 05:06:07");
  for (const char* text : {"2026-11-24 09:30:15", "2026-11-24 00:00:00", "2026-11-24 23:59:59"})
    EXPECT_EQ(serverTime(parseServerTime(text).value()), text);
  EXPECT_EQ(parseServerTime(" 2026-11-24 ")->time, Time{});
  for (const char* text : {"", "2026-11-24 09:30", "2026-13-24", "2026-02-30", "2026-11-24 24:00:00",
                           "2026-11-24 09:60:00", "2026-11-24T09:30:15", "2026/11/24", "2026-1-24 ",
                           "20a6-11-24", "2026-11-24 09:30:15Z", "-026-11-24"})
    EXPECT_FALSE(parseServerTime(text)) << text;
}

TEST(ClockTimes, AreReadAsPeopleWriteThem) {
  const std::vector<std::pair<std::string_view, std::optional<Time>>> cases = {
      {"09:30", Time{9, 30, 0}},     {"9:30 PM", Time{21, 30, 0}},   {"12:00 AM", Time{0, 0, 0}},
      {"12:15 pm", Time{12, 15, 0}}, {"7", Time{7, 0, 0}},           {"7p", Time{19, 0, 0}},
      {"9.30", Time{9, 30, 0}},      {"23:59:58", Time{23, 59, 58}}, {"", std::nullopt},
      {"AM", std::nullopt},          {"13:00 PM", std::nullopt},     {"0:30 AM", std::nullopt},
      {"24:00", std::nullopt},       {"9:60", std::nullopt},         {"noon", std::nullopt},
      {"1:2:3:4", std::nullopt},     {"930", std::nullopt},          {"9:30 xm", std::nullopt},
  };
  for (const auto& [text, time] : cases) EXPECT_EQ(parseClockTime(text), time) << text;
  for (int minute = 0; minute < 24 * 60; minute += 7) {
    const Time time{minute / 60, minute % 60, 0};
    EXPECT_EQ(parseClockTime(hourMinute(time)), time);
    EXPECT_EQ(parseClockTime(hourMinuteAmPm(time)), time);
  }
}

TEST(ShortDates, FollowTheSystemsFormat) {
  const Date day{2026, 3, 7};
  const std::vector<std::pair<std::string_view, std::string_view>> formats = {
      {"dd/MM/yyyy", "07/03/2026"}, {"M/d/yyyy", "3/7/2026"},         {"yyyy-MM-dd", "2026-03-07"},
      {"d.M.yy", "7.3.26"},         {"dd. MM. yyyy", "07. 03. 2026"}, {"yyyyMMdd", "20260307"},
  };
  for (const auto& [format, text] : formats) {
    EXPECT_EQ(formatDate(day, format), text);
    EXPECT_EQ(parseDate(text, format), format == "yyyyMMdd" ? std::nullopt : std::optional(day)) << format;
  }
  EXPECT_EQ(parseDate("7/3/49", "dd/MM/yyyy"), (Date{2049, 3, 7}));
  EXPECT_EQ(parseDate("7/3/50", "dd/MM/yyyy"), (Date{1950, 3, 7}));
  for (const char* text : {"", "7/3", "31/2/2026", "7/13/2026", "7/3/2026/1", "7/3/20267", "tomorrow"})
    EXPECT_FALSE(parseDate(text, "dd/MM/yyyy")) << text;
}

TEST(Values, DatesAreReadAsPeopleTypeThem) {
  const Date today{2026, 11, 24};
  const struct {
    const char* text;
    const char* dayFirst;  ///< by dd/MM/yyyy
    const char* monthFirst;
  } cases[] = {{"26", "2026-11-26", "2026-11-26"},
               {"26/11", "2026-11-26", ""},
               {"11/26", "", "2026-11-26"},
               {"5.6", "2026-06-05", "2026-05-06"},
               {"26/11/26", "2026-11-26", ""},
               {"1 2 2027", "2027-02-01", "2027-01-02"},
               {"20261126", "2026-11-26", "2026-11-26"},
               {"2026-11-26", "2026-11-26", "2026-11-26"},
               {"+1", "2026-11-25", "2026-11-25"},
               {"-24", "2026-10-31", "2026-10-31"},
               {" Today ", "2026-11-24", "2026-11-24"},
               {"tomorrow", "2026-11-25", "2026-11-25"},
               {"31", "", ""},
               {"31/11/2026", "", ""},
               {"20261131", "", ""},
               {"soon", "", ""},
               {"26 Nov", "", ""},
               {"+", "", ""},
               {"1/2/3/4", "", ""},
               {"", "", ""}};
  for (const auto& c : cases) {
    const auto read = [&](const char* format) {
      const auto date = readDate(c.text, format, today, today);
      return date ? serverDate(*date) : std::string();
    };
    EXPECT_EQ(read("dd/MM/yyyy"), c.dayFirst) << c.text;
    EXPECT_EQ(read("M/d/yyyy"), c.monthFirst) << c.text;
  }
  EXPECT_EQ(readDate("5", "dd/MM/yyyy", today, {2027, 2, 1}), (Date{2027, 2, 5})) << "near the day before";
}

TEST(Values, TimesAreReadAsPeopleTypeThem) {
  const std::pair<const char*, const char*> cases[] = {{"9", "09:00"},
                                                       {"930", "09:30"},
                                                       {"9.30", "09:30"},
                                                       {"0930", "09:30"},
                                                       {"9:30 pm", "21:30"},
                                                       {"930p", "21:30"},
                                                       {"12 am", "00:00"},
                                                       {"24:00", "00:00"},
                                                       {"2400", "00:00"},
                                                       {"2359", "23:59"},
                                                       {"2401", ""},
                                                       {"25:10", ""},
                                                       {"960", ""},
                                                       {"13 pm", ""},
                                                       {"later", ""},
                                                       {"12345", ""},
                                                       {"", ""}};
  for (const auto& [text, wanted] : cases) {
    const auto time = readTime(text);
    EXPECT_EQ(time ? hourMinute(*time) : "", wanted) << text;
  }
}

}  // namespace
}  // namespace test
}  // namespace vantry
