// The window of a piece of equipment.
#include "inventory/frmEquipment.h"

#include "inventory/frmBarcodes.h"
#include "inventory/frmStatus.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kPiece =
    R"(ENO=TV1 BNO=B11 EMA=Tovan EFO=HD EMO=V-55 ESN=S1 STY="Not Charged" EQVP=1200.50
  EQVR=900 ESU=Hale EDP=2025-03-01 ENM=2027-01-15 GRPNO=SET1 GRPID=21 CNM="Ink, Ina"
  UNM="Vale, Tom" CDT="2025-03-01 08:00:00" UDT="2026-02-03 08:00:00" CLN="Main Desk" ULN=Branch EHB=7 EHM=2
  TRNM=Hall LNA="Main Desk" LOC=3 RNM=Store RID=2)";
constexpr const char* kRooms = "RID=1 RNO=101 RNM=\nRID=2 RNO=102 RNM=Store";
constexpr const char* kChange = "Changes will be lost!  Do you wish to SAVE this record before exiting?";
constexpr const char* kInUse =
    "Unable to change location/room of this group as it is currently scheduled in other bookings.";
constexpr const char* kNote = "Note changes will be lost!  Do you wish to SAVE the note before exiting?";
constexpr const char* kMove =
    "Equipment is used in a pending booking. Are you sure you want to move this equipment?";

struct FrmEquipmentTest : RecordFixture {
  void SetUp() override { start(); }
  void start(const std::string& rights = allRightsBut()) {
    RecordFixture::start(rights);
    server.always("GETARLOC");
  }
  frmEquipment& openAs(const RecordOpening& opening, int probe = 0, std::string_view record = kPiece) {
    server.expect("GETEGTN", "EID=" + opening.id).replies("ETY=Television ETI=4");
    server.expect("GETEDTL", "EID=" + opening.id).replies(record);
    if (!record.empty()) server.expect("GETARLOC", "LOC=3").replies(kRooms);
    const bool placed = !opening.copy && !record.empty();
    server
        .expect("ADDREQP",
                "EID=" + std::string(opening.copy ? "" : opening.id) + " RID=" + (placed ? "2" : "0"))
        .fails(probe);
    return dynamic_cast<frmEquipment&>(*OpenRecordWindow(*app, opening));
  }
  frmEquipment& open(int probe = 0, std::string_view record = kPiece) {
    return openAs({kEquipment, "11", kSourceMainWindow}, probe, record);
  }
  frmEquipment& openNew(int source, int kind = kEquipment) {
    if (source == kSourceRoom)
      server.expect("GETARLOC", "LOC=4").replies("RID=9 RNO=9 RNM=Hall");
    else
      server.expect("GETARLOC", "LOC=3").replies(kRooms);
    server.expect("ADDREQP", "EID= RID=0");
    return dynamic_cast<frmEquipment&>(*OpenRecordWindow(*app, {kind, "", source}));
  }
  frmEquipment& openCopy() {
    RecordOpening copy(kEquipment, "11", kSourceMainWindow);
    copy.copy = true;
    return openAs(copy);
  }
};

TEST_F(FrmEquipmentTest, ShowsARecordAndAsksWhetherABookingHoldsIt) {
  frmEquipment& piece = open();
  EXPECT_EQ(piece.Caption, "Equipment Inventory - TV1");
  EXPECT_EQ(piece.cboEQUIP_TYPE.Text(), "Television");
  EXPECT_EQ(piece.txtEQUIP_VALUEP.Text(), "$1200.50");
  EXPECT_EQ(piece.dtEQUIP_DT_PUR.shortDate(), "01/03/2025");
  EXPECT_EQ(piece.place.cboLOC_NAME.Text() + "/" + piece.place.cboROOM_NAME.Text(), "Main Desk/102 - Store");
  EXPECT_EQ(piece.place.txtTEMP_ROOM_NAME.Text, "Hall");
  EXPECT_EQ(piece.txtGroup.Text, "SET1");
  EXPECT_EQ(piece.propertyFields.dtUP_DATE.shortDate() + piece.txtHIST_MAINT.Text.get(), "03/02/20262");
  EXPECT_TRUE(piece.txtBARCODE_NO.Locked && piece.txtSTS_TYPE.Locked);
  EXPECT_FALSE(piece.Dirty);
  EXPECT_TRUE(piece.findControl("tabEquipment")->Visible);
  EXPECT_TRUE(piece.Unload()) << "nothing was changed";

  frmEquipment& refused = open(0, "");
  EXPECT_EQ(refused.Caption, "Equipment Inventory - ") << "an unreadable record shows empty fields";
}

