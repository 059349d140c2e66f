// The lists of the inventory and the trees beside them.
#include "inventory/inventory_view.h"
#include "frame/app.h"
#include "frame/modMain.h"
#include "inventory/group_view.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kTelevisions = R"(
  EID=11 BNO=B11 ENO=TV1 LNA="Main Desk" RNM=Store STY="Not Charged" EMA=Tovan EMO=V-55 ESN=S1 GRPNO=SET1 EFO=HD
  EID=12 BNO=B12 ENO=TV2 LNA=Branch RNM=Hall STY=Charged EMA=Kessel EMO=K ESN=S2 GRPNO= EFO=4K)";

class InventoryViewTest : public RecordFixture {
 public:
  void SetUp() override {
    for (const char* code : {"GETOPS", "BOOKDAY"}) server.always(code);
    logOn();
  }
  void logOn(const std::string& rights = allRightsBut()) {
    build();
    expectLogOn();
    server.expect("RLL", "OI=desk").replies("LNA=\"Main Desk\" LOC=3 OLN=\"City Library\"");
    server.expect("SLL", "LOC=3").replies(rights);
    server.expect("GETLOCS");
    expectCategories();
    ASSERT_TRUE(Main(*app));
    noteRecords();
    notBuilt.clear();
  }
  void expectCategories() {
    server.expect("GETECAT").replies("ETI=4 ETY=Television MIC=2\nETI=5 ETY=\"Camera (small)\" MIC=0");
    server.expect("GETGCAT").replies("ETI=8 ETY=\"Video Set\" MIC=2");
    server.expect("GETRCAT").replies("RTI=2 RTY=Store MIC=1 RST=Y");
    server.expect("GETMYER").replies("MYE=2026\nMYE=2025");
  }
  void showTelevisions(std::string_view reply = kTelevisions) {
    main().showView(ViewId::Equipment);
    server.expect("GETEITM", "ETI=4").replies(reply);
    equipment().tvwDB.click("4|Television");
  }
  void showGroups() {
    if (main().visibleView()->id != ViewId::Groups) main().showView(ViewId::Groups);
    server.expect("GETGITM", "ETI=8").replies(R"(
      EID=21 ECNT=2 ENO=SET1 BNO=G1 LNA="Main Desk" RNM=Store STY="Not Charged"
      EID=22 ECNT=0 ENO=SET2 BNO=G2 LNA="Main Desk" RNM=Store STY="Not Charged")");
    groups().tvwDB.click("8|Video Set");
  }
  /// Opens the pane of the group 21 with the two televisions.
  void showMembers(std::string_view statuses = "SID=6 SPR=1") {
    showGroups();
    groups().fa.click(1, 1);
    server.expect("GETEGSTS", "EID=21").replies(statuses);
    server.expect("GETGEQ", "EID=21").replies(R"(
      EID=11 BNO=B11 ENO=TV1 ETY=Television STY="Not Charged" EMA=Tovan EMO=V-55 ESN=S1 EFO=HD
      EID=12 BNO=B12 ENO=TV2 ETY=Television STY="Not Charged" EMA=Kessel EMO=K ESN=S2 EFO=4K)");
    groups().cmdMembers.press();
  }

  InventoryView& equipment() { return viewAs<InventoryView>(main(), inventoryViewOf(kEquipment).id); }
  InventoryView& rooms() { return viewAs<InventoryView>(main(), inventoryViewOf(kRoom).id); }
  InventoryView& maintenance() { return viewAs<InventoryView>(main(), inventoryViewOf(kMaintenance).id); }
  GroupView& groups() { return viewAs<GroupView>(main(), ViewId::Groups); }
  MemberPane& members() { return groups().members; }
  std::string panel() { return main().StatusBar1.Panels(2).Text; }

  static std::string nodes(const Tree& tree) {
    std::string all;
    for (const TreeNode* node : tree.Roots()) all += node->key + " = " + node->text + "\n";
    return all;
  }
};

