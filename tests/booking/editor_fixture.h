#pragma once

#include "booking/booking_fixture.h"
#include "booking/frmBooking.h"
#include "frame/app.h"
#include "records/records.h"
#include "records/search_window.h"
#include "support/noted_reports.h"

namespace vantry::test {

/// The main window as far as the editor knows it: it counts how often its list was read anew.
struct CountingMain : MainWindow {
  explicit CountingMain(App& app) : window(app.windows, "frmMain") {}
  Form window;
  int refreshes = 0;

  Form& form() override { return window; }
  void Abort() override { ADD_FAILURE() << "the program ends"; }
  void placeFrames() override {}
  void showStatus(int, std::string_view) override {}
  void showOperator(std::string_view) override {}
  void mnuModeStandard_Click() override {}
  void mnuModeDaemon_Click() override {}
  void StartStopTimer(bool) override {}
  void SetFormSecurity(int) override {}
  void refillStaff() override {}
  void BuildMainTrees() override {}
  void refillInventory(int, std::string_view) override {}
  void dropInventoryRow(int, std::string_view) override {}
  void mnuPopupGroupMembers_Click() override {}
  void applyPreferences(Applies) override {}
  void GetBookingsForDate() override { ++refreshes; }
};

/// Circulation that notes what it was asked, and answers as it was told.
struct ScriptedCirculation : CirculationWindows {
  std::vector<std::string> asked;
  std::string dischargeStatus = "1";
  void showReplyNotes(std::string_view mode, int rooms, int pieces) override {
    asked.push_back("notes " + std::string(mode) + " " + std::to_string(rooms) + " " +
                    std::to_string(pieces));
  }
  void showNote(std::string_view text) override { asked.emplace_back(text); }
  [[nodiscard]] std::string discharge(int bookingId) override {
    asked.push_back("discharge " + std::to_string(bookingId));
    return dischargeStatus;
  }
};

/// A desk with two locations and all rights; bookings open as the main window opens them.
struct EditorTest : BookingTest {
  CountingMain main{app};
  ScriptedCirculation circulation;
  NotedReports reports;
  std::vector<std::string>& printed = reports.confirmations;

  EditorTest() {
    app.setMain(main);
    app.setCirculation(circulation);
    app.makers.addRecord(kBooking, [](App& program) { return std::make_unique<frmBooking>(program); });
    app.makers.addWindow(std::string(kSearchWindow), [](App& program) {
      return std::make_unique<Form>(program.windows, std::string(kSearchWindow));
    });
    app.setReports(reports);
    grant({Right::BKADD, Right::BKUPD, Right::BKCAN, Right::BKV, Right::BKCHA, Right::BKDIS, Right::OVITM,
           Right::OVOTR, Right::RMADD, Right::RMV});
    app.context.allLocations = {{"Main Desk", "3", ""}, {"Branch", "4", ""}};
    app.context.staff = {{"51", "Stone, Sam", true}, {"52", "Gone, Gil", false}};
  }

  /// The newest editor.
  frmBooking& editor() {
    for (int i = app.windows.Count() - 1; i >= 0; --i) {
      if (auto* window = dynamic_cast<frmBooking*>(&app.windows[i])) return *window;
    }
    throw std::runtime_error("no editor stands");
  }
  int windowsNamed(std::string_view name) const {
    int count = 0;
    for (int i = 0; i < app.windows.Count(); ++i) count += app.windows[i].Name() == name ? 1 : 0;
    return count;
  }
  int editors() const { return windowsNamed("frmBooking"); }
  frmBooking& openNew() {
    OpenRecordWindow(app, {kBooking, "", kSourceMainWindow});
    return editor();
  }

  frmBooking& openPickUp() {
    RecordOpening opening(kBooking, "", kSourceMainWindow);
    opening.pickUp = true;
    OpenRecordWindow(app, opening);
    return editor();
  }

  static constexpr const char* kTimes = "STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00";
  static constexpr const char* kTimesWithDays =
      "STIME=2026-11-24 09:00:00 SDOW=3 ETIME=2026-11-24 10:30:00 EDOW=3";

