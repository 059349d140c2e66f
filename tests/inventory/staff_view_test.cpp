#include "inventory/staff_view.h"

#include "messaging/return_codes.h"
#include "records/frmMultPatron.h"
#include "records/frmPatronCounter.h"
#include "records/search_window.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kByCard = "SRCHTAG=17 SRCHVAL=P3 SRCHFOR=6 SRCHLOC=5 SRCHOP=";
constexpr const char* kStaff =
    "PID=4 PATNM=\"Ink, Ina\" PSTS=Y BCNT=3 | PID=5 PATNM=\"Oak, Otto\" PSTS=N BCNT=2 | PID=6 "
    "PATNM=\"Elm, Eva\" PSTS=Y BCNT=0";

struct StaffViewTest : Desk {
  StaffView& open() {
    start();
    return openAgain();
  }
  StaffView& openAgain() {
    expectList();
    main().menus.mnuViewStaff.choose();
    return viewAs<StaffView>(main(), ViewId::Staff);
  }
  void expectList() { server.expect("GETOPS").replies(kStaff); }
  /// Which of the commands on the list can be used: add, delete, activate, deactivate.
  static std::string usable(StaffView& staff) {
    std::string letters;
    if (staff.cmdStaffAdd.Enabled) letters += 'a';
    if (staff.cmdStaffDelete.Enabled) letters += 'd';
    if (staff.cmdStaffActivate(0).Enabled) letters += '0';
    if (staff.cmdStaffActivate(1).Enabled) letters += '1';
    return letters;
  }
  void findByCard(StaffView& staff, std::string_view reply) {
    staff.txtStaff.type("P3");
    server.expect("FIND", kByCard).replies(reply);
    staff.txtStaff.pressEnter();
  }
};

TEST_F(StaffViewTest, TheListIsFilledByWhatItsColumnsHold) {
  start();
  Grid& grid = viewAs<StaffView>(main(), ViewId::Staff).faStaff;
  server.expect("GETOPS");
  main().menus.mnuViewStaff.choose();
  grid.moveColumn(3, 1);
  server.expect("GETOPS").replies(
      "PID=4 PATNM=\"Ink, Ina\" PSTS=Y BCNT=3 | PID=5 PATNM=\"Oak, Otto\" PSTS= BCNT=0");
  main().menus.mnuViewStaff.choose();
  std::string text;
  for (int row = 0; row < grid.Rows; ++row) {
    for (int col = 1; col < grid.Cols; ++col) text += grid.TextMatrix(row, col) + "|";
    text += "\n";
  }
  EXPECT_EQ(text,
            "Active Bookings|Staff Name|Active?|\n"
            "3|Ink, Ina|Y|\n"
            "0|Oak, Otto|N|\n");
  EXPECT_EQ(grid.ColWidth(0), 0);
  EXPECT_EQ(main().StatusBar1.Panels(2).Text, "2 of 2 record(s) processed");
  ASSERT_EQ(app->context.staff.size(), 2u);
  EXPECT_TRUE(app->context.staff[0].active);
  EXPECT_FALSE(app->context.staff[1].active);
}

TEST_F(StaffViewTest, AFailedReadLeavesNoRowOfBefore) {
  start();
  server.expect("GETOPS").replies("PID=4 PATNM=\"Ink, Ina\" PSTS=Y BCNT=3");
  main().menus.mnuViewStaff.choose();
  expectFailure("GETOPS");
  main().menus.mnuViewStaff.choose();
  StaffView& staff = viewAs<StaffView>(main(), ViewId::Staff);
  EXPECT_EQ(staff.faStaff.Rows, 1);
  EXPECT_EQ(app->context.staff.size(), 1U) << "bookings keep their staff";
  staff.cmdStaffAdd.press();
  findByCard(staff, "PID=4 PLN=Ink PFN=Ina");
  server.expect("ADDOP", "PID=4 PSTS=Y");
  expectList();
  staff.cmdOK.press();
}