TEST_F(FrmEquipmentTest, ANewRecordStartsByTheWindowThatAsksForIt) {
  {
    frmEquipment& piece = openNew(kSourceMainWindow);
    EXPECT_EQ(piece.Caption, "Equipment Inventory - (New)");
    EXPECT_EQ(piece.cboEQUIP_TYPE.Text(), "Television") << "the first real type";
    EXPECT_EQ(piece.place.cboROOM_NAME.Text(), "101") << "a room without a name";
    EXPECT_EQ(piece.txtSTS_TYPE.Text.get() + piece.txtGroup.Text.get(), "Not Charged(none)");
    EXPECT_FALSE(piece.mnuView.Enabled || piece.mnuFileDelete.Enabled || piece.mnuFileCopy.Enabled ||
                 piece.mnuFilePrint.Enabled || piece.txtBARCODE_NO.Locked);
    EXPECT_TRUE(piece.findControl("tabEquipmentDetails")->Visible &&
                !piece.findControl("tabEquipment")->Visible);
  }
  app->slots.group = {"21", "SET1"};
  app->slots.room = {"Branch", "9 - Hall"};
  app->slots.typeNames[kEquipment] = "Camera";
  EXPECT_EQ(openNew(kSourceGroup).txtGroup.Text, "SET1");
  const frmEquipment& fromRoom = openNew(kSourceRoom);
  EXPECT_EQ(fromRoom.place.cboROOM_NAME.Text() + fromRoom.txtGroup.Text.get(), "9 - Hall(none)");
  EXPECT_EQ(fromRoom.cboEQUIP_TYPE.Text(), "Camera") << "the type that was used last";
}

TEST_F(FrmEquipmentTest, StoresANewRecordAndShowsItAsStored) {
  frmEquipment& piece = openNew(kSourceMainWindow);
  desktop.expectWarning("Missing Required Fields:\nNumber");
  save(piece);
  EXPECT_FALSE(piece.SaveOk);
  piece.txtEQUIP_NO.type("TV9");
  piece.txtEQUIP_VALUEP.type("12.5");
  server
      .expect(
          "NEWEQIPD",
          R"(BNO= ETI=4 ETY=Television ENO=TV9 EMA= EFO= EMO= ESN= EQVP=12.50 EQVR= ESU= EDP= ENM= LOC=3 RID=1 RNM=101)")
      .replies("EID=77 CLN=\"Main Desk\" CDT=\"2026-11-24 09:00:00\" CNM=\"Ink, Ina\"");
  expectCategories();
  save(piece);
  EXPECT_EQ(piece.Caption, "Equipment Inventory - TV9");
  EXPECT_EQ(piece.recordId() + piece.Tag.get(), "770 - 77");
  EXPECT_EQ(piece.propertyFields.dtCR_DATE.shortDate(), "24/11/2026");
  EXPECT_EQ(piece.place.txtTEMP_ROOM_NAME.Text, "101");
  EXPECT_TRUE(piece.txtBARCODE_NO.Locked && piece.mnuView.Enabled && piece.mnuFileCopy.Enabled);
  EXPECT_TRUE(piece.findControl("tabEquipment")->Visible);

  piece.cboEQUIP_TYPE.select(piece.cboEQUIP_TYPE.indexOf("Camera"));
  EXPECT_FALSE(piece.mnuFileCopy.Enabled) << "only what is stored is copied";
  server.expect(
      "UPDEQIPD",
      R"(EID=77 ETI=5 ETY=Camera ENO=TV9 EMA= EFO= EMO= ESN= EQVP=12.50 EQVR= ESU= EDP= ENM= LOC=3 RID=1 RNM=101)");
  for (const char* list : {"GETECAT", "GETGCAT", "GETRCAT", "GETMYER"}) {
    expectFailure(list);
  }
  save(piece);
  EXPECT_TRUE(piece.SaveOk && !piece.Dirty) << "whatever the lists say";
  EXPECT_TRUE(piece.Unload());
}

