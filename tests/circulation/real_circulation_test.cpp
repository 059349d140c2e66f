#include <atomic>
#include <cstdlib>
#include <filesystem>

#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "circulation/circulation_fixture.h"
#include "platform/text.h"
#include "server/moment.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

// Things go out and come back on the real server, in the demo library, by what the operator does.

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

struct RealCirculation : testing::Test {
  static inline fs::path folder;
  static inline std::unique_ptr<EmbeddedServer> embedded;
  static inline std::atomic<std::int64_t> now;  ///< the server's time

  static void setNow(std::string_view moment) { now = server::parseMoment(moment).value(); }
  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "vantry-circulation-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
    setNow("2026-11-24 12:00:00");
    DemoOptions demo;
    demo.date = "2026-11-24";
    demo.daysBack = 3;
    demo.daysAhead = 5;
    embedded = std::make_unique<EmbeddedServer>(
        EmbeddedServer::Options{folder / "library.sqlite", demo, true, [] { return now.load(); }});
  }
  static void TearDownTestSuite() {
    embedded.reset();
    fs::remove_all(folder);
  }

  ScriptedDesktop desktop;
  HttpTransport transport{{embedded->address()}};
  FixedClock clock;
  MemorySettings settings;
  NotedComponents components;
  Program program{{desktop, transport, clock, settings, components, {}, {}}, ""};
  App& app = program.app;
  frmMain& main = program.main;

  void SetUp() override { main.Load(); }

  int send(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app.message.Add(tag, value);
    return app.message.Send(code);
  }
  std::string get(std::string_view tag) { return app.message.Get(tag); }
  void logOn() {
    ASSERT_EQ(transport.logon("desk", "desk-demo"), LogonResult::Accepted);
    ASSERT_EQ(send("RLL", {{"OI", "desk"}}), 0);
    ASSERT_TRUE(app.message.NextRecord("LNA"));
    ASSERT_EQ(send("SLL", {{"LOC", app.message.Get("LOC")}}), 0);
  }
  std::string status(const std::string& id) {
    send("GETMSD", {{"BOOKID", id}});
    return get("BKRES");
  }

  struct Booking {
    std::string id, start, number;
  };
  /// The live bookings of the afternoon and the next day.
  std::vector<Booking> liveBookings() {
    std::vector<Booking> found;
    for (const char* date : {"2026-11-24", "2026-11-25"}) {
      if (send("BOOKDAY", {{"DATE", date}, {"HBK", "N"}}) != 0) continue;
      while (app.message.NextRecord("BOOKID")) {
        if (intOf(get("BKRES")) == 0) found.push_back({get("BOOKID"), get("STIME"), get("CNUM")});
      }
    }
    return found;
  }
  /// One with a generic wish and some real pieces besides.
  Booking wishfulBooking() {
    for (const Booking& booking : liveBookings()) {
      int wishes = 0;
      int pieces = 0;
      send("GETSEQ", {{"BOOKID", booking.id}});
      while (app.message.NextRecord("EID")) ++(intOf(get("EID")) == 0 ? wishes : pieces);
      if (wishes > 0 && pieces > 0) return booking;
    }
    throw std::runtime_error("the demo library has no such booking");
  }
  void searchToCharge(const std::string& number) {
    main.showView(ViewId::Charge);
    main.chargeView.cboChargeSearch.select(2);
    main.chargeView.txtChargeSearchFor.type(number);
    main.chargeView.txtChargeSearchFor.pressEnter();
  }
};