TEST_F(InventoryViewTest, TheTreesShowTheCategoriesReadAtTheStart) {
  EXPECT_EQ(nodes(equipment().tvwDB),
            "4|Television = Television (2)\n5|Camera (small) = Camera (small) (0)\n");
  EXPECT_EQ(nodes(groups().tvwDB), "8|Video Set = Video Set (2)\n");
  EXPECT_EQ(nodes(rooms().tvwDB), "2|Store = Store (1)\n");
  EXPECT_EQ(nodes(maintenance().tvwDB), "YEAR|2026 = 2026\nYEAR|2025 = 2025\n");
  const std::vector<TreeNode*>& months = maintenance().tvwDB.Roots()[1]->children;
  ASSERT_EQ(months.size(), 12u);
  EXPECT_EQ(months[0]->key + " " + months[0]->text, "2025-01-01|2025 January");
  EXPECT_EQ(months[11]->key + " " + months[11]->text, "2025-12-01|2025 December");
}

TEST_F(InventoryViewTest, TheColumnsNameThePieceAsTheOperatorPrefers) {
  for (const bool barcodes : {true, false}) {
    settings.prefer("Barcodes", barcodes ? "true" : "false");
    logOn();
    const std::string piece = barcodes ? "Barcode|" : "Number|";
    EXPECT_EQ(row(equipment().fa, 0),
              piece + "Location|Room|Status|Manufacturer|Model|Serial|Group Name|Format|");
    EXPECT_EQ(row(groups().fa, 0), "Members?|Equipment Number|" + piece + "Location|Room|Status|");
    EXPECT_EQ(row(rooms().fa, 0), "Number|Room Name|Room Location|Status|Capacity|");
    EXPECT_EQ(row(maintenance().fa, 0), "Day|Equipment Type|Number|Staff|");
    EXPECT_EQ(row(members().fa, 0), piece + "Equipment Type|Status|Manufacturer|Model|Serial|Format|");
    showGroups();
    EXPECT_EQ(row(groups().fa, 1),
              std::string("Y|SET1|") + (barcodes ? "G1" : "SET1") + "|Main Desk|Store|Not Charged|");
    EXPECT_EQ(row(groups().fa, 2).substr(0, 2), "N|");
  }
}

TEST_F(InventoryViewTest, ATypeIsListedWithItsCountAsRowsArrive) {
  main().showView(ViewId::Equipment);
  std::vector<std::string> told;
  desktop.onRepaint = [&](Form&) { told.push_back(panel()); };
  server.expect("GETEITM", "ETI=4").replies(kTelevisions);
  equipment().tvwDB.click("4|Television");
  desktop.onRepaint = nullptr;
  EXPECT_THAT(told, testing::IsSupersetOf({"Requesting Data From Server...", "1 of 2 record(s) processed",
                                           "2 of 2 record(s) processed"}));
  EXPECT_EQ(equipment().lblDetails.Caption, "Television List");
  EXPECT_EQ(row(equipment().fa, 1), "B11|Main Desk|Store|Not Charged|Tovan|V-55|S1|SET1|HD|");
  EXPECT_EQ(row(equipment().fa, 2), "B12|Branch|Hall|Charged|Kessel|K|S2||4K|");
  EXPECT_TRUE(equipment().cmdPrintInv.Enabled);
  EXPECT_TRUE(main().menus.mnuPopupToolsPrintDetailAll.Enabled);
  EXPECT_FALSE(main().menus.mnuFilePrintDetail.Enabled) << "no row is selected";
  EXPECT_FALSE(equipment().cmdEditInv.Enabled);
  equipment().fa.click(2, 1);
  EXPECT_TRUE(main().menus.mnuFilePrintDetail.Enabled);
  EXPECT_TRUE(equipment().cmdEditInv.Enabled && equipment().cmdDeleteInv.Enabled);

  server.expect("GETEITM", "ETI=5");
  equipment().tvwDB.click("5|Camera (small)");
  EXPECT_EQ(equipment().lblDetails.Caption, "Camera (small) List");
  EXPECT_EQ(panel(), "0 of 0 record(s) processed");
  EXPECT_EQ(equipment().fa.Rows, 1);
  EXPECT_FALSE(equipment().cmdPrintInv.Enabled || equipment().cmdEditInv.Enabled);
  EXPECT_FALSE(main().menus.mnuPopupToolsPrint.Enabled || main().menus.mnuPopupToolsSort.Enabled);
}