TEST_F(StaffViewTest, CommandsWorkOnAllRowsThatAreSelected) {
  StaffView& staff = open();
  EXPECT_EQ(usable(staff), "a") << "no row is selected at first";
  staff.faStaff.selectRows({1, 3}, 3);
  EXPECT_EQ(usable(staff), "ad01");
  server.expect("UPDOPS", "PID=4 PID=6 PSTS=Y");
  expectList();
  staff.cmdStaffActivate(0).press();
  EXPECT_EQ(usable(staff), "a");
  staff.faStaff.click(2, 1);
  server.expect("UPDOPS", "PID=5 PSTS=N");
  expectList();
  staff.cmdStaffActivate(1).press();  // asks nothing: they are not active
  EXPECT_EQ(main().ActiveControl(), &staff.faStaff) << "the button is off now";
}

TEST_F(StaffViewTest, BookingsAreAskedAboutBeforeTheirStaffIsGone) {
  constexpr const char* kDelete = "Are you sure you wish to delete the selected staff?";
  constexpr const char* kDeactivation =
      "Staff selected for deactivation currently have bookings assigned to them.  Continue?";
  constexpr const char* kBooked =
      "Staff selected for delete currently have bookings assigned to them.  Continue?";
  StaffView& staff = open();
  staff.faStaff.selectRows({1, 2}, 2);
  desktop.expectQuestion(kDeactivation, false);
  staff.cmdStaffActivate(1).press();
  desktop.expectQuestion(kDelete, false);
  staff.cmdStaffDelete.press();
  desktop.expectQuestion(kDelete, true);
  desktop.expectQuestion(kBooked, false);
  staff.cmdStaffDelete.press();
  EXPECT_EQ(usable(staff), "ad01") << "nothing has happened";

  desktop.expectQuestion(kDeactivation, true);
  server.expect("UPDOPS", "PID=4 PID=5 PSTS=N");
  expectList();
  staff.cmdStaffActivate(1).press();
  staff.faStaff.click(2, 1);
  desktop.expectQuestion(kDelete, true);
  desktop.expectQuestion(kBooked, true);
  server.expect("DELOPS", "PID=5");
  expectList();
  staff.cmdStaffDelete.press();
  staff.faStaff.click(3, 1);
  desktop.expectQuestion(kDelete, true);
  server.expect("DELOPS", "PID=6");
  expectList();
  staff.cmdStaffDelete.press();
}

TEST_F(StaffViewTest, ARefusedChangeIsToldAndTheListReadAnew) {
  StaffView& staff = open();
  staff.faStaff.click(3, 1);
  server.expect("UPDOPS", "PID=6 PSTS=Y").fails(codes::NotFound);
  desktop.expectWarning(
      "One of the selected staff is not on the list any more.\n\nAnother desk has deleted them.  Nothing was "
      "changed.");
  expectList();
  staff.cmdStaffActivate(0).press();
  staff.cmdStaffAdd.press();
  findByCard(staff, "PID=7 PLN=Ash");
  server.expect("ADDOP", "PID=7 PSTS=Y").fails(codes::TagMissing, "head: CANTREAD=PID");
  desktop.expectWarning("This patron is not there any more.");
  expectList();
  staff.cmdOK.press();
  EXPECT_FALSE(staff.fraStaffDetails.Visible);
}

TEST_F(StaffViewTest, AMemberIsAddedByTheirCard) {
  StaffView& staff = open();
  staff.faStaff.click(1, 1);
  staff.cmdStaffAdd.press();
  EXPECT_EQ(staff.fraStaffDetails.Caption, "Add Staff Member");
  EXPECT_EQ(main().ActiveControl(), &staff.txtStaff);
  EXPECT_EQ(usable(staff), "");
  EXPECT_FALSE(staff.faStaff.Enabled || staff.cmdOK.Enabled || staff.cmdStaffCheck.Enabled);
  staff.txtStaff.type(" ");
  EXPECT_FALSE(staff.cmdStaffCheck.Enabled);
  desktop.expectInformation("No patrons have the entered barcode!");
  findByCard(staff, "head: SRCHCNT=0");
  EXPECT_EQ(staff.txtStaff.Text, "P3") << "what was typed stays";
  EXPECT_TRUE(staff.cmdStaffCheck.Enabled);

  server.expect("FIND", kByCard).replies("PID=7 PLN=Ash PFN=Ada PMN=");
  main().scan("P3");
  EXPECT_EQ(staff.txtStaff.Text, "Ash, Ada");
  EXPECT_TRUE(staff.txtStaff.Locked && staff.cmdOK.Enabled && !staff.cmdStaffCheck.Enabled);
  EXPECT_EQ(main().ActiveControl(), &staff.cmdOK);
  EXPECT_FALSE(main().scan("P4")) << "one at a time";
  staff.chkStaffActive.toggle();
  server.expect("ADDOP", "PID=7 PSTS=N");
  expectList();
  staff.cmdOK.press();
  EXPECT_FALSE(staff.fraStaffDetails.Visible);
  EXPECT_EQ(usable(staff), "a");
  EXPECT_TRUE(staff.faStaff.Enabled);
  EXPECT_EQ(staff.txtStaff.Text, "");

  staff.cmdStaffAdd.press();
  EXPECT_TRUE(staff.chkStaffActive.Value);
  findByCard(staff, "PID=5 PLN=Oak PFN=Otto PMN=May");
  EXPECT_EQ(staff.txtStaff.Text, "Oak, Otto May");
  expectList();  // who is on the list is not sent again
  staff.cmdOK.press();
  EXPECT_FALSE(staff.fraStaffDetails.Visible);
}