TEST_F(FrmEquipmentTest, ARefusedRecordCountsAsSavedAndItsNextSaveIsAnUpdate) {
  for (const int kind : {kEquipment, kGroupMember}) {
    SCOPED_TRACE(kind);
    start();
    app->slots.group = {"21", "SET1"};
    frmEquipment& piece = openNew(kind == kEquipment ? kSourceMainWindow : kSourceGroupMembers, kind);
    piece.txtEQUIP_NO.type("TV9");
    piece.txtBARCODE_NO.type(" B9 ");
    constexpr const char* kRest =
        "ETI=4 ETY=Television ENO=TV9 EMA= EFO= EMO= ESN= EQVP= EQVR= ESU= EDP= ENM= LOC=3 RID=1 RNM=101";
    server.expect("NEWEQIPD", std::string("BNO=B9 ") + kRest).fails(174);
    desktop.expectWarning(kInUse);  // and no group is asked to take what is not there
    expectCategories();
    save(piece);
    EXPECT_TRUE(piece.SaveOk && piece.findControl("tabEquipment")->Visible);
    server.expect("UPDEQIPD", std::string("EID= ") + kRest);
    save(piece);
  }
}

TEST_F(FrmEquipmentTest, AMemberJoinsItsGroupWithItsFirstSave) {
  struct Round {
    int rc;
    const char* box;
    const char* value;
  };
  for (const Round& round :
       {Round{0, "", "$350.00"},
        Round{182, "All relevant bookings have been updated with the new group information.", "$350.00"},
        Round{174, kInUse, "$0.00"},
        Round{125, "Equipment group status prohibits editing of this record.", "$0.00"}}) {
    SCOPED_TRACE(round.rc);
    start();
    app->slots.group = {"21", "SET1"};
    frmEquipment& piece = openNew(kSourceGroupMembers, kGroupMember);
    EXPECT_EQ(piece.txtGroup.Text, "SET1");
    piece.txtEQUIP_NO.type("TV9");
    server
        .expect("NEWEQIPD",
                "BNO= ETI=4 ETY=Television ENO=TV9 EMA= EFO= EMO= ESN= EQVP= EQVR= ESU= EDP= ENM= LOC=3 "
                "RID=1 RNM=101")
        .replies("EID=77 CNM=Ink");
    auto joins = server.expect("NEWGITM", "EID=77 GRPID=21 ULI=3");
    const bool joined = round.rc == 0 || round.rc == 182;
    joined ? joins.fails(round.rc, "MVL=350 LOC=3 RID=9 RNM=Hall") : joins.fails(round.rc);
    if (round.rc == 182) desktop.expectInformation(round.box);
    if (!joined) desktop.expectWarning(round.box);
    if (round.rc != 125) expectCategories();
    save(piece);
    EXPECT_EQ(piece.SaveOk, round.rc != 125);
    EXPECT_TRUE(piece.txtGroup.Locked && piece.txtGroup.Enabled);
    EXPECT_EQ(piece.txtEQUIP_VALUER.Text(), round.value);
    EXPECT_EQ(piece.place.cboROOM_NAME.Text(), joined ? "Hall" : "101") << "it is kept where its group is";
    EXPECT_EQ(piece.txtGroup.Text, joined ? "SET1" : "(none)");
    if (round.rc != 125) continue;
    server.expect("UPDEQIPD",
                  "EID=77 ETI=4 ETY=Television ENO=TV9 EMA= EFO= EMO= ESN= EQVP= EQVR= ESU= EDP= ENM= LOC=3 "
                  "RID=1 RNM=101");
    expectCategories();
    save(piece);
    EXPECT_TRUE(piece.SaveOk) << "it is stored already";
  }
}