TEST_F(InventoryViewTest, AFailedListIsReportedAndEmpty) {
  showTelevisions();
  expectFailure("GETEITM", "ETI=4");
  equipment().tvwDB.click("4|Television");
  EXPECT_EQ(equipment().fa.Rows, 1);
  EXPECT_FALSE(equipment().cmdPrintInv.Enabled);
  EXPECT_EQ(panel(), "") << "nothing is on its way";
}

TEST_F(InventoryViewTest, AViewThatOpensAgainReadsItsNodeAnew) {
  showTelevisions();
  main().showView(ViewId::Day);
  server.expect("GETEITM", "ETI=4").replies(kTelevisions);
  main().showView(ViewId::Equipment);
  EXPECT_EQ(equipment().fa.Rows, 3);
  EXPECT_TRUE(equipment().cmdPrintInv.Enabled);
}

TEST_F(InventoryViewTest, ARecordOpensFromItsRow) {
  showTelevisions();
  for (const auto& open : std::initializer_list<std::function<void()>>{
           [&] { equipment().fa.doubleClick(2, 1); }, [&] { equipment().cmdEditInv.press(); },
           [&] {
             desktop.expectPopup("mnuPopupTools", "mnuPopupToolsEdit");
             equipment().fa.rightClick(2, 1);
           }}) {
    server.expect("GETEGTN", "EID=12").replies("ETY=Television ETI=4");
    open();
    EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 0"});
    EXPECT_EQ(app->slots.opening.id, "12");
    EXPECT_EQ(app->slots.opening.source, kSourceMainWindow);
    notBuilt.clear();
  }
  equipment().fa.doubleClick(0, 1);
  EXPECT_TRUE(notBuilt.empty()) << "a heading is no record";
  equipment().cmdNewInv.press();
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 0"});
  EXPECT_TRUE(app->slots.opening.isNew());
}

TEST_F(InventoryViewTest, SortingLeavesNoRowToTheCommands) {
  showTelevisions();
  equipment().fa.click(1, 1);
  desktop.expectPopup("mnuPopupTools", "mnuPopupToolsSortDescending");
  equipment().fa.rightClick(1, 1);
  EXPECT_EQ(row(equipment().fa, 1).substr(0, 4), "B12|");
  EXPECT_FALSE(equipment().cmdEditInv.Enabled || equipment().cmdDeleteInv.Enabled);
}

TEST_F(InventoryViewTest, ARecordIsDeletedWhenServerAndOperatorAgree) {
  showTelevisions();
  Grid& list = equipment().fa;
  list.click(1, 1);
  expectFailure("VERDELE", "VID=11 VTY=1");
  equipment().cmdDeleteInv.press();
  server.expect("VERDELE", "VID=11 VTY=1");
  desktop.expectQuestion("Are you sure you want to DELETE this record?", false);
  equipment().cmdDeleteInv.press();
  server.expect("VERDELE", "VID=11 VTY=1");
  desktop.expectQuestion("Are you sure you want to DELETE this record?", true);
  expectFailure("REMEQIP", "EID=11");
  equipment().cmdDeleteInv.press();
  EXPECT_EQ(list.Rows, 3);
  EXPECT_EQ(nodes(equipment().tvwDB).substr(0, 29), "4|Television = Television (2)");

  expectRemoval("VID=11 VTY=1", "REMEQIP", "EID=11");
  equipment().cmdDeleteInv.press();
  ASSERT_EQ(list.Rows, 2);
  EXPECT_EQ(list.TextMatrix(1, 0), "12");
  EXPECT_EQ(panel(), "1 of 1 record(s) processed");
  EXPECT_FALSE(equipment().cmdDeleteInv.Enabled) << "the next row was not chosen";
  main().BuildMainTrees();
  EXPECT_EQ(nodes(equipment().tvwDB).substr(0, 29), "4|Television = Television (1)");
  EXPECT_EQ(list.Rows, 2) << "the node is still selected";
}

