// The small windows that the record windows of the inventory ask with.
#include "inventory/frmBarcodes.h"
#include "inventory/frmMaintDetails.h"
#include "inventory/frmNotes.h"
#include "inventory/frmNumbers.h"
#include "inventory/frmRoomEquip.h"
#include "inventory/frmStatus.h"
#include "inventory/modRoom.h"
#include "inventory/record_fixture.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

struct InventoryDialogs : Desk {
  void SetUp() override { start(); }
  static std::vector<std::string> rows(const Grid& grid) {
    std::vector<std::string> all;
    for (int each = grid.FixedRows; each < grid.Rows; ++each) all.push_back(row(grid, each));
    return all;
  }
  void expectReport() { desktop.expectWarning("Barcode is not active!"); }
};

// Statuses

constexpr const char* kTypes = R"(
  SID=9 SPR=2 STY=Lost
  SID=10 SPR=1 STY="In Maintenance"
  SID=2 SPR=4 STY=Charged
  SID=6 SPR=10 STY="Not Charged")";

struct StatusDialog : InventoryDialogs {
  void expectTypes(std::string_view types = kTypes) { server.expect("GETEGSTY").replies(types); }
  /// The statuses of piece 11: lost since March, and not charged.
  void expectStatuses() {
    server.expect("GETEGSTS", "EID=11").replies(R"(
      SID=6 SPR=10 SDT=2026-01-02 SNO=
      SID=9 SPR=2 SDT=2026-03-04 SNO="Not on its shelf")");
  }
  void expectNote(std::function<void(frmNotes&)> play) {
    desktop.expectModalWindow<frmNotes>("frmNotes", [play = std::move(play)](frmNotes& notes) {
      EXPECT_EQ(notes.Caption, "Status Note");
      EXPECT_EQ(notes.lblDescription.Caption, "Enter a note for this status.");
      play(notes);
    });
  }
};

TEST_F(StatusDialog, TheLowestPriorityIsTheStatusOfTheRecord) {
  expectTypes();
  expectStatuses();
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  EXPECT_EQ(row(window.fa(0), 0), "Priority|Status|");
  EXPECT_EQ(row(window.fa(1), 0), "Priority|Status|Applied Date|Notes|");
  EXPECT_EQ(window.fa(0).ColAlignment(2), Align::Center);
  EXPECT_THAT(rows(window.fa(0)), testing::ElementsAre("4|Charged|", "1|In Maintenance|")) << "by id";
  EXPECT_THAT(rows(window.fa(1)),
              testing::ElementsAre("2|Lost|04/03/2026|Not on its shelf|", "10|Not Charged|02/01/2026||"));
  EXPECT_EQ(window.fa(1).Row, 2) << "the system's status is the current row";
  window.fa(1).moveColumn(1, 4);
  window.cmdOK.press();
  EXPECT_EQ(window.status, "Lost");
  EXPECT_FALSE(window.changed);
}

TEST_F(StatusDialog, EachKindOfRecordIsAskedForByItsOwnRequests) {
  const struct {
    RecordKind kind;
    const char *caption, *types, *applied, *apply, *remove, *id;
  } cases[] = {
      {kEquipment, "Equipment Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", "EID=7"},
      {kGroup, "Group Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", "EID=7"},
      {kRoom, "Room Status", "GETRSTY", "GETRSTS", "NEWRMSTS", "REMRMSTS", "RID=7"},
      {kMaintenance, "Maintenance Status", "GETEGSTY", "GETEGSTS", "NEWEGSTS", "REMEGSTS", "MID=7"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.caption);
    const std::string id = c.id;
    server.expect(c.types).replies("SID=9 SPR=2 STY=Lost");
    server.expect(c.applied, id);
    frmStatus window(*app, c.kind, "7");
    window.Load();
    EXPECT_EQ(window.Caption, c.caption);
    window.fa(0).click(1, 1);
    expectNote([](frmNotes& notes) {
      notes.txtNotes.type("Gone");
      notes.cmdOK.press();
    });
    server.expect(c.apply, id + " SID=9 SNO=Gone ULI=3").replies("UDT=2026-11-24 09:00:00");
    window.cmdAddStatus.press();
    EXPECT_THAT(rows(window.fa(0)), testing::IsEmpty());
    EXPECT_THAT(rows(window.fa(1)), testing::ElementsAre("2|Lost|24/11/2026|Gone|"));
    EXPECT_TRUE(window.changed);
    EXPECT_FALSE(window.cmdAddStatus.Enabled || window.cmdRemoveStatus.Enabled);
    window.fa(1).click(1, 1);
    server.expect(c.remove, id + " SID=9 ULI=3");
    window.cmdRemoveStatus.press();
    EXPECT_THAT(rows(window.fa(0)), testing::ElementsAre("2|Lost|"));
    EXPECT_THAT(rows(window.fa(1)), testing::IsEmpty());
    EXPECT_FALSE(window.cmdAddStatus.Enabled || window.cmdRemoveStatus.Enabled);
  }
}

