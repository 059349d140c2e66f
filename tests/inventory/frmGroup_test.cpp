// The window of a group and the page of its members.
#include "inventory/frmGroup.h"

#include "inventory/inventory_view.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kRecord =
    R"(ENO=SET1 BNO=G1 STY="Not Charged" EQVR=900 CNM="Ink, Ina" UNM= CDT="2025-03-01 08:00:00"
  UDT= CLN="Main Desk" ULN= EHB=7 LNA="Main Desk" LOC=3 RNM=Store RID=2 TRNM=Hall)";
constexpr const char* kMembers = R"(
  EID=11 BNO=B11 ENO=TV1 ETY=Television RNM=Store STY="Not Charged" EMA=Tovan EMO=V-55 ESN=S1 EFO=HD
  EID=12 BNO=B12 ENO=CAM1 ETY=Camera RNM=Store STY="Not Charged" EMA=Kessel EMO=K ESN=S2 EFO=)";
constexpr const char* kFree = R"(
  EID=13 BNO=B13 ENO=TV3 LNA="Main Desk" RNM=Hall STY="Not Charged" EMA=Tovan EMO=V-60 ESN=S3 GRPNO= EFO=4K
  EID=14 BNO=B14 ENO=TV4 LNA=Branch RNM=Hall STY=Lost EMA=Tovan EMO=V-60 ESN=S4 GRPNO= EFO=4K)";
constexpr const char* kStatusRefusal =
    "                   Unable to add equipment. \n\nStatus of equipment/group must be NOT CHARGED.";
constexpr const char* kKeep =
    "This equipment has future bookings associated with it.  Do you want to keep this equipment in those "
    "future bookings?";
constexpr const char* kNoChange = "Unable to perform the function due to the status of this group.";

struct FrmGroupTest : RecordFixture {
  void SetUp() override { start(); }
  frmGroup& openAs(const RecordOpening& opening, std::string_view record = kRecord, int probe = 0) {
    server.expect("GETEGTN", "EID=21").replies("ETY=\"Video Set\" ETI=8");
    server.expect("GETGDTL", "EID=21").replies(record);
    expectRooms();
    server.expect("ADDREQP", opening.copy ? "EID= RID=0" : "EID=21 RID=2").fails(probe);
    return dynamic_cast<frmGroup&>(*OpenRecordWindow(*app, opening));
  }
  frmGroup& open(std::string_view record = kRecord, int probe = 0) {
    return openAs({kGroup, "21", kSourceMainWindow}, record, probe);
  }
  frmGroup& openNew() {
    expectRooms();
    server.expect("ADDREQP", "EID= RID=0");
    return dynamic_cast<frmGroup&>(*OpenRecordWindow(*app, {kGroup, "", kSourceMainWindow}));
  }
  void expectRooms() {
    server.expect("GETARLOC", "LOC=3").replies("RID=1 RNO=101 RNM=\nRID=2 RNO=102 RNM=Store");
  }
  void expectMembers() { server.expect("GETGEQ", "EID=21").replies(kMembers); }
  void expectTree(const char* televisions = "2") {
    server.expect("GETEASC", "EID=21").replies("ETI=4 ETY=Television MIC=1\nETI=5 ETY=Camera MIC=1");
    server.expect("GETEAVC").replies(std::string("ETI=4 ETY=Television MIC=") + televisions);
  }
  void expectFree() { server.expect("GETNGRPE", "ETI=4 EID=21").replies(kFree); }
  /// The group 21 on its page of members.
  frmGroup& openMembers() {
    frmGroup& group = open();
    expectMembers();
    expectTree();
    group.mnuViewPage_Click(2);
    return group;
  }
  /// And the free televisions on the left.
  frmGroup& openFree() {
    frmGroup& group = openMembers();
    expectFree();
    group.members.tree.click("Equipment|4");
    return group;
  }
  void expectFound(const char* status = "Not Charged") {
    server.expect("GETIBYB", "EPT=2 BARORNO=0 BNO=B13")
        .replies(std::string("head: SRCHCNT=1 | EID=13 ENO=TV3 BNO=B13 ETY=Television EIU=N RID=5 STY=\"") +
                 status + "\"");
  }
};