TEST_F(InventoryViewTest, EachKindIsDeletedByItsRequests) {
  showGroups();
  desktop.expectPopup("mnuPopupGroup", "mnuPopupGroupDelete");
  expectRemoval("VID=22 VTY=2", "REMGRP", "EID=22");
  groups().fa.rightClick(2, 1);
  EXPECT_EQ(nodes(groups().tvwDB), "8|Video Set = Video Set (1)\n");

  main().showView(ViewId::Rooms);
  server.expect("GETRITM", "RTI=2").replies("RID=6 RNO=17 RNM=Cellar LNA=Branch STY=Available RCA=12");
  rooms().tvwDB.click("2|Store");
  EXPECT_EQ(row(rooms().fa, 1), "17|Cellar|Branch|Available|12|");
  rooms().fa.click(1, 1);
  expectRemoval("VID=6 VTY=0", "REMROOM", "RID=6");
  rooms().cmdDeleteInv.press();
  EXPECT_EQ(nodes(rooms().tvwDB), "2|Store = Store (0)\n");
  EXPECT_FALSE(rooms().cmdPrintInv.Enabled) << "nothing is left to print";

  main().showView(ViewId::Maintenance);
  server.expect("GETMITM", "MSD=2026-03-01 EID=0")
      .replies("MID=9 MDYI=2026-03-02 ETY=Television ENO=TV1 ON=\"Ink, Ina\"");
  maintenance().tvwDB.click("2026-03-01|2026");
  maintenance().fa.click(1, 1);
  desktop.expectQuestion("Are you sure you want to DELETE this record?", true);
  server.expect("REMMAINT", "MID=9");
  maintenance().cmdDeleteInv.press();
  EXPECT_EQ(maintenance().fa.Rows, 1);
}

TEST_F(InventoryViewTest, AYearOpensAndAsksNothing) {
  main().showView(ViewId::Maintenance);
  maintenance().tvwDB.click("YEAR|2026");
  EXPECT_TRUE(maintenance().tvwDB.find("YEAR|2026")->expanded);
  server.expect("GETMITM", "MSD=2026-11-01 EID=0")
      .replies("MID=9 MDYI=2026-11-20 ETY=Television ENO=TV1 ON=\"Ink, Ina\"");
  maintenance().tvwDB.click("2026-11-01|2026");
  EXPECT_EQ(maintenance().lblDetails.Caption, "November 2026 Maintenance List");
  EXPECT_EQ(row(maintenance().fa, 1), "20/11/2026|Television|TV1|Ink, Ina|");
  main().BuildMainTrees();
  EXPECT_TRUE(maintenance().tvwDB.find("YEAR|2026")->expanded) << "the selected month stays in sight";
  EXPECT_EQ(maintenance().fa.Rows, 2);
  maintenance().tvwDB.click("YEAR|2025");
  EXPECT_FALSE(maintenance().cmdPrintInv.Enabled);
  main().showView(ViewId::Day);
  main().showView(ViewId::Maintenance);  // and with the year selected, opening asks nothing
}

TEST_F(InventoryViewTest, ASavedRecordRefillsTheListThatShowsItsCategory) {
  showTelevisions();
  main().refillInventory(kEquipment, "5");
  server.expect("GETECAT").replies("ETI=4 ETY=Television MIC=3");
  for (const char* code : {"GETGCAT", "GETRCAT", "GETMYER"}) server.expect(code);
  LoadCategoryLists(*app);
  EXPECT_EQ(equipment().selectedCategory(), "4");
  server.expect("GETEITM", "ETI=4").replies("EID=13 BNO=B13");
  main().refillInventory(kEquipment, "4");
  EXPECT_EQ(nodes(equipment().tvwDB), "4|Television = Television (3)\n");
  EXPECT_EQ(equipment().fa.Rows, 2);
  main().showView(ViewId::Day);
  main().refillInventory(kEquipment, "4");  // it will be read when it is opened
}

TEST_F(InventoryViewTest, ATypeThatIsGoneLeavesNoListBehind) {
  showTelevisions();
  server.expect("GETECAT").replies("ETI=5 ETY=Camera MIC=1");
  for (const char* code : {"GETGCAT", "GETRCAT", "GETMYER"}) server.expect(code);
  LoadCategoryLists(*app);
  EXPECT_EQ(equipment().fa.Rows, 1);
  EXPECT_EQ(equipment().lblDetails.Caption, "");
  EXPECT_FALSE(equipment().cmdPrintInv.Enabled);
}

