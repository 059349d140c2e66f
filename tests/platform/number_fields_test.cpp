#include "platform/number_fields.h"

#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/entry_check.h"
#include "platform/schedule_bar.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct Fields : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Form form{windows, "frmTest"};
  int changes = 0;
};

TEST_F(Fields, ANumberStepsWithinItsLimits) {
  NumberField field(form, "txtSetupTime", 0, 999);
  field.Change = [&] { ++changes; };
  field.type("999");
  field.spin(1);
  EXPECT_EQ(changes, 1) << "nothing new above the limit";
  field.type("");
  EXPECT_EQ(field.Text() + field.Unreadable(), "");
  EXPECT_EQ(field.number(), 0);
  field.spin(-1);
  EXPECT_EQ(field.Text(), "0");
  field.Locked = true;
  field.type("5");
  EXPECT_EQ(field.Text(), "0");
}

TEST_F(Fields, WhatIsNoNumberOfTheFieldIsKeptAsItWasTyped) {
  NumberField number(form, "txtCapacity", -5, 2147483647);
  CurrencyField amount(form, "txtValue", 0, 9000000000);
  amount.Change = number.Change = [&] { ++changes; };
  const struct {
    const char *typed, *number, *amount;
  } cases[] = {{" 12 ", "12", "12.00"},
               {"-5", "-5", nullptr},
               {"-6", nullptr, nullptr},
               {"2147483648", nullptr, "2147483648.00"},
               {"9000000000.01", nullptr, nullptr},
               {"99999999999999999999", nullptr, nullptr},
               {"1.5", nullptr, "1.50"},
               {"$ 9,000,000,000.00", nullptr, "9000000000.00"},
               {".5", nullptr, "0.50"},
               {"1,234", nullptr, "1234.00"},
               {"1.200,50", nullptr, nullptr},
               {"1,5", nullptr, nullptr},
               {"1234,567", nullptr, nullptr},
               {"1200 EUR", nullptr, nullptr},
               {"0.125", nullptr, nullptr},
               {".", nullptr, nullptr},
               {"", "", ""}};
  for (const auto& c : cases) {
    number.type(c.typed);
    amount.type(c.typed);
    EXPECT_EQ(number.Text() + "|" + number.Unreadable(),
              c.number ? std::string(c.number) + "|" : std::string("|") + c.typed);
    EXPECT_EQ(amount.plain() + "|" + amount.Unreadable(),
              c.amount ? std::string(c.amount) + "|" : std::string("|") + c.typed);
  }
  changes = 0;
  for (const char* typed : {"x", "y", "y"}) amount.type(typed);
  EXPECT_EQ(changes, 2) << "text that cannot be read is a change as well";
  number.type("x");
  desktop.expectInformation("Please enter a number from -5 to 2147483647 for .");
  EXPECT_FALSE(entriesAreReadable(form));
  number.Visible = false;
  desktop.expectInformation("Please enter an amount from 0.00 to 9000000000.00 for .");
  EXPECT_FALSE(entriesAreReadable(form));
}

TEST_F(Fields, AnAmountIsShownWithItsSign) {
  CurrencyField field(form, "txtTempCurrency", -9000000000, 9000000000);
  const struct {
    const char *put, *shown, *plain;
  } cases[] = {{"12.5", "$12.50", "12.50"},
               {" 1234.056 ", "$1234.06", "1234.06"},
               {"-0.05", "-$0.05", "-0.05"},
               {"", "$0.00", ""},
               {"fee", "$0.00", ""},
               {"0", "$0.00", "0.00"},
               {"99999999999", "$9000000000.00", "9000000000.00"},
               {"-99999999999", "-$9000000000.00", "-9000000000.00"}};
  for (const auto& c : cases) {
    field.Text(c.put);
    EXPECT_EQ(field.Text(), c.shown) << c.put;
    EXPECT_EQ(field.plain(), c.plain) << c.put;
  }
}

