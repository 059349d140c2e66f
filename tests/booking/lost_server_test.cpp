#include "booking/editor_fixture.h"
#include "messaging/return_codes.h"

namespace vantry::test {
namespace {

/// The program ends at once and without a word of the window's own, wherever the server is lost.
TEST_F(EditorTest, ALostServerEndsTheProgram) {
  constexpr int kLost = codes::Lost;
  int ends = 0;
  app.global.Abort = [&ends] { ++ends; };
  struct Case {
    const char* where;
    std::function<void()> play;
  };
  const Case cases[] = {
      {"a patron's barcode",
       [&] {
         frmBooking& window = openNew();
         server.expect("FIND", "SRCHTAG=17 SRCHVAL=P31 SRCHFOR=6 SRCHLOC=5 SRCHOP=").fails(kLost);
         scan(window.requester.requester, "P31");
       }},
      {"a requester's privileges",
       [&] {
         frmBooking& window = openNew();
         expectRequester();
         expectRoomsOfRequester();
         server.expect("VALRP", "PID=31 PGID=2 PUP=N");
         server.expect("PATPRIV", "PGID=2 PID=31").fails(kLost);
         scan(window.requester.requester, "P31");
       }},
      {"a room's note",
       [&] {
         frmBooking& window = newDelivery();
         window.tabBooking.choose(2);
         server.expect("GETPMSG", "PWHI=0 PTYP=1 PWID=41").fails(kLost);
         window.place.cboDeliveryRoom.select(1);
       }},
      {"the server's time",
       [&] {
         server.expect("ASKT").fails(kLost);
         openPickUp();
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.where);
    ends = 0;
    EXPECT_THROW(c.play(), ProgramEnd);
    EXPECT_EQ(ends, 1);
    server.checkAllCame();
  }
}

}  // namespace
}  // namespace vantry::test
