#include "booking/frmErrorReport.h"
#include "booking/modBooking_policy.h"
#include "booking/real_fixture.h"

// The answers of policy as the real server gives them, in the demo library.

namespace vantry::test {
namespace {

struct RealPolicy : RealLibrary {
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
  EXPECT_FALSE(ValidateRoomAvailability(window.parts));
}

}  // namespace
}  // namespace vantry::test
