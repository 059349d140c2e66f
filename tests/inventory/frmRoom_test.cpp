// The window of a room, its details and what is kept in it.
#include "inventory/frmRoom.h"

#include "inventory/frmMaintDetails.h"
#include "inventory/frmRoomEquip.h"
#include "inventory/frmStatus.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kRecord =
    R"(head: RNO=102 LOC=3 RNM=Store RCA=40 STY=Available LNA="Main Desk" RST=Y CNM="Ink, Ina" UNM= )"
    R"(CDT="2025-03-01 08:00:00" UDT= CLN="Main Desk" CLI=3 ULN= EHB=7 )"
    R"(| RDI=5 RDTY=Screen RDTL="White, 2 m" | RDI=6 RDTY=Power RDTL="6 sockets")";
constexpr const char* kUpdate =
    R"(RID=2 RTI=1 RTY=Seminar RNO=102 RNM=Store LOC=3 RCA=40 RDI=5 RDTL="White, 2 m" RDI=6 RDTL="6 sockets")";
constexpr const char* kKept = R"(
  EID=11 BNO=B11 ENO=TV1 ETY=Television EIU=N ESDS="Not Charged"
  EID=21 BNO=G1 ENO=SET1 ETY="Video Set" EIU=Y ESDS=Charged)";
constexpr const char* kFree =
    R"(EID=13 BNO=B13 ENO=TV3 LNA=Branch RNM=Hall STY="Not Charged" EMA=Tovan EMO=V EFO=4K EIU=N RID=9)";
constexpr const char* kMove =
    "Equipment is used in a pending booking. Are you sure you want to move this equipment?";
constexpr const char* kInUse =
    "Unable to change location/room of this group as it is currently scheduled in other bookings.";

struct FrmRoomTest : RecordFixture {
  void SetUp() override { start(); }
  frmRoom& openAs(const RecordOpening& opening, std::string_view record = kRecord) {
    server.expect("GETRTN", "RID=2").replies("RTY=Seminar RTI=1");
    server.expect("GETRDTL", "RID=2").replies(record);
    return dynamic_cast<frmRoom&>(*OpenRecordWindow(*app, opening));
  }
  frmRoom& open(std::string_view record = kRecord) { return openAs({kRoom, "2", kSourceMainWindow}, record); }
  frmRoom& openNew() {
    return dynamic_cast<frmRoom&>(*OpenRecordWindow(*app, {kRoom, "", kSourceMainWindow}));
  }

  void expectKept(std::string_view kept = kKept) { server.expect("GETREQP", "RID=2").replies(kept); }
  void expectTree() {
    server.expect("GETGCAT", "RID=2").replies("ETI=8 ETY=\"Video Set\" MIC=1");
    server.expect("GETEAVC", "RID=2").replies("ETI=4 ETY=Television MIC=1");
  }
  void expectFree() { server.expect("GETNGRPE", "ETI=4 RID=2").replies(kFree); }
  /// The room 2 on its page of equipment, with the free televisions on the left.
  RoomEquipment& openEquipment() {
    frmRoom& room = open();
    expectKept();
    expectTree();
    room.mnuViewPage_Click(2);
    expectFree();
    room.equipment.tree.click("Equipment|4");
    return room.equipment;
  }
  /// The dialog that asks where a thing is to be kept opens, and the operator takes the first room.
  void expectNewRoom(bool accepts) {
    server.expect("GETARLOC", "LOC=3").replies("RID=1 RNO=101 RNM=");
    if (accepts) server.expect("ADDREQP", "EID=11 RID=1");
    desktop.expectModalWindow<frmRoomEquip>("frmRoomEquip", [accepts](frmRoomEquip& window) {
      (accepts ? window.cmdOK : window.cmdCancel).press();
    });
  }
};

