#include <cstdlib>
#include <filesystem>

#include "booking/booking_fixture.h"
#include "booking/frmErrorReport.h"
#include "booking/modBooking_policy.h"
#include "platform/text.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

// The answers of policy as the real server gives them, in the demo library.

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

struct RealPolicy : testing::Test {
  static inline fs::path folder;
  static inline std::unique_ptr<EmbeddedServer> embedded;

  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "vantry-policy-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
    DemoOptions demo;
    demo.date = "2026-11-24";
    demo.daysBack = 3;
    demo.daysAhead = 5;
    embedded =
        std::make_unique<EmbeddedServer>(EmbeddedServer::Options{folder / "library.sqlite", demo, true});
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
  App app{{desktop, transport, clock, settings, components, {}, {}}, ""};

  void SetUp() override {
    app.daySlots = daySlots(6, 10, 1);
    ASSERT_EQ(transport.logon("desk", "desk-demo"), LogonResult::Accepted);
    ASSERT_EQ(send("RLL", {{"OI", "desk"}}), 0);
    ASSERT_TRUE(app.message.NextRecord("LNA"));
    ASSERT_EQ(send("SLL", {{"LOC", app.message.Get("LOC")}}), 0);
  }

  int send(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app.message.Add(tag, value);
    return app.message.Send(code);
  }
  std::string get(std::string_view tag) { return app.message.Get(tag); }

  std::vector<std::string> liveBookings() {
    std::vector<std::string> ids;
    for (const char* date : {"2026-11-25", "2026-11-26", "2026-11-27"}) {
      if (send("BOOKDAY", {{"DATE", date}, {"HBK", "N"}}) != 0) continue;
      while (app.message.NextRecord("BOOKID")) {
        if (intOf(get("BKRES")) == 0) ids.push_back(get("BOOKID"));
      }
    }
    return ids;
  }

  /// A live booking whose `code` lists a thing with this tag; its record, and the thing's tags.
  struct Found {
    BookingRecord record;
    std::vector<TagValue> thing;
  };
  Found find(std::string_view code, std::string_view tag, std::initializer_list<std::string_view> tags) {
    for (const std::string& id : liveBookings()) {
      Found found;
      if (send("GETMSD", {{"BOOKID", id}}) != 0) continue;
      ReadBookingHead(app.message, found.record);
      if (found.record.PatronGroupId == 0 || send(code, {{"BOOKID", id}}) != 0) continue;
      const bool single = code == "GETSRM";
      while (single || app.message.NextRecord(tag)) {
        if (intOf(get(tag)) != 0) {
          for (const std::string_view wanted : tags)
            found.thing.push_back({std::string(wanted), get(wanted)});
          return found;
        }
        if (single) break;
      }
    }
    throw std::runtime_error("the demo library has no booking with a " + std::string(tag));
  }

  std::vector<TagValue> withTimes(const Found& found, std::vector<TagValue> first) {
    first.push_back({"PGID", std::to_string(found.record.PatronGroupId)});
    first.push_back({"STIME", found.record.StartTime});
    first.push_back({"ETIME", found.record.EndTime});
    first.insert(first.end(), found.thing.begin(), found.thing.end());
    return first;
  }
  /// The report names the booking in the way.
  void expectReport(std::string caption, std::string confirmation) {
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [=](frmErrorReport& window) {
      EXPECT_EQ(window.Caption, caption);
      const Grid& grid = window.faErrorsSpecific;
      ASSERT_TRUE(grid.hasData());
      EXPECT_EQ(grid.TextMatrix(1, grid.Cols - 1), confirmation);
      EXPECT_THAT(grid.TextMatrix(1, 0), testing::EndsWith(" not available"));
      window.cmdOK.press();
    });
  }
};

TEST_F(RealPolicy, AnItemThatIsOutAtTheTimeIsReported) {
  const Found found = find("GETSITM", "IM", {"MTID", "BI", "MI", "IM"});
  expectReport("Media Items Unavailable for Booking", found.record.ConfirmationNumber);
  EXPECT_FALSE(ValidateItemUsage(app, send("VALIAVL", withTimes(found, {{"BOOKID", "0"}}))));
}

TEST_F(RealPolicy, APieceThatIsOutAtTheTimeIsReported) {
  const Found found = find("GETSEQ", "EID", {"EID"});
  expectReport("Equipment Unavailable for Booking", found.record.ConfirmationNumber);
  const int rc = send("VALEAVL", withTimes(found, {{"BOOKID", "0"}}));
  EXPECT_FALSE(ValidateEquipmentUsage(app, rc, get("ETY")));
}

TEST_F(RealPolicy, ATakenRoomIsTold) {
  Found found = find("GETSRM", "RID", {"RID"});
  TestWindow window(app);
  window.times.showTimes(found.record.StartTime, found.record.EndTime);
  window.record.RoomId = intOf(found.thing.front().value);
  window.record.PatronGroupId = found.record.PatronGroupId;
  const BookingTime time = window.times.times().front();
  desktop.expectInformation("The selected room is not available for the following booking:  " +
                            time.startDate + " @ " + time.startTime);
  EXPECT_FALSE(ValidateRoomAvailability(window.form(app), window.record));
}

TEST_F(RealPolicy, ANightIsOutsideTheCalendar) {
  const Found found = find("GETSITM", "IM", {});
  const int rc = send("CDELTM", {{"PGID", std::to_string(found.record.PatronGroupId)},
                                 {"ADBK", "N"},
                                 {"STIME", "2026-11-25 03:00:00"},
                                 {"SDOW", "4"},
                                 {"ETIME", "2026-11-25 04:00:00"},
                                 {"EDOW", "4"}});
  ASSERT_EQ(rc, 167);
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& window) {
    ASSERT_TRUE(window.faErrors.hasData());
    EXPECT_THAT(window.faErrors.TextMatrix(1, 0),
                testing::MatchesRegex(
                    "Booking starts \\(03:00 AM\\) before Library/Media Center opens at [0-9]+:[0-9]+"));
    window.cmdOK.press();
  });
  ShowCalendarConflict(app);
}

}  // namespace
}  // namespace vantry::test