  /// The head of booking 7: a delivery for Ina Ink of group 2, unless told otherwise.
  static std::string head(std::string_view others = {}) {
    std::string text =
        "WIZ=N UTIME=10 CTIME=5 CNUM=M7 SCHCOM=\"By the lift\" CNM=desk CLN=\"Main Desk\" "
        "CDT=2026-11-20 08:00:00 UNM=ann ULN=Branch UDT=2026-11-21 08:00:00 ODE=51 OPU=0 ";
    const std::string_view usual[] = {
        "BTID=2", "ADBK=N", "PATNM=\"Ink, Ina\"", "PGNM=Staff", "PID=31", "PGID=2", "BKRES=0", "PPID=0"};
    const std::string given = " " + std::string(others);
    for (const std::string_view pair : usual) {
      const std::string tag(pair.substr(0, pair.find('=') + 1));
      if (given.find(" " + tag) == std::string::npos) text += std::string(pair) + " ";
    }
    return text + kTimes + given;
  }
  void expectRooms(const char* asked = "ADBK=N PGID=2") {
    server.expect("GDRM", asked).replies("RID=40 RNM=Hall\nRID=41 RNM=Lab");
    server.expect("GLSRM", asked).replies("RID=60 RNM=Studio");
  }
  /// The first delivery room is chosen as soon as its list stands.
  void expectRoomsOfRequester() {
    server.expect("GDRM", "ADBK=N PGID=2").replies("RID=40 RNM=Hall\nRID=41 RNM=Lab");
    server.expect("GETREQP", "RID=40 BRTY=1");
    server.expect("GLSRM", "ADBK=N PGID=2").replies("RID=60 RNM=Studio");
  }
  /// Booking 7 with something of everything.
  void expectFullBooking(const std::string& title = "TITL=\"Sea birds\"", const std::string& item = "") {
    server.expect("GETMSD", "BOOKID=7").replies(head());
    expectRooms();
    server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
    server.expect("GETREQP", "RID=41 BRTY=1").replies("EID=70 EIU=N BNO=B70 ENO=N70 ETY=Screen ESDS=Good");
    server.expect("GETSITM", "BOOKID=7").replies("MTID=5 BI=81 MI=82 IM=83 MTY=Film " + title);
    server.expect("GID", "MI=82 IM=83").replies("LO=Stacks CP=1 " + item);
    server.expect("GMD", "MI=82 BI=81").replies("MI=82 CN=QL1 LO=Stacks");
    server.expect("GETSEQ", "BOOKID=7")
        .replies("EID=90 EIU=N BNO=B90 ENO=N90 ETY=TV ESDS=Good\nEID=0 ETI=12 ETY=Projector");
    server.expect("ITMEQS", "MTID=5 PGID=2 ADBK=N").replies("head: MTY=Film | ETI=14 ETY=Player");
    server.expect("GSCIT", "BOOKID=7").replies("MTID=5 ETI=14");
    expectPrivileges();
  }
  void expectEmptyThings() {
    for (const char* code : {"GETSITM", "GETSEQ", "GSCIT"}) server.expect(code, "BOOKID=7");
  }
  void expectPrivileges(const char* max = "-1", const char* count = "1") {
    server.expect("PATPRIV", "PGID=2 PID=31")
        .replies("ICNT=5 ECNT=5 PVALD=2027-01-31 00:00:00 BKM=" + std::string(max) + " BCNT=" + count);
  }
  /// All that is asked for booking 7, without media and equipment.
  void expectLoad(std::string_view others = {}) {
    server.expect("GETMSD", "BOOKID=7").replies(head(others));
    expectRooms();
    server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
    server.expect("GETREQP", "RID=41 BRTY=1");
    expectEmptyThings();
    expectPrivileges();
  }
  frmBooking& openSeven(std::string_view others = {}) {
    expectLoad(others);
    OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
    server.checkAllCame();
    return editor();
  }

  /// The search window opens with what this matches, and brings this back.
  void answerSearch(const std::string& answer, const testing::Matcher<std::string>& asked = testing::_) {
    desktop.expectModal(std::string(kSearchWindow), [=](Form& search) {
      EXPECT_THAT(search.Tag.get(), asked);
      search.Tag = answer;
      search.Hide();
    });
  }

  void answerEmpty(int answer) {
    desktop.expectBox(Box::Kind::Question, "There is no media or equipment in this booking.  Save anyway?",
                      answer);
  }

  /// A scanned barcode that is Ina Ink's.
  void expectRequester() {
    server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=")
        .replies("PID=31 PLN=Ink PFN=Ina PGNM=Staff PGID=2 BNO=P31 BST=Active BSI=1");
  }
  void expectValid() {
    server.expect("VALRP", "PID=31 PGID=2 PUP=N");
    expectPrivileges();
  }
  static void scan(PatronField& field, const char* barcode) {
    field.text.type(barcode);
    field.text.pressEnter();
  }
  /// A new delivery to the hall for Ina Ink, on one morning.
  frmBooking& newDelivery() {
    frmBooking& window = openNew();
    expectRequester();
    expectRoomsOfRequester();
    expectValid();
    scan(window.requester.requester, "P31");
    window.times.showTimes("2026-11-24 09:00:00", "2026-11-24 10:30:00");
    return window;
  }
};

}  // namespace vantry::test