TEST_F(FrmEquipmentTest, AMoveOutOfAPendingBookingIsAskedOnce) {
  frmEquipment& piece = open(174);
  EXPECT_TRUE(piece.place.cboROOM_NAME.Enabled);
  desktop.expectBox(Box::Kind::Question, kMove, 1);
  piece.place.cboROOM_NAME.select(0);
  EXPECT_EQ(piece.place.cboROOM_NAME.Text() + piece.place.txtTEMP_ROOM_NAME.Text.get(), "101Hall")
      << "a cancel keeps the new entry";
  for (const char* refusal :
       {"Booking exist for Pickup and Delivery.", "Booking exist for Pickup or Delivery."}) {
    desktop.expectBox(Box::Kind::Question, kMove, 0);
    server.expect("DLTEBFR", "EID=11").fails(100);
    desktop.expectBox(Box::Kind::Plain, refusal);
    if (std::string(refusal).ends_with("and Delivery."))
      piece.place.cboROOM_NAME.select(1);
    else
      piece.place.cboLOC_NAME.select(1);
  }
  desktop.expectBox(Box::Kind::Question, kMove, 0);
  server.expect("GETARLOC", "LOC=3").replies(kRooms);
  expectFailure("DLTEBFR", "EID=11");  // another failure is told, and the server decides at the save
  piece.place.cboLOC_NAME.select(0);
  EXPECT_EQ(piece.place.txtTEMP_ROOM_NAME.Text, "101");
  piece.place.cboROOM_NAME.select(1);
  EXPECT_EQ(piece.place.txtTEMP_ROOM_NAME.Text, "102 - Store") << "and not a second time";
}

TEST_F(FrmEquipmentTest, AChargedPieceOfABookingStaysAndWithoutTheRightNobodyIsAsked) {
  std::string charged = kPiece;
  charged.replace(charged.find("Not Charged"), 11, "Charged");
  EXPECT_FALSE(open(174, charged).place.cboROOM_NAME.Enabled);
  start(allRightsBut("EBM"));
  frmEquipment& piece = open(174);
  piece.place.cboROOM_NAME.select(0);
  EXPECT_EQ(piece.place.txtTEMP_ROOM_NAME.Text, "101");
}

TEST_F(FrmEquipmentTest, ACopyTakesTheThingsThatAreNotItsModelsOwn) {
  frmEquipment& piece = openCopy();
  EXPECT_EQ(piece.Caption, "Copy of Equipment Inventory  - TV1");
  EXPECT_EQ(piece.txtEQUIP_NO.Text.get() + piece.txtBARCODE_NO.Text.get() + piece.txtEQUIP_MANUF.Text.get(),
            "TELEVISIONTovan");
  EXPECT_EQ(piece.txtGroup.Text.get() + piece.propertyFields.txtCR_OPNAME.Text.get() +
                piece.txtHIST_BKNGS.Text.get(),
            "(none)");
  EXPECT_TRUE(piece.Dirty && !piece.txtBARCODE_NO.Locked);
  EXPECT_FALSE(piece.mnuFilePrint.Enabled || piece.mnuFileCopy.Enabled || piece.mnuFileDelete.Enabled);
  server.expect("GETCEB", "EID=11");
  piece.mnuViewPage_Click(1);
  EXPECT_FALSE(piece.bookings.cmdViewCurrentBookings.Enabled || piece.bookings.cmdViewOldBookings.Enabled);
  server.expect("GETEGNS", "EID=11");
  piece.mnuViewPage_Click(3);
  EXPECT_FALSE(piece.notes.cboNoteType.Enabled);
  server
      .expect(
          "NEWEQIPD",
          R"(BNO= ETI=4 ETY=Television ENO=TELEVISION EMA=Tovan EFO=HD EMO=V-55 ESN=S1 EQVP=1200.50 EQVR=900.00 ESU=Hale EDP=2025-03-01 ENM=2027-01-15 LOC=3 RID=2 RNM="102 - Store")")
      .replies("EID=78 CNM=Ink");
  server.expect("GETEGNS", "EID=78");
  expectCategories();
  save(piece);
  EXPECT_EQ(piece.Caption, "Equipment Inventory - TELEVISION");
  EXPECT_TRUE(piece.bookings.cmdViewCurrentBookings.Enabled && piece.mnuFilePrint.Enabled);
}