TEST_F(StatusDialog, NoHandSetsWhatTheSystemSets) {
  expectTypes();
  expectStatuses();
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  window.fa(0).click(1, 1);  // Charged
  EXPECT_FALSE(window.cmdAddStatus.Enabled || window.cmdRemoveStatus.Enabled);
  window.fa(0).click(2, 1);
  EXPECT_TRUE(window.cmdAddStatus.Enabled);
  EXPECT_FALSE(window.cmdRemoveStatus.Enabled);
  window.fa(1).click(1, 1);
  EXPECT_TRUE(window.cmdRemoveStatus.Enabled);
  EXPECT_FALSE(window.cmdAddStatus.Enabled);
  window.fa(1).click(2, 1);  // Not Charged
  EXPECT_FALSE(window.cmdAddStatus.Enabled || window.cmdRemoveStatus.Enabled);
  window.fa(1).click(1, 1);
  server.expect("REMEGSTS", "EID=11 SID=9 ULI=3");
  window.cmdRemoveStatus.press();
  window.cmdOK.press();
  EXPECT_EQ(window.status, "Not Charged") << "what the system has set is left";
}

TEST_F(StatusDialog, AStatusIsAppliedOnceAndARefusalLeavesTheLists) {
  expectTypes("SID=9 SPR=2 STY=Lost\nSID=12 SPR=3 STY=Lost");
  server.expect("GETEGSTS", "EID=11").replies("SID=9 SPR=2 SDT=2026-03-04 SNO=");
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  window.fa(0).click(1, 1);
  window.cmdAddStatus.press();
  EXPECT_FALSE(window.cmdAddStatus.Enabled) << "a status of this name is applied already";

  window.fa(1).click(1, 1);
  const auto available = rows(window.fa(0));
  const auto applied = rows(window.fa(1));
  expectFailure("REMEGSTS", "EID=11 SID=9 ULI=3");
  window.cmdRemoveStatus.press();
  EXPECT_EQ(rows(window.fa(0)), available);
  EXPECT_EQ(rows(window.fa(1)), applied);
  EXPECT_TRUE(window.cmdRemoveStatus.Enabled) << "it can be tried again";
  EXPECT_FALSE(window.changed);
}

TEST_F(StatusDialog, ACancelledNoteAppliesTheStatusWithoutOne) {
  const std::vector<std::function<void(frmNotes&)>> answers = {[](frmNotes& notes) {
                                                                 notes.txtNotes.type("Never mind");
                                                                 notes.cmdCancel.press();
                                                               },
                                                               [](frmNotes& notes) { notes.Unload(); },
                                                               [](frmNotes& notes) {
                                                                 notes.txtNotes.type("Never mind");
                                                                 notes.cmdClear.press();
                                                                 notes.cmdOK.press();
                                                               }};
  for (const auto& answer : answers) {
    expectTypes("SID=9 SPR=2 STY=Lost");
    server.expect("GETEGSTS", "EID=11");
    frmStatus window(*app, kEquipment, "11");
    window.Load();
    window.fa(0).click(1, 1);
    expectNote(answer);
    expectFailure("NEWEGSTS", "EID=11 SID=9 SNO= ULI=3");
    window.cmdAddStatus.press();
    EXPECT_THAT(rows(window.fa(0)), testing::ElementsAre("2|Lost|"));
    EXPECT_THAT(rows(window.fa(1)), testing::IsEmpty());
  }
}

