#include "circulation/circulation_fixture.h"

namespace vantry::test {
namespace {

struct QuickDischargeTest : CirculationTest {
  void SetUp() override { open(ViewId::QuickDischarge); }
  void scan(std::string_view text) {
    quick().txtQuickDischargeItem.type(text);
    quick().txtQuickDischargeItem.pressEnter();
  }
  void expectFound(std::string_view search, std::string_view line, std::string_view returned) {
    server.expect("SSD", std::string(search) + " QD=Y").replies("head: " + std::string(line));
    server.expect("DBK", returned);
  }
  void expectNote(const char* tags, std::string note) {
    server.expect("GETPMSG", tags).replies("PMSG=\"" + note + '"');
  }
  bool ready() {
    return quick().txtQuickDischargeItem.Text.get().empty() && !quick().cmdQuickClear.Enabled &&
           !quick().fraBackDate.Visible && panel().empty() && main().Enabled &&
           focused(quick().txtQuickDischargeItem);
  }
};

TEST_F(QuickDischargeTest, AWandDischargesPieceAfterPiece) {
  EXPECT_EQ(main().lblView.Tag, "15");
  EXPECT_EQ(main().abView.Text(), "Schedule - Quick Discharge");
  EXPECT_EQ(quick().lblQuickDischargeItem.Caption, "Media Barcode:");
  std::string log;
  for (int piece = 1; piece <= 50; ++piece) {
    const std::string n = std::to_string(piece);
    EXPECT_TRUE(ready()) << piece;
    expectFound("MEDBAR=B" + n, "BOOKID=7 IM=" + n + " RID=0", "BOOKID=7 IM=" + n);
    scan("B" + n);
    log += (log.empty() ? "" : "\n") + ("24/11/2026  09:00 AM  B" + n) + " has been discharged successfully!";
  }
  EXPECT_EQ(quick().txtDischargeLog.Text, log);
}

TEST_F(QuickDischargeTest, EachTypeHasItsTags) {
  const struct {
    const char *label, *search, *line, *returned;
    bool isPiece;
  } cases[] = {{"Media Barcode:", "MEDBAR=7", "BOOKID=1 IM=2 RID=3", "BOOKID=1 IM=2", false},
               {"Item ID:", "IM=7", "BOOKID=1 IM=2 RID=3", "BOOKID=1 IM=2", false},
               {"Equipment Barcode:", "EQBAR=7", "BOOKID=1 EID=2 RID=3", "BOOKID=1 EID=2", true},
               {"Equipment Number:", "ENO=7", "BOOKID=1 EID=2 RID=3", "BOOKID=1 EID=2", true}};
  for (int type = 0; type < 4; ++type) {
    quick().cboQuickDischargeType.select(type);
    EXPECT_EQ(quick().lblQuickDischargeItem.Caption, cases[type].label);
    expectFound(cases[type].search, cases[type].line, cases[type].returned);
    if (cases[type].isPiece) {
      expectNote("PWHI=1 PTYP=3 PWID=2", "");
      expectNote("PWHI=0 PTYP=8 PWID=3", "  ");
    }
    scan("7");
    EXPECT_TRUE(ready());
  }
  app->preferences.AutoTruncate = true;
  quick().cboQuickDischargeType.select(0);
  expectFound("MEDBAR=7?", "BOOKID=1 IM=2 RID=3", "BOOKID=1 IM=2");
  scan("7");
  EXPECT_THAT(quick().txtDischargeLog.Text.get(),
              testing::EndsWith("AM  7 has been discharged successfully!"));
}

TEST_F(QuickDischargeTest, ARoomsNoteShowsOnlyInPlaceOfThePieces) {
  quick().cboQuickDischargeType.select(2);
  const struct {
    const char *piece, *room, *shown;
  } cases[] = {{"", "", ""}, {"Cables", "", "Cables"}, {"", "Key", ""}, {"Cables", "Key", "Key"}};
  for (const auto& each : cases) {
    expectFound("EQBAR=E5", "BOOKID=1 EID=5 RID=3", "BOOKID=1 EID=5");
    expectNote("PWHI=1 PTYP=3 PWID=5", each.piece);
    expectNote("PWHI=0 PTYP=8 PWID=3", each.room);
    if (*each.shown)
      desktop.expectInformation("E5 has been discharged successfully!\n\n" + std::string(each.shown));
    scan("E5");
    EXPECT_TRUE(ready());
  }
}

TEST_F(QuickDischargeTest, AFailedNoteStopsNothing) {
  quick().cboQuickDischargeType.select(3);
  expectFound("ENO=TV1", "BOOKID=1 EID=5 RID=3", "BOOKID=1 EID=5");
  server.expect("GETPMSG", "PWHI=1 PTYP=3 PWID=5").fails(7);
  desktop.expectWarning("An error occurred while retreiving the booking note for the selected equipment.");
  server.expect("GETPMSG", "PWHI=0 PTYP=8 PWID=3").fails(7);
  desktop.expectWarning("An error occurred while retreiving the booking note for the selected room.");
  scan("TV1");
  EXPECT_EQ(quick().txtDischargeLog.Text, "24/11/2026  09:00 AM  TV1 has been discharged successfully!");
  EXPECT_TRUE(ready());
}

TEST_F(QuickDischargeTest, AFailedStepKeepsTheTextAndLogsNothing) {
  const auto expectKept = [&](const char* status) {
    EXPECT_EQ(quick().txtQuickDischargeItem.Text, "B1");
    EXPECT_EQ(quick().txtDischargeLog.Text, "");
    EXPECT_EQ(panel(), status);
    EXPECT_TRUE(main().Enabled);
    EXPECT_TRUE(focused(quick().txtQuickDischargeItem));
  };
  server.expect("SSD", "MEDBAR=B1 QD=Y").fails(7);
  desktop.expectWarning("An error occurred while searching for item/equipment to discharge.");
  desktop.onBox = [&] { EXPECT_EQ(panel(), "Discharging...") << "the count comes behind the warning"; };
  scan("B1");
  desktop.onBox = nullptr;
  expectKept("0 Booking(s) Found");
  server.expect("SSD", "MEDBAR=B1 QD=Y");
  desktop.expectInformation("Unable to find booking information.");
  scan("B1");
  expectKept("");
  server.expect("SSD", "MEDBAR=B1 QD=Y").replies("head: BOOKID=7 EID=3 RID=0");
  desktop.expectInformation("Unable to find item information.");
  scan("B1");
  expectKept("");
  server.expect("SSD", "MEDBAR=B1 QD=Y").replies("head: BOOKID=7 IM=3 RID=0");
  server.expect("DBK", "BOOKID=7 IM=3").fails(7);
  desktop.expectWarning("An error occurred while trying to discharge the booking.");
  scan("B1");
  expectKept("");
  quick().cboQuickDischargeType.select(2);
  server.expect("SSD", "EQBAR=B1 QD=Y").replies("head: BOOKID=7 IM=3 RID=0");
  desktop.expectInformation("Unable to find equipment information.");
  scan("B1");
  expectKept("");
}

TEST_F(QuickDischargeTest, BackdatingHoldsForOneDischarge) {
  EXPECT_FALSE(quick().cmdBackDate.Enabled) << "nothing to backdate yet";
  quick().txtQuickDischargeItem.type("B1");
  quick().cmdBackDate.press();
  EXPECT_TRUE(quick().fraBackDate.Visible);
  EXPECT_EQ(quick().dtDischargeDate.shortDate(), "24/11/2026");
  EXPECT_EQ(quick().txtDischargeTime.textAmPm(), "09:00 AM");
  quick().dtDischargeDate.enter(Date{2026, 11, 26});  // the server decides about the future
  quick().txtDischargeTime.enter(Time{18, 5, 0});
  expectFound("MEDBAR=B1", "BOOKID=7 IM=1 RID=0", "BOOKID=7 IM=1 ETIME=\"2026-11-26 18:05:00\"");
  quick().cmdQuickDischarge.press();
  EXPECT_TRUE(ready());
  clock.time.time = {9, 1, 0};
  expectFound("MEDBAR=B2", "BOOKID=7 IM=2 RID=0", "BOOKID=7 IM=2");
  scan("B2");
  EXPECT_EQ(quick().txtDischargeLog.Text,
            "26/11/2026  06:05 PM  B1 has been discharged successfully!\n"
            "24/11/2026  09:01 AM  B2 has been discharged successfully!");
}

TEST_F(QuickDischargeTest, AMomentThatCannotBeReadIsToldAndNothingIsSent) {
  quick().txtQuickDischargeItem.type("B1");
  quick().cmdBackDate.press();
  for (const char* wrong : {"31/11/2026", ""}) {
    quick().dtDischargeDate.type(wrong, {2026, 11, 24});
    desktop.expectInformation("Please enter a valid date for Discharge Date.");
    quick().cmdQuickDischarge.press();
    EXPECT_TRUE(focused(quick().dtDischargeDate));
  }
  quick().dtDischargeDate.type("23/11/2026", {2026, 11, 24});
  quick().txtDischargeTime.type("25:00");
  desktop.expectInformation("Discharge Time is invalid!");
  quick().cmdQuickDischarge.press();
  EXPECT_TRUE(focused(quick().txtDischargeTime));
  EXPECT_EQ(quick().txtQuickDischargeItem.Text, "B1");
  EXPECT_EQ(panel(), "");
  quick().txtDischargeTime.type("1730");
  expectFound("MEDBAR=B1", "BOOKID=7 IM=1 RID=0", "BOOKID=7 IM=1 ETIME=\"2026-11-23 17:30:00\"");
  quick().cmdQuickDischarge.press();
  EXPECT_TRUE(ready());
}

TEST_F(QuickDischargeTest, TheTypeStaysOnceChosenAndTheLogForGood) {
  expectFound("MEDBAR=B1", "BOOKID=7 IM=1 RID=0", "BOOKID=7 IM=1");
  scan("B1");
  quick().cboQuickDischargeType.select(3);
  quick().txtQuickDischargeItem.type("TV");
  main().showView(ViewId::Charge);
  main().showView(ViewId::QuickDischarge);
  EXPECT_EQ(quick().cboQuickDischargeType.ListIndex, 3);
  EXPECT_TRUE(quick().cmdQuickDischarge.Enabled);
  quick().cmdQuickClear.press();
  EXPECT_TRUE(ready());
  expectContext(allRightsBut(), "next");
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().mnuFileLogoff_Click();
  main().showView(ViewId::QuickDischarge);
  EXPECT_EQ(quick().cboQuickDischargeType.ListIndex, 0);
  EXPECT_THAT(quick().txtDischargeLog.Text.get(), testing::HasSubstr("B1"));
}

}  // namespace
}  // namespace vantry::test
