#include "messaging/frmBibSearch.h"

#include "messaging/frmMarcRecord.h"
#include "messaging/marc_fields.h"
#include "support/scripted_desktop.h"
#include "support/scripted_server.h"

namespace vantry::test {
namespace {

using testing::ElementsAre;

struct BibSearch : testing::Test {
  ScriptedDesktop desktop;
  ScriptedServer server;
  Windows windows{desktop};
  TagMessage message{server};
  ServerSession session{server};
  ServerTools tools{desktop};
  modGlobal global{windows, message, tools};
  BibSearchDialog dialog{windows, tools, global};

  BibSearch() { dialog.Initialise(message, session, true); }

  std::vector<BibSelection> search(std::function<void(frmBibSearch&)> play) {
    desktop.expectModalWindow<frmBibSearch>("frmBibSearch", std::move(play));
    return dialog.Search();
  }
  static void run(frmBibSearch& window, std::string_view text) {
    window.txtSearch.type(text);
    window.txtSearch.pressEnter();
  }
  void expectTwoTitles() {
    server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=bees").replies(R"(
      head: SRCHCNT=2
      BI=7 TITL=Bees AUTH="Keeper, Ann" YR=1998
      BI=8 TITL="Bees Today")");
  }
  void expectHoldings() {
    server.expect("GBHI", "BI=7 MI=0").replies(R"(
      BI=7 MI=70 IM=700 TITL=Bees MTID=1 MTY=DVD LO=Main CN="SF 523" CP=1
      BI=7 MI=70 IM=701 TITL=Bees MTID=1 MTY=DVD LO=Main CN="SF 523" EN=v.2 CP=2
      BI=7 MI=71 TITL=Bees LO=Branch)");
  }
};

TEST_F(BibSearch, EnterSearchesAndShowsTheTitlesFound) {
  expectTwoTitles();
  search([](frmBibSearch& window) {
    EXPECT_EQ(window.ActiveControl(), &window.txtSearch);
    EXPECT_FALSE(window.cmdSearch.Enabled) << "nothing to look for yet";
    EXPECT_FALSE(window.cmdOK.Enabled);
    run(window, " bees ");
    EXPECT_EQ(window.lblCount.Caption, "2 titles");
    ASSERT_EQ(window.tvwTitles.Roots().size(), 2U);
    EXPECT_EQ(window.tvwTitles.Roots()[0]->text, "Bees, Keeper, Ann, 1998");
    EXPECT_EQ(window.tvwTitles.Roots()[1]->text, "Bees Today");
    EXPECT_EQ(window.ActiveControl(), &window.tvwTitles) << "the arrow keys choose at once";
    EXPECT_TRUE(window.Enabled);
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, AnOpenedTitleShowsItsHoldingsAndItemsReadOnce) {
  expectTwoTitles();
  expectHoldings();
  search([](frmBibSearch& window) {
    run(window, "bees");
    window.tvwTitles.setExpanded("B7", true);
    const TreeNode& title = *window.tvwTitles.Roots()[0];
    ASSERT_EQ(title.children.size(), 2U);
    EXPECT_EQ(title.children[0]->text, "Main, SF 523");
    ASSERT_EQ(title.children[0]->children.size(), 2U);
    EXPECT_EQ(title.children[0]->children[1]->text, "DVD, v.2, copy 2");
    EXPECT_TRUE(title.children[1]->children.empty()) << "holdings without items";
    window.tvwTitles.setExpanded("B7", false);
    window.tvwTitles.setExpanded("B7", true);
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, SeveralAreChosenInTheirOrderAndEachOnce) {
  expectTwoTitles();
  expectHoldings();
  const auto chosen = search([](frmBibSearch& window) {
    run(window, "bees");
    window.tvwTitles.setExpanded("B7", true);
    window.tvwTitles.doubleClick("I701");
    window.tvwTitles.doubleClick("B8");
    window.tvwTitles.doubleClick("M70");
    EXPECT_EQ(window.lstChosen.ListCount(), 2) << "an item stands for its holdings, which are there already";
    EXPECT_EQ(window.lstChosen.ListIndex, 0);
    window.tvwTitles.click("B7");
    window.cmdAdd.press();
    window.lstChosen.doubleClick(2);
    EXPECT_EQ(window.lstChosen.ListCount(), 2) << "taken off again";
    window.cmdOK.press();
  });
  EXPECT_THAT(chosen, ElementsAre(BibSelection{"7", "70"}, BibSelection{"8", "0"}));
}

TEST_F(BibSearch, WithNothingOnTheListTheSelectedTitleIsMeantAndCancelMeansNothing) {
  expectTwoTitles();
  EXPECT_THAT(search([](frmBibSearch& window) {
                run(window, "bees");
                window.cmdOK.press();
              }),
              ElementsAre(BibSelection{"7", "0"}));
  expectTwoTitles();
  EXPECT_THAT(search([](frmBibSearch& window) {
                run(window, "bees");
                window.tvwTitles.doubleClick("B8");
                window.cmdCancel.press();
              }),
              testing::IsEmpty());
}

TEST_F(BibSearch, KeywordsAreLookedForInHoldingsWhereThatIsAllowed) {
  server.expect("CATFIND", "SRCHTAG=5 SRCHVAL=bees KWHO=Y").replies("head: SRCHCNT=0");
  server.expect("CATFIND", "SRCHTAG=5 SRCHVAL=bees KWHO=N").replies("head: SRCHCNT=0");
  search([](frmBibSearch& window) {
    EXPECT_TRUE(window.chkHoldings.Visible);
    EXPECT_FALSE(window.chkHoldings.Enabled) << "titles have no keywords";
    window.cboSearchBy.select(4);
    run(window, "bees");
    EXPECT_EQ(window.lblCount.Caption, "No titles found.");
    EXPECT_FALSE(window.cmdOK.Enabled);
    window.chkHoldings.toggle();
    window.cmdSearch.press();
    window.cmdCancel.press();
  });
  dialog.Initialise(message, session, false);
  server.expect("CATFIND", "SRCHTAG=5 SRCHVAL=bees").replies("head: SRCHCNT=0");
  search([](frmBibSearch& window) {
    EXPECT_FALSE(window.chkHoldings.Visible);
    window.cboSearchBy.select(4);
    run(window, "bees");
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, TruncationIsAddedToAllButKeywordsAndOnlyOnce) {
  dialog.AutoTruncate = true;
  server.expect("CATFIND", "SRCHTAG=2 SRCHVAL=keep?").replies("head: SRCHCNT=0");
  server.expect("CATFIND", "SRCHTAG=2 SRCHVAL=ann?").replies("head: SRCHCNT=0");
  server.expect("CATFIND", "SRCHTAG=5 SRCHVAL=bees KWHO=Y").replies("head: SRCHCNT=0");
  search([](frmBibSearch& window) {
    window.cboSearchBy.select(1);
    run(window, "keep");
    run(window, "ann?");
    window.cboSearchBy.select(4);
    run(window, "bees");
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, TheLastSearchIsKeptOnDemand) {
  const auto type = [](frmBibSearch& window) {
    window.cboSearchBy.select(2);
    window.txtSearch.type("wind");
    window.cmdCancel.press();
  };
  search(type);
  search([&](frmBibSearch& window) {
    EXPECT_EQ(window.txtSearch.Text, "");
    EXPECT_EQ(window.cboSearchBy.ListIndex, 0);
    type(window);
  });
  dialog.RetainSearch = true;
  search([](frmBibSearch& window) {
    EXPECT_EQ(window.txtSearch.Text, "wind");
    EXPECT_EQ(window.cboSearchBy.ListIndex, 2);
    EXPECT_TRUE(window.cmdSearch.Enabled) << "Enter runs it";
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, AFailedSearchIsReportedAndTheWindowStays) {
  server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=bees").fails(-97);
  search([this](frmBibSearch& window) {
    desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
    run(window, "bees");
    EXPECT_TRUE(window.isShown());
    EXPECT_TRUE(window.Enabled);
    EXPECT_EQ(window.lblCount.Caption, "");
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, TheWalkOfTheCallerGoesOnAfterwards) {
  server.expect("GMTYP").replies("MTID=1 MTY=DVD\nMTID=2 MTY=Map");
  ASSERT_EQ(message.Send("GMTYP"), 0);
  ASSERT_TRUE(message.NextRecord("MTID"));
  expectTwoTitles();
  search([](frmBibSearch& window) {
    run(window, "bees");
    window.cmdCancel.press();
  });
  EXPECT_TRUE(message.NextRecord("MTID"));
  EXPECT_EQ(message.Get("MTY"), "Map");
}

TEST_F(BibSearch, MoreThanCanBeShownIsSaid) {
  Reply reply;
  reply.add("SRCHCNT", "501");
  for (int number = 1; number <= 500; ++number) {
    reply.beginRecord();
    reply.add("BI", std::to_string(number));
    reply.add("TITL", "Bees");
  }
  server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=bees").replies(reply);
  search([](frmBibSearch& window) {
    run(window, "bees");
    EXPECT_EQ(window.lblCount.Caption, "More than 500 titles; here are the first.");
    EXPECT_EQ(window.tvwTitles.Roots().size(), 500U);
    window.cmdCancel.press();
  });
}

TEST_F(BibSearch, ARecordIsShownWithTheNamesOfItsFields) {
  Reply reply;
  const std::vector<std::vector<TagValue>> fields{{{"FLDT", "LDR"}, {"FLDV", "01234ngm"}},
                                                  {{"FLDT", "245"},
                                                   {"FLDI", "10"},
                                                   {"FLDV",
                                                    "\x1f"
                                                    "aBees :\x1f"
                                                    "ba guide"}},
                                                  {{"FLDT", "852"},
                                                   {"FLDI", "0 "},
                                                   {"FLDV",
                                                    "\x1f"
                                                    "bMain"}}};
  for (const auto& field : fields) {
    reply.beginRecord();
    for (const TagValue& pair : field) reply.add(pair.tag, pair.value);
  }
  server.expect("CATREC", "MI=70").replies(reply);
  desktop.expectModalWindow<frmMarcRecord>("frmMarcRecord", [](frmMarcRecord& window) {
    Grid& grid = window.faFields;
    ASSERT_EQ(grid.Rows, 4);
    EXPECT_EQ(grid.TextMatrix(1, 0), "Leader");
    EXPECT_EQ(grid.TextMatrix(2, 0), "Title");
    EXPECT_EQ(grid.TextMatrix(2, 3), "Bees : a guide");
    EXPECT_EQ(grid.TextMatrix(3, 0), "Location and call number");
    EXPECT_EQ(grid.ColWidth(1), 0) << "tags are for cataloguers";
    window.chkDetails.toggle();
    EXPECT_GT(grid.ColWidth(1), 0);
    EXPECT_EQ(grid.TextMatrix(2, 4), "$a Bees : $b a guide");
    EXPECT_EQ(grid.ColWidth(3), 0);
    window.cmdClose.press();
  });
  showMarcRecord(windows, message, global, MarcKind::Holdings, "70");
}

TEST_F(BibSearch, ARecordThatIsNotThereIsSaidSo) {
  server.expect("CATREC", "BI=7").fails(2);
  desktop.expectInformation("The catalogue holds no such record.");
  showMarcRecord(windows, message, global, MarcKind::Bib, "7");
  server.expect("CATREC", "BI=7").fails(-97);
  desktop.expectModal("frmError", [](Form& form) { form.Unload(); });
  showMarcRecord(windows, message, global, MarcKind::Bib, "7");
}

TEST(MarcFieldNames, GoByTheTagElseByItsGroup) {
  EXPECT_EQ(marcFieldName(MarcKind::Bib, "650"), "Subject");
  EXPECT_EQ(marcFieldName(MarcKind::Bib, "699"), "Subject");
  EXPECT_EQ(marcFieldName(MarcKind::Bib, "866"), "Holdings");
  EXPECT_EQ(marcFieldName(MarcKind::Holdings, "876"), "Item");
  EXPECT_EQ(marcFieldName(MarcKind::Holdings, "245"), "Title");
  EXPECT_EQ(marcFieldName(MarcKind::Bib, "XYZ"), "Field");
  EXPECT_EQ(marcFieldText("plain"), "plain");
  EXPECT_EQ(marcFieldText("\x1f"), "");
  EXPECT_EQ(marcFieldSource("\x1f"
                            "a"),
            "$a ");
}

}  // namespace
}  // namespace vantry::test