TEST_F(FrmRoomTest, ShowsARecordANewOneAndACopy) {
  frmRoom& room = open();
  EXPECT_EQ(room.Caption, "Room Inventory - 102");
  EXPECT_EQ(room.cboROOM_TYPE.Text() + room.txtROOM_NAME.Text.get() + room.txtROOM_CAPACITY.Text() +
                room.cboLOC_NAME.Text() + room.txtSTS_TYPE.Text.get(),
            "SeminarStore40Main DeskAvailable");
  EXPECT_EQ(room.txtROOM_NAME.Tag.get() + room.propertyFields.txtCR_LOC_NAME.Tag.get(), "23");
  EXPECT_EQ(row(room.details.fa, 0) + row(room.details.fa, 2), "Detail Type|Details|Power|6 sockets|");
  EXPECT_FALSE(room.Dirty || room.chkSTORAGE.Enabled);
  // The mark follows the record, then the type.
  EXPECT_TRUE(room.chkSTORAGE.Value);
  room.cboROOM_TYPE.select(2);
  EXPECT_TRUE(room.chkSTORAGE.Value);
  room.cboROOM_TYPE.select(1);
  EXPECT_FALSE(room.chkSTORAGE.Value);
  EXPECT_TRUE(room.Dirty);

  frmRoom& fresh = openNew();
  EXPECT_EQ(fresh.Caption.get() + fresh.txtSTS_TYPE.Text.get() + fresh.cboLOC_NAME.Text(),
            "Room Inventory - (New)AvailableMain Desk");
  EXPECT_TRUE(fresh.findControl("tabRoomDetails")->Visible && !fresh.findControl("tabRoom")->Visible);

  RecordOpening opening(kRoom, "2", kSourceMainWindow);
  opening.copy = true;
  frmRoom& copy = openAs(opening);
  EXPECT_EQ(copy.Caption, "Copy of Room Inventory  - 102");
  EXPECT_EQ(copy.txtROOM_NO.Text.get() + copy.propertyFields.txtCR_OPNAME.Text.get(), "SEMINAR");
  expectKept();
  expectTree();
  copy.mnuViewPage_Click(2);
  copy.equipment.faMembers.click(1, 1);
  EXPECT_FALSE(copy.equipment.cmdRemove.Enabled || copy.equipment.cmdAddByNumber.Enabled);
  server
      .expect("NEWROOMD",
              "RTI=1 RTY=Seminar RNO=SEMINAR RNM=Store LOC=3 RCA=40 RDI=5 RDTL=\"White, 2 m\" RDI=6 "
              "RDTL=\"6 sockets\"")
      .replies("RID=30 CLN=Branch");
  for (const char* code : {"GETREQP", "GETGCAT", "GETEAVC"}) server.expect(code, "RID=30");
  expectCategories();
  save(copy);
  EXPECT_EQ(copy.Tag.get() + copy.txtROOM_NAME.Tag.get() + copy.propertyFields.txtCR_LOC_NAME.Text.get(),
            "2 - 3030Branch");
  EXPECT_EQ(copy.equipment.faMembers.Rows, 1) << "the equipment stays with its model";
}

TEST_F(FrmRoomTest, ARefusedRoomCountsAsSavedAndALocationOfAnotherLibraryIsShown) {
  frmRoom& room = openNew();
  room.cboROOM_TYPE.select(0);
  desktop.expectWarning("Missing Required Fields:\nRoom Type\nNumber");
  save(room);
  room.cboROOM_TYPE.select(2);
  room.txtROOM_NO.type("S1");
  room.txtROOM_CAPACITY.type("100000");
  desktop.expectInformation("Please enter a number from 0 to 99999 for Capacity.");
  save(room);
  EXPECT_FALSE(room.SaveOk);
  desktop.expectBox(Box::Kind::Warning,
                    "Changes will be lost!  Do you wish to SAVE this record before exiting?", 0);
  desktop.expectInformation("Please enter a number from 0 to 99999 for Capacity.");
  EXPECT_FALSE(room.Unload()) << "only the operator can mend it";
  room.txtROOM_CAPACITY.type("99999");
  server.expect("NEWROOMD", "RTI=2 RTY=Store RNO=S1 RNM= LOC=3 RCA=99999").fails(174);
  desktop.expectWarning(kInUse);
  expectCategories();
  save(room);
  EXPECT_TRUE(room.SaveOk && !room.isNew() && room.findControl("tabRoom")->Visible);
  room.mnuViewPage_Click(2);  // a room without an id keeps nothing
  server.expect("UPDROOMD", "RID= RTI=2 RTY=Store RNO=S1 RNM= LOC=3 RCA=99999");
  save(room);

  std::string far = kRecord;
  far.replace(far.find("LOC=3"), 5, "LOC=8");
  far.replace(far.find("Main Desk"), 9, "Far Desk");
  frmRoom& other = open(far);
  EXPECT_EQ(other.cboLOC_NAME.Text(), "Far Desk");
  EXPECT_TRUE(other.Unload());
  EXPECT_EQ(open("").cboLOC_NAME.ListIndex, -1) << "an unreadable record shows empty fields";
}

