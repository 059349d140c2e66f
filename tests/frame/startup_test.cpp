#include <fstream>
#include <sstream>

#include "circulation/charge_view.h"
#include "frame/app.h"
#include "frame/frmLocation.h"
#include "frame/modMain.h"
#include "messaging/frmError.h"
#include "messaging/frmLogon.h"
#include "schedule/calendar_view.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

struct StartUp : Desk {
  void expectBookings(std::string_view block = "") {
    server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").replies(block);
  }
  std::string iniText() const {
    std::ostringstream text;
    text << std::ifstream(folder / "vantry.ini").rdbuf();
    return text.str();
  }
};

TEST_F(StartUp, OneLocationNeedsNoQuestionAndTheDayIsThere) {
  build("/nocheck desk");
  expectContext();
  expectBookings("BOOKID=7 BKRES=0 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00");
  ASSERT_TRUE(Main(*app));
  EXPECT_THAT(components.calls, testing::ElementsAre("register", "validate /nocheck desk"));
  EXPECT_EQ(main().StatusBar1.Panels(1).Text, "Main Desk");
  EXPECT_EQ(main().menus.mnuFileLogoff.Caption, "Log &Off desk");
  EXPECT_EQ(day().lblNumBookings.Caption, "1 Booking");
  EXPECT_EQ(app->context.allLocations.size(), 2u);
  EXPECT_TRUE(main().Enabled) << "the windows are ready";
  EXPECT_EQ(windowsShown(), 1) << "the connection's window is gone";
}

TEST_F(StartUp, SeveralLocationsAreAskedFor) {
  build();
  expectLogOn();
  server.expect("RLL", "OI=desk").replies(R"(
    LNA="Main Desk" LOC=3 OLN="City Library"
    LNA=Branch      LOC=4 OLN="County Library")");
  desktop.expectModalWindow<frmLocation>("frmLocation", [](frmLocation& window) {
    EXPECT_EQ(window.Caption, "Choose Booking Desk Location");
    EXPECT_EQ(window.ActiveControl(), &window.faLocations);
    EXPECT_EQ(window.faLocations.TextMatrix(0, 1), "Owning Library");
    EXPECT_EQ(window.faLocations.TextMatrix(2, 1), "County Library");
    window.closeByOperator();
    EXPECT_TRUE(window.isShown()) << "it has to be answered";
    window.faLocations.doubleClick(2, 0);
  });
  server.expect("SLL", "LOC=4").replies(allRightsBut());
  expectLists();
  expectBookings();
  ASSERT_TRUE(Main(*app));
  EXPECT_EQ(main().StatusBar1.Panels(1).Text, "Branch");
  EXPECT_EQ(app->context.locationId, "4");
}

TEST_F(StartUp, WithoutALocationTheProgramEnds) {
  const auto box = "No authorized locations found for Media. Please consult your system administrator.";
  for (const int rc : {0, -97}) {
    build();
    expectLogOn();
    if (rc == 0) {
      server.expect("RLL", "OI=desk");
    } else {
      server.expect("RLL", "OI=desk").fails(rc);
      desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
    }
    desktop.expectCritical(box);
    EXPECT_TRUE(endsProgram([&] { (void)Main(*app); })) << rc;
    desktop.ended = false;
  }
}

TEST_F(StartUp, FailingRightsEndTheProgramFailingLocationsDoNot) {
  build();
  expectLogOn();
  server.expect("RLL", "OI=desk").replies("LNA=Main LOC=3");
  server.expect("SLL", "LOC=3").fails(-97);
  desktop.expectModalWindow<frmError>("frmError", [](frmError& window) {
    EXPECT_EQ(window.lblModuleText.Caption, "SLL");
    EXPECT_EQ(window.lblFormNameText.Caption, "");
    window.cmdOKCompress.press();
  });
  EXPECT_TRUE(endsProgram([&] { (void)Main(*app); }));

  desktop.ended = false;
  build();
  expectLogOn();
  server.expect("RLL", "OI=desk").replies("LNA=Main LOC=3");
  server.expect("SLL", "LOC=3").replies(allRightsBut());
  server.expect("GETLOCS").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  for (const char* code : {"GETOPS", "GETECAT", "GETGCAT", "GETRCAT", "GETMYER"}) server.expect(code);
  expectBookings();
  EXPECT_TRUE(Main(*app));
  EXPECT_TRUE(app->context.allLocations.empty());
}

TEST_F(StartUp, ACancelledLoginEndsTheProgram) {
  build();
  desktop.expectModalWindow<frmLogon>("frmLogon", [](frmLogon& window) { window.cmdCancel.press(); });
  EXPECT_TRUE(endsProgram([&] { (void)Main(*app); }));
}

TEST_F(StartUp, AnUnreachableServerEndsItWithoutAMainWindow) {
  build();
  server.expectUnreachable("No server.");
  desktop.expectBox(Box::Kind::Warning, "No server.", 1);
  EXPECT_FALSE(Main(*app));
  EXPECT_FALSE(main().isLoaded());
}

TEST_F(StartUp, TheCalendarsOpenWhereTheyAreWanted) {
  settings.prefer("BookingCalendars", "true");
  build();
  expectContext();
  expectBookings();
  for (const char* code : {"GDELCA", "GROMCA", "GPICCA"}) server.expect(code);
  ASSERT_TRUE(Main(*app));
  EXPECT_EQ(app->windows[app->windows.Count() - 1].Caption, "Booking Calendars");
}