TEST_F(FrmGroupTest, ShowsARecordANewOneAndACopy) {
  {
    frmGroup& group = open(kRecord, 174);
    EXPECT_EQ(group.Caption, "Group Inventory - SET1");
    EXPECT_EQ(group.cboEQUIP_TYPE.Text() + group.txtBARCODE_NO.Text.get() + group.txtEQUIP_VALUER.Text(),
              "Video SetG1$900.00");
    EXPECT_EQ(group.place.cboROOM_NAME.Text() + group.place.txtTEMP_ROOM_NAME.Text.get(), "102 - StoreHall");
    EXPECT_TRUE(group.txtEQUIP_VALUER.Locked && group.place.cboROOM_NAME.Enabled);
    EXPECT_TRUE(group.Unload());
  }
  std::string charged = kRecord;
  charged.replace(charged.find("Not Charged"), 11, "Charged");
  {
    frmGroup& group = open(charged, 174);
    EXPECT_FALSE(group.place.cboROOM_NAME.Enabled || group.place.cboLOC_NAME.Enabled);
    EXPECT_TRUE(group.Unload());
  }
  frmGroup& fresh = openNew();
  EXPECT_EQ(fresh.Caption.get() + fresh.txtSTS_TYPE.Text.get() + fresh.cboEQUIP_TYPE.Text(),
            "Group Inventory - (New)Not ChargedVideo Set");
  EXPECT_TRUE(fresh.findControl("tabGroupDetails")->Visible);

  RecordOpening opening(kGroup, "21", kSourceMainWindow);
  opening.copy = true;
  frmGroup& copy = openAs(opening);
  EXPECT_EQ(copy.Caption, "Copy of Group Inventory  - SET1");
  EXPECT_EQ(copy.txtEQUIP_NO.Text.get() + copy.txtEQUIP_VALUER.Text(), "VIDEO SET$0.00")
      << "the members stay with their group";
  expectMembers();
  expectTree();
  copy.mnuViewPage_Click(2);
  copy.members.faMembers.click(1, 1);
  copy.members.txtBarOrNumber.type("B13");
  copy.members.cmdAddByBarcode.press();
  EXPECT_FALSE(copy.members.cmdRemove.Enabled || copy.members.newPiece.usable());
  constexpr const char* kTags =
      "BNO= ETI=8 ETY=\"Video Set\" ENO=\"VIDEO SET\" LOC=3 RID=2 RNM=\"102 - Store\"";
  server.expect("NEWGRPD", kTags).fails(125);
  desktop.expectWarning(kNoChange);
  save(copy);
  EXPECT_EQ(copy.Caption, "Copy of Group Inventory  - SET1") << "a refused copy is still one";
  server.expect("NEWGRPD", kTags).replies("EID=30");
  server.expect("GETGEQ", "EID=30");
  server.expect("GETEASC", "EID=30");
  server.expect("GETEAVC");
  expectCategories();
  save(copy);
  EXPECT_EQ(copy.members.faMembers.Rows, 1);
  EXPECT_TRUE(copy.members.cmdAddByBarcode.Enabled);
}