TEST_F(FrmRoomTest, DetailsChangeInTheListUntilTheRoomIsSaved) {
  frmRoom& room = open();
  EXPECT_FALSE(room.details.cmdEditDetail.Enabled || room.details.cmdRemoveDetail.Enabled);
  room.details.fa.click(2, 1);
  desktop.expectPopup("mnuPopupDetails", "mnuPopupDetailsRemove");
  desktop.expectQuestion("Are you sure you want to REMOVE this detail?", true);
  room.details.fa.rightClick(2, 1);
  server.expect("GETRDTLTY").replies("RDI=5 RDTY=Screen\nRDI=7 RDTY=Floor");
  desktop.expectModalWindow<frmMaintDetails>("frmMaintDetails", [](frmMaintDetails& window) {
    EXPECT_EQ(window.Caption, "Room Detail Types");
    window.fa.click(2, 1);
    window.txtDetails.type("Carpet");
    window.cmdOK.press();
  });
  room.details.cmdAddDetail.press();
  EXPECT_TRUE(room.Dirty && room.details.cmdEditDetail.Enabled);
  room.mnuViewPage_Click(4);
  room.mnuViewPage_Click(0);
  EXPECT_FALSE(room.details.cmdEditDetail.Enabled || room.details.cmdRemoveDetail.Enabled)
      << "another page selects nothing";
  server
      .expect("UPDROOMD",
              "RID=2 RTI=1 RTY=Seminar RNO=102 RNM=Store LOC=3 RCA=40 RDI=5 RDTL=\"White, 2 m\" RDI=7 "
              "RDTL=Carpet")
      .replies("UDT=2026-11-24 ULN=Branch UNM=Vale");
  save(room);
  EXPECT_EQ(room.propertyFields.txtUP_LOC_NAME.Text, "Branch");

  server.expect("GETRSTY");
  server.expect("GETRSTS", "RID=2");
  desktop.expectModalWindow<frmStatus>("frmStatus", [](frmStatus& window) {
    EXPECT_EQ(window.Caption, "Room Status");
    window.Unload();
    window.status = "Closed";
  });
  room.txtSTS_TYPE.doubleClick();
  EXPECT_EQ(room.txtSTS_TYPE.Text, "Closed");
}

TEST_F(FrmRoomTest, ARefusalSaysWhatIsWrong) {
  frmRoom& room = open();
  const struct {
    const char* tag;
    const char* words;
  } cases[] = {
      {"RNO",
       "This number is in use.\n\nAnother record of this type and location has it.  Nothing was stored."},
      {"RTI", "This type is not there any more."},
      {"RDI", "This type is not there any more."},
      {"LOC", "The location is not there any more."}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tag);
    server.expect("UPDROOMD", kUpdate).fails(-98, "CANTREAD=" + std::string(c.tag));
    desktop.expectWarning(c.words);
    save(room);
  }
}