TEST_F(FrmEquipmentTest, ItsPagesAreReadWhenTheyAreFirstVisited) {
  frmEquipment& piece = open();
  server.expect("GETCEB", "EID=11").replies(R"(
    BOOKID=5 CNUM=M5 STIME="2026-11-24 09:00:00" ETIME="2026-11-25 17:30:00" PGNM=Staff PATNM="Reed, Mara" BTYP=Pick-Up
    BOOKID=6 CNUM=M6 STIME="2026-11-26 09:00:00" ETIME="2026-11-26 10:00:00" PGNM= PATNM= BTYP=Deliver)");
  piece.mnuViewPage_Click(1);
  const Grid& list = piece.bookings.fa;
  EXPECT_EQ(list.TextMatrix(1, 2) + "|" + list.TextMatrix(1, 3), "24/11/2026  09:00 AM|25/11/2026  05:30 PM");
  EXPECT_EQ(list.TextMatrix(2, 5), "Administrative");
  EXPECT_FALSE(piece.bookings.cmdEditBooking.Enabled);
  noteRecords();
  piece.bookings.fa.doubleClick(2, 1);
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 7"});
  piece.mnuViewPage_Click(0);
  piece.mnuViewPage_Click(1);  // asks nothing again
  server.expect("GETHEB", "EID=11");
  piece.bookings.cmdViewOldBookings.press();
  EXPECT_EQ(list.Rows, 1);

  server.expect("GETMYER").replies("MYE=2026\nMYE=2025");
  for (int month = 1; month <= 12; ++month) {
    server.expect("GETMITM", "MSD=2026-" + std::to_string(month) + "-01 EID=11")
        .replies(month != 3 ? ""
                            : "MID=9 MDYI=\"2026-03-04\" MDYO= ON=\"Ink, Ina\" MTY=Lamp\nMID=9 "
                              "MDYI=\"2026-03-04\" MDYO= ON=Ink MTY=Fan");
  }
  piece.mnuViewPage_Click(2);
  const Grid& records = piece.maintenance.fa;
  ASSERT_EQ(records.Rows, 2) << "a repeated record is one row";
  EXPECT_EQ(records.TextMatrix(1, 1) + records.TextMatrix(1, 2) + records.TextMatrix(1, 3),
            "3March04/03/2026");
  EXPECT_FALSE(piece.maintenance.cmdEditMaint.Enabled);
  piece.maintenance.fa.click(1, 1);
  server.expect("REMMAINT", "MID=9");
  desktop.expectQuestion("Are you sure you want to DELETE this record?", true);
  piece.maintenance.cmdDeleteMaint.press();
  EXPECT_EQ(records.Rows, 1);
  notBuilt.clear();
  piece.maintenance.cmdNewMaint.press();
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 3"});
  EXPECT_EQ(app->lookUp.LookupRows.front().ETY, "Television");
}

