// The confirmation of a booking, which reads like the page that the patron gets.
#include "reports/booking_confirmation.h"

#include <gmock/gmock.h>

#include "booking/editor_fixture.h"
#include "reports/modPrint.h"

namespace vantry::test {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Confirmation : EditorTest {
  modPrint real{app};
  Confirmation() { app.setReports(real); }

  void expectAddress(std::string_view reply) { server.expect("PRDTLS", "BOOKID=7 PID=31").replies(reply); }
  std::string printed() const {
    return desktop.pages.printed.empty() ? std::string() : desktop.pages.printed.back();
  }
};

TEST_F(Confirmation, AFullBookingReadsLikeItsPage) {
  expectFullBooking("TITL=\"Sea birds; a | b\"", "EN=\"v. 2\" YR=2001");
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  expectAddress("A1=\"Ink House\" A2= A3=\"12 Long Lane\" CY=Brindle SP=WX ZP=\"10 2\" PH=\"555 01\"");
  editor().mnuFilePrint.choose();
  EXPECT_EQ(printed(), R"({Times Roman 16 bold} Booking - Confirmation Number:  M7

----

{Times Roman 10 bold} Patron Information

{Times Roman 10} Requester: Ink, Ina
Pick-up Patron: 
Patron Group: Staff
Address: Ink House
12 Long Lane
City/State/Zip: Brindle, WX 10 2
Phone Number: 555 01
----

{Times Roman 10 bold} Schedule

{Times Roman 10 italic} Single Booking
{Times Roman 10} Date Needed:  | 24/11/2026 | Date Finished:  | 24/11/2026
Time Needed:  | 09:00 AM | Time Finished:  | 10:30 AM
----

{Times Roman 10 bold} Media

Title | Location | Media Type | Call Number
{Times Roman 10} Sea birds; a | b | Stacks | Film | QL1   v. 2   2001   C.1

{Times Roman 10 bold} Deliver: Lab
----

Equipment

{Times Roman 10} In-Room Equipment
{Times Roman 10 bold} Barcode | Equipment Type | Group?
{Times Roman 10}      B70 | Screen | No

Specific Equipment and Equipment Groups
{Times Roman 10 bold} Barcode | Equipment Type | Group?
{Times Roman 10}      B90 | TV | No

Media Item Types for Booking
     Film |  | 
          Player |  | 

Equipment and Equipment Group Types
     Projector |  | 

----

{Times Roman 10 bold} Notes

{Times Roman 10} By the lift
----

{Times Roman 10 bold} Staff

{Times Roman 10} Setup Staff: Stone, Sam
Clean-up Staff: (none)
----

{Times Roman 10 bold} Properties

{Times Roman 10} Created By: desk
Updated By: ann
Create Date: 20/11/2026
Update Date: 21/11/2026
Create Location: Main Desk
Update Location: Branch




Booked: 20/11/2026
Printed: 11/24/2026  09:00 AM
)");
}

TEST_F(Confirmation, WhatABookingDoesNotHaveDropsOut) {
  server.expect("GETMSD", "BOOKID=7")
      .replies(
          std::string("WIZ=N CNUM=M7 CDT=2026-11-20 08:00:00 ODE=0 OPU=0 BTID=2 ADBK=N PATNM=\"Ink, Ina\" "
                      "PGNM=Staff PID=31 PGID=2 BKRES=0 PPID=0 ") +
          kTimes);
  expectRooms();
  server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
  server.expect("GETREQP", "RID=41 BRTY=1");
  expectEmptyThings();
  expectPrivileges();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  expectAddress("");
  editor().mnuFilePrint.choose();
  for (const char* section : {"Media\n", "Equipment\n", "Notes\n", "Staff\n"})
    EXPECT_THAT(printed(), Not(HasSubstr(std::string("bold} ") + section)));
  EXPECT_THAT(printed(), HasSubstr("bold} Deliver: Lab\n"));
  const std::string rule = "----\n";
  int rules = 0;
  for (auto at = printed().find(rule); at != std::string::npos; at = printed().find(rule, at + 1)) ++rules;
  EXPECT_EQ(rules, 3) << "no rule stays behind";
}

TEST_F(Confirmation, AnAdministrativeBookingHasNoAddress) {
  server.expect("GETMSD", "BOOKID=7").replies(head("ADBK=Y PATNM= PGNM= PID=0 PGID=0"));
  expectRooms("ADBK=Y PGID=0");
  server.expect("GETSRM", "BOOKID=7").replies("RID=41 RNM=Lab");
  server.expect("GETREQP", "RID=41 BRTY=1");
  expectEmptyThings();
  OpenRecordWindow(app, {kBooking, "7", kSourceMainWindow});
  editor().mnuFilePrint.choose();
  EXPECT_THAT(printed(), HasSubstr("Requester: Administrative Booking\n----"));
}

TEST_F(Confirmation, AnAddressThatCannotBeReadIsToldAndLeftOut) {
  openSeven();
  server.expect("PRDTLS", "BOOKID=7 PID=31").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  editor().mnuFilePrint.choose();
  EXPECT_THAT(printed(), HasSubstr("Patron Group: Staff\n----"));
  EXPECT_THAT(printed(), HasSubstr("Booked: 20/11/2026\nPrinted: 11/24/2026  09:00 AM\n"));
}

TEST_F(Confirmation, AHiddenEditorPrintsAndCloses) {
  expectLoad();
  expectAddress("A1=Home");
  printConfirmationOf(app, "7");
  EXPECT_THAT(printed(), HasSubstr("Address: Home\n"));
  EXPECT_EQ(editors(), 0);
}

TEST_F(Confirmation, SeveralTimesAreATable) {
  frmBooking& window = newDelivery();
  window.times.cmdMultipleBookings.press();
  window.times.cmdAddDate.press();
  server.expect("PRDTLS", "BOOKID=0 PID=31").replies("A1=Home");
  PrintBookingConfirmation(app, window);
  EXPECT_THAT(printed(), HasSubstr(R"(italic} Multiple Bookings
{Times Roman 10 bold} Need Date | Finish Date | Need Time | Finish Time
{Times Roman 10} 24/11/2026 | 24/11/2026 | 09:00 AM | 10:30 AM
)"));
}

}  // namespace
}  // namespace vantry::test