TEST_F(FrmRoomTest, TheEquipmentPageListsGroupsAndPieces) {
  RoomEquipment& page = openEquipment();
  EXPECT_EQ(nodes(page.tree), "Groups: Video Set (1)\nEquipment: Television (1)\n");
  EXPECT_EQ(row(page.faMembers, 0) + row(page.faMembers, 2),
            "Barcode|Type|Group?|Status|G1|Video Set|Y|Charged|");
  EXPECT_EQ(row(page.faCandidates, 0) + row(page.faCandidates, 1),
            "Barcode|Location|Room|Manufacturer|Model|Status|Format|B13|Branch|Hall|Tovan|V|Not Charged|4K|");
  server.expect("GETGITM", "ETI=8").replies(R"(
    EID=21 BNO=G1 LNA="Main Desk" RNM=Store STY=Charged EIU=Y RID=2
    EID=22 BNO=G2 LNA=Branch RNM=Hall STY="Not Charged" EIU=Y RID=9)");
  page.tree.click("Groups|8");
  EXPECT_EQ(row(page.faCandidates, 0) + row(page.faCandidates, 1),
            "Barcode|Location|Room|Status|G2|Branch|Hall|Not Charged|")
      << "without the group that is here";

  noteRecords();
  server.expect("GETEGTN", "EID=22");
  page.faCandidates.doubleClick(1, 3);
  server.expect("GETEGTN", "EID=11");
  page.faMembers.doubleClick(1, 1);
  EXPECT_EQ(app->slots.room.location + app->slots.room.name, "Main Desk102 - Store");
  desktop.expectPopup("mnuPopupEquipment", "mnuPopupEquipmentNewGroup");
  page.faMembers.rightClick(1, 1);
  EXPECT_EQ(app->slots.typeNames[kGroup], "Video Set");
  EXPECT_EQ(app->slots.opening.source, kSourceRoom);
  EXPECT_EQ(notBuilt, (std::vector<std::string>{"record window 1", "record window 0", "record window 1"}));
}

TEST_F(FrmRoomTest, EquipmentIsPutIntoTheRoomAndBack) {
  RoomEquipment& page = openEquipment();
  page.faCandidates.click(1, 3);
  server.expect("ADDREQP", "EID=13 RID=2 ULI=3").fails(174);
  desktop.expectWarning(kInUse);
  page.cmdAdd.press();
  EXPECT_EQ(page.faCandidates.Rows, 2);
  EXPECT_FALSE(page.cmdUndo.Enabled);

  const std::string withNew =
      std::string(kKept) + "\nEID=13 BNO=B13 ETY=Television EIU=N ESDS=\"Not Charged\"";
  server.expect("ADDREQP", "EID=13 RID=2 ULI=3");
  expectKept(withNew);
  expectTree();
  page.cmdAdd.press();
  EXPECT_EQ(page.faMembers.Rows, 4);
  EXPECT_EQ(page.faCandidates.Rows, 1);

  server.expect("ADDREQP", "EID=13 RID=2");  // does a booking hold it?
  server.expect("ADDREQP", "EID=13 RID=9 ULI=3");
  expectTree();
  expectFree();
  server.expect("UPDROOMD", kUpdate);
  page.cmdUndo.press();
  EXPECT_EQ(page.faMembers.Rows, 3);
  EXPECT_EQ(page.faCandidates.Rows, 2);
  EXPECT_FALSE(page.cmdUndo.Enabled);

  server.expect("GETIBYB", "EPT=3 BARORNO=1 ENO=SET2")
      .replies("head: SRCHCNT=1 | EID=22 ENO=SET2 STY=\"Not Charged\" EIU=Y RID=9");
  server.expect("ADDREQP", "EID=22 RID=2 ULI=3");
  expectKept();
  expectTree();
  page.txtBarOrNumber.type("SET2");
  page.cmdAddByNumber.press();
  EXPECT_TRUE(page.cmdUndo.Enabled);
}

