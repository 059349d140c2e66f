#pragma once

#include "booking/editor_fixture.h"
#include "booking/frmBookWiz.h"

namespace vantry::test {

/// A desk whose operator makes bookings with the wizard.
struct WizardTest : EditorTest {
  static constexpr const char* kCancelQuestion = "Booking Wizard in progress!  Cancel this booking?";

  WizardTest() {
    app.makers.addRecord(kWizard, [](App& program) { return std::make_unique<frmBookWiz>(program); });
  }

  frmBookWiz& open() {
    return dynamic_cast<frmBookWiz&>(*OpenRecordWindow(app, {kWizard, "", kSourceMainWindow}));
  }
  void enterRequester(frmBookWiz& wizard) {
    expectRequester();
    expectRoomsOfRequester();
    expectValid();
    scan(wizard.requester.requester, "P31");
  }
  static void enterTimes(frmBookWiz& wizard) {
    wizard.times.showTimes("2026-11-24 09:00:00", "2026-11-24 10:30:00");
  }
  /// A delivery to the hall for Ina Ink, on one morning; the wizard shows the page of media.
  frmBookWiz& openAtMedia() {
    frmBookWiz& wizard = open();
    enterRequester(wizard);
    next(wizard, frmBookWiz::kSchedulePage);
    enterTimes(wizard);
    next(wizard, frmBookWiz::kMediaPage);
    return wizard;
  }

  /// The operator presses Next. What was expected has come, and the wizard is ready on this page.
  void next(frmBookWiz& wizard, int page) {
    wizard.cmdNext.press();
    server.checkAllCame();
    desktop.checkAllCame();
    EXPECT_EQ(wizard.page(), page);
    EXPECT_TRUE(wizard.isLoaded());
    EXPECT_TRUE(wizard.Enabled);
  }
  void expectPlaceChecks(const std::string& times = kTimesWithDays, const std::string& plain = kTimes) {
    server.expect("VALRMAVL", "BOOKID=0 " + plain + " RID=40 PGID=2");
    server.expect("VALDLO", "RID=40 PGID=2");
    server.expect("CDELTM", "PGID=2 ADBK=N " + times);
  }
  void expectEquipmentChecks(const std::string& times = kTimes) {
    server.expect("VALEAVL", "BOOKID=0 RID=40 PGID=2 " + times);
    server.expect("VALDLO", "RID=40 PGID=2");
  }
  /// The same without media, on its last page.
  frmBookWiz& openAtNotes() {
    frmBookWiz& wizard = openAtMedia();
    next(wizard, frmBookWiz::kRoomPage);
    expectPlaceChecks();
    next(wizard, frmBookWiz::kEquipmentPage);
    expectEquipmentChecks();
    next(wizard, frmBookWiz::kNotesPage);
    return wizard;
  }
  static std::string body(const std::string& times = kTimes, const std::string& things = "RID=40 BTID=2") {
    return times + " PID=31 PGID=2 PPID=0 ADBK=N " + things + " SCHCOM= ODE=0 OPU=0 WIZ=Y UTIME=0 CTIME=0";
  }
  int wizards() const { return windowsNamed("frmBookWiz"); }
};

}  // namespace vantry::test
