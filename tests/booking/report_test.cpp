#include "booking/booking_fixture.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "booking/modBooking_policy.h"

namespace vantry::test {
namespace {

using testing::ElementsAre;

/// The data rows of a grid, cells joined by "|".
std::vector<std::string> rowsOf(const Grid& grid) {
  std::vector<std::string> rows;
  for (int row = 1; row < grid.Rows; ++row) {
    std::string& text = rows.emplace_back();
    for (int col = 0; col < grid.Cols; ++col) text += (col ? "|" : "") + grid.TextMatrix(row, col);
  }
  return rows;
}

struct Reports : BookingTest {
  void show(int code, std::function<void(frmErrorReport&)> look) {
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [look](frmErrorReport& window) {
      look(window);
      window.cmdOK.press();
    });
    ShowErrorReport(app, code);
  }
  void receiveMedia(std::string_view block) {
    receive("VALIAVL", "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24", 150, block);
  }
};

TEST_F(Reports, MediaConflictsNameTheBookingOrCount) {
  receiveMedia(R"(
    VUF=158
    CNUM=1007 TITL=Atlas LNA=Main IM=300 STIME=2026-11-24 09:00:00 ETIME=2026-11-25 13:30:00
    CNUM= TITL=Globe IM=0 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00 VD1=2 VD2=3)");
  ASSERT_TRUE(app.message.NextRecord("VUF")) << "the walk that stands when the report opens";
  show(158, [](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Media Items Unavailable for Booking");
    EXPECT_EQ(window.lblGeneric.Caption, "Generic Media Items:");
    EXPECT_THAT(rowsOf(window.faErrorsSpecific),
                ElementsAre("Atlas not available|24/11/2026|09:00 AM|25/11/2026|01:30 PM|1007"));
    EXPECT_THAT(rowsOf(window.faErrorsGeneric),
                ElementsAre("Globe not available|24/11/2026|09:00 AM|24/11/2026|10:00 AM|2|3"));
    EXPECT_TRUE(window.faErrorsGeneric.Visible && window.faErrorsSpecific.Visible);
    EXPECT_FALSE(window.faErrors.Visible);
  });
}

TEST_F(Reports, AnEmptyListGivesItsRoomToTheOther) {
  receiveMedia("CNUM=1007 TITL=Atlas IM=300");
  show(158, [](frmErrorReport& window) {
    EXPECT_FALSE(window.faErrorsGeneric.Visible || window.lblGeneric.Visible);
    EXPECT_TRUE(window.faErrorsSpecific.Visible && window.lblSpecific.Visible);
  });
  receiveMedia("VUF=158");
  show(158, [](frmErrorReport& window) {
    EXPECT_TRUE(window.faErrorsGeneric.Visible && window.faErrorsSpecific.Visible) << "two headings";
  });
}

TEST_F(Reports, EquipmentConflictsNameThePieceAsTheOperatorKnowsIt) {
  const char* block = R"(
    CNUM=1007 ETY=Projector ENO=P1 BNO=3123 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00
    CNUM=1008 ETY=Projector ENO=P2 BNO="  " STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00
    CNUM="  " ETY=Screen STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00 VD1=4 VD2=4)";
  const auto firstCells = [](const Grid& grid) {
    std::vector<std::string> cells;
    for (int row = 1; row < grid.Rows; ++row) cells.push_back(grid.TextMatrix(row, 0));
    return cells;
  };
  const char* tags = "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24";
  receive("VALEAVL", tags, 149, block);
  show(159, [&](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Equipment Unavailable for Booking");
    EXPECT_EQ(window.lblSpecific.Caption, "Specific Equipment:");
    EXPECT_THAT(firstCells(window.faErrorsSpecific),
                ElementsAre("Projector (3123) not available", "Projector (P2) not available"));
    EXPECT_THAT(rowsOf(window.faErrorsGeneric),
                ElementsAre("Screen not available|24/11/2026|09:00 AM|24/11/2026|10:00 AM|4|4"));
  });
  app.preferences.Barcodes = false;
  receive("VALEAVL", tags, 149, block);
  show(159, [&](frmErrorReport& window) {
    EXPECT_THAT(firstCells(window.faErrorsSpecific),
                ElementsAre("Projector (P1) not available", "Projector (P2) not available"));
  });
}