TEST_F(InventoryViewTest, ARecordWindowThatDeletesTakesTheSelectedRowAlong) {
  showTelevisions();
  equipment().fa.click(2, 1);
  main().dropInventoryRow(kEquipment, "4");
  ASSERT_EQ(equipment().fa.Rows, 2);
  EXPECT_EQ(equipment().fa.TextMatrix(1, 0), "11");
  server.expect("GETEITM", "ETI=4");
  main().dropInventoryRow(kEquipment, "4");
  EXPECT_EQ(equipment().fa.Rows, 1) << "without a selected row the list is read anew";
  EXPECT_EQ(equipment().tvwDB.find("4|Television")->text, "Television (0)")
      << "the counts follow all the same";
}

TEST_F(InventoryViewTest, ThePaneOfMembersOpensAndClosesWithItsGroup) {
  showGroups();
  EXPECT_FALSE(groups().cmdMembers.Enabled);
  groups().fa.click(2, 1);
  EXPECT_FALSE(main().menus.mnuPopupGroupMembers.Enabled) << "it has none";
  EXPECT_TRUE(groups().cmdMembers.Enabled) << "a first one can be made";
  showMembers();
  EXPECT_TRUE(members().fraMembers.Visible);
  EXPECT_EQ(groups().cmdMembers.Caption, "<< &Members");
  EXPECT_EQ(row(members().fa, 2), "B12|Television|Not Charged|Kessel|K|S2|4K|");
  EXPECT_TRUE(members().cmdNewInv.Enabled);
  groups().cmdMembers.press();
  EXPECT_FALSE(members().fraMembers.Visible);
  EXPECT_EQ(groups().cmdMembers.Caption, "&Members >>");

  // By the popup menu; another group closes it.
  server.expect("GETEGSTS", "EID=21").replies("SID=6 SPR=1");
  server.expect("GETGEQ", "EID=21").replies("EID=11 BNO=B11 ETY=Television");
  desktop.expectPopup("mnuPopupGroup", "mnuPopupGroupMembers");
  groups().fa.rightClick(1, 1);
  EXPECT_TRUE(members().isOpen());
  groups().fa.click(2, 1);
  EXPECT_FALSE(members().isOpen());
  EXPECT_EQ(groups().cmdMembers.Caption, "&Members >>");

  expectFailure("GETEGSTS", "EID=22");
  groups().cmdMembers.press();
  EXPECT_FALSE(members().isOpen());
}

TEST_F(InventoryViewTest, OnlyAGroupThatIsNotChargedTakesNewMembers) {
  showMembers("SID=6 SPR=1\nSID=3 SPR=2");
  EXPECT_FALSE(members().cmdNewInv.Enabled);
  EXPECT_FALSE(main().menus.mnuPopupMemberNew.Enabled);
  showMembers();
  groups().fa.moveColumn(2, 5);
  desktop.expectPopup("mnuPopupMember", "mnuPopupMemberNew");
  members().fa.rightClick(1, 1);
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 4"});
  EXPECT_EQ(app->slots.opening.source, kSourceGroupMembers);
  EXPECT_EQ(app->slots.group.id + " " + app->slots.group.number, "21 SET1");
  notBuilt.clear();
  server.expect("GETEGTN", "EID=12").replies("ETY=Television ETI=4");
  members().fa.doubleClick(2, 1);
  EXPECT_EQ(notBuilt, std::vector<std::string>{"record window 4"});
  EXPECT_EQ(app->slots.opening.source, kSourceGroupMembers);
}

TEST_F(InventoryViewTest, ADeletedMemberIsGoneFromEveryListAndCount) {
  showTelevisions();
  showMembers();
  const auto removeFirst = [&](const std::string& id) {
    members().fa.click(1, 1);
    expectRemoval("VID=" + id + " VTY=1", "REMEQIP", "EID=" + id);
    members().cmdDeleteInv.press();
  };
  removeFirst("11");
  EXPECT_EQ(members().fa.Rows, 2);
  EXPECT_EQ(panel(), "1 of 1 record(s) processed");
  EXPECT_EQ(groups().fa.TextMatrix(1, 1), "Y");
  ASSERT_EQ(equipment().fa.Rows, 2);
  EXPECT_EQ(equipment().fa.TextMatrix(1, 0), "12");
  EXPECT_EQ(nodes(equipment().tvwDB).substr(0, 29), "4|Television = Television (1)");
  EXPECT_TRUE(members().isOpen());
  removeFirst("12");
  EXPECT_EQ(groups().fa.TextMatrix(1, 1), "N");
  EXPECT_FALSE(members().cmdDeleteInv.Enabled);
  EXPECT_FALSE(main().menus.mnuPopupMemberSort.Enabled);

  // A window that has made a member closes the pane and opens it again.
  main().mnuPopupGroupMembers_Click();
  server.expect("GETEGSTS", "EID=21").replies("SID=6 SPR=1");
  server.expect("GETGEQ", "EID=21").replies("EID=14 BNO=B14 ETY=Television");
  main().mnuPopupGroupMembers_Click();
  EXPECT_EQ(members().fa.Rows, 2);
  EXPECT_EQ(groups().fa.TextMatrix(1, 1), "Y");
}