TEST_F(FrmGroupTest, ARefusedSaveEndsThereAndStaysNew) {
  frmGroup& group = openNew();
  desktop.expectWarning("Missing Required Fields:\nNumber");
  save(group);
  group.txtEQUIP_NO.type("SET9");
  constexpr const char* kTags = "ETI=8 ETY=\"Video Set\" ENO=SET9 LOC=3 RID=1 RNM=101";
  server.expect("NEWGRPD", std::string("BNO= ") + kTags).fails(125);
  desktop.expectWarning(kNoChange);
  save(group);
  EXPECT_FALSE(group.SaveOk || !group.isNew());
  EXPECT_EQ(group.Caption, "Group Inventory - (New)");

  server.expect("NEWGRPD", std::string("BNO= ") + kTags).replies("EID=30 CLN=Branch CDT=2026-11-24 CNM=Ink");
  expectCategories();
  save(group);
  EXPECT_EQ(group.Caption.get() + group.Tag.get() + group.propertyFields.txtCR_LOC_NAME.Text.get(),
            "Group Inventory - SET91 - 30Branch");
  EXPECT_TRUE(group.findControl("tabGroup")->Visible && group.txtBARCODE_NO.Locked);

  group.txtEQUIP_NO.type("SET8");
  EXPECT_TRUE(group.Dirty);
  constexpr const char* kChanged = "EID=30 ETI=8 ETY=\"Video Set\" ENO=SET8 LOC=3 RID=1 RNM=101";
  server.expect("UPDGRPD", kChanged).fails(125);
  desktop.expectWarning(kNoChange);
  save(group);
  EXPECT_TRUE(group.Dirty && !group.SaveOk);
  server.expect("UPDGRPD", kChanged).replies("UDT=2026-11-25 ULN=Branch UNM=Vale");
  save(group);
  EXPECT_EQ(group.propertyFields.dtUP_DATE.shortDate() + group.propertyFields.txtUP_OPNAME.Text.get(),
            "25/11/2026Vale");
  expectRemoval("VID=30 VTY=2", "REMGRP", "EID=30");
  group.mnuFileDelete.choose();
  EXPECT_FALSE(FindRecordWindow(*app, kGroup, "30"));
}

TEST_F(FrmGroupTest, TheMembersPageListsTypesCandidatesAndMembers) {
  for (const bool barcodes : {true, false}) {
    settings.prefer("Barcodes", barcodes ? "true" : "false");
    start();
    frmGroup& group = openMembers();
    GroupMembers& page = group.members;
    const std::string piece = barcodes ? "Barcode" : "Number";
    EXPECT_EQ(nodes(page.tree), "Grouped Equipment: Television (1) Camera (1)\nEquipment: Television (2)\n");
    EXPECT_EQ(row(page.faMembers, 0), piece + "|Type|Room|Status|Manufacturer|Model|Serial|Format|");
    EXPECT_EQ(row(page.faMembers, 1),
              std::string(barcodes ? "B11" : "TV1") + "|Television|Store|Not Charged|Tovan|V-55|S1|HD|");
    expectFree();
    page.tree.click("Equipment|4");
    EXPECT_EQ(row(page.faCandidates, 0),
              piece + "|Location|Room|Status|Manufacturer|Model|Serial|Group Name|Format|");
    EXPECT_EQ(row(page.faCandidates, 2),
              std::string(barcodes ? "B14" : "TV4") + "|Branch|Hall|Lost|Tovan|V-60|S4||4K|");
    server.expect("GETGRPE", "ETI=4 EID=21").replies("EID=15 BNO=B15 ENO=TV5 GRPNO=SET2");
    page.tree.click("Grouped Equipment|4");
    EXPECT_EQ(page.faCandidates.TextMatrix(1, 8), "SET2") << "of another group";
    server.expect("GETNGRPE", "ETI=4 EID=21").fails(125);
    desktop.expectWarning(kNoChange);
    page.tree.click("Equipment|4");
    EXPECT_EQ(page.faCandidates.Rows, 1);
    page.tree.click("GroupTree|Equipment");  // a root asks nothing
  }
}