TEST_F(FrmEquipmentTest, NotesAreReadSavedAndRemovedByType) {
  frmEquipment& piece = open();
  NotesPanel& notes = piece.notes;
  const auto types = [this](const char* filled) {
    server.expect("GETEGNS", "EID=11")
        .replies(std::string("ENID=1 NX=") + filled + " ENTY=Repair\nENID=2 NX=N ENTY=General");
  };
  types("Y");
  piece.mnuViewPage_Click(3);
  EXPECT_EQ(notes.cboNoteType.Text(), "(none)");
  EXPECT_FALSE(notes.txtNote.Enabled);
  server.expect("GETEGN", "EID=11 ENID=1")
      .replies("MNO=\"Lamp 3\" UDT=\"2026-02-03 08:00:00\" ON=\"Vale, Tom\"");
  notes.cboNoteType.select(1);
  EXPECT_EQ(notes.cboNoteType.Text() + notes.txtNote.Text.get() + notes.txtOPNAME.Text.get(),
            "Repair +Lamp 3Vale, Tom");
  EXPECT_TRUE(notes.cmdRemoveNote.Enabled && !notes.cmdSaveNote.Enabled);

  notes.txtNote.type("Lamp 4");
  EXPECT_TRUE(notes.cmdSaveNote.Enabled && notes.cmdUndoNote.Enabled);
  desktop.expectBox(Box::Kind::Warning, "Note changes will be lost!  Do you wish to SAVE this note?", 0);
  server.expect("AUEGNOTE", "EID=11 ENID=1 MNO=\"Lamp 4\"");
  types("Y");
  server.expect("GETEGN", "EID=11 ENID=2");
  notes.cboNoteType.select(2);
  EXPECT_EQ(notes.cboNoteType.Text() + notes.txtNote.Text.get(), "General");
  EXPECT_FALSE(notes.cmdRemoveNote.Enabled) << "there is none of this type";

  notes.txtNote.type("x");
  server.expect("GETEGN", "EID=11 ENID=2");
  notes.cmdUndoNote.press();
  EXPECT_EQ(notes.txtNote.Text, "");
  server.expect("GETEGN", "EID=11 ENID=1").replies("MNO=\"Lamp 4\" ON=Vale");
  notes.cboNoteType.select(1);
  desktop.expectQuestion("Are you sure you want to DELETE this note?", true);
  server.expect("REMEGN", "EID=11 ENID=1");
  types("N");
  notes.cmdRemoveNote.press();
  EXPECT_EQ(notes.cboNoteType.Text() + notes.txtNote.Text.get(), "(none)");

  server.expect("GETEGN", "EID=11 ENID=2");
  notes.cboNoteType.select(2);
  notes.txtNote.type("Call Hale");
  desktop.expectBox(Box::Kind::Warning,
                    "Note changes will be lost!  Do you wish to SAVE the note before exiting?", 0);
  server.expect("AUEGNOTE", "EID=11 ENID=2 MNO=\"Call Hale\"");
  types("N");
  server.expect("GETEGN", "EID=11 ENID=2");
  EXPECT_TRUE(piece.Unload());
}

TEST_F(FrmEquipmentTest, AFailedRequestOfANoteIsToldAndKeepsItWhileTheWindowIsOpen) {
  frmEquipment& piece = open();
  NotesPanel& notes = piece.notes;
  server.expect("GETEGNS", "EID=11").replies("ENID=1 NX=Y ENTY=Repair\nENID=2 NX=N ENTY=General");
  piece.mnuViewPage_Click(3);
  expectFailure("GETEGN", "EID=11 ENID=2");
  notes.cboNoteType.select(2);
  server.expect("GETEGN", "EID=11 ENID=1").replies("MNO=\"Lamp 3\" ON=Vale");
  notes.cboNoteType.select(1);
  desktop.expectQuestion("Are you sure you want to DELETE this note?", true);
  expectFailure("REMEGN", "EID=11 ENID=1");
  notes.cmdRemoveNote.press();
  EXPECT_EQ(notes.txtNote.Text, "Lamp 3");
  notes.txtNote.type("x");
  expectFailure("AUEGNOTE", "EID=11 ENID=1 MNO=x");
  notes.cmdSaveNote.press();
  EXPECT_TRUE(notes.Dirty && notes.cmdSaveNote.Enabled);
  desktop.expectBox(Box::Kind::Warning, kNote, 0);
  expectFailure("AUEGNOTE", "EID=11 ENID=1 MNO=x");
  EXPECT_TRUE(piece.Unload()) << "after either answer";
}