TEST_F(StatusDialog, ANewRecordIsNotChargedFromToday) {
  expectTypes();
  frmStatus window(*app, kEquipment, "");
  window.Load();
  EXPECT_THAT(rows(window.fa(1)), testing::ElementsAre("10|Not Charged|24/11/2026||"));
  EXPECT_EQ(rows(window.fa(0)).size(), 3u);
  window.fa(0).click(2, 1);
  EXPECT_FALSE(window.cmdAddStatus.Enabled) << "there is no record yet to apply it to";
  window.cmdOK.press();
  EXPECT_EQ(window.status, "Not Charged");
}

TEST_F(StatusDialog, PrioritiesOutsideTheTableLoseNoStatus) {
  expectTypes("SID=1 SPR=-7 STY=A\nSID=2 SPR=2000000000 STY=B\nSID=3 SPR= STY=C\nSID=4 SPR=-7 STY=D");
  server.expect("GETEGSTS", "EID=11").replies(R"(
    SID=2 SPR=2000000000 SDT= SNO=
    SID=4 SPR=-7 SDT=2026-03-04 SNO=
    SID=99 SPR=50 SDT=2026-03-04 SNO=unknown)");
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  EXPECT_THAT(rows(window.fa(0)), testing::ElementsAre("-7|A|", "|C|"));
  EXPECT_THAT(rows(window.fa(1)),
              testing::ElementsAre("-7|D|04/03/2026||", "50||04/03/2026|unknown|", "2000000000|B|||"));
}

TEST_F(StatusDialog, WithoutTypesNothingIsShownOrAnswered) {
  expectFailure("GETEGSTY");
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  window.cmdOK.press();
  EXPECT_EQ(window.status, "");
}

