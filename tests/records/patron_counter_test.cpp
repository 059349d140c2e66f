#include "messaging/return_codes.h"
#include "records/frmPatronCounter.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kCounters = "CURBK=2 LTRE=1 HBK=3 CANBK=4 UNBK=5 OI=desk UDT=2026-03-02 09:00:00";
constexpr const char* kQuestion = "Changes will be lost!  Do you wish to SAVE this record before exiting?";

struct PatronCounterTest : Desk {
  void SetUp() override { start(); }
  /// Opens the counters of the patron 7, whom the operator plays with.
  void open(std::function<void(frmPatronCounter&)> play) {
    server.expect("GPAI", "PID=7").replies(kCounters);
    desktop.expectModalWindow<frmPatronCounter>("frmPatronCounter", std::move(play));
    ShowPatronCounters(*app, 7);
    desktop.checkAllCame();
    server.checkAllCame();
  }
};

TEST_F(PatronCounterTest, ShowsTheCountersAndWhoResetThem) {
  open([](frmPatronCounter& form) {
    std::string text;
    for (const NumberField* field :
         {&form.txtCurrentBookings, &form.txtLateReturns, &form.txtHistoricalBookings,
          &form.txtCancelledBookings, &form.txtUnclaimedBookings})
      text += field->Text() + " ";
    EXPECT_EQ(text + form.txtResetOperatorID.Text.get() + " " + form.dtResetDate.Text.get(),
              "2 1 3 4 5 desk 02/03/2026");
    EXPECT_TRUE(form.txtCurrentBookings.Locked);
    EXPECT_FALSE(form.txtLateReturns.Locked || form.cmdOK.Visible);
    form.cmdClose.press();  // nothing was changed
  });
  ShowPatronCounters(*app, 0);
}

TEST_F(PatronCounterTest, ASaveSendsWhatCanBeCorrectedAndEndsTheQuestions) {
  open([&](frmPatronCounter& form) {
    form.txtLateReturns.type("100000");
    desktop.expectInformation("Please enter a number from 0 to 99999 for Late Returns.");
    form.cmdSave.press();
    form.txtLateReturns.type("99999");
    form.txtUnclaimedBookings.type("0");
    server.expect("UPAI", "PID=7 LTRE=99999 HBK=3 CANBK=4 UNBK=0");
    desktop.expectInformation("Patron Counters Saved");
    form.cmdSave.press();
    form.txtLateReturns.type("1");
    form.cmdClose.press();
  });
}

TEST_F(PatronCounterTest, AnEmptiedCounterIsNoZero) {
  open([&](frmPatronCounter& form) {
    form.txtLateReturns.type("");
    desktop.expectWarning("Please enter a number for every counter.");
    form.cmdSave.press();
    EXPECT_EQ(form.ActiveControl(), &form.txtLateReturns);
    desktop.expectQuestion(kQuestion, true);
    desktop.expectWarning("Please enter a number for every counter.");
    form.cmdClose.press();
    EXPECT_TRUE(form.isLoaded());
    desktop.expectQuestion(kQuestion, false);
    form.cmdClose.press();
  });
}

TEST_F(PatronCounterTest, ChangesAreAskedAboutBeforeTheyAreLost) {
  open([&](frmPatronCounter& form) {
    form.txtCancelledBookings.type("0");
    desktop.expectQuestion(kQuestion, false);
    form.closeByOperator();
  });
  open([&](frmPatronCounter& form) {
    form.txtCancelledBookings.type("0");
    server.expect("UPAI", "PID=7 LTRE=1 HBK=3 CANBK=0 UNBK=5").fails(codes::NotFound);
    desktop.expectWarning("This patron is not there any more.");
    form.cmdSave.press();
    desktop.expectQuestion(kQuestion, true);
    server.expect("UPAI", "PID=7 LTRE=1 HBK=3 CANBK=0 UNBK=5");
    desktop.expectInformation("Patron Counters Saved");
    form.cmdClose.press();
  });
}

TEST_F(PatronCounterTest, WithoutTheRightNothingCanBeChanged) {
  start(allRightsBut("PACOU"));
  open([](frmPatronCounter& form) {
    EXPECT_FALSE(form.cmdSave.Visible || form.cmdClose.Visible);
    EXPECT_TRUE(form.txtLateReturns.Locked && form.txtHistoricalBookings.Locked &&
                form.txtCancelledBookings.Locked && form.txtUnclaimedBookings.Locked);
    form.cmdOK.press();
  });
}

TEST_F(PatronCounterTest, CountersThatCannotBeReadOpenNoWindow) {
  server.expect("GPAI", "PID=7").fails(codes::NotFound);
  desktop.expectWarning("This patron is not there any more.");
  ShowPatronCounters(*app, 7);
  EXPECT_EQ(app->windows.Count(), 1);
}

}  // namespace
}  // namespace vantry::test