TEST_F(FrmRoomTest, EquipmentLeavesForAnotherRoom) {
  RoomEquipment& page = openEquipment();
  page.faMembers.click(1, 1);
  server.expect("ADDREQP", "EID=11 RID=2").fails(2);
  desktop.expectWarning("This record is not there any more.\n\nAnother desk has deleted it.");
  page.cmdRemove.press();
  server.expect("ADDREQP", "EID=11 RID=2");
  expectNewRoom(false);
  page.cmdRemove.press();
  EXPECT_EQ(page.faMembers.Rows, 3);

  server.expect("ADDREQP", "EID=11 RID=2").fails(174);
  desktop.expectBox(Box::Kind::Question, kMove, 1);
  page.cmdRemove.press();
  server.expect("ADDREQP", "EID=11 RID=2").fails(174);
  desktop.expectBox(Box::Kind::Question, kMove, 0);
  server.expect("DLTEBFR", "EID=11").fails(100);
  desktop.expectBox(Box::Kind::Plain, "Booking exist for Pickup or Delivery.");
  page.cmdRemove.press();

  server.expect("ADDREQP", "EID=11 RID=2").fails(174);
  desktop.expectBox(Box::Kind::Question, kMove, 0);
  server.expect("DLTEBFR", "EID=11");
  expectNewRoom(true);
  expectTree();
  expectFree();
  server.expect("UPDROOMD", kUpdate);
  page.cmdRemove.press();
  EXPECT_EQ(page.faMembers.Rows, 2);

  page.faMembers.click(1, 1);  // the group, which is charged
  server.expect("ADDREQP", "EID=21 RID=2").fails(174);
  page.cmdRemove.press();
  EXPECT_FALSE(page.cmdRemove.Enabled);

  start(allRightsBut("EBM"));
  RoomEquipment& unasked = openEquipment();
  unasked.faMembers.click(1, 1);
  server.expect("ADDREQP", "EID=11 RID=2").fails(174);
  expectNewRoom(false);
  unasked.cmdRemove.press();
}

TEST_F(FrmRoomTest, BookingsNotesAndDeletionAreThoseOfARoom) {
  frmRoom& room = open();
  server.expect("GETCRB", "RID=2")
      .replies("BOOKID=5 CNUM=M5 STIME=\"2026-11-24 09:00:00\" ETIME=\"2026-11-25 17:30:00\" PATNM=");
  room.mnuViewPage_Click(1);
  EXPECT_EQ(row(room.bookings.fa, 1), "M5|24/11/2026  09:00 AM|25/11/2026  05:30 PM|Administrative|");
  server.expect("GETHRB", "RID=2");
  room.bookings.cmdViewOldBookings.press();
  server.expect("GETRNS", "RID=2").replies("RNID=1 NX=N RNTY=Key");
  room.mnuViewPage_Click(3);
  server.expect("GETRN", "RID=2 RNID=1");
  room.notes.cboNoteType.select(1);
  room.notes.txtNote.type("Porter");
  server.expect("VERDELE", "VID=2 VTY=0").fails(103);
  desktop.expectWarning("Unable To Delete!\n\nRoom Is Currently In Use!");
  room.mnuFileDelete.choose();
  desktop.expectBox(Box::Kind::Warning,
                    "Note changes will be lost!  Do you wish to SAVE this note before exiting?", 0);
  server.expect("AURNOTE", "RID=2 RNID=1 MNO=Porter");
  server.expect("GETRNS", "RID=2").replies("RNID=1 NX=Y RNTY=Key");
  server.expect("GETRN", "RID=2 RNID=1");
  EXPECT_TRUE(room.Unload());

  frmRoom& again = open();
  expectRemoval("VID=2 VTY=0", "REMROOM", "RID=2");
  again.mnuFileDelete.choose();
  EXPECT_FALSE(FindRecordWindow(*app, kRoom, "2"));
}

TEST_F(FrmRoomTest, WhoMayOnlyLookDoesNothingOnTheEquipment) {
  start(onlyRights("RMV EQV EQUPD"));
  RoomEquipment& page = openEquipment();
  page.faMembers.click(1, 1);
  page.faCandidates.doubleClick(1, 3);
  for (const Command* command :
       {&page.add, &page.remove, &page.addByBarcode, &page.editPiece, &page.newGroup})
    EXPECT_FALSE(command->usable());
  auto& room = dynamic_cast<frmRoom&>(page.tree.form());
  room.details.fa.doubleClick(1, 1);
  EXPECT_FALSE(room.details.add.usable() || room.details.edit.usable() || room.cboLOC_NAME.Enabled);
  EXPECT_TRUE(room.txtROOM_NAME.Locked && room.txtROOM_CAPACITY.Locked && room.cboROOM_TYPE.Locked);
}

}  // namespace
}  // namespace vantry::test
