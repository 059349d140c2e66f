#include "inventory/staff_view.h"
#include "frame/app.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

using StaffViewTest = Desk;

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
  server.expect("GETOPS").fails(108);
  desktop.expectWarning("Barcode is not active!");
  main().menus.mnuViewStaff.choose();
  EXPECT_EQ(viewAs<StaffView>(main(), ViewId::Staff).faStaff.Rows, 1);
  EXPECT_TRUE(app->context.staff.empty());
}

}  // namespace
}  // namespace vantry::test