TEST_F(InventoryViewTest, AGroupThatIsReadAnewStaysSelectedWithItsPaneOpen) {
  showMembers();
  server.expect("GETGITM", "ETI=8").replies("EID=20 ECNT=1 ENO=SET0\nEID=21 ECNT=0 ENO=SET1");
  server.expect("GETEGSTS", "EID=21").replies("SID=6 SPR=1");
  server.expect("GETGEQ", "EID=21").replies("EID=12 BNO=B12 ENO=TV2 ETY=Television");
  main().refillInventory(kGroup, "8");
  EXPECT_EQ(groups().fa.Row, 2);
  EXPECT_EQ(groups().fa.TextMatrix(2, 1) + row(members().fa, 1).substr(0, 4), "YB12|");
  groups().cmdMembers.press();
  server.expect("GETGITM", "ETI=8").replies("EID=21 ECNT=0 ENO=SET1");
  main().refillInventory(kGroup, "8");
  EXPECT_TRUE(groups().cmdMembers.Enabled && !main().menus.mnuPopupGroupMembers.Enabled);
  server.expect("GETGITM", "ETI=8").replies("EID=22 ECNT=1 ENO=SET2");
  main().refillInventory(kGroup, "8");
  EXPECT_FALSE(groups().cmdMembers.Enabled) << "the group has another type now";
}

TEST_F(InventoryViewTest, WhoMayOnlyViewOpensAndPrints) {
  logOn(allRightsBut("EQADD EQUPD EQDEL"));
  showTelevisions();
  equipment().fa.click(1, 1);
  EXPECT_EQ(equipment().cmdEditInv.Caption, "Vie&w");
  EXPECT_TRUE(equipment().cmdEditInv.Enabled && equipment().cmdPrintInv.Enabled);
  EXPECT_FALSE(equipment().cmdNewInv.Enabled || equipment().cmdDeleteInv.Enabled);
  showMembers();
  members().fa.click(1, 1);
  EXPECT_EQ(main().menus.mnuPopupMemberEdit.Caption, "View");
  EXPECT_TRUE(members().cmdEditInv.Enabled);
  EXPECT_FALSE(members().cmdNewInv.Enabled || members().cmdDeleteInv.Enabled);
}

TEST_F(InventoryViewTest, TheLogOffLeavesNothingOfTheOperatorBefore) {
  showMembers();
  expectContext();
  main().mnuFileLogoff_Click();
  EXPECT_EQ(groups().fa.Rows, 1);
  EXPECT_FALSE(members().isOpen());
  EXPECT_EQ(nodes(groups().tvwDB), "");
}

TEST_F(InventoryViewTest, SearchAndPrintReachTheirWindows) {
  showTelevisions();
  std::vector<std::string> asked;
  app->makers.setSearch(
      [&](App&, SearchCategory category) { asked.push_back("search " + std::to_string(category)); });
  control<Button>("cmdSearchEquip").press();
  control<Button>("cmdPrintInv(0)").press();
  EXPECT_EQ(asked, std::vector<std::string>{"search 1"});
  EXPECT_EQ(desktop.pages.printed.size(), 1U);
  for (const char* name : {"cmdSearchGroup", "cmdSearchRooms", "cmdSearchMaint", "fa(4)", "tvwDB(3)"})
    EXPECT_NE(main().findControl(name), nullptr) << name;
}

}  // namespace
}  // namespace vantry::test
