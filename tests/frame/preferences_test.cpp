#include "frame/preferences.h"

#include "frame/modMain.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

Preferences readAll(const Settings& store, int* unreadable = nullptr) {
  Preferences preferences;
  for (const PreferenceRow& row : preferenceTable()) {
    if (!readPreference(row, store, preferences) && unreadable) ++*unreadable;
  }
  return preferences;
}

TEST(Preferences, AnEmptyStoreGivesEveryDefault) {
  MemorySettings store;
  int unreadable = 0;
  const Preferences p = readAll(store, &unreadable);
  EXPECT_EQ(unreadable, 0);
  EXPECT_EQ(p.View, 3);
  EXPECT_EQ(p.Position, 0);
  EXPECT_TRUE(p.AutoSizeCells);
  EXPECT_FALSE(p.Historical);
  EXPECT_EQ(p.DaemonInterval, "15");
  EXPECT_EQ(p.Start, 6);
  EXPECT_EQ(p.End, 10);
  EXPECT_EQ(p.Interval, 1);
  EXPECT_EQ(p.RoomHours, "1");
  EXPECT_EQ(p.back(ListColour::Canceled), 65535u);
  EXPECT_EQ(p.back(ListColour::Overdue), 33023u);
  EXPECT_EQ(p.back(ListColour::View), 2147483660u) << "the desktop's own colour 12";
  EXPECT_EQ(p.fore(ListColour::Suppressed), 0u);
}

TEST(Preferences, TheKeyForPickUpHoursReadsBothSpellings) {
  MemorySettings store;
  store.prefer("PickupHours", "6");
  EXPECT_EQ(readAll(store).PickUpHours, "6");
}

TEST(Preferences, AValueThatCannotBeReadTakesItsDefault) {
  struct Case {
    const char* key;
    const char* text;
    bool readable;
  };
  for (const Case& c :
       {Case{"View", "many", false}, Case{"View", "99999999999", false}, Case{"View", "", false},
        Case{"View", " 7 ", true}, Case{"MergeCells", "maybe", false}, Case{"MergeCells", "TRUE", true},
        Case{"MergeCells", "-1", true}, Case{"Color5B", "-2147483636", true},
        Case{"Color5B", "red", false}}) {
    MemorySettings store;
    store.prefer(c.key, c.text);
    int unreadable = 0;
    const Preferences p = readAll(store, &unreadable);
    EXPECT_EQ(unreadable == 0, c.readable) << c.key << '=' << c.text;
    if (!c.readable) {
      EXPECT_EQ(p.View, 3);
      EXPECT_FALSE(p.MergeCells);
    }
    EXPECT_EQ(p.back(ListColour::View), 2147483660u) << "also when stored as a negative number";
  }
}

TEST(Preferences, WhatIsStoredReadsBackTheSame) {
  Preferences p;
  p.MergeCells = true;
  p.NewBooking = 2;
  p.sounds[4] = "bell.wav";
  p.foreColours[7] = 16777215;
  MemorySettings store;
  for (const PreferenceRow& row : preferenceTable()) store.prefer(row.key, storedText(row, p));
  const Preferences back = readAll(store);
  EXPECT_TRUE(back.MergeCells);
  EXPECT_EQ(back.NewBooking, 2);
  EXPECT_EQ(back.sounds[4], "bell.wav");
  EXPECT_EQ(back.fore(ListColour::Overdue), 16777215u);
}