TEST_F(FrmEquipmentTest, DialogsOfStatusAndBarcodeSaveTheRecordWhenTheyChangedIt) {
  frmEquipment& piece = open();
  constexpr const char* kUpdate =
      R"(EID=11 ETI=4 ETY=Television ENO=TV1 EMA=Tovan EFO=HD EMO=V-55 ESN=S1 EQVP=1200.50 EQVR=900.00 ESU=Hale EDP=2025-03-01 ENM=2027-01-15 LOC=3 RID=2 RNM="102 - Store")";
  server.expect("GETEGSTY");
  server.expect("GETEGSTS", "EID=11");
  desktop.expectModalWindow<frmStatus>("frmStatus", [](frmStatus& window) {
    window.status = "Charged";
    window.changed = true;
    window.Unload();
  });
  const auto expectUpdate = [&] {
    server.expect("UPDEQIPD", kUpdate).replies("UDT=\"2026-02-03 08:00:00\"");
  };
  expectUpdate();
  EXPECT_TRUE(piece.txtSTS_TYPE.pressKey("F4"));
  EXPECT_EQ(piece.txtSTS_TYPE.Text, "Charged");
  EXPECT_FALSE(piece.place.cboLOC_NAME.Enabled || piece.place.cboROOM_NAME.Enabled);
  for (const bool active : {true, false}) {
    server.expect("GETEGBTY");
    server.expect("GETEGBAR", "EID=11").replies(active ? "BNO=b12 BSI=1" : "");
    desktop.expectModalWindow<frmBarcodes>("frmBarcodes", [active](frmBarcodes& window) {
      window.Unload();
      window.barcode = active ? "b12" : "(none)";
      window.changed = active;
    });
    if (active) expectUpdate();
    piece.txtBARCODE_NO.doubleClick();
    EXPECT_EQ(piece.txtBARCODE_NO.Text, active ? "B12" : "");
  }
}

TEST_F(FrmEquipmentTest, TheAssignedNumbersFollowTheRecords) {
  server.always("GETEITM");
  server.always("UPDEQIPD");
  const auto asked = [this] {
    return std::ranges::count_if(server.requests(),
                                 [](const Request& each) { return each.code == "GETEITM"; });
  };
  frmEquipment& piece = open();
  piece.cboEQUIP_TYPE.select(0);
  piece.cmdEQUIP_NO.press();
  EXPECT_EQ(asked(), 0) << "without a type there is nothing to list, nor to refresh";
  piece.cboEQUIP_TYPE.select(1);
  piece.cmdEQUIP_NO.press();
  EXPECT_EQ(asked(), 1);
  EXPECT_TRUE(piece.txtEQUIP_NO.pressKey("F4"));
  EXPECT_EQ(asked(), 2);
  save(piece);
  EXPECT_EQ(asked(), 3);
  openNew(kSourceMainWindow);
  EXPECT_EQ(asked(), 4);
  expectRemoval("VID=11 VTY=1", "REMEQIP", "EID=11");
  piece.mnuFileDelete.choose();
  EXPECT_EQ(asked(), 5);
}

TEST_F(FrmEquipmentTest, ARecordThatAnotherDeskHasDeletedIsToldInWords) {
  constexpr const char* kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
  frmEquipment& piece = open();
  server.expect("VERDELE", "VID=11 VTY=1").fails(2);
  desktop.expectWarning(kGone);
  piece.mnuFileDelete.choose();
  server
      .expect("UPDEQIPD",
              "EID=11 ETI=4 ETY=Television ENO=TV1 EMA=Tovan EFO=HD EMO=V-55 ESN=S1 EQVP=1200.50 EQVR=900.00 "
              "ESU=Hale EDP=2025-03-01 ENM=2027-01-15 LOC=3 RID=2 RNM=\"102 - Store\"")
      .fails(2);
  desktop.expectWarning(kGone);
  save(piece);
}

