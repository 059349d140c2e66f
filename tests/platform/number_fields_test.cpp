#include "platform/number_fields.h"

#include <gtest/gtest.h>

#include "platform/controls.h"
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

TEST_F(Fields, ANumberStaysWithinItsLimits) {
  NumberField field(form, "txtSetupTime", 0, 999);
  field.Change = [&] { ++changes; };
  field.enter(1200);
  EXPECT_EQ(field.Text(), "999");
  field.spin(1);
  EXPECT_EQ(changes, 1) << "nothing new above the limit";
  field.enter(std::nullopt);
  EXPECT_EQ(field.Text(), "");
  EXPECT_EQ(field.number(), 0);
  field.spin(-1);
  EXPECT_EQ(field.Text(), "0");
  field.Locked = true;
  field.enter(5);
  EXPECT_EQ(field.Text(), "0");
}

TEST_F(Fields, AnAmountIsReadAndShownWithItsSign) {
  CurrencyField field(form, "txtTempCurrency", -9000000000, 9000000000);
  const struct {
    const char *put, *shown, *plain;
  } cases[] = {{"12.5", "$12.50", "12.50"},
               {" $1,234.056 ", "$1234.06", "1234.06"},
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
