// What the search window asks for.
#include "messaging/frmBibSearch.h"
#include "search/find_fixture.h"

namespace vantry::test {
namespace {

/// What a page adds to the message when its fields are filled in.
struct PageRow {
  SearchCategory category;
  int page;
  const char* fields;
  const char* tags;
};

// clang-format off
constexpr PageRow kPages[] = {
    {kFindBookings, 0, "", "SRCHTAG=7 SRCHVAL=2026-11-24"},
    {kFindBookings, 0, "dtBookingDate=2026-12-01", "SRCHTAG=7 SRCHVAL=2026-12-01"},
    {kFindBookings, 0, "dtBookingDate=", ""},
    {kFindBookings, 0, "optDate(1); dtDateStart=2026-12-01; dtDateEnd=2026-12-24", "SRCHTAG=8 SRCHVAL=2026-12-01 SRCHTAG=9 SRCHVAL=2026-12-24"},
    {kFindBookings, 0, "optDate(1); dtDateStart=; dtDateEnd=2026-12-24", "SRCHTAG=9 SRCHVAL=2026-12-24"},
    {kFindBookings, 1, "txtConfirmationNumber= C7 ", "SRCHTAG=11 SRCHVAL=C7?"},
    {kFindBookings, 2, "cboBookingLocation=Branch; cboBookingRoom=101 - Store", "SRCHTAG=4 SRCHVAL=4 SRCHTAG=12 SRCHVAL=61"},
    {kFindBookings, 2, "cboBookingLocation=Branch; cboBookingRoom=102; cboBookingLocation=(none)", ""},
    {kFindBookings, 3, "txtBookingMediaBarcode=M1", "SRCHTAG=26 SRCHVAL=M1"},
    {kFindBookings, 3, "txtBibIDs=7, 8", "SRCHTAG=30 SRCHVAL=\"7, 8\""},
    {kFindBookings, 4, "cboBookingEquip=Camera", "SRCHTAG=1 SRCHVAL=5"},
    {kFindBookings, 4, "cboBookingEquip=Camera; optBookingEquipType(1); cboBookingGroup=Set", "SRCHTAG=13 SRCHVAL=14"},
    {kFindBookings, 4, "optBookingEquipType(2); txtEquipBarcode=B1", "SRCHTAG=17 SRCHVAL=B1"},
    {kFindBookings, 5, "cboBookingStaff=Oak, Ole", "SRCHTAG=14 SRCHVAL=32"},
    {kFindBookings, 6, "txtBLast=Ink; txtBMiddle=I; txtBFirst=Ina", "SRCHTAG=22 SRCHVAL=Ink? SRCHTAG=23 SRCHVAL=I? SRCHTAG=24 SRCHVAL=Ina?"},
    {kFindBookings, 6, "txtBLast= ; txtBFirst=Ina", "SRCHTAG=24 SRCHVAL=Ina?"},
    {kFindBookings, 7, "txtBBarcode=P3", "SRCHTAG=29 SRCHVAL=P3?"},
    {kFindEquipment, 0, "cboEquipmentType=Camera", "SRCHTAG=1 SRCHVAL=5"},
    {kFindEquipment, 0, "cboEquipmentType=Camera; cboEquipmentType=(none)", ""},
    {kFindEquipment, 1, "txtEquipNumber(0)=TV1", "SRCHTAG=2 SRCHVAL=TV1?"},
    {kFindEquipment, 1, "optEquipNumber(1); txtEquipNumber(1)=B1", "SRCHTAG=17 SRCHVAL=B1?"},
    {kFindEquipment, 2, "txtEquipManufacturer=Tovan", "SRCHTAG=3 SRCHVAL=Tovan?"},
    {kFindEquipment, 3, "txtEquipSerialNo=S1", "SRCHTAG=28 SRCHVAL=S1?"},
    {kFindEquipment, 4, "cboEquipmentLocation=Main Desk; cboEquipRoom=102", "SRCHTAG=4 SRCHVAL=3 SRCHTAG=12 SRCHVAL=62"},
    {kFindEquipment, 5, "txtEquipModel=V-55", "SRCHTAG=5 SRCHVAL=V-55?"},
    {kFindEquipment, 6, "cboEquipStatus=Lost", "SRCHTAG=6 SRCHVAL=2"},
    {kFindEquipment, 7, "dtNextMaintDate=2026-12-01", "SRCHTAG=7 SRCHVAL=2026-12-01"},
    {kFindEquipment, 7, "optNextMaintDate(1); dtNextMaintStartDate=2026-12-01; dtNextMaintEndDate=2026-12-24", "SRCHTAG=8 SRCHVAL=2026-12-01 SRCHTAG=9 SRCHVAL=2026-12-24"},
    {kFindGroups, 0, "cboGroupType=Set", "SRCHTAG=13 SRCHVAL=14"},
    {kFindGroups, 1, "txtGroupNumber(0)=SET1", "SRCHTAG=2 SRCHVAL=SET1?"},
    {kFindGroups, 1, "optGroupNumber(1); txtGroupNumber(1)=B9", "SRCHTAG=17 SRCHVAL=B9?"},
    {kFindGroups, 2, "cboGroupEquipment=Television", "SRCHTAG=1 SRCHVAL=4"},
    {kFindGroups, 3, "cboGroupLocation=Branch; cboGroupRoom=101 - Store", "SRCHTAG=4 SRCHVAL=4 SRCHTAG=12 SRCHVAL=61"},
    {kFindGroups, 4, "cboGroupStatus=Available", "SRCHTAG=6 SRCHVAL=1"},
    {kFindRooms, 0, "cboRoomType=Hall", "SRCHTAG=21 SRCHVAL=24"},
    {kFindRooms, 1, "txtRoomName=Store", "SRCHTAG=18 SRCHVAL=Store?"},
    {kFindRooms, 2, "txtRoomNumber=101", "SRCHTAG=2 SRCHVAL=101?"},
    {kFindRooms, 3, "cboRoomLocation=Branch", "SRCHTAG=4 SRCHVAL=4"},
    {kFindRooms, 4, "cboRoomEquip=Camera", "SRCHTAG=1 SRCHVAL=5"},
    {kFindRooms, 4, "optRoomEquipType(1); cboRoomGroup=Set", "SRCHTAG=13 SRCHVAL=14"},
    {kFindRooms, 5, "txtRoomCapacity=12", "SRCHTAG=15 SRCHVAL=>=12"},
    {kFindRooms, 5, "cboCompare=<=; txtRoomCapacity=40", "SRCHTAG=15 SRCHVAL=<=40"},
    {kFindRooms, 5, "cboCompare=<=", ""},
    {kFindRooms, 6, "cboRoomStatus=Closed", "SRCHTAG=6 SRCHVAL=7"},
    {kFindRooms, 7, "dtRoomDate=2026-12-01; txtRoomTime=10:00", "SRCHTAG=25 SRCHVAL=\"2026-12-01 10:00:00\""},
    {kFindRooms, 7, "dtRoomDate=2026-12-01; txtRoomTime=", "SRCHTAG=7 SRCHVAL=2026-12-01"},
    {kFindRooms, 7, "dtRoomDate=", ""},
    {kFindRooms, 8, "cboRoomDetail=Piano", "SRCHTAG=16 SRCHVAL=41"},
    {kFindMaintenance, 0, "dtMaintDate=2026-12-01", "SRCHTAG=7 SRCHVAL=2026-12-01"},
    {kFindMaintenance, 0, "optMaintDate(1); dtMaintStart=2026-12-01; dtMaintEnd=2026-12-24", "SRCHTAG=8 SRCHVAL=2026-12-01 SRCHTAG=9 SRCHVAL=2026-12-24"},
    {kFindMaintenance, 1, "cboMaintEquip=Camera", "SRCHTAG=1 SRCHVAL=5"},
    {kFindMaintenance, 1, "optMaintEquip(1); txtMaintEquipNumber=TV1", "SRCHTAG=2 SRCHVAL=TV1?"},
    {kFindMaintenance, 2, "cboMaintDetails=Cleaning", "SRCHTAG=16 SRCHVAL=51"},
    {kFindMaintenance, 3, "cboMaintStaff=Ink, Ina", ""},
    {kFindPatrons, 0, "txtLast=Ink; txtMiddle=I; txtFirst=Ina", "SRCHTAG=22 SRCHVAL=Ink? SRCHTAG=23 SRCHVAL=I? SRCHTAG=24 SRCHVAL=Ina?"},
    {kFindPatrons, 0, "txtLast=Ink?", "SRCHTAG=22 SRCHVAL=Ink?"},
    {kFindPatrons, 1, "txtBarcode=P3", "SRCHTAG=17 SRCHVAL=P3?"},
    {kFindPatrons, 2, "txtSSN=123456789", "SRCHTAG=19 SRCHVAL=123-45-6789?"},
    {kFindPatrons, 2, "txtSSN=123", "SRCHTAG=19 SRCHVAL=123?"},
    {kFindPatrons, 3, "txtInstitutionID=I9", "SRCHTAG=20 SRCHVAL=I9?"},
};

/// Where each entry of the second list searches, and how the results are laid out.
struct ScopeRow {
  SearchCategory category;
  int where;
  const char* tags;
  int results;
};
constexpr ScopeRow kScopes[] = {
    {kFindBookings, 0, "SRCHFOR=1 SRCHLOC=4", 1},
    {kFindEquipment, 0, "SRCHFOR=2 SRCHLOC=1", 2}, {kFindEquipment, 1, "SRCHFOR=2 SRCHLOC=2", 3},
    {kFindEquipment, 2, "SRCHFOR=2 SRCHLOC=3", 4}, {kFindEquipment, 3, "SRCHFOR=2 SRCHLOC=6", 4},
    {kFindEquipment, 4, "SRCHFOR=2 SRCHLOC=4", 5}, {kFindGroups, 0, "SRCHFOR=3 SRCHLOC=1", 6},
    {kFindGroups, 1, "SRCHFOR=3 SRCHLOC=3", 7},    {kFindGroups, 2, "SRCHFOR=3 SRCHLOC=6", 7},
    {kFindGroups, 3, "SRCHFOR=3 SRCHLOC=4", 8},    {kFindRooms, 0, "SRCHFOR=4 SRCHLOC=1", 9},
    {kFindRooms, 1, "SRCHFOR=4 SRCHLOC=3", 10},    {kFindMaintenance, 0, "SRCHFOR=5 SRCHLOC=0", 11},
    {kFindPatrons, 0, "SRCHFOR=6 SRCHLOC=5", 12},  {kFindPatrons, 1, "SRCHFOR=6 SRCHLOC=4", 13},
};
// clang-format on

/// Where a category searches first.
std::string scopeOf(SearchCategory category) {
  for (const ScopeRow& row : kScopes) {
    if (row.category == category) return row.tags;
  }
  return {};
}

std::string request(const std::string& criteria, SearchCategory category, const char* terms = "") {
  return criteria + " " + scopeOf(category) + " SRCHOP=" + terms;
}

/// Terms that are truncated by themselves have the sign of it in the table.
TEST_F(FindTest, EachPageSendsWhatIsFilledIn) {
  for (const bool truncates : {true, false}) {
    app->preferences.AutoTruncate = truncates;
    for (const PageRow& row : kPages) {
      SCOPED_TRACE(std::string(searchCategories()[static_cast<std::size_t>(row.category)].caption) + ": " +
                   row.fields);
      frmFind& find = open(row.category, row.page);
      find.cmdNewSearch.press();
      enter(find, row.fields);
      std::string tags = row.tags;
      if (!truncates && std::string_view(row.fields).find('?') == std::string_view::npos)
        std::erase(tags, '?');
      findNothing(find, request(tags, row.category));
    }
  }
}

TEST_F(FindTest, ATimeOfARoomWantsItsDate) {
  frmFind& find = open(kFindRooms, 7);
  CriteriaPages& pages = find.criteria(kFindRooms);
  for (const bool hasDate : {false, true}) {
    enter(find, hasDate ? "dtRoomDate=2026-12-01" : "dtRoomDate=");
    EXPECT_EQ(pages.field<TimeField>("txtRoomTime").Enabled, hasDate);
    EXPECT_EQ(find.findControl("lblRoomTime")->Enabled, hasDate);
  }
}

TEST_F(FindTest, TheSecondListSaysWhereAndChoosesTheLayout) {
  for (const ScopeRow& row : kScopes) {
    SCOPED_TRACE(row.tags);
    frmFind& find = open(row.category, row.category == kFindMaintenance ? 1 : 2);
    EXPECT_EQ(find.cboSearchWhere.Visible, row.category != kFindBookings && row.category != kFindMaintenance);
    find.cboSearchWhere.ListIndex = row.where;
    findNothing(find, std::string(row.tags) + " SRCHOP=");
    EXPECT_EQ(find.ResultGrid, row.results);
  }
}

TEST_F(FindTest, ASingleTermIsThePageThatShowsAndSeveralAreAllPagesInTheirOrder) {
  frmFind& find = open(kFindBookings);
  const std::pair<int, const char*> fields[] = {{7, "txtBBarcode=P3"},
                                                {1, "txtConfirmationNumber=C7"},
                                                {0, "dtBookingDate="},
                                                {2, "cboBookingLocation=Branch"}};
  for (const auto& [page, field] : fields) {
    find.criteria(kFindBookings).tabSearch.choose(page);
    enter(find, field);
  }
  findNothing(find, request("SRCHTAG=4 SRCHVAL=4", kFindBookings));
  const std::string all = "SRCHTAG=11 SRCHVAL=C7 SRCHTAG=4 SRCHVAL=4 SRCHTAG=29 SRCHVAL=P3";
  find.optTerms(1).choose();
  findNothing(find, request(all, kFindBookings, "AND"));
  find.optTerms(2).choose();
  findNothing(find, request(all, kFindBookings, "OR"));

  open(kFindPatrons, 0);
  enter(find, "txtLast=Ink");
  find.criteria(kFindPatrons).tabSearch.choose(1);
  enter(find, "txtBarcode=P3");
  findNothing(find, request("SRCHTAG=17 SRCHVAL=P3 SRCHTAG=22 SRCHVAL=Ink", kFindPatrons, "OR"));
  open(kFindGroups);
  find.optTerms(1).choose();
  findNothing(find, request("", kFindGroups, "AND"));
}

TEST_F(FindTest, HistoryIsForTheRightAndBeginsAsPreferred) {
  app->preferences.Historical = true;
  frmFind& find = open(kFindBookings, 1);
  EXPECT_TRUE(find.chkHistBookings.Value);
  findNothing(find, request("SRCHTAG=10", kFindBookings));
  find.chkHistBookings.toggle();
  findNothing(find, request("", kFindBookings));
  start(allRightsBut("BKVHI"));
  app->preferences.Historical = true;
  frmFind& without = open(kFindBookings, 1);
  EXPECT_FALSE(without.chkHistBookings.Visible);
  findNothing(without, request("", kFindBookings));
}

struct FindMediaTest : FindTest {
  void SetUp() override {
    FindTest::SetUp();
    find = &open(kFindBookings, 3);
  }
  /// Chooses the nodes of titles and holdings in the search of the catalogue.
  void choose(const std::vector<std::string>& nodes) {
    server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=bees")
        .replies("head: SRCHCNT=2 | BI=7 TITL=Bees | BI=8 TITL=Hives");
    server.expect("GBHI", "BI=7 MI=0")
        .replies("BI=7 MI=70 TITL=Bees LO=Main | BI=7 MI=71 TITL=Bees LO=Branch");
    desktop.expectModalWindow<frmBibSearch>("frmBibSearch", [&nodes](frmBibSearch& window) {
      window.txtSearch.type("bees");
      window.txtSearch.pressEnter();
      window.tvwTitles.setExpanded("B7", true);
      for (const std::string& node : nodes) window.tvwTitles.doubleClick(node);
      window.cmdOK.press();
    });
    find->cmdSearchMedia.press();
  }
  frmFind* find = nullptr;
};

TEST_F(FindMediaTest, TitlesAndHoldingsOfTheCatalogueAreSoughtUnderTheirNumbers) {
  choose({"B7", "B8"});
  findNothing(*find, request("SRCHTAG=27 SRCHVAL=\"7, 8\"", kFindBookings));
  choose({"M70", "M71"});
  findNothing(*find, request("SRCHTAG=30 SRCHVAL=\"70, 71\"", kFindBookings));
  choose({"B8", "M70"});
  findNothing(*find, request("SRCHTAG=27 SRCHVAL=\"8, 7\"", kFindBookings));
  enter(*find, "txtBookingMediaBarcode=M1");
  EXPECT_EQ(find->txtBibIDs.Text, "") << "typing in one empties the other";
  enter(*find, "txtBibIDs=9");
  EXPECT_EQ(find->txtBookingMediaBarcode.Text, "");
}

TEST_F(FindMediaTest, TheSearchRunsByItselfWhereTheOperatorPrefersIt) {
  app->preferences.AutoFindNow = true;
  server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=bees").replies("head: SRCHCNT=1 | BI=7 TITL=Bees");
  server.expect("FIND", request("SRCHTAG=27 SRCHVAL=7", kFindBookings)).replies("head: SRCHCNT=1 | BOOKID=7");
  desktop.expectModalWindow<frmBibSearch>("frmBibSearch", [](frmBibSearch& window) {
    window.txtSearch.type("bees");
    window.txtSearch.pressEnter();
    window.tvwTitles.doubleClick("B7");
    window.cmdOK.press();
  });
  find->cmdSearchMedia.press();
  EXPECT_TRUE(find->faResults.hasData());
}

TEST_F(FindTest, TheAdvancedStateSendsNothing) {
  frmFind& find = open(kFindPatrons);
  enter(find, "txtLast=Ink");
  find.cmdAdvancedSearch.press();
  EXPECT_EQ(find.cmdAdvancedSearch.Caption, "<< Advanced");
  EXPECT_TRUE(find.fraAdvanced.Visible && !find.criteria(kFindPatrons).fraSearch.Visible);
  server.expect("FIND", "SRCHFOR=0 SRCHLOC=0 SRCHOP=").fails(-98);
  desktop.expectCritical("Your search failed! (rc = -98)");
  find.cmdFindNow.press();
  find.cmdAdvancedSearch.press();
  EXPECT_EQ(find.cmdAdvancedSearch.Caption, "Advanced >>");
  EXPECT_TRUE(!find.fraAdvanced.Visible && find.criteria(kFindPatrons).fraSearch.Visible);
  findNothing(find, request("", kFindPatrons));
}

TEST_F(FindTest, ANewSearchEmptiesEverything) {
  frmFind& find = open(kFindBookings, 2);
  enter(find, "cboBookingLocation=Branch; cboBookingRoom=102");
  find.criteria(kFindBookings).tabSearch.choose(0);
  enter(find, "optDate(1); dtDateStart=2026-12-01");
  find.optTerms(1).choose();
  findRecords(find,
              request("SRCHTAG=8 SRCHVAL=2026-12-01 SRCHTAG=9 SRCHVAL=2026-11-24 SRCHTAG=4 SRCHVAL=4 "
                      "SRCHTAG=12 SRCHVAL=62",
                      kFindBookings, "AND"),
              "head: SRCHCNT=1 | BOOKID=7");
  clock.time.date.day = 25;
  find.cmdNewSearch.press();
  EXPECT_FALSE(find.faResults.Visible || find.sbFind.Visible || find.cmdOK.Enabled ||
               find.faResults.hasData());
  EXPECT_EQ(find.ActiveControl()->Name(), "dtBookingDate") << "ready for the next search";
  findNothing(find, request("SRCHTAG=7 SRCHVAL=2026-11-25", kFindBookings));
  find.optTerms(1).choose();
  findNothing(find, request("SRCHTAG=7 SRCHVAL=2026-11-25", kFindBookings, "AND"));
}

TEST_F(FindTest, ADateThatCannotBeReadIsToldWhereverItIs) {
  frmFind& find = open(kFindBookings, 0);
  find.criteria(kFindBookings).field<DateField>("dtBookingDate").type("31/31", {2026, 11, 24});
  find.criteria(kFindBookings).tabSearch.choose(1);
  findNothing(find, request("", kFindBookings));
  find.optTerms(1).choose();
  desktop.expectInformation("Please enter a valid date for Date.");
  find.cmdFindNow.press();
  EXPECT_EQ(find.criteria(kFindBookings).tabSearch.SelectedTab, 0);
  EXPECT_EQ(find.ActiveControl()->Name(), "dtBookingDate");
}

TEST_F(FindTest, AListThatCannotBeReadOffersNoChoice) {
  server.always("GETEGSTY").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  frmFind& find = open(kFindEquipment, 6);
  const auto& statuses = find.criteria(kFindEquipment).field<ComboBox>("cboEquipStatus");
  EXPECT_EQ(statuses.ListCount(), 1);
  EXPECT_EQ(statuses.Text(), "(none)");
  EXPECT_TRUE(find.Enabled && main().Enabled);
}

}  // namespace
}  // namespace vantry::test