TEST_F(StatusDialog, ALongNoteOfAnyScriptIsSentAndKeptAsItWasTyped) {
  std::string note = "\xF0\x9F\x93\xBA \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D\nline two|\"quoted\" ";
  note += std::string(900'000, 'x');
  expectTypes("SID=9 SPR=2 STY=Lost");
  server.expect("GETEGSTS", "EID=11");
  frmStatus window(*app, kEquipment, "11");
  window.Load();
  window.fa(0).click(1, 1);
  expectNote([&](frmNotes& notes) {
    EXPECT_FALSE(notes.cmdOK.Enabled);
    const std::string tooLong = note + std::string(100'000, '"');
    notes.txtNotes.type(tooLong);
    desktop.expectWarning(kTooLong);
    notes.cmdOK.press();
    EXPECT_EQ(notes.txtNotes.Text, tooLong) << "nothing that was typed is lost";
    notes.txtNotes.type(note);
    EXPECT_TRUE(notes.cmdOK.Enabled);
    notes.cmdOK.press();
  });
  server.expect("NEWEGSTS", "EID=11 SID=9 SNO=* ULI=3").replies("UDT=2026-11-24 09:00:00");
  window.cmdAddStatus.press();
  EXPECT_EQ(server.requests().back().tags.at(2).value, note);
  EXPECT_EQ(window.fa(1).TextMatrix(1, 4), note);
}

// Barcodes

struct BarcodeDialog : InventoryDialogs {
  std::unique_ptr<frmBarcodes> open(std::string_view barcodes = "BNO=B2 BSI=1\nBNO=B10 BSI=2\nBNO=A1 BSI=2") {
    server.expect("GETEGBTY").replies("BSI=1 BST=Active\nBSI=2 BST=Inactive");
    server.expect("GETEGBAR", "EID=11").replies(barcodes);
    auto window = std::make_unique<frmBarcodes>(*app, "11");
    window->Load();
    return window;
  }
  static void enter(frmBarcodes& window, std::string_view barcode, int status) {
    window.txtBARCODE_NO.type(barcode);
    window.cboBARCODE_STS.select(status);
  }
};

TEST_F(BarcodeDialog, ABarcodeIsAddedAndANewActiveOneReplacesTheOther) {
  const auto window = open();
  EXPECT_EQ(row(window->fa, 0), "Barcode|Status|");
  EXPECT_THAT(rows(window->fa), testing::ElementsAre("A1|Inactive|", "B10|Inactive|", "B2|Active|"));
  EXPECT_EQ(window->cboBARCODE_STS.Text(), "(none)");
  enter(*window, " C3 ", 1);
  server.expect("NEWEGBAR", "EID=11 BNO=C3 ULI=3 BSI=1");
  window->cmdSave.press();
  EXPECT_THAT(rows(window->fa),
              testing::ElementsAre("A1|Inactive|", "B10|Inactive|", "B2|Inactive|", "C3|Active|"));
  EXPECT_EQ(window->txtBARCODE_NO.Text, "");
  EXPECT_EQ(window->cboBARCODE_STS.Text(), "(none)");
  window->cmdClose.press();
  EXPECT_FALSE(window->isLoaded());
  EXPECT_EQ(window->barcode, "C3");
  EXPECT_TRUE(window->changed);
}

TEST_F(BarcodeDialog, AnExistingOneIsTakenAwayBeforeItGetsItsNewStatus) {
  const auto window = open();
  window->fa.click(1, 0);
  EXPECT_EQ(window->txtBARCODE_NO.Text, "A1");
  EXPECT_EQ(window->cboBARCODE_STS.Text(), "Inactive");
  window->cboBARCODE_STS.select(1);
  expectFailure("REMEGBAR", "EID=11 BNO=A1");
  window->cmdSave.press();
  EXPECT_THAT(rows(window->fa), testing::ElementsAre("A1|Inactive|", "B10|Inactive|", "B2|Active|"));
  EXPECT_FALSE(window->changed);

  server.expect("REMEGBAR", "EID=11 BNO=A1");
  expectFailure("NEWEGBAR", "EID=11 BNO=A1 ULI=3 BSI=1");
  window->cmdSave.press();
  EXPECT_THAT(rows(window->fa), testing::ElementsAre("B10|Inactive|", "B2|Active|"))
      << "as the server has it";
  EXPECT_EQ(window->txtBARCODE_NO.Text, "A1") << "it can be added again";
  EXPECT_FALSE(window->cmdDelete.Enabled);
  window->cboBARCODE_STS.select(2);
  desktop.expectQuestion("Changes will be lost!  Do you wish to SAVE this record before exiting?", true);
  expectFailure("NEWEGBAR", "EID=11 BNO=A1 ULI=3 BSI=2");
  window->cmdClose.press();
  EXPECT_TRUE(window->isLoaded()) << "as it was before, and stored nowhere";
  window->cboBARCODE_STS.select(1);
  EXPECT_TRUE(window->changed);

  server.expect("NEWEGBAR", "EID=11 BNO=A1 ULI=3 BSI=1");
  window->cmdSave.press();
  EXPECT_THAT(rows(window->fa), testing::ElementsAre("A1|Active|", "B10|Inactive|", "B2|Inactive|"));
}

TEST_F(BarcodeDialog, WhatIsMissingIsTold) {
  const auto window = open();
  const std::string head = "One or more of the following error(s) has occurred:\n\n";
  desktop.expectWarning(head + "Barcode is missing.\nBarcode status is set to (none)");
  window->cmdSave.press();
  desktop.expectWarning(head + "Barcode is missing.");
  enter(*window, "  ", 1);
  window->cmdSave.press();
  desktop.expectWarning(head + "Barcode status is set to (none)");
  enter(*window, "C3", 0);
  window->cmdSave.press();
}

TEST_F(BarcodeDialog, DeletingTheActiveOneLeavesNone) {
  const auto window = open();
  EXPECT_FALSE(window->cmdDelete.Enabled);
  window->fa.click(3, 0);
  desktop.expectQuestion("Are you sure you want to DELETE barcode B2 ?", false);
  window->cmdDelete.press();
  desktop.expectQuestion("Are you sure you want to DELETE barcode B2 ?", true);
  expectFailure("REMEGBAR", "EID=11 BNO=B2");
  window->cmdDelete.press();
  EXPECT_EQ(window->fa.Rows, 4);
  desktop.expectQuestion("Are you sure you want to DELETE barcode B2 ?", true);
  server.expect("REMEGBAR", "EID=11 BNO=B2");
  window->cmdDelete.press();
  EXPECT_THAT(rows(window->fa), testing::ElementsAre("A1|Inactive|", "B10|Inactive|"));
  EXPECT_EQ(window->txtBARCODE_NO.Text, "");
  EXPECT_FALSE(window->cmdDelete.Enabled);
  window->cmdClose.press();
  EXPECT_EQ(window->barcode, "(none)");
  EXPECT_TRUE(window->changed);
}

TEST_F(BarcodeDialog, UnsavedTypingIsAskedFor) {
  const char* question = "Changes will be lost!  Do you wish to SAVE this record before exiting?";
  auto window = open();
  window->fa.click(3, 0);
  window->cmdClose.press();
  EXPECT_EQ(window->barcode, "B2") << "a selected row is no typing";
  window = open();
  enter(*window, "C3", 1);
  desktop.expectQuestion(question, false);
  window->closeByOperator();
  EXPECT_EQ(window->barcode, "B2");
  window = open();
  enter(*window, "C3", 1);
  desktop.expectQuestion(question, true);
  expectFailure("NEWEGBAR", "EID=11 BNO=C3 ULI=3 BSI=1");
  window->cmdClose.press();
  EXPECT_TRUE(window->isLoaded()) << "what was not stored is not lost";
  desktop.expectQuestion(question, true);
  server.expect("NEWEGBAR", "EID=11 BNO=C3 ULI=3 BSI=1");
  window->cmdClose.press();
  EXPECT_FALSE(window->isLoaded());
  EXPECT_EQ(window->barcode, "C3");
}

TEST_F(BarcodeDialog, AScanFillsTheFieldAndAddsNothing) {
  const auto window = open("");
  window->cmdClose.SetFocus();
  EXPECT_TRUE(window->scan("C3"));
  EXPECT_EQ(window->txtBARCODE_NO.Text, "C3");
  EXPECT_EQ(window->ActiveControl(), &window->cboBARCODE_STS);
}

// Assigned numbers

TEST_F(InventoryDialogs, TheNumbersOfAKindHaveOneWindowBesideTheRecords) {
  const struct {
    RecordKind kind;
    const char *caption, *code, *type, *reply;
  } cases[] = {
      {kEquipment, "Assigned Equipment Numbers", "GETEITM", "ETI=4", "EID=11 ENO=TV1\nEID=12 ENO=TV2"},
      {kGroup, "Assigned Group Numbers", "GETGITM", "ETI=4", "EID=11 ENO=TV1\nEID=12 ENO=TV2"},
      {kRoom, "Assigned Room Numbers", "GETRITM", "RTI=4", "RID=11 RNO=TV1\nRID=12 RNO=TV2"},
  };
  const int before = app->windows.Count();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.caption);
    RefreshAssignedNumbers(*app, c.kind, "4");  // not open: nothing is asked
    server.expect(c.code, c.type).replies(c.reply);
    ShowAssignedNumbers(*app, c.kind, "4");
    auto& window = dynamic_cast<frmNumbers&>(app->windows[app->windows.Count() - 1]);
    EXPECT_EQ(window.Caption, c.caption);
    EXPECT_THAT(rows(window.faNumbers), testing::ElementsAre("TV1|", "TV2|"));
    server.expect(c.code, c.type).replies(c.reply);
    ShowAssignedNumbers(*app, c.kind, "4");
    expectFailure(c.code, c.type);
    RefreshAssignedNumbers(*app, c.kind, "4");
    EXPECT_THAT(rows(window.faNumbers), testing::ElementsAre("TV1|", "TV2|")) << "a failure changes nothing";
    EXPECT_TRUE(window.faNumbers.pressKey("Ctrl+C"));
    EXPECT_EQ(desktop.clipboard, "Number\nTV1\nTV2\n");
    EXPECT_FALSE(window.faNumbers.pressKey("F4"));
  }
  EXPECT_EQ(app->windows.Count(), before + 3) << "one window of each kind";
  dynamic_cast<frmNumbers&>(app->windows[app->windows.Count() - 1]).cmdOK.press();
  RefreshAssignedNumbers(*app, kRoom, "4");
}

