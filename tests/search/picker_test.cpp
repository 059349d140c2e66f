// The search window as a picker for others, and as the one free window.
#include "search/find_fixture.h"

namespace vantry::test {
namespace {

struct ModeRow {
  std::string_view tag;
  const char* caption;
  int category;
  const char* focus;
  const char* request;
  const char* reply;
  const char* answer;
};

// clang-format off
constexpr ModeRow kModes[] = {
    {"6", "Find Patron for Booking", kFindPatrons, "txtLast", "SRCHFOR=6 SRCHLOC=5 SRCHOP=", "PID=31 PLN=Ink PFN=Ina PMN=I.", "Ink, Ina I.|31"},
    {"7", "Find Room for Booking", kFindRooms, "cboRoomType", "SRCHFOR=4 SRCHLOC=3 SRCHOP=", "RTI=24 RID=45 RNO=12 RNM=Tower LNA=Main", "45|Tower - Main - 12"},
    {"8", "Find Staff for Booking", kFindPatrons, "txtLast", "SRCHFOR=6 SRCHLOC=5 SRCHOP=", "PID=31 PLN=Ink PFN=Ina", ""},
    {"9", "Find Staff", kFindPatrons, "txtLast", "SRCHFOR=6 SRCHLOC=5 SRCHOP=", "PID=31 PLN=Ink PFN= PMN=", "Ink, |31"},
};
// clang-format on

TEST_F(FindTest, APickerHandsBackItsRow) {
  for (const ModeRow& row : kModes) {
    SCOPED_TRACE(row.caption);
    const std::string answer = pick(row.tag, [&](frmFind& find) {
      EXPECT_EQ(find.Caption, row.caption);
      EXPECT_EQ(find.cboSearchFor.ListIndex.get(), row.category);
      ASSERT_NE(find.ActiveControl(), nullptr);
      EXPECT_EQ(find.ActiveControl()->Name(), row.focus);
      EXPECT_FALSE(find.cboSearchFor.Enabled || find.cboSearchWhere.Enabled ||
                   find.cmdAdvancedSearch.Enabled);
      EXPECT_FALSE(find.mnuFile.Visible || find.mnuTools.Visible || find.mnuHelp.Visible);
      EXPECT_EQ(find.cmdClose.Caption, "&Cancel");
      EXPECT_FALSE(find.cmdOK.Enabled);
      find.cmdNewSearch.press();
      EXPECT_TRUE(find.faResults.Visible) << "a dialog keeps its size";
      bool others = false;
      desktop.onRepaint = [&](Form&) { others = main().Enabled; };
      findRecords(find, row.request, std::string("head: SRCHCNT=1\n") + row.reply);
      desktop.onRepaint = nullptr;
      EXPECT_TRUE(others) << "only the picker is busy";
      EXPECT_TRUE(find.cmdOK.Enabled);
      find.faResults.doubleClick(1, 1);
      EXPECT_EQ(find.Tag.get().empty(), false);
      EXPECT_FALSE(find.isShown());
    });
    EXPECT_EQ(answer, row.answer);
    EXPECT_EQ(app->windows.Count(), 1) << "the caller has unloaded it";
  }
}

TEST_F(FindTest, ACancelledPickerHandsBackNothing) {
  const std::string answer = pick(kFindPatronTag, [&](frmFind& find) {
    findRecords(find, "SRCHFOR=6 SRCHLOC=5 SRCHOP=", "head: SRCHCNT=1 | PID=31 PLN=Ink");
    find.cmdClose.press();
    EXPECT_EQ(find.Tag, "6") << "as it was given";
  });
  EXPECT_EQ(answer, "");
  EXPECT_EQ(pick(kFindRoomTag, [](frmFind& find) { find.closeByOperator(); }), "");
}

TEST_F(FindTest, APickerOfPatronsFindsTheCardThatIsScanned) {
  app->preferences.AutoTruncate = true;
  EXPECT_EQ(pick(kFindStaffTag,
                 [&](frmFind& find) {
                   find.optTerms(1).choose();
                   enter(find, "txtLast=Oak");
                   for (const char* card : {"P3", "P31"}) {
                     server
                         .expect("FIND",
                                 "SRCHTAG=17 SRCHVAL=" + std::string(card) + " SRCHFOR=6 SRCHLOC=5 SRCHOP=")
                         .replies("head: SRCHCNT=1 | PID=31 PLN=Ink PFN=Ina");
                     EXPECT_TRUE(find.scan(card));
                   }
                   EXPECT_EQ(find.criteria(kFindPatrons).tabSearch.SelectedTab, 1);
                   find.faResults.chooseRow();
                 }),
            "Ink, Ina |31");
  EXPECT_FALSE(open(kFindPatrons).takesScans()) << "others are scanned into their field";
}

TEST_F(FindTest, ASuggestedRoomIsOneOfThoseShownAtOnce) {
  server.expect("FIND", "SRCHFOR=4 SRCHLOC=3 SRCHOP=")
      .replies(
          "head: SRCHCNT=2 | RTI=24 RID=45 RNO=12 RNM=Tower LNA=Main | RTI=24 RID=46 RNO=13 RNM=Nave "
          "LNA=Main");
  EXPECT_EQ(pick(kSuggestRoomTag,
                 [](frmFind& find) {
                   find.faResults.selectRow(2);
                   find.cmdOK.press();
                 }),
            "46|Nave - Main - 13");
}

TEST_F(FindTest, ThereIsOneFreeWindowAndItFollowsWhoOpensIt) {
  frmFind& find = open(kFindRooms);
  EXPECT_EQ(find.Caption, "Find");
  EXPECT_EQ(find.cboSearchFor.Text(), "Rooms");
  EXPECT_EQ(&open(kFindMaintenance), &find);
  EXPECT_EQ(find.cboSearchFor.Text(), "Maintenance");
  find.cboSearchFor.select(kFindPatrons);
  find.SetFocus();
  EXPECT_EQ(find.cboSearchFor.Text(), "Patrons") << "coming to the front changes nothing";
  for (int category = 0; category < find.cboSearchFor.ListCount(); ++category)
    EXPECT_EQ(find.criteria(category).fraSearch.Visible, category == kFindPatrons);
  pick(kFindPatronTag, [](frmFind& picker) { picker.cmdClose.press(); });
  EXPECT_EQ(&open(kFindGroups), &find) << "a picker is another window";
  find.cmdClose.press();
  EXPECT_FALSE(find.isLoaded());
}

TEST_F(FindTest, ALogOffClosesTheFreeWindow) {
  frmFind& find = open(kFindBookings);
  expectContext();
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
  main().menus.mnuFileLogoff.choose();
  EXPECT_FALSE(find.isLoaded());
}

/// Writes down the letter behind the "&" of each caption in sight, with its control.
void noteLetters(const Container& place, std::multimap<char, std::string>& letters) {
  for (const Control* control : place.Controls()) {
    if (!control->Visible) continue;
    std::string caption;
    if (const auto* label = dynamic_cast<const Label*>(control)) caption = label->Caption;
    if (const auto* button = dynamic_cast<const Button*>(control)) caption = button->Caption;
    if (const auto* box = dynamic_cast<const CheckBox*>(control)) caption = box->Caption;
    if (const auto* option = dynamic_cast<const OptionButton*>(control)) caption = option->Caption;
    if (const auto at = caption.find('&'); at != std::string::npos)
      letters.emplace(static_cast<char>(std::tolower(caption[at + 1])), control->Name());
    if (const auto* frame = dynamic_cast<const Frame*>(control)) noteLetters(*frame, letters);
  }
}

TEST_F(FindTest, NoLetterLeadsToTwoThingsInSight) {
  for (int category = kFindBookings; category <= kFindPatrons; ++category) {
    frmFind& find = open(static_cast<SearchCategory>(category));
    TabStrip& pages = find.criteria(category).tabSearch;
    for (int page = 0; page < static_cast<int>(pages.Tabs().size()); ++page) {
      pages.choose(page);
      std::multimap<char, std::string> letters{{'f', "mnuFile"}, {'t', "mnuTools"}, {'h', "mnuHelp"}};
      noteLetters(find, letters);
      for (const auto& [letter, name] : letters)
        EXPECT_EQ(letters.count(letter), 1U)
            << find.cboSearchFor.Text() << ", page " << page << ": " << letter << " of " << name;
    }
  }
}

}  // namespace
}  // namespace vantry::test