TEST_F(Fields, AMaskTakesFiguresOnly) {
  MaskedField field(form, "txtSSN", "###-##-####");
  const std::pair<const char*, const char*> cases[] = {{"1", "1"},
                                                       {"123", "123"},
                                                       {"1234", "123-4"},
                                                       {"123-45-6789", "123-45-6789"},
                                                       {"12345678901", "123-45-6789"},
                                                       {"ab", ""}};
  for (const auto& [typed, shown] : cases) {
    field.type(typed);
    EXPECT_EQ(field.Text, shown) << typed;
  }
  field.type("123456789");
  EXPECT_TRUE(field.isComplete());
}

struct Bar : Fields {
  ScheduleBar bar{form, "schTimeLine"};
  int drags = 0;

  Bar() {
    bar.Slots = 96;
    bar.Start = 18;
    bar.Finish = 24;
    bar.Drag = [&] { ++drags; };
  }
  std::pair<int, int> ends() const { return {bar.Start, bar.Finish}; }
  std::pair<int, int> dragged(double from, double to) {
    bar.press(from);
    bar.dragTo(to);
    bar.release();
    return ends();
  }
};

TEST_F(Bar, IsTakenByItsEndsByItsMiddleOrDrawnAnew) {
  EXPECT_EQ(dragged(18.3, 12.1), std::make_pair(12, 24)) << "by its start";
  EXPECT_EQ(dragged(23.7, 30.4), std::make_pair(12, 30)) << "by its end";
  EXPECT_EQ(dragged(20, 22), std::make_pair(14, 32)) << "whole";
  EXPECT_EQ(dragged(60, 50), std::make_pair(50, 60)) << "drawn from right to left";
  EXPECT_EQ(dragged(60, 40), std::make_pair(40, 50)) << "an end dragged across the other one";
  EXPECT_EQ(drags, 5);
}

TEST_F(Bar, StaysOnItsScaleAndKeepsItsLength) {
  EXPECT_EQ(dragged(20, -50), std::make_pair(0, 6));
  EXPECT_EQ(dragged(3, 500), std::make_pair(90, 96));
  bar.moveBy(10);
  EXPECT_EQ(ends(), std::make_pair(90, 96));
  bar.moveFinishBy(3);
  bar.moveStartBy(-2);
  EXPECT_EQ(ends(), std::make_pair(88, 96));
  EXPECT_EQ(drags, 3) << "what changes nothing is no drag";
}

TEST_F(Bar, ALockedBarAndAPointerThatWasNotPressedDoNothing) {
  bar.dragTo(50);
  bar.Locked = true;
  EXPECT_EQ(dragged(20, 40), std::make_pair(18, 24));
  bar.moveBy(1);
  EXPECT_EQ(ends(), std::make_pair(18, 24));
  EXPECT_EQ(drags, 0);
}

TEST_F(Bar, PlacesAndPixelsConvertBothWays) {
  EXPECT_DOUBLE_EQ(bar.xOf(24, 960), 240);
  EXPECT_DOUBLE_EQ(bar.placeAt(245, 960), 24.5);
  EXPECT_DOUBLE_EQ(bar.placeAt(-10, 960), 0);
  EXPECT_DOUBLE_EQ(bar.placeAt(5, 0), 0);
  Ruler ruler(form, "rulTimeLine");
  ruler.PerHour = 6;
  ruler.FirstHour = 6;
  EXPECT_EQ(ruler.hourAt(12), 8);
  EXPECT_EQ(ruler.hourAt(13), -1);
}

TEST_F(Fields, AFieldThatIsLeftMayTakeTheFocusBack) {
  TextBox first(form, "txtFirst");
  TextBox second(form, "txtSecond");
  std::string seen;
  first.LostFocus = [&] {
    seen += "left ";
    if (first.Text.get().empty()) first.SetFocus();
  };
  second.GotFocus = [&] { seen += "second "; };
  first.SetFocus();
  second.SetFocus();
  EXPECT_EQ(form.ActiveControl(), &first);
  EXPECT_EQ(seen, "left ");
  first.Text = "x";
  form.focusMoved(&second);
  EXPECT_EQ(form.ActiveControl(), &second);
  EXPECT_EQ(seen, "left left second ");
}

}  // namespace
}  // namespace vantry::test