TEST_F(StaffViewTest, OneCardOfTwoPatronsAsksWhomItMeans) {
  StaffView& staff = open();
  staff.cmdStaffAdd.press();
  desktop.expectModalWindow<frmMultPatron>("frmMultPatron", [](frmMultPatron& choice) {
    std::string headings;
    for (int column = 0; column < choice.faPatrons.Cols; ++column)
      headings += choice.faPatrons.TextMatrix(0, column) + "|";
    EXPECT_EQ(headings, "Patron Name|Patron Group|Barcode Status|Patron ID|");
    EXPECT_TRUE(choice.cmdOK.Enabled) << "the state of a card does not matter here";
    choice.faPatrons.doubleClick(2, 0);
  });
  findByCard(staff, R"(PID=30 PLN=Old PFN=Ott PGNM=Guests PGID=3 BNO=P3 BST=Lost BSI=3
                       PID=31 PLN=Ink PFN=Ina PGNM=Staff PGID=2 BNO=P3 BST=Lost BSI=3)");
  EXPECT_EQ(staff.txtStaff.Text, "Ink, Ina");
  staff.cmdCancel.press();
  EXPECT_EQ(staff.txtStaff.Text, "");
  EXPECT_TRUE(!staff.fraStaffDetails.Visible && staff.faStaff.Enabled && staff.cmdStaffAdd.Enabled);
}

TEST_F(StaffViewTest, TheSearchBringsNameAndIdWhoseCountersCanBeSeen) {
  StaffView& staff = open();
  for (const char* list : {"GETRDTLTY", "GETEGSTY", "GETRSTY", "GETMDTY"}) server.always(list);
  staff.cmdStaffAdd.press();
  for (const char* answer : {"9", "Ash, Ada |7"}) {
    desktop.expectModal(std::string(kSearchWindow), [answer](Form& search) {
      EXPECT_EQ(search.Tag, "9");
      search.Tag = answer;
      search.Hide();
    });
    staff.txtStaff.doubleClick();  // nobody yet
    staff.cmdStaff.press();
  }
  EXPECT_TRUE(staff.cmdOK.Enabled && staff.txtStaff.Locked);
  server.expect("GPAI", "PID=7");
  server.expect("GPAI", "PID=7");
  for (int time = 0; time < 2; ++time)
    desktop.expectModalWindow<frmPatronCounter>("frmPatronCounter",
                                                [](frmPatronCounter& form) { form.cmdClose.press(); });
  staff.txtStaff.doubleClick();
  EXPECT_TRUE(staff.txtStaff.pressKey("F4"));
  openAgain();
  EXPECT_TRUE(staff.fraStaffDetails.Visible && staff.cmdOK.Enabled) << "what was begun goes on";
  server.expect("ADDOP", "PID=7 PSTS=Y");
  expectList();
  staff.cmdOK.press();
}

TEST_F(StaffViewTest, WhoMayNotChangeTheStaffOnlySeesIt) {
  start(allRightsBut("PAUPD BKUPD"));
  StaffView& staff = openAgain();
  staff.faStaff.click(1, 1);
  EXPECT_EQ(usable(staff), "");
}

}  // namespace
}  // namespace vantry::test
