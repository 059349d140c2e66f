#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "booking/wizard_fixture.h"
#include "messaging/frmError.h"

// One booking of each type by the wizard, with each of its checks refused once on the way.

namespace vantry::test {
namespace {

struct TypeCase {
  friend void PrintTo(const TypeCase& type, std::ostream* out) { *out << type.name; }
  const char* name;
  int option;
  const char* place;       ///< as most requests name it
  const char* placeCheck;  ///< whether the place takes the things
  int refusal;
  const char* refusalReply;
  const char* calendarCheck;
  const char* type;
};

constexpr TypeCase kTypes[] = {
    {"Delivery", kDeliverOption, "RID=41", "VALDLO", 146, "VD1=MTID VD2=Film", "CDELTM", "2"},
    {"Room", kScheduledOption, "RID=60", "VALLSL", 157, "VUF=148 BKDUR=H BKMX=2", "CRMTM", "1"},
    {"PickUp", kPickUpOption, "LOC=4", "VALPLO", 145, "VD1=MTID VD2=Film", "CPUPTM", "3"},
};

struct WizardTypes : WizardTest, testing::WithParamInterface<TypeCase> {
  const TypeCase& type = GetParam();
  frmBookWiz& wizard = open();
  std::string things = " MTID=5 BI=81 MI=82 IM=84";
  std::string pieces;

  void addItem(const char* item) {
    Grid& media = wizard.parts.media.faMedia;
    media.Rows = 2;
    int col = 0;
    for (const char* text : {"81", "82", item, "5"}) media.TextMatrix(1, col++, text);
  }
  /// Next is pressed and refused by what was expected: the page and what is on it stay.
  void refused() {
    const int page = wizard.page();
    next(wizard, page);
    EXPECT_TRUE(wizard.pages.at(static_cast<std::size_t>(page)).frame.Visible);
    EXPECT_TRUE(wizard.cmdNext.Enabled);
  }
  void choosePlace() {
    const auto expectChoice = [this](const std::string& room) {
      server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=" + room);
      server.expect("GETREQP", "RID=" + room + " BRTY=1");
    };
    if (type.option == kDeliverOption) {
      expectChoice("41");
      wizard.place.cboDeliveryRoom.select(1);
    } else if (type.option == kScheduledOption) {
      expectChoice("60");
      wizard.place.optRoom(kScheduledOption).choose();
    } else {
      wizard.place.optRoom(kPickUpOption).choose();
      wizard.place.cboPickupLocation.select(1);
    }
  }
  /// A pick-up has no room that could be taken.
  bool expectRoom(int rc) {
    if (type.option == kPickUpOption) return false;
    server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " " + type.place + " PGID=2")
        .fails(rc, rc == 0 ? "" : "VUF=158");
    return true;
  }
  ScriptedServer::Answer expectPlace() {
    return server.expect(type.placeCheck, std::string(type.place) + " PGID=2" + things + pieces);
  }
  void expectPlaceRefusal() {
    expectPlace().fails(type.refusal, type.refusalReply);
    if (type.option == kScheduledOption)
      return desktop.expectQuestion("Room may be scheduled for 2 hours.  Continue with booking?  ", false);
    desktop.expectModalWindow<frmOverride>("frmOverride",
                                           [](frmOverride& override) { override.cmdCancel.press(); });
  }
  ScriptedServer::Answer expectCalendar() {
    return server.expect(type.calendarCheck, std::string("PGID=2 ADBK=N ") + kTimesWithDays +
                                                 (type.option == kScheduledOption ? " RID=60" : ""));
  }
  ScriptedServer::Answer expectUsage(const char* code, const std::string& listed) {
    return server.expect(code, std::string("BOOKID=0 ") + type.place + " PGID=2 " + kTimes + listed);
  }
  ScriptedServer::Answer expectLimit(const char* code, const std::string& listed) {
    return server.expect(code, std::string("BOOKID=0 PGID=2 BTID=") + type.type + " " + kTimes + listed);
  }
  ScriptedServer::Answer expectStoring() {
    return server.expect("NEWBK", std::string(kTimes) + " PID=31 PGID=2 PPID=0 ADBK=N " + type.place +
                                      " BTID=" + type.type + pieces + things +
                                      " SCHCOM=\"Ring twice\" ODE=0 OPU=0 WIZ=Y UTIME=0 CTIME=0");
  }
};

TEST_P(WizardTypes, EachCheckRefusesOnceAndPassesAfterAChange) {
  EXPECT_EQ(wizard.ActiveControl(), &wizard.requester.requester.text);
  EXPECT_FALSE(wizard.cmdNext.Enabled);
  EXPECT_FALSE(wizard.cmdPrevious.Enabled);
  enterRequester(wizard);
  EXPECT_EQ(wizard.ActiveControl(), &wizard.cmdNext) << "the field of the requester is locked";
  next(wizard, frmBookWiz::kSchedulePage);

  EXPECT_EQ(wizard.ActiveControl(), &wizard.times.fpdNeedDate);
  wizard.times.txtNeedTime.SetFocus();  // leaving a date would move the other one along
  wizard.times.showTimes("2026-11-25 09:00:00", "2026-11-24 10:30:00");
  desktop.expectCritical("Booking start date/time is later than booking end date/time!");
  refused();
  EXPECT_EQ(wizard.times.fpdNeedDate.shortDate(), "25/11/2026");
  enterTimes(wizard);
  next(wizard, frmBookWiz::kMediaPage);

  EXPECT_EQ(wizard.ActiveControl(), &wizard.parts.media.cmdSearchMedia);
  addItem("83");
  server.expect("VALIAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes + " MTID=5 BI=81 MI=82 IM=83")
      .fails(150, "head: MTY=Film | VUF=162");
  desktop.expectCritical("No media items available in requester's policy");
  refused();
  EXPECT_EQ(wizard.parts.media.faMedia.TextMatrix(1, 2), "83");
  addItem("84");
  server.expect("VALIAVL", std::string("BOOKID=0 RID=40 PGID=2 ") + kTimes + things);
  next(wizard, frmBookWiz::kRoomPage);

  EXPECT_EQ(wizard.ActiveControl(), &wizard.place.cboDeliveryRoom) << "the option of the preferences";
  choosePlace();
  if (expectRoom(107)) {
    desktop.expectInformation(
        "The selected room is not available for the following booking:  24/11/2026 @ 09:00 AM");
    refused();
  }
  expectRoom(0);
  expectPlaceRefusal();
  refused();
  expectRoom(0);
  expectPlace();
  expectCalendar().fails(167, "VUF=168 DATE=0900");
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& report) {
    EXPECT_EQ(report.ReportCode, codes::CalendarConflict);
    report.cmdOK.press();
  });
  refused();
  expectRoom(0);
  expectPlace();
  expectCalendar();
  next(wizard, frmBookWiz::kEquipmentPage);