TEST_F(RealCirculation, ABookingWithWishesGoesOutAndComesBackInTwoSteps) {
  logOn();
  const Booking booking = wishfulBooking();
  setNow(booking.start);
  logOn();

  searchToCharge(booking.number);
  const Grid& grid = main.chargeView.faChargeBookings;
  ASSERT_EQ(grid.Rows, 2);
  EXPECT_EQ(grid.TextMatrix(1, grid.columnOfData(9)), booking.number);
  EXPECT_NE(grid.TextMatrix(1, grid.columnOfData(8)), "");
  ASSERT_TRUE(main.chargeView.tvwCDetails.Visible) << "found alone, its details open";
  const std::size_t lines = main.chargeView.tvwCDetails.find("Equipment")->children.size();
  EXPECT_GE(lines, 2U) << "pieces and wishes";
  desktop.expectModalWindow<frmGenAssign>("frmGenAssign", [](frmGenAssign& window) {
    ASSERT_TRUE(window.faGenEquip.hasData());
    EXPECT_NE(window.faGenEquip.TextMatrix(1, 2), "") << "a real piece with its number";
    window.cmdOK.press();
  });
  desktop.expectInformation("Booking charged successfully!");
  main.chargeView.cmdCCharge.press();
  EXPECT_FALSE(main.chargeView.fraCBookings.Visible);
  EXPECT_EQ(status(booking.id), "99");
  desktop.expectInformation("Selected booking already charged!");
  main.chargeView.txtChargeSearchFor.pressEnter();

  // The media come back first, and the pieces are scanned.
  main.showView(ViewId::Discharge);
  DischargeView& view = main.dischargeView;
  view.cboDischargeSearch.select(2);
  view.txtDischargeSearchFor.type(booking.number);
  view.txtDischargeSearchFor.pressEnter();
  ASSERT_EQ(view.faDischargeBookings.Rows, 2);
  std::vector<std::string> barcodes;
  desktop.expectModalWindow<frmDischarge>("frmDischarge", [&](frmDischarge& window) {
    for (int line = 0; line < window.lstEquipment.ListCount(); ++line) {
      const std::string& text = window.lstEquipment.List(line);
      barcodes.push_back(text.substr(text.rfind(" - ") + 3));
    }
    window.cmdDeselectAll(1).press();
    window.cmdOK.press();
  });
  desktop.expectInformation("Selected items discharged successfully!");
  view.cmdDDischarge.press();
  EXPECT_EQ(view.faDischargeBookings.Rows, 2) << "something is still out";
  EXPECT_EQ(status(booking.id), "99");
  ASSERT_GE(barcodes.size(), 2U);

  main.showView(ViewId::QuickDischarge);
  QuickDischargeView& quick = main.quickDischargeView;
  quick.cboQuickDischargeType.select(2);
  for (const std::string& barcode : barcodes) {
    EXPECT_EQ(status(booking.id), "99");
    quick.txtQuickDischargeItem.type(barcode);
    quick.txtQuickDischargeItem.pressEnter();
    EXPECT_EQ(quick.txtQuickDischargeItem.Text, "") << "ready for the next one";
    EXPECT_THAT(quick.txtDischargeLog.Text.get(), testing::HasSubstr(barcode + " has been discharged"));
  }
  EXPECT_EQ(status(booking.id), "1");
  desktop.expectInformation("Unable to find booking information.");
  quick.txtQuickDischargeItem.type(barcodes.front());
  quick.txtQuickDischargeItem.pressEnter();
}

TEST_F(RealCirculation, ARefusedChargeTellsWhyAndChangesNothing) {
  logOn();
  const Booking booking = liveBookings().back();
  searchToCharge(booking.number);
  ASSERT_EQ(main.chargeView.faChargeBookings.Rows, 2);
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [&](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Booking Not Charged");
    ASSERT_TRUE(window.faErrors.hasData());
    EXPECT_THAT(window.faErrors.TextMatrix(1, 0),
                testing::MatchesRegex("Booking charged too early:  cannot charge before "
                                      "[0-9:]+ [AP]M on 2[45]/11/2026"));
    window.cmdOK.press();
  });
  main.chargeView.cmdCCharge.press();
  EXPECT_EQ(main.chargeView.faChargeBookings.Rows, 2);
  EXPECT_EQ(status(booking.id), "0");
}

}  // namespace
}  // namespace vantry::test
