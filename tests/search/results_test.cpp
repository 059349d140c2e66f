// What the search window makes of a reply.
#include "messaging/return_codes.h"
#include "search/find_fixture.h"

namespace vantry::test {
namespace {

struct LayoutRow {
  SearchCategory category;
  int where;
  const char* reply;
  const char* headings;
  const char* row;
  int record;  ///< that a row opens, or -1
};

constexpr const char* kBooking7 =
    "BOOKID=7 STIME=2026-11-24 09:00:00 ETIME=2026-11-25 17:30:00 REQ= CNUM=C7 BTYP=Delivery DPL=Hall ECNT=2 "
    "ICNT=1";
constexpr const char* kPiece =
    "ETI=4 EID=11 ENO=TV1 LNA=Main RNM=Store STY=Lost EMA=Tovan EMO=V-55 ESN=S1 GRPNO=SET1 GRPNA=Set EFO=HD "
    "MNC=3";
constexpr const char* kRoom61 = "RTI=24 RID=61 RNO=101 RNM=Store LNA=Main STY=Closed RCA=40 MNC=1";
constexpr const char* kPatron = "PID=31 PLN=Ink PFN=Ina PMN=I. PSSN=1 PIID=I9 PGNM=Staff BNO=P31 BST=Active";

// clang-format off
constexpr LayoutRow kLayouts[] = {
    {kFindBookings, 0, kBooking7, "Start Date|Start Time|End Date|End Time|Requester|Confirmation #|Booking Type|Delivery Room/Pickup Location|Equipment Count|Item Count",
     "24/11/2026|09:00 AM|25/11/2026|05:30 PM|Administrative|C7|Delivery|Hall|2|1", kBooking},
    {kFindBookings, 0, "BOOKID=9 REQ=-1", "Start Date|Start Time|End Date|End Time|Requester|Confirmation #|Booking Type|Delivery Room/Pickup Location|Equipment Count|Item Count",
     "Requester Withheld|||||", kBooking},
    {kFindEquipment, 0, kPiece, "Number|Location|Room|Status|Manufacturer|Model|Serial #|Group Number|Format", "TV1|Main|Store|Lost|Tovan|V-55|S1|SET1|HD", kEquipment},
    {kFindEquipment, 1, kPiece, "Group Name|Number|Location|Room|Status|Manufacturer|Model|Serial #|Format", "Set|TV1|Main|Store|Lost|Tovan|V-55|S1|HD", kEquipment},
    {kFindEquipment, 2, kPiece, "Room|Number|Location|Status|Manufacturer|Model|Serial #|Group Name|Format", "Store|TV1|Main|Lost|Tovan|V-55|S1|Set|HD", kEquipment},
    {kFindEquipment, 4, kPiece, "Number|Location|Room|Status|Manufacturer|Model|Serial #|Group Number|Format", "TV1|Main|Store|Lost|Tovan|V-55|S1|SET1|HD", kEquipment},
    {kFindGroups, 0, kPiece, "Number|Location|Room|Status|Notes", "TV1|Main|Store|Lost|3", kGroup},
    {kFindGroups, 1, kPiece, "Room|Number|Location|Status|Notes", "Store|TV1|Main|Lost|3", kGroup},
    {kFindGroups, 3, kPiece, "Number|Location|Room|Status|Notes", "TV1|Main|Store|Lost|3", kGroup},
    {kFindRooms, 0, kRoom61, "Number|Room Name|Room Location|Status|Capacity|Notes", "101|Store|Main|Closed|40|1", kRoom},
    {kFindRooms, 1, kRoom61, "Number|Room Name|Room Location|Status|Capacity|Notes", "101|Store|Main|Closed|40|1", kRoom},
    {kFindMaintenance, 0, "MSD=2026-12-01 MID=81 MDYI=2026-12-01 ETY=Television ENO=TV1 ON=\"Ink, Ina\"", "Date|Equipment Type|Number|Name", "01/12/2026|Television|TV1|Ink, Ina", kMaintenance},
    {kFindPatrons, 0, kPatron, "Patron Name|SSN|Institution ID", "Ink, Ina I.|1|I9", -1},
    {kFindPatrons, 1, kPatron, "Patron Name|SSN|Institution ID|Patron Group|Barcode|Barcode Status", "Ink, Ina I.|1|I9|Staff|P31|Active", -1},
};
// clang-format on

/// The search of patrons by nothing.
constexpr const char* kAllPatrons = "SRCHFOR=6 SRCHLOC=5 SRCHOP=";

TEST_F(FindTest, EachLayoutShowsItsColumnsAndOpensItsRecord) {
  noteRecords();
  server.always("GETEGTN");
  server.always("GETRTN");
  for (const LayoutRow& row : kLayouts) {
    SCOPED_TRACE(row.headings);
    frmFind& find = open(row.category, row.category == kFindMaintenance ? 1 : 2);
    find.cboSearchWhere.ListIndex = row.where;
    server.always("FIND").replies(std::string("head: SRCHCNT=1\n") + row.reply);
    find.cmdFindNow.press();
    EXPECT_EQ(headings(find), row.headings);
    ASSERT_EQ(find.faResults.Rows, 2);
    EXPECT_EQ(rowText(find, 1), row.row);
    notBuilt.clear();
    if (row.record < 0) desktop.expectInformation("Please use Corvane Circulation for Patron Maintenance");
    find.faResults.doubleClick(1, 2);
    EXPECT_THAT(notBuilt, row.record < 0 ? std::vector<std::string>{}
                                         : std::vector{"record window " + std::to_string(row.record)});
  }
}

TEST_F(FindTest, ARowOpensTheRecordOfItsKey) {
  frmFind& find = open(kFindBookings, 1);
  findRecords(find, "SRCHFOR=1 SRCHLOC=4 SRCHOP=", "head: SRCHCNT=2 | BOOKID=7 | BOOKID=8");
  EXPECT_EQ(find.ActiveControl(), &find.faResults) << "Enter opens the row";
  EXPECT_EQ(find.faResults.Row, 1);
  RecordOpening opened;
  app->makers.addRecord(kBooking, [&](App& program) {
    opened = program.slots.opening;
    return nullptr;
  });
  find.faResults.selectRow(2);
  find.faResults.chooseRow();
  EXPECT_EQ(opened.id, "8");
  opened = {};
  find.faResults.doubleClick(0, 1);
  EXPECT_EQ(opened.id, "") << "a heading is no record";
  find.faResults.click(1, 1);
  find.cmdOK.press();
  EXPECT_EQ(opened.id, "7");
}

TEST_F(FindTest, ARecordIsOneRowHoweverOftenItComes) {
  frmFind& find = open(kFindEquipment);
  std::vector<std::string> texts;
  desktop.onRepaint = [&](Form& form) {
    if (&form != &find || find.sbFind.Panels(2).Text == "Searching...") return;
    EXPECT_FALSE(main().Enabled || find.Enabled) << "busy: " << find.sbFind.Panels(2).Text.get();
    texts.push_back(find.sbFind.Panels(2).Text);
  };
  findRecords(
      find, "SRCHFOR=2 SRCHLOC=1 SRCHOP=",
      "head: SRCHCNT=4 | ETI=4 EID=11 ENO=A | ETI=4 EID=11 ENO=B | ETI=4 EID=12 ENO=C | ETI=4 EID=11");
  desktop.onRepaint = nullptr;
  EXPECT_EQ(find.faResults.Rows, 3);
  EXPECT_EQ(rowText(find, 1).front(), 'A');
  EXPECT_THAT(texts, testing::ElementsAre("0 of 4 record(s) processed", "1 of 4 record(s) processed",
                                          "2 of 4 record(s) processed", "2 of 4 record(s) processed"));
  EXPECT_TRUE(main().Enabled && find.Enabled);
}

TEST_F(FindTest, AListThatTheServerHasCutSaysSo) {
  frmFind& find = open(kFindPatrons);
  findRecords(find, kAllPatrons, "head: SRCHCNT=5321 | PID=31 PLN=Ink | PID=32 PLN=Oak");
  EXPECT_EQ(find.RecordCount, 5321);
  EXPECT_EQ(find.sbFind.Panels(2).Text,
            "2 of 5321 record(s) processed. The list has been cut: please narrow the search.");
}

TEST_F(FindTest, PatronsAreNamedByTheirParts) {
  frmFind& find = open(kFindPatrons);
  findRecords(find, kAllPatrons,
              "head: SRCHCNT=4 | PID=1 PLN=Ink PFN=Ina PMN= | PID=2 PLN=Ink PFN= PMN=I. | PID=3 PLN= PFN=Ina "
              "PMN=I. | PID=4 PLN=Ink PFN= PMN=");
  std::vector<std::string> names;
  for (int row = 1; row < find.faResults.Rows; ++row) names.push_back(find.results.text(row, 1));
  EXPECT_THAT(names, testing::ElementsAre("Ink, Ina ", "Ink, I.", "Ina I.", "Ink, "));
}

TEST_F(FindTest, ASortGoesByTheColumnWithItsCompanionsAndThenByAllOthers) {
  frmFind& find = open(kFindBookings, 1);
  EXPECT_FALSE(find.mnuPopupSortAscending.Enabled) << "nothing to sort";
  findRecords(find, "SRCHFOR=1 SRCHLOC=4 SRCHOP=", R"(head: SRCHCNT=4
      BOOKID=1 STIME=2026-12-01 14:00:00 ETIME=2026-12-01 15:00:00 REQ=Oak
      BOOKID=2 STIME=2026-12-01 09:00:00 ETIME=2026-12-01 15:00:00 REQ=Ash
      BOOKID=3 STIME=2026-02-10 10:00:00 ETIME=2026-02-10 11:00:00 REQ=Ink
      BOOKID=4 STIME=2026-12-01 09:00:00 ETIME=2026-12-01 11:00:00 REQ=Elm)");
  const auto sorted = [&](int place, const char* entry) {
    desktop.expectPopup("mnuPopupTools", entry);
    find.faResults.rightClick(1 + place % 2, find.faResults.columnOfData(place));
    std::string ids;
    for (int row = 1; row < find.faResults.Rows; ++row) ids += find.results.text(row, 0);
    EXPECT_EQ(find.faResults.Row, 1);
    EXPECT_EQ(find.SelectedId, ids.substr(0, 1)) << "the row that is selected now";
    return ids;
  };
  EXPECT_EQ(sorted(1, "mnuPopupSortAscending"), "3421");
  EXPECT_EQ(headings(find).substr(0, 31), "Start Date|Start Time|End Date|");
  EXPECT_EQ(sorted(2, "mnuPopupSortDescending"), "1243") << "the time sorts behind its date";
  EXPECT_EQ(sorted(7, "mnuPopupSortAscending"), "2431");
  EXPECT_EQ(headings(find).substr(0, 32), "Requester|Start Date|Start Time|");
  find.faResults.moveColumn(1, 0);
  EXPECT_EQ(sorted(4, "mnuPopupSortAscending"), "3421") << "the key is no part of the order";
  desktop.expectPopup("mnuPopupTools", "mnuPopupNewSearch");
  find.faResults.rightClick(1, 1);
  EXPECT_FALSE(find.faResults.Visible);
}

struct RefusalCase {
  SearchCategory category;
  int page;
  const char* fields;
  const char* number;  ///< of the criterion that the server names
  const char* words;
  const char* focus;
};

// clang-format off
constexpr RefusalCase kRefusals[] = {
    {kFindPatrons, 0, "txtFirst=%", "24", "First name.\n\nPlease enter at least one letter or figure.", "txtFirst"},
    {kFindBookings, 0, "optDate(1); dtDateStart=2026-12-24; dtDateEnd=2026-12-01", "8", "First date.\n\nThe last date is before the first one.", "dtDateStart"},
    {kFindBookings, 1, "txtConfirmationNumber=C7", "11", "Confirmation number.\n\nA confirmation number consists of figures; ? at the end stands for any others.", "txtConfirmationNumber"},
    {kFindBookings, 3, "txtBibIDs=7 or 8", "30", "Catalogue ids.\n\nPlease enter whole numbers with commas between them, 5,000 at most.", "txtBibIDs"},
};
// clang-format on

TEST_F(FindTest, AValueThatCannotBeSoughtIsToldWithItsField) {
  for (const RefusalCase& row : kRefusals) {
    SCOPED_TRACE(row.fields);
    frmFind& find = open(row.category, row.page);
    find.cmdNewSearch.press();
    enter(find, row.fields);
    find.criteria(row.category).tabSearch.choose(row.page == 0 ? 1 : 0);
    find.optTerms(1).choose();
    server.always("FIND").fails(codes::TagMissing,
                                std::string("head: CANTREAD=SRCHVAL SRCHTAG=") + row.number);
    desktop.expectWarning(std::string("The search cannot use what was entered for ") + row.words);
    find.cmdFindNow.press();
    EXPECT_EQ(find.criteria(row.category).tabSearch.SelectedTab, row.page);
    EXPECT_EQ(find.ActiveControl()->Name(), row.focus);
  }
}

TEST_F(FindTest, OtherRefusalsHaveTheirReasonToo) {
  frmFind& find = open(kFindPatrons, 2);
  const std::pair<int, const char*> refusals[] = {
      {codes::NoRight, "You are not authorized to search for this."},
      {codes::SearchTooLong,
       "The search took too long and was ended.\n\nPlease enter more of what you know."},
      {-97, "Your search failed! (rc = -97)"}};
  for (const auto& [rc, words] : refusals) {
    server.expect("FIND", kAllPatrons).fails(rc);
    desktop.expectCritical(words);
    find.cmdFindNow.press();
  }
  server.expect("FIND", kAllPatrons).rejects("The body is larger than 1 MiB.");
  desktop.expectCritical("The body is larger than 1 MiB.");
  find.cmdFindNow.press();
}

TEST_F(FindTest, AFailedSearchLeavesTheWindowAsItWasAndAnEmptyList) {
  frmFind& find = open(kFindPatrons);
  enter(find, "txtLast=Ink");
  const std::string tags = std::string("SRCHTAG=22 SRCHVAL=Ink ") + kAllPatrons;
  findRecords(find, tags, "head: SRCHCNT=1 | PID=31 PLN=Ink");
  server.expect("FIND", tags).fails(-98);
  desktop.expectCritical("Your search failed! (rc = -98)");
  desktop.onBox = [&] { EXPECT_TRUE(find.Enabled && main().Enabled); };
  find.cmdFindNow.press();
  EXPECT_EQ(find.sbFind.Panels(2).Text, "Search failed!");
  EXPECT_FALSE(find.faResults.hasData() || find.cmdOK.Enabled || find.mnuPopupSortAscending.Enabled);
  findNothing(find, tags);
  EXPECT_EQ(find.sbFind.Panels(2).Text, "No Records Found");
  EXPECT_EQ(find.criteria(kFindPatrons).field<TextBox>("txtLast").Text, "Ink");
  desktop.onBox = nullptr;
  server.expect("FIND", tags).fails(codes::Lost);
  EXPECT_TRUE(endsProgram([&] { find.cmdFindNow.press(); }));
}

}  // namespace
}  // namespace vantry::test