// Details

TEST_F(InventoryDialogs, ADetailLineNeedsATypeAndAText) {
  server.expect("GETRDTLTY").replies("RDI=1 RDTY=Windows\nRDI=2 RDTY=Floor");
  frmMaintDetails window(*app, kSourceRoom, {});
  window.Load();
  EXPECT_EQ(window.Caption, "Room Detail Types");
  EXPECT_THAT(rows(window.fa), testing::ElementsAre("Windows|", "Floor|"));
  EXPECT_FALSE(window.cmdOK.Enabled);
  window.txtDetails.type("Carpet");
  EXPECT_FALSE(window.cmdOK.Enabled);
  window.fa.click(2, 1);
  EXPECT_TRUE(window.cmdOK.Enabled);
  window.txtDetails.type(" ");
  EXPECT_FALSE(window.cmdOK.Enabled);
  window.txtDetails.type("Carpet \xF0\x9F\x9F\xA6");
  window.cmdOK.press();
  ASSERT_TRUE(window.answer);
  EXPECT_EQ(window.answer->typeId + "|" + window.answer->typeName + "|" + window.answer->text,
            "2|Floor|Carpet \xF0\x9F\x9F\xA6");
}

TEST_F(InventoryDialogs, AnEditedDetailLineIsShownAndACancelHandsNothingBack) {
  server.expect("GETMDTY").replies("MTI=1 MTY=Cleaning\nMTI=2 MTY=Repair");
  frmMaintDetails window(*app, kSourceMaintenance, {"2", "Repair", "New lamp"});
  window.Load();
  EXPECT_EQ(window.Caption, "Maintenance Types");
  EXPECT_EQ(window.fa.Row, 2);
  EXPECT_EQ(window.txtDetails.Text, "New lamp");
  EXPECT_TRUE(window.cmdOK.Enabled);
  window.cmdCancel.press();
  EXPECT_FALSE(window.answer);
  server.expect("GETMDTY").replies("MTI=1 MTY=Cleaning");
  frmMaintDetails gone(*app, kSourceMaintenance, {"2", "Repair", "New lamp"});
  gone.Load();
  EXPECT_FALSE(gone.cmdOK.Enabled) << "its type no longer exists";
}