TEST_F(FrmGroupTest, APieceJoinsOnlyWhileBothAreNotCharged) {
  frmGroup& group = openFree();
  GroupMembers& page = group.members;
  EXPECT_FALSE(page.cmdAdd.Enabled);
  page.faCandidates.click(2, 1);
  desktop.expectWarning(kStatusRefusal);
  page.cmdAdd.press();
  expectFound("Charged");
  desktop.expectWarning(kStatusRefusal);
  page.txtBarOrNumber.type("B13");
  page.cmdAddByBarcode.press();

  page.faCandidates.click(1, 1);
  server.expect("NEWGITM", "EID=13 GRPID=21 ULI=3").fails(125);
  desktop.expectWarning(kNoChange);
  page.cmdAdd.press();
  EXPECT_EQ(page.faCandidates.Rows, 3) << "a refusal leaves the lists as they are";

  main().showView(ViewId::Groups);
  server.expect("GETGITM", "ETI=8").replies("EID=21 ECNT=0 ENO=SET1");
  auto& groups = viewAs<InventoryView>(main(), ViewId::Groups);
  groups.tvwDB.click("8|Video Set");
  server.expect("NEWGITM", "EID=13 GRPID=21 ULI=3").replies("MVL=950 EQVR=1");
  expectMembers();
  expectTree("1");
  server.expect("GETGITM", "ETI=8").replies("EID=21 ECNT=3 ENO=SET1");
  page.cmdAdd.press();
  EXPECT_EQ(groups.fa.TextMatrix(1, 1), "Y");
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$950.00");
  EXPECT_EQ(page.faCandidates.Rows, 2);
  EXPECT_EQ(page.tree.SelectedKey, "Equipment|4") << "the type stays selected, with its new count";
  EXPECT_EQ(page.tree.find("Equipment|4")->text, "Television (1)");
  EXPECT_FALSE(page.cmdUndo.Enabled || page.cmdAdd.Enabled || group.Dirty);

  group.txtSTS_TYPE.Text = "Lost";
  page.faCandidates.click(1, 1);
  desktop.expectWarning(kStatusRefusal);
  page.cmdAdd.press();
}

TEST_F(FrmGroupTest, ALookUpAddsAPieceAndCanBeUndone) {
  frmGroup& group = openMembers();
  GroupMembers& page = group.members;
  page.cmdAddByBarcode.press();  // without a text nothing is sought
  server.expect("GETIBYB", "EPT=2 BARORNO=1 ENO=TV3").replies("head: SRCHCNT=0");
  desktop.expectWarning("Equipment Number Not Found!");
  page.txtBarOrNumber.type(" TV3 ");
  page.cmdAddByNumber.press();
  EXPECT_EQ(page.txtBarOrNumber.SelLength(), 5) << "the next text replaces it";
  server.expect("GETIBYB", "EPT=2 BARORNO=0 BNO=B").replies("head: SRCHCNT=2 | EID=13 BNO=B | EID=14 BNO=B");
  desktop.expectModal("frmMultBarOrNo", [](Form& form) { form.Unload(); });
  page.txtBarOrNumber.type("B");
  page.txtBarOrNumber.pressEnter();

  expectFound();
  server.expect("NEWGITM", "EID=13 GRPID=21 ULI=3").fails(182, "MVL=1 EQVR=950");
  desktop.expectInformation("All relevant bookings have been updated with the new group information.");
  server.expect("GETGEQ", "EID=21").replies("EID=13 BNO=B13 STY=\"Not Charged\"");
  expectTree();
  EXPECT_TRUE(group.scan("B13"));
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$950.00") << "this path reads the value under another tag";
  EXPECT_EQ(page.txtBarOrNumber.Text, "");
  EXPECT_TRUE(page.cmdUndo.Enabled);

  server.expect("REMGITM", "EID=13 GRPID=21 ULI=3").replies("MVL=900");
  server.expect("GETEGTN", "EID=13").replies("ETY=Television ETI=4");
  expectMembers();
  expectTree();
  expectFree();
  page.cmdUndo.press();
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$900.00");
  EXPECT_EQ(page.faCandidates.Rows, 3) << "it is listed where it went";
  EXPECT_FALSE(page.cmdUndo.Enabled);
}