TEST_F(FrmEquipmentTest, ANoteTooLongForAMessageStays) {
  frmEquipment& piece = open();
  server.expect("GETEGNS", "EID=11").replies("ENID=1 NX=Y ENTY=Repair");
  piece.mnuViewPage_Click(3);
  server.expect("GETEGN", "EID=11 ENID=1").replies("MNO=\"Lamp 3\"");
  piece.notes.cboNoteType.select(1);
  piece.notes.txtNote.type(std::string(1'000'000, 'x'));
  desktop.expectWarning(kTooLong);
  piece.notes.cmdSaveNote.press();
  EXPECT_TRUE(piece.notes.Dirty);
}

TEST_F(FrmEquipmentTest, HelpIsThatOfThePage) {
  server.always("GETCEB");
  server.always("GETMYER");
  server.always("GETMITM");
  server.always("GETEGNS");
  frmEquipment& piece = open();
  std::vector<std::string> pages;
  for (int page = 0; page < 5; ++page) {
    piece.mnuViewPage_Click(page);
    piece.mnuHelpTopics.choose();
  }
  EXPECT_EQ(desktop.helpTopics, (std::vector<std::string>{"equipment", "record-bookings", "maintenance",
                                                          "record-notes", "record-properties"}));
}

TEST_F(FrmEquipmentTest, AsksBeforeChangesAreLostButNotAfterASave) {
  struct Round {
    int kind;
    bool record, note, saved;
    const char* question;
  };
  start();
  server.always("GETEGNS").replies("ENID=1 NX=N ENTY=Repair");
  server.always("GETEGN");
  server.always("UPDEQIPD");
  for (const Round& round :
       {Round{kEquipment, false, false, false, ""}, Round{kEquipment, true, false, false, kChange},
        Round{kEquipment, false, true, false, kNote}, Round{kEquipment, true, true, false, kChange},
        Round{kEquipment, true, false, true, ""}, Round{kEquipment, false, true, true, ""},
        Round{kEquipment, true, true, true, kNote}, Round{kGroupMember, true, false, false, kChange},
        Round{kGroupMember, false, true, false, ""}}) {
    SCOPED_TRACE(testing::Message() << round.kind << round.record << round.note << round.saved);
    frmEquipment& piece =
        openAs({round.kind, "11", round.kind == kEquipment ? kSourceMainWindow : kSourceGroupMembers});
    if (round.saved) save(piece);
    if (round.record) piece.txtEQUIP_MODEL.type("V-60");
    if (round.note) {
      piece.mnuViewPage_Click(3);
      piece.notes.cboNoteType.select(1);
      piece.notes.txtNote.type("Lamp");
    }
    if (*round.question) desktop.expectBox(Box::Kind::Warning, round.question, 1);
    EXPECT_TRUE(piece.Unload()) << "after either answer";
    desktop.checkAllCame();
  }
}

TEST_F(FrmEquipmentTest, WhoMayOnlyLookChangesNothing) {
  start(onlyRights("EQV EQMV BKV"));
  frmEquipment& piece = open();
  for (const Command* command :
       {&piece.commands.save, &piece.saveAndClose, &piece.commands.saveAndNew, &piece.commands.copy,
        &piece.commands.remove, &piece.maintenance.newMaint, &piece.bookings.viewOld})
    EXPECT_FALSE(command->usable());
  EXPECT_TRUE(piece.cboEQUIP_TYPE.Locked && piece.txtEQUIP_NO.Locked && piece.txtEQUIP_MODEL.Locked);
  EXPECT_FALSE(piece.place.cboLOC_NAME.Enabled || piece.txtSTS_TYPE.Enabled || piece.cmdEQUIP_NO.Enabled);
  EXPECT_TRUE(piece.txtGroup.Enabled) << "the group can be looked at";
  EXPECT_EQ(piece.bookings.cmdEditBooking.Caption, "&View Booking");
  EXPECT_EQ(piece.maintenance.cmdEditMaint.Caption, "Vie&w");
  server.expect("GETEGTN", "EID=21");
  noteRecords();
  piece.txtGroup.doubleClick();
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 1"});
}

}  // namespace
}  // namespace vantry::test
