#include <QAbstractSpinBox>
#include <QLineEdit>
#include <QListWidget>

#include "desktop/desktop_test.h"
#include "desktop/style.h"
#include "platform/controls.h"
#include "platform/number_fields.h"
#include "platform/schedule_bar.h"

namespace vantry::test {
namespace {

class BookingControlsForm : public Form {
 public:
  explicit BookingControlsForm(Windows& all) : Form(all, "frmBookingControls") {
    Layout = Column{Fields{lblNeed, txtNeedTime, lblSetup, txtSetupTime, lblValue, txtValue, lblNumber,
                           txtSSN, lblLogin, txtLogin},
                    rulTimeLine, schTimeLine};
    rulTimeLine.Slots = schTimeLine.Slots = 96;
    rulTimeLine.PerHour = schTimeLine.PerHour = 6;
    rulTimeLine.FirstHour = 6;
    schTimeLine.Start = 18;
    schTimeLine.Finish = 24;
  }
  Label lblNeed{*this, "lblNeed", "Time &Needed:"};
  SpinTimeField txtNeedTime{*this, "txtNeedTime"};
  Label lblSetup{*this, "lblSetup", "&Minutes:"};
  NumberField txtSetupTime{*this, "txtSetupTime", 0, 999};
  Label lblValue{*this, "lblValue", "&Value:"};
  CurrencyField txtValue{*this, "txtValue", 0, 9000000000};
  Label lblNumber{*this, "lblNumber", "N&umber:"};
  MaskedField txtSSN{*this, "txtSSN", "###-##-####"};
  Label lblLogin{*this, "lblLogin", "&Login:"};
  TextBox txtLogin{*this, "txtLogin"};
  Ruler rulTimeLine{*this, "rulTimeLine"};
  ScheduleBar schTimeLine{*this, "schTimeLine"};
};

class BookingControls : public DesktopTest {
 protected:
  BookingControlsForm form{windows};
  void SetUp() override { show(form); }