TEST_F(FrmGroupTest, AMemberLeavesWithOrWithoutItsBookings) {
  struct Round {
    int answer;  ///< to the question about its bookings; -1: nobody asks
    int kept;    ///< return code of keeping them
  };
  start();
  frmGroup& group = openFree();
  GroupMembers& page = group.members;
  for (const Round round : {Round{-1, 0}, Round{0, 0}, Round{0, 125}, Round{1, 0}}) {
    SCOPED_TRACE(testing::Message() << round.answer << ' ' << round.kept);
    page.faMembers.click(1, 1);
    auto removal = server.expect("REMGITM", "EID=11 GRPID=21 ULI=3");
    round.answer < 0 ? removal.fails(100, "MVL=50 BX=N") : removal.fails(100, "MVL=50 BX=Y");
    if (round.answer >= 0) desktop.expectQuestion(kKeep, round.answer == 0);
    if (round.answer == 0) server.expect("AETGB", "EID=11 GRPID=21").fails(round.kept);
    if (round.kept != 0) desktop.expectWarning(kNoChange);
    if (round.answer != 0) server.expect("GETEGTN", "EID=11").replies("ETY=Television ETI=4");
    expectMembers();
    expectTree();
    expectFree();
    page.cmdRemove.press();
    EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$50.00");
    EXPECT_FALSE(page.cmdRemove.Enabled);
  }
  page.faMembers.click(1, 1);
  server.expect("REMGITM", "EID=11 GRPID=21 ULI=3").fails(125);
  desktop.expectWarning(kNoChange);
  page.cmdRemove.press();
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$50.00") << "nothing has left";
}

TEST_F(FrmGroupTest, PiecesOpenFromHereWithTheirGroup) {
  frmGroup& group = openFree();
  GroupMembers& page = group.members;
  noteRecords();
  server.expect("GETEGTN", "EID=12").replies("ETY=Camera ETI=5");
  page.faMembers.doubleClick(2, 1);
  EXPECT_EQ(app->slots.opening.id, "12");
  EXPECT_EQ(app->slots.opening.source, kSourceGroup);
  EXPECT_EQ(app->slots.group.id + app->slots.group.number, "21SET1");
  EXPECT_EQ(app->slots.typeNames[kEquipment], "Camera");
  desktop.expectPopup("mnuPopupEquipment", "mnuPopupEquipmentNew");
  page.faCandidates.rightClick(1, 1);
  EXPECT_TRUE(app->slots.opening.isNew());
  EXPECT_EQ(app->slots.typeNames[kEquipment], "Television") << "the type in the tree";
  desktop.expectPopup("mnuPopupEquipment", "mnuPopupSortDescending");
  page.faMembers.rightClick(1, 1);
  EXPECT_EQ(page.faMembers.TextMatrix(1, 0), "12");
  EXPECT_FALSE(page.cmdRemove.Enabled) << "a sort selects nothing";
  EXPECT_EQ(notBuilt, (std::vector<std::string>{"record window 0", "record window 0"}));

  group.takeMembersValue("12.5");
  EXPECT_EQ(group.txtEQUIP_VALUER.Text(), "$12.50") << "as a member tells that was stored";
}

TEST_F(FrmGroupTest, WhoMayOnlyLookChangesNoMembers) {
  start(onlyRights("EQV"));
  frmGroup& group = openFree();
  GroupMembers& page = group.members;
  page.faCandidates.click(1, 1);
  for (const Command* command : {&page.add, &page.remove, &page.addByBarcode, &page.addByNumber,
                                 &page.newPiece, &group.commands.save, &group.commands.remove})
    EXPECT_FALSE(command->usable());
  EXPECT_TRUE(page.editPiece.usable()) << "a piece can be looked at";
  EXPECT_EQ(page.mnuEntries.front()->Caption, "View");
  EXPECT_TRUE(group.txtEQUIP_NO.Locked);
}

}  // namespace
}  // namespace vantry::test