// Rooms

struct RoomDialog : InventoryDialogs {
  void SetUp() override {
    InventoryDialogs::SetUp();
    app->context.allLocations = {{"Branch", "4", ""}, {"Main Desk", "3", ""}};  // the operator is at 3
  }
  std::unique_ptr<frmRoomEquip> open() {
    server.expect("GETARLOC", "LOC=3").replies("RID=40 RNM=Hall RNO=101\nRID=41 RNM= RNO=102");
    auto window = std::make_unique<frmRoomEquip>(*app, "11");
    window->Load();
    return window;
  }
};

TEST_F(RoomDialog, ALocationListsItsRooms) {
  const auto window = open();
  EXPECT_EQ(window->Caption, "Move Equipment/Group");
  EXPECT_EQ(window->cboLOC_NAME.Text(), "Main Desk");
  EXPECT_EQ(window->cboROOM_NAME.Text(), "101 - Hall");
  EXPECT_EQ(window->cboROOM_NAME.List(1), "102");
  EXPECT_EQ(window->cboROOM_NAME.ItemData(1), "41");
  EXPECT_TRUE(window->cmdOK.Enabled);
  server.expect("GETARLOC", "LOC=4");
  window->cboLOC_NAME.select(1);
  EXPECT_EQ(window->cboROOM_NAME.ListCount(), 0);
  EXPECT_FALSE(window->cmdOK.Enabled);
  expectFailure("GETARLOC", "LOC=3");
  window->cboLOC_NAME.select(0);
  EXPECT_FALSE(window->cmdOK.Enabled);
  FillRoomsOfLocation(*app, Ask(app->global, ""), window->cboROOM_NAME, "");  // asks nothing
}

TEST_F(RoomDialog, AMoveIsToldByItsResult) {
  const struct {
    int rc;
    bool moved;
    std::function<void()> expect;
  } cases[] = {
      {0, true, [] {}},
      {174, false,
       [&] {
         desktop.expectInformation(
             "Room is used in an existing booking.  Equipment cannot be removed at this time.");
       }},
      {108, false, [&] { expectReport(); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.rc);
    const auto window = open();
    window->cboROOM_NAME.select(1);
    window->Show();
    server.expect("ADDREQP", "EID=11 RID=41").fails(c.rc);
    c.expect();
    window->cmdOK.press();
    EXPECT_EQ(window->moved, c.moved);
    EXPECT_FALSE(window->isShown());
  }
  const auto window = open();
  window->cmdCancel.press();
  EXPECT_FALSE(window->moved);
}

}  // namespace
}  // namespace vantry::test