TEST_F(StartUp, AfterALogOffTheNextOperatorsContextHolds) {
  start();
  EXPECT_TRUE(day().cmdNewBooking.Enabled);
  expectLogOn("branch");
  server.expect("RLL", "OI=branch").replies("LNA=Branch LOC=4 OLN=County");
  server.expect("SLL", "LOC=4").replies(onlyRights("BKV"));
  expectLists();
  expectBookings();
  main().menus.mnuFileLogoff.choose();
  EXPECT_EQ(main().menus.mnuFileLogoff.Caption, "Log &Off branch");
  EXPECT_EQ(main().StatusBar1.Panels(1).Text, "Branch");
  EXPECT_FALSE(app->context.rights.has(Right::BKADD));
  EXPECT_FALSE(day().cmdNewBooking.Enabled);
  EXPECT_EQ(day().cmdEditBooking.Caption, "Vie&w");
  EXPECT_FALSE(main().albStandard.has("Rooms"));
  EXPECT_EQ(main().lblView.Caption, " Booking Schedule - Day View");
}

/// A window with unsaved work.
struct WorkingWindow : Form {
  explicit WorkingWindow(App& app, std::string tag, bool refuses)
      : Form(app.windows, "frmWork"), refuses_(refuses) {
    Tag = std::move(tag);
    Caption = "Booking " + Tag.get();
  }
  bool Form_Unload() override { return !refuses_; }
  bool refuses_;
};

TEST_F(StartUp, AWindowThatRefusesBlocksLogOffAndExit) {
  start();
  auto& first = app->windows.keep(std::make_unique<WorkingWindow>(*app, "7 - 1", false));
  auto& second = app->windows.keep(std::make_unique<WorkingWindow>(*app, "7 - 2", true));
  auto& third = app->windows.keep(std::make_unique<WorkingWindow>(*app, "7 - 3", false));
  for (Form* form : std::initializer_list<Form*>{&first, &second, &third}) form->Show();
  desktop.expectInformation(
      "Vantry\nBooking 7 - 2\n\nCould not log off.  Please resolve any issues with open Vantry "
      "windows.");
  main().menus.mnuFileLogoff.choose();
  EXPECT_FALSE(first.isLoaded());
  EXPECT_FALSE(third.isLoaded()) << "no window is skipped while the collection shrinks";
  EXPECT_EQ(app->context.operatorId, "desk");
  EXPECT_TRUE(main().Enabled);
  desktop.expectInformation(
      "Vantry\nBooking 7 - 2\n\nUnable to quit application.  Please resolve any issues with open "
      "Vantry "
      "windows.");
  main().menus.mnuFileExit.choose();
  EXPECT_FALSE(desktop.ended);

  second.refuses_ = false;
  EXPECT_TRUE(endsProgram([&] { main().menus.mnuFileExit.choose(); }));
}

TEST_F(StartUp, TheSystemsCloseAsksNothingAndKeepsTheView) {
  start();
  WorkingWindow open(*app, "7 - 2", true);
  open.Show();
  server.expect("GETOPS");
  main().menus.mnuViewStaff.choose();
  EXPECT_TRUE(endsProgram([&] { main().closeByOperator(); }));
  EXPECT_EQ(iniText(), "[ListBar]\nLastView=7\n");
  main().HideFrames();
  EXPECT_TRUE(endsProgram([&] { main().closeByOperator(); }));
  EXPECT_EQ(iniText(), "[ListBar]\nLastView=0\n") << "no view shows";
}

TEST_F(StartUp, AFileThatCannotBeWrittenIsToldAndTheProgramEnds) {
  start();
  std::filesystem::create_directory(folder / "vantry.ini.new");  // where the fresh file would be written
  desktop.expectBox(Box::Kind::Warning,
                    "Cannot write " + (folder / "vantry.ini.new").string() + ": Is a directory");
  EXPECT_TRUE(endsProgram([&] { main().closeByOperator(); }));
}

TEST_F(StartUp, ALogOffStopsTheMonitorAndEmptiesTheCalendars) {
  settings.prefer("View", "9");
  settings.prefer("ChargeSearch", "2");
  build();
  server.always("DELD");
  expectContext();
  ASSERT_TRUE(Main(*app));
  EXPECT_TRUE(main().tmrDaemon.Enabled);
  viewAs<MonthView>(main(), ViewId::Month).calMonth.mark({2026, 11, 3}, {Colour{5}, "1 booking"});
  viewAs<YearView>(main(), ViewId::Year).lblNumBookings.Caption = "1 booking";
  desktop.expectModal("frmLogon", [&](Form& form) {
    EXPECT_FALSE(main().tmrDaemon.Enabled);
    EXPECT_EQ(main().lblView.Tag, "");
    EXPECT_EQ(viewAs<MonthView>(main(), ViewId::Month).calMonth.markOf({2026, 11, 3}), DayMark{});
    EXPECT_EQ(viewAs<YearView>(main(), ViewId::Year).lblNumBookings.Caption, "");
    form.Unload();
  });
  EXPECT_TRUE(endsProgram([&] { main().menus.mnuFileLogoff.choose(); }));
  EXPECT_EQ(viewAs<ChargeView>(main(), ViewId::Charge).cboChargeSearch.ListIndex.get(), 2)
      << "the lists are as preferred for the next operator";
}

TEST_F(StartUp, AGivenUpConnectionEndsTheProgramInTheMiddleOfACommand) {
  start();
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N").losesRequest("The line is down.");
  desktop.expectBox(Box::Kind::Warning, "The line is down.", 1);
  EXPECT_TRUE(endsProgram([&] { day().cmdToday.press(); }));
}

}  // namespace
}  // namespace vantry::test