  QLineEdit& line(const char* name) { return *find<QAbstractSpinBox>(form, name).findChild<QLineEdit*>(); }
  static QPoint placeOf(QWidget& bar, double slot) {
    // The bar keeps a distance at both sides that its tests need not know: ends are found by the middle.
    const double side = 18;
    return {static_cast<int>(side + slot * (bar.width() - 2 * side) / 96), bar.height() / 2};
  }
  std::pair<int, int> ends() const { return {form.schTimeLine.Start, form.schTimeLine.Finish}; }
};

TEST_F(BookingControls, TheBarIsDraggedByTheMouse) {
  auto& bar = find<QWidget>(form, "schTimeLine");
  QTest::mousePress(&bar, Qt::LeftButton, {}, placeOf(bar, 21));
  QTest::mouseMove(&bar, placeOf(bar, 40));
  QTest::mouseMove(&bar, placeOf(bar, 51));
  QTest::mouseRelease(&bar, Qt::LeftButton, {}, placeOf(bar, 51));
  EXPECT_EQ(ends(), std::make_pair(48, 54)) << "whole, by its middle";
  QTest::mousePress(&bar, Qt::LeftButton, {}, placeOf(bar, 54));
  QTest::mouseMove(&bar, placeOf(bar, 60));
  QTest::mouseRelease(&bar, Qt::LeftButton, {}, placeOf(bar, 60));
  EXPECT_EQ(ends(), std::make_pair(48, 60)) << "by its end";
  QTest::mouseMove(&bar, placeOf(bar, 10));
  EXPECT_EQ(ends(), std::make_pair(48, 60)) << "let go, it stays";
}

TEST_F(BookingControls, TheBarIsMovedByTheKeyboard) {
  auto& bar = find<QWidget>(form, "schTimeLine");
  QTest::keyClick(&bar, Qt::Key_Right);
  QTest::keyClick(&bar, Qt::Key_Right, Qt::ShiftModifier);
  QTest::keyClick(&bar, Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(ends(), std::make_pair(18, 26));
  QTest::keyClick(&bar, Qt::Key_PageDown);
  EXPECT_EQ(ends(), std::make_pair(24, 32)) << "an hour";
  EXPECT_FALSE(bar.accessibleDescription().isEmpty());
}

TEST_F(BookingControls, ATimeIsSteppedTypedAndPickedFromAList) {
  int steps = 0;
  bool dialog = false;
  int chosen = -1;
  form.txtNeedTime.SpinUp = [&] { ++steps; };
  form.txtNeedTime.SpinDown = [&] { --steps; };
  form.txtNeedTime.DropDialog = [&] { dialog = true; };
  form.txtNeedTime.Chosen = [&](int index) { chosen = index; };
  form.txtNeedTime.Choices = {"6:00 AM", "6:10 AM", "6:20 AM"};
  form.txtNeedTime.DropDown = true;
  auto& box = find<QAbstractSpinBox>(form, "txtNeedTime");
  QTest::keyClick(&box, Qt::Key_Up);
  QTest::keyClick(&box, Qt::Key_Up);
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_EQ(steps, 1);
  QTest::keyClick(&box, Qt::Key_F4);
  EXPECT_TRUE(dialog);
  line("txtNeedTime").selectAll();
  QTest::keyClicks(&line("txtNeedTime"), "9:05 pm");
  QTest::keyClick(&line("txtNeedTime"), Qt::Key_Enter);
  EXPECT_EQ(form.txtNeedTime.textAmPm(), "09:05 PM");
  line("txtNeedTime").selectAll();
  QTest::keyClicks(&line("txtNeedTime"), "whenever");
  QTest::keyClick(&line("txtNeedTime"), Qt::Key_Enter);
  EXPECT_TRUE(form.txtNeedTime.isEmpty());
  EXPECT_EQ(line("txtNeedTime").text(), "whenever") << "what is no time can be mended";

  line("txtNeedTime").actions().first()->trigger();
  auto* list = box.findChild<QListWidget*>();
  ASSERT_NE(list, nullptr);
  list->setCurrentRow(2);
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_EQ(chosen, 2);
}

TEST_F(BookingControls, ALockedTimeStays) {
  form.txtNeedTime.Value = Time{9, 0, 0};
  form.txtNeedTime.Locked = true;
  int steps = 0;
  form.txtNeedTime.SpinUp = [&] { ++steps; };
  QTest::keyClick(&find<QAbstractSpinBox>(form, "txtNeedTime"), Qt::Key_Up);
  EXPECT_EQ(steps, 0);
  EXPECT_TRUE(line("txtNeedTime").isReadOnly());
}

TEST_F(BookingControls, NumbersAmountsAndMasksTakeTheirShape) {
  QTest::keyClicks(&line("txtSetupTime"), "4500");
  EXPECT_EQ(form.txtSetupTime.number(), 450) << "as far as it was within the limits";
  QTest::keyClick(&line("txtSetupTime"), Qt::Key_Enter);
  EXPECT_EQ(line("txtSetupTime").text(), "4500") << "to be mended";
  EXPECT_TRUE(form.txtSetupTime.isEmpty());
  form.txtSetupTime.Value = 15;
  EXPECT_EQ(line("txtSetupTime").text(), "15");
  EXPECT_FALSE(find<QAbstractSpinBox>(form, "txtSetupTime").property(style::kWrong).toBool());
  line("txtSetupTime").selectAll();
  QTest::keyClicks(&line("txtSetupTime"), "999");
  QTest::keyClick(&find<QAbstractSpinBox>(form, "txtSetupTime"), Qt::Key_Down);
  EXPECT_EQ(form.txtSetupTime.number(), 998);

  auto& value = find<QLineEdit>(form, "txtValue");
  EXPECT_EQ(value.text(), "$0.00");
  value.selectAll();
  QTest::keyClicks(&value, "12.5");
  QTest::keyClick(&value, Qt::Key_Enter);
  EXPECT_EQ(value.text(), "$12.50");
  EXPECT_EQ(form.txtValue.plain(), "12.50");

  auto& number = find<QLineEdit>(form, "txtSSN");
  QTest::keyClicks(&number, "123456789");
  QTest::keyClick(&number, Qt::Key_Enter);
  EXPECT_EQ(number.text(), "123-45-6789");
}

TEST_F(BookingControls, AFieldMayHaveItsTextSelectedWhenItIsEntered) {
  form.txtLogin.Text = "boss";
  form.txtLogin.GotFocus = [&] { form.txtLogin.SelectText(); };
  window(form).activateWindow();
  auto& login = find<QLineEdit>(form, "txtLogin");
  QTest::mouseClick(&login, Qt::LeftButton, {}, {5, login.height() / 2});
  EXPECT_TRUE(waitUntil([&] { return login.selectedText() == "boss"; }));
}

}  // namespace
}  // namespace vantry::test