TEST(DaySlots, EdgesOfTheDay) {
  struct Case {
    int start, end, interval;
    int endMinute, minutes, count;
    const char* first;
    const char* last;
  };
  for (const Case& c :
       {Case{6, 10, 1, 1320, 10, 96, "6:00 AM", "21:50 PM"},
        Case{6, 12, 1, 720, 10, 36, "6:00 AM", "11:50 AM"}, Case{8, 5, 5, 1020, 60, 9, "8:00 AM", "16:00 PM"},
        Case{8, 5, 0, 1020, 5, 108, "8:00 AM", "16:55 PM"},
        Case{11, 1, 4, 780, 30, 4, "11:00 AM", "12:30 PM"}}) {
    const DaySlots slots = daySlots(c.start, c.end, c.interval);
    EXPECT_EQ(slots.endMinute, c.endMinute);
    EXPECT_EQ(slots.interval, c.minutes);
    ASSERT_EQ(slots.count, c.count) << c.start << " to " << c.end;
    EXPECT_EQ(slots.perHour, 60 / c.minutes);
    ASSERT_EQ(slots.captions.size(), static_cast<std::size_t>(c.count));
    EXPECT_EQ(slots.captions.front(), c.first);
    EXPECT_EQ(slots.captions.back(), c.last);
  }
  EXPECT_EQ(daySlots(8, 5, 9).interval, 10) << "no such interval: the default's";
}

TEST(DaySlots, MinutesBecomeMilliseconds) {
  EXPECT_EQ(MinutesToMilliseconds("15"), 900000);
  EXPECT_EQ(MinutesToMilliseconds("0"), 0);
  EXPECT_EQ(MinutesToMilliseconds(""), 0);
  EXPECT_EQ(MinutesToMilliseconds("99999999"), 0) << "no timer runs that long";
}

using PreferencesAtTheDesk = Desk;

TEST_F(PreferencesAtTheDesk, LegendColoursReachBothCopiesAndTheHeading) {
  settings.prefer("Color4B", "123456");
  settings.prefer("Color4F", "16777215");
  settings.prefer("Color5B", "77");
  settings.prefer("DisplayCanceled", "false");
  start();
  EXPECT_EQ(day().legend.lblCharged.BackColor, Colour{123456});
  EXPECT_EQ(main().legendDelivery.lblCharged.ForeColor, Colour{16777215});
  EXPECT_EQ(main().lblView.BackColor, Colour{77});
  EXPECT_FALSE(day().chkLegend(2).Value);
  EXPECT_TRUE(day().chkLegend(4).Value);
}

TEST_F(PreferencesAtTheDesk, TheListBarStandsWhereItIsWanted) {
  settings.prefer("Position", "2");
  start();
  EXPECT_FALSE(main().albStandard.Visible);
  EXPECT_FALSE(main().albDaemon.Visible);
  EXPECT_GT(main().abView.ListCount(), 0) << "the views can still be chosen";
}

TEST_F(PreferencesAtTheDesk, WithoutAnIntervalTheMonitorsClockStands) {
  settings.prefer("DaemonInterval", "0");
  settings.prefer("View", "8");
  build();
  expectContext();
  ASSERT_TRUE(Main(*app));
  EXPECT_FALSE(main().tmrDaemon.Enabled);
  settings.prefer("DaemonInterval", "5");
  ReadPreferences(*app);
  EXPECT_TRUE(main().tmrDaemon.Enabled) << "read anew in the monitor";
  settings.prefer("DaemonInterval", "0");
  ReadPreferences(*app);
  EXPECT_FALSE(main().tmrDaemon.Enabled);
}

TEST_F(PreferencesAtTheDesk, GarbageInTheStoreIsKeptAside) {
  settings.prefer("Interval", "soon");
  start();
  EXPECT_EQ(settings.keptAside, 1);
  EXPECT_EQ(app->daySlots.interval, 10);
}

TEST_F(PreferencesAtTheDesk, SearchListsOpenAtThePreferredKind) {
  settings.prefer("ChargeSearch", "2");
  settings.prefer("DischargeSearch", "9");
  start();
  EXPECT_EQ(main().chargeView.cboChargeSearch.Text(), "Confirmation Number");
  EXPECT_EQ(main().dischargeView.cboDischargeSearch.Text(), "Dewey Decimal Call Number");
}

}  // namespace
}  // namespace vantry::test