  EXPECT_EQ(wizard.ActiveControl(), &wizard.parts.equipment.cmdSpecific);
  ASSERT_NE(wizard.parts.equipment.tvwOtherEquipment.Add(roots::Specific, "90", "TV1"), nullptr);
  pieces = " EID=90";
  expectUsage("VALEAVL", pieces).fails(179);
  desktop.expectCritical("Equipment not in a storage room.  Cannot be booked.");
  refused();
  expectUsage("VALEAVL", pieces);
  expectPlaceRefusal();
  refused();
  wizard.parts.equipment.tvwOtherEquipment.Remove("90");
  ASSERT_NE(wizard.parts.equipment.tvwOtherEquipment.Add(roots::Specific, "91", "TV2"), nullptr);
  pieces = " EID=91";
  expectUsage("VALEAVL", pieces);
  expectPlace();
  next(wizard, frmBookWiz::kNotesPage);

  EXPECT_EQ(wizard.ActiveControl(), &wizard.txtBookingNote);
  EXPECT_EQ(wizard.cmdNext.Caption, "Finish");
  wizard.txtBookingNote.type("Ring twice");
  expectLimit("VIUL", things).fails(150, "head: MTY=Film | VUF=162");
  desktop.expectCritical("No media items available in requester's policy");
  refused();
  expectLimit("VIUL", things);
  expectLimit("VEUL", pieces).fails(149, "head: ETY=TV | VUF=163");
  desktop.expectCritical("No equipment of the selected type available in requester's policy");
  refused();
  expectLimit("VIUL", things);
  expectLimit("VEUL", pieces);
  expectStoring().fails(181);
  desktop.expectCritical("Multiple booking times overlap.  Please correct and save again.");
  refused();
  EXPECT_EQ(wizard.txtBookingNote.Text, "Ring twice");
  EXPECT_EQ(main.refreshes, 0);

  expectLimit("VIUL", things);
  expectLimit("VEUL", pieces);
  expectStoring().replies("BOOKID=7 CNUM=M7");
  expectLoad();
  wizard.cmdNext.press();
  EXPECT_EQ(wizards(), 0);
  EXPECT_EQ(editor().Caption, "Booking - Confirmation Number:  M7") << "the editor shows it";
  EXPECT_EQ(main.refreshes, 1);
}

INSTANTIATE_TEST_SUITE_P(All, WizardTypes, testing::ValuesIn(kTypes),
                         [](const auto& each) { return std::string(each.param.name); });

struct WizardReports : WizardTest {
  void expectSystemError(const char* form, const char* module) {
    desktop.expectModalWindow<frmError>("frmError", [=](frmError& error) {
      EXPECT_EQ(error.lblFormNameText.Caption, form);
      EXPECT_EQ(error.lblModuleText.Caption, module);
      error.Hide();
    });
  }
};

TEST_F(WizardReports, ThePageReportsAsTheWizardAndTheStoringAsTheEditor) {
  frmBookWiz& wizard = openAtMedia();
  next(wizard, frmBookWiz::kRoomPage);
  server.expect("VALRMAVL", std::string("BOOKID=0 ") + kTimes + " RID=40 PGID=2");
  server.expect("VALDLO", "RID=40 PGID=2");
  server.expect("CDELTM", std::string("PGID=2 ADBK=N ") + kTimesWithDays).fails(1);
  expectSystemError("frmBookWiz", "CDELTM");
  next(wizard, frmBookWiz::kRoomPage);
  expectPlaceChecks();
  next(wizard, frmBookWiz::kEquipmentPage);
  expectEquipmentChecks();
  next(wizard, frmBookWiz::kNotesPage);
  answerEmpty(0);
  server.expect("NEWBK", body()).fails(1);
  expectSystemError("frmBooking", "NEWBK");
  next(wizard, frmBookWiz::kNotesPage);
}

}  // namespace
}  // namespace vantry::test