TEST_F(Reports, TheCalendarSpeaksOfStartAndEnd) {
  receive("CRMTM", "PGID=2 ADBK=N STIME=2026-11-24 SDOW=3 ETIME=2026-11-24 EDOW=3 RID=40", 167, R"(
    VUF=164 STIME=2026-11-24 05:00:00
    VUF=165 ETIME=2026-11-25 22:00:00
    VUF=166 STIME=2026-11-24 05:00:00 ETIME=2026-11-25 22:00:00
    VUF=166 ETIME=2026-11-25 22:00:00
    VUF=168 STIME=2026-11-24 05:00:00
    VUF=168 ETIME=2026-11-25 22:00:00
    VUF=169 STIME=2026-11-24 05:00:00 DATE=0900
    VUF=170 ETIME=2026-11-25 22:00:00 DATE=2400
    VUF=171 STIME=2026-11-24 22:30:00 DATE=2130
    VUF=172 ETIME=2026-11-25 05:00:00 DATE=900
    VUF=199)");
  desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Booking Calendar Conflict");
    EXPECT_TRUE(window.faErrors.Visible);
    EXPECT_FALSE(window.faErrorsGeneric.Visible || window.lblSpecific.Visible);
    EXPECT_THAT(
        rowsOf(window.faErrors),
        ElementsAre("24/11/2026 not valid for any calendars", "25/11/2026 not valid for any calendars",
                    "Library/Media Center not open on 24/11/2026 when booking starts",
                    "Library/Media Center not open on 25/11/2026 when booking ends",
                    "Library/Media Center not open on 25/11/2026 when booking ends",
                    "Exception Date:  Library/Media Center not open on 24/11/2026 at 05:00 AM (booking start "
                    "date/time)",
                    "Exception Date:  Library/Media Center not open on 25/11/2026 at 10:00 PM (booking end "
                    "date/time)",
                    "Booking starts (05:00 AM) before Library/Media Center opens at 09:00",
                    "Booking ends (10:00 PM) after Library/Media Center closes at 00:00",
                    "Booking starts (10:30 PM) after Library/Media Center closes at 21:30",
                    "Booking ends (05:00 AM) before Library/Media Center opens at 9:00"));
    window.cmdOK.press();
  });
  ShowCalendarConflict(app);
}

TEST_F(Reports, AChargeThatFailsTellsItsReasons) {
  receive("CBK", "BOOKID=7", 128, R"(
    CHFA=107 RNM=Hall
    CHFA=125 ENO=P1 ETY=Projector
    CHFA=126 TITL=Atlas
    CHFA=127 STIME=2026-11-24 09:00:00
    CHFA=134
    CHFA=135 TITL=Globe
    CHFA=136 ETY=Screen
    CHFA=175 ENO=P1 ETY=Projector STY=Broken
    CHFA=176 RNM=Hall STY=Closed
    CHFA=177 TITL=Atlas STY=Lost
    CHFA=999)");
  show(128, [](frmErrorReport& window) {
    EXPECT_EQ(window.Caption, "Booking Not Charged");
    EXPECT_THAT(
        rowsOf(window.faErrors),
        ElementsAre("Room already charged:  Hall", "Equipment already charged:  P1 - Projector",
                    "Media already charged:  Atlas",
                    "Booking charged too early:  cannot charge before 09:00 AM on 24/11/2026",
                    "Generic room could not be assigned", "Generic item could not be assigned:  Globe",
                    "Generic equipment could not be assigned:  Screen",
                    "Equipment cannot be charged:  P1 - Projector - Status:  Broken",
                    "Room cannot be charged:  Hall - Status:Closed",
                    "Media cannot be charged:  Atlas - Status:  Lost"));
  });
}

TEST_F(Reports, ACodeWithoutAReportShowsNothing) {
  for (const int code : {100, 130, 168}) {
    frmErrorReport window(app, code);
    window.Load();
    EXPECT_FALSE(window.isLoaded()) << code;
  }
}

TEST_F(Reports, WhatAChargeAssignedIsShownPartByPart) {
  const auto charge = [&](std::string_view block) { receive("CBK", "BOOKID=7", 0, block); };
  charge(R"(
    EID=11 ETY=Projector AENO=P1 EIU=N RNM=Store
    EID=12 ETY=Set AENO=G1 EIU=Y RNM=Store
    IM=300 TITL=Atlas MDSC=Map LO=Main CP=2 EN=v1 CH=1999 YR=1999
    RID=40 RNM=Hall
    ENO=P1 PMSG=Lamp)");
  frmGenAssign window(app, assignedCounts(app.message));
  window.Load();
  EXPECT_EQ(assignedCounts(app.message).sum(), 4);
  EXPECT_EQ(window.lblRoom.Caption, "Hall") << "not the room where the first piece stands";
  EXPECT_THAT(rowsOf(window.faGenEquip), ElementsAre("11|Projector|P1|N|Store", "12|Set|G1|Y|Store"));
  EXPECT_THAT(rowsOf(window.faGenMedia), ElementsAre("||300||Atlas|Map|Main|2||v1|1999|1999"));
  EXPECT_EQ(window.faGenMedia.ColWidth(0), 0) << "keys of media stay hidden";

  charge("IM=300 TITL=Atlas");
  frmGenAssign items(app, assignedCounts(app.message));
  items.Load();
  EXPECT_TRUE(items.faGenMedia.Visible && items.lblGenItems.Visible);
  EXPECT_FALSE(items.faGenEquip.Visible || items.lblGenEquip.Visible || items.lblRoom.Visible);
}

}  // namespace
}  // namespace vantry::test
