#include "booking/modBooking_media.h"

#include "booking/frmMultBibs.h"
#include "booking/frmMultItems.h"
#include "booking/frmOverride.h"
#include "booking/frmSelectMediaType.h"
#include "booking/things_fixture.h"
#include "messaging/frmBibSearch.h"

namespace vantry::test {
namespace {

constexpr const char* kUsage = "BOOKID=7 MTID=5 PGID=2 RID=40 MI=20 IM=30";
constexpr const char* kBees = "BI=10 MI=20 IM=30 TITL=\"Bees\" MTID=5 MTY=DVD";

struct Media : ThingsTest {
  MediaPanel& panel = window.media;

  void expectBarcode(const char* reply) { server.expect("GBBIB", "IB=M1").replies(reply); }
  void expectDetails() { server.expect("GID", "MI=20 IM=30").replies("LO=Main EN=v.1 CH=1999 YR=2001 CP=3"); }
  void expectUsage(const char* tags = kUsage) { server.expect("VITMUSG", withTimes(tags)); }
  void expectHoldings() {
    server.expect("GMD", "MI=20 BI=10").replies("MI=19 CN=QA 1 LO=East | MI=20 CN=QL 560 LO=West");
  }
  void expectNoEquipment() { server.expect("ITMEQS", "MTID=5 PGID=2 ADBK=N").replies("head: MTY=DVD"); }
  /// What a look-up of the item of "Bees" asks, up to the row.
  void expectBees() {
    expectBarcode(kBees);
    expectDetails();
    expectUsage();
    expectHoldings();
  }
  void add(const char* text = "M1") {
    panel.txtItemBarcode.type(text);
    panel.txtItemBarcode.pressEnter();
  }
  void addBees() {
    expectBees();
    expectNoEquipment();
    add();
  }
  std::string inTree() { return below(window.equipment.tvwEquipment, roots::MediaTypes); }
};

constexpr const char* kBeesRow = "10|20|30|5|Bees|DVD|Main|3|QL 560|v.1|1999|2001";

TEST_F(Media, AScannedItemIsCheckedAtTheTimesAndAdded) {
  EXPECT_FALSE(panel.cmdRemoveMedia.Enabled);
  EXPECT_FALSE(panel.cmdMARC.Enabled);
  expectBees();
  server.expect("ITMEQS", "MTID=5 PGID=2 ADBK=N")
      .replies("head: MTY=DVD | ETI=31 ETY=Player | ETI=32 ETY=Screen");
  add(" M1 ");
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{kBeesRow});
  EXPECT_EQ(window.record.ItemCount, 1);
  EXPECT_EQ(panel.txtItemBarcode.Text, "");
  EXPECT_TRUE(panel.cmdRemoveMedia.Enabled);
  EXPECT_TRUE(panel.cmdMARC.Enabled);
  EXPECT_TRUE(app.booking.warnings.IsWarningMarked("30I")) << "its warning is not shown again";
  EXPECT_EQ(window.changes, 1);
  EXPECT_EQ(inTree(),
            "SecondRoot Media Item Types for Booking\n"
            " 5M DVD (5)\n"
            "  M5|E31 Player (5)\n"
            "  M5|E32 Screen (5)\n");
  EXPECT_EQ(desktop.pointer, Pointer::Default);
}

TEST_F(Media, WithoutATextNothingIsAsked) {
  add("  ");
  panel.cmdAddMediaViaNumber.press();
  EXPECT_TRUE(server.requests().empty());
}

TEST_F(Media, TheSameItemAgainAddsNothingAndSaysNothing) {
  addBees();
  expectBees();
  add();
  EXPECT_EQ(window.mediaRows().size(), 1u);
  EXPECT_EQ(window.changes, 1);
  EXPECT_TRUE(IsMediaInBooking("10", "20", "30", "5", window.parts));
  EXPECT_FALSE(IsMediaInBooking("10", "20", "0", "5", window.parts)) << "a wish for any item is another row";
  EXPECT_FALSE(IsMediaInBooking("10", "20", "30", "6", window.parts));
}

TEST_F(Media, AFailedLookUpOfABarcodeAddsNothing) {
  server.expect("GBBIB", "IB=M1").fails(2);
  desktop.expectInformation("No items match entered barcode.");
  add();
  server.expect("GBBIB", "IB=M1").fails(108);
  desktop.expectWarning("Barcode is not active!");
  add();
  EXPECT_EQ(panel.txtItemBarcode.Text, "M1") << "it may be corrected";
  EXPECT_EQ(window.changes, 0);
}

TEST_F(Media, DetailsThatCannotBeReadStayEmpty) {
  expectBarcode(kBees);
  server.expect("GID", "MI=20 IM=30").fails(-97);
  desktop.expectWarning("Unable to retrieve item details.");
  expectUsage();
  server.expect("GMD", "MI=20 BI=10").fails(-97);
  desktop.expectWarning("Unable to retreive MFHD details.");
  server.expect("ITMEQS", "MTID=5 PGID=2 ADBK=N").fails(-97);
  desktop.expectWarning("Equipment types for media could not be determined.");
  add();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|20|30|5|Bees|DVD||||||"});
}

TEST_F(Media, TheHoldingsGiveTheLocationOfAnItemWithoutOne) {
  expectBarcode(kBees);
  server.expect("GID", "MI=20 IM=30").replies("CP=3");
  expectUsage();
  expectHoldings();
  expectNoEquipment();
  add();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|20|30|5|Bees|DVD|West|3|QL 560|||"});
}

TEST_F(Media, ARefusalOfPolicyOrOfTheLimitAddsNothing) {
  expectBarcode(kBees);
  expectDetails();
  server.expect("VITMUSG", withTimes(kUsage)).fails(150, "head: MTY=DVD | VUF=162");
  desktop.expectCritical("No media items available in requester's policy");
  add();
  EXPECT_FALSE(app.booking.warnings.IsWarningMarked("30I"));

  window.record.ItemLimit = window.record.ItemCount = 2;
  expectBees();
  desktop.expectModalWindow<frmOverride>("frmOverride", [](frmOverride& override) {
    EXPECT_EQ(override.lblMessage.Caption,
              "Media item count has exceeded requester's authorized limit of 2.");
    override.cmdCancel.press();
  });
  add();
  EXPECT_TRUE(window.mediaRows().empty());
  EXPECT_EQ(window.record.ItemCount, 2);
}

// Several titles, and things without a media type.

TEST_F(Media, ABarcodeOfSeveralTitlesAsks) {
  const char* both = "BI=9 MI=20 IM=30 TITL=Ants MTID=5 MTY=DVD | BI=10 MI=20 IM=30 TITL=Bees MTID=5 MTY=DVD";
  expectBarcode(both);
  desktop.expectModalWindow<frmMultBibs>("frmMultBibs", [](frmMultBibs& titles) {
    EXPECT_EQ(titles.Caption, "Select the Bibliographic Record for the desired item");
    ASSERT_EQ(titles.lstBibs.ListCount(), 2);
    EXPECT_EQ(titles.lstBibs.ItemData(1), "10");
    titles.cmdCancel.press();
    EXPECT_EQ(titles.Tag, "");
  });
  add();
  EXPECT_TRUE(window.mediaRows().empty());

  expectBarcode(both);
  desktop.expectModalWindow<frmMultBibs>("frmMultBibs", [](frmMultBibs& titles) {
    titles.lstBibs.select(1);
    titles.cmdOK.press();
  });
  expectDetails();
  expectUsage();
  expectHoldings();
  expectNoEquipment();
  add();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{kBeesRow});
}

TEST_F(Media, TheOperatorNamesTheTypeOfAThingWithoutOne) {
  struct Case {
    const char* rule;
    int rc;
    const char* types;
    std::function<void(frmSelectMediaType&)> choose;
    const char* box;
    const char* id;
  };
  const Case cases[] = {
      {"the only type is taken", 0, "MTID=5 MTY=DVD", {}, "", "5"},
      {"one of several", 0, "MTID=4 MTY=Map | MTID=5 MTY=DVD",
       [](auto& types) { types.lstMediaTypes.doubleClick(1); }, "", "5"},
      {"none of several", 0, "MTID=4 MTY=Map | MTID=5 MTY=DVD", [](auto& types) { types.cmdCancel.press(); },
       "", "0"},
      {"OK without a selection", 0, "MTID=4 MTY=Map | MTID=5 MTY=DVD",
       [](auto& types) { types.cmdOK.press(); }, "", "0"},
      {"there are none", 0, "", {}, "No media types defined.  Cannot book!", "0"},
      {"they cannot be read", -97, "", {}, "Could not retrieve available media item types.", "0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.rule);
    server.expect("GMTYP").fails(c.rc, c.types);
    if (c.choose) desktop.expectModalWindow<frmSelectMediaType>("frmSelectMediaType", c.choose);
    if (*c.box) desktop.expectWarning(c.box);
    EXPECT_EQ(PickMediaType(app).id, c.id);
  }
}

TEST_F(Media, AThingWithoutATypePassesUncheckedFromABarcodeOfOneTitle) {
  expectBarcode("BI=10 MI=20 IM=30 TITL=Bees MTID=0");
  expectDetails();
  server.expect("GMTYP");
  desktop.expectWarning("No media types defined.  Cannot book!");
  expectHoldings();
  server.expect("ITMEQS", "MTID=0 PGID=2 ADBK=N");
  add();
  EXPECT_EQ(window.mediaRows(),
            std::vector<std::string>{"10|20|30|0|Bees|No Media Type|Main|3|QL 560|v.1|1999|2001"});
}

TEST_F(Media, FromSeveralTitlesAThingWithoutATypeIsRefused) {
  expectBarcode("BI=9 MI=20 IM=30 TITL=Ants | BI=10 MI=20 IM=30 TITL=Bees");
  desktop.expectModalWindow<frmMultBibs>("frmMultBibs", [](frmMultBibs& titles) { titles.cmdOK.press(); });
  expectDetails();
  server.expect("GMTYP").fails(-97);
  desktop.expectWarning("Could not retrieve available media item types.");
  desktop.expectWarning("No media type assigned to item \"Ants\".  \r\nItem not eligible for booking.");
  add();
  EXPECT_TRUE(window.mediaRows().empty());
}

TEST_F(Media, TheItemsDetailsMayNameItsType) {
  expectBarcode("BI=10 MI=20 IM=30 TITL=Bees MTID=0");
  server.expect("GID", "MI=20 IM=30").replies("LO=Main CP=3 MTID=5 MTY=DVD");
  expectUsage();
  expectHoldings();
  expectNoEquipment();
  add();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|20|30|5|Bees|DVD|Main|3|QL 560|||"});
}

// By item id.

TEST_F(Media, AnItemIdGoesByItsHoldings) {
  server.expect("GMIID", "IM=30").replies("MI=20 MTID=5 MTY=DVD");
  server.expect("GBBMID", "MI=20").replies("BI=10 TITL=Bees");
  expectDetails();
  expectUsage();
  expectHoldings();
  expectNoEquipment();
  panel.txtItemBarcode.type("30");
  panel.cmdAddMediaViaNumber.press();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{kBeesRow});
}

TEST_F(Media, AnItemIdThatLeadsNowhereIsTold) {
  panel.txtItemBarcode.type("x");
  server.expect("GMIID", "IM=x").fails(2);
  desktop.expectWarning("No items in the database correspond to entered Item ID.");
  panel.cmdAddMediaViaNumber.press();
  server.expect("GMIID", "IM=x").replies("MI=20");
  server.expect("GBBMID", "MI=20").fails(2);
  desktop.expectWarning("No bibliographic records found for the item's MFHD.");
  panel.cmdAddMediaViaNumber.press();
  EXPECT_EQ(window.changes, 0);
}

// From the catalogue search.

struct Search : Media {
  /// The operator searches and takes these nodes of what is found; nothing: they cancel.
  void expectSearch(std::vector<std::string> taken) {
    if (!taken.empty())
      server.expect("CATFIND", "SRCHTAG=1 SRCHVAL=b")
          .replies("head: SRCHCNT=2 | BI=10 TITL=Bees | BI=11 TITL=Birds");
    const bool holdings = !taken.empty() && taken.front().starts_with('M');
    if (holdings) server.expect("GBHI", "BI=10 MI=0").replies("BI=10 MI=20 LO=Main CN=QL 560");
    desktop.expectModalWindow<frmBibSearch>("frmBibSearch", [=](frmBibSearch& search) {
      if (taken.empty()) return search.cmdCancel.press();
      search.txtSearch.type("b");
      search.cmdSearch.press();
      if (holdings) search.tvwTitles.setExpanded("B10", true);
      for (const std::string& key : taken) {
        search.tvwTitles.click(key);
        search.cmdAdd.press();
      }
      search.cmdOK.press();
    });
  }
  void expectTree(const char* tags) {
    server.expect("GBHI", tags)
        .replies(
            "BI=10 MI=20 IM=30 TITL=Bees MTID=5 MTY=DVD LO=Main CN=\"QL 560\" EN=v.1 CH=1999 YR=2001 CP=3 |"
            "BI=10 MI=20 IM=31 TITL=Bees MTID=5 MTY=DVD LO=Main CN=\"QL 560\" CP=4 |"
            "BI=11 MI=21 TITL=Birds LO=East CN=\"QL 676\"");
  }
  void choose(std::vector<std::string> keys) {
    desktop.expectModalWindow<frmMultItems>("frmMultItems", [keys](frmMultItems& items) {
      if (keys.empty()) return items.cmdCancel.press();
      for (std::size_t i = 1; i <= keys.size(); ++i)
        items.tvwMediaItems.selectKeys({keys.begin(), keys.begin() + static_cast<std::ptrdiff_t>(i)});
      items.cmdSelect.press();
      EXPECT_EQ(items.Tag, "1");
    });
  }
};

TEST_F(Search, ACancelledSearchOrChoiceAddsNothing) {
  expectSearch({});
  panel.cmdSearchMedia.press();
  expectSearch({"B10"});
  expectTree("BI=10 MI=0");
  choose({});
  panel.cmdSearchMedia.press();
  expectSearch({"B10"});
  server.expect("GBHI", "BI=10 MI=0").fails(-97);
  desktop.expectWarning("An error occurred while retrieving the Bib/holdings/items details!");
  panel.cmdSearchMedia.press();
  EXPECT_EQ(window.changes, 0);
}

TEST_F(Search, OneHoldingsRecordIsAWishForAnyOfItsItems) {
  expectSearch({"M20"});
  server.expect("GBBMID", "MI=20").replies("BI=10 TITL=Bees");
  server.expect("GMTYP").replies("MTID=5 MTY=DVD");
  expectUsage("BOOKID=7 MTID=5 PGID=2 RID=40 MI=20 IM=0");
  expectHoldings();
  expectNoEquipment();
  panel.cmdSearchMedia.press();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|20|0|5|Bees|DVD|West||QL 560|||"});
  EXPECT_EQ(window.changes, 1);
}

TEST_F(Search, TheLevelOfANodeTellsHowWideTheWishIs) {
  expectSearch({"B10", "B11"});
  expectTree("BI=10 MI=0 BI=11 MI=0");
  desktop.expectModalWindow<frmMultItems>("frmMultItems", [](frmMultItems& items) {
    EXPECT_EQ(inWords(*items.tvwMediaItems.Roots()[0]),
              "10|0|0 Bees\n"
              " 10|20|0 Holdings [Main] [QL 560]\n"
              "  10|20|30 Item [] [] [DVD] [v.1] [1999] [3] [Main]\n"
              "  10|20|31 Item [] [] [DVD] [] [] [4] [Main]\n");
    EXPECT_EQ(inWords(*items.tvwMediaItems.Roots()[1]), "11|0|0 Birds\n 11|21|0 Holdings [East] [QL 676]\n");
    EXPECT_FALSE(items.cmdSelect.Enabled) << "there are two titles";
    items.tvwMediaItems.selectKeys({"10|20|30"});
    items.tvwMediaItems.selectKeys({"10|20|0", "10|20|30"});
    items.tvwMediaItems.selectKeys({"10|0|0", "10|20|0", "10|20|30"});
    items.cmdSelect.press();
  });
  // In the order of selecting: the item, its holdings, the title.
  expectUsage();
  expectHoldings();
  expectNoEquipment();
  expectUsage("BOOKID=7 MTID=5 PGID=2 RID=40 MI=20 IM=0");
  expectHoldings();
  expectNoEquipment();
  expectUsage("BOOKID=7 MTID=5 PGID=2 RID=40 MI=0 IM=0");
  expectNoEquipment();
  panel.cmdSearchMedia.press();
  EXPECT_EQ(window.mediaRows(), (std::vector<std::string>{kBeesRow, "10|20|0|5|Bees|DVD|Main||QL 560|||",
                                                          "10|0|0|5|Bees|DVD||||||"}));
  EXPECT_EQ(window.record.ItemCount, 3);
}

TEST_F(Search, TheOneTitleThatWasFoundIsChosenAlready) {
  expectSearch({"B10"});
  server.expect("GBHI", "BI=10 MI=0").replies("BI=10 MI=20 IM=30 TITL=Bees MTID=5 MTY=DVD");
  desktop.expectModalWindow<frmMultItems>("frmMultItems", [](frmMultItems& items) {
    EXPECT_EQ(items.tvwMediaItems.SelectedKey.get(), "10|0|0");
    items.cmdSelect.press();
  });
  expectUsage("BOOKID=7 MTID=5 PGID=2 RID=40 MI=0 IM=0");
  expectNoEquipment();
  panel.cmdSearchMedia.press();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|0|0|5|Bees|DVD||||||"});
}

TEST_F(Search, AFailureStopsOnlyItsOwnThing) {
  expectSearch({"B10", "B11"});
  expectTree("BI=10 MI=0 BI=11 MI=0");
  choose({"10|20|30", "11|21|0", "10|20|31"});
  server.expect("VITMUSG", withTimes(kUsage)).fails(150, "head: MTY=DVD | VUF=162");
  desktop.expectCritical("No media items available in requester's policy");
  server.expect("GMTYP").fails(-97);
  desktop.expectWarning("Could not retrieve available media item types.");
  desktop.expectWarning("No media type assigned to item \"Birds\".  \r\nItem not eligible for booking.");
  expectUsage("BOOKID=7 MTID=5 PGID=2 RID=40 MI=20 IM=31");
  expectHoldings();
  expectNoEquipment();
  panel.cmdSearchMedia.press();
  EXPECT_EQ(window.mediaRows(), std::vector<std::string>{"10|20|31|5|Bees|DVD|Main|4|QL 560|||"});
}

// The list.

TEST_F(Media, ATypeLeavesTheTreeWithItsLastRow) {
  const auto addRow = [&](const char* item, const char* type) {
    MediaThing thing{"10", "20", item, {type, "T"}, "Bees", "", "", "", "", "", ""};
    AddMediaRow(window.parts, thing);
    ++window.record.ItemCount;
  };
  addRow("30", "5");
  addRow("31", "5");
  addRow("32", "6");
  panel.enableCommands();
  Tree& types = window.equipment.tvwEquipment;
  for (const char* type : {"5", "6"}) {
    TestWindow::add(types, roots::MediaTypes, mediaTypeKey(type), kChecked);
    TestWindow::add(types, mediaTypeKey(type), requiredTypeKey(type, type == std::string("5") ? "31" : "32"),
                    kChecked);
  }
  RefreshMediaEquipment(window.parts);
  EXPECT_EQ(window.record.EquipmentCount, 2);
  panel.cmdRemoveMedia.press();
  EXPECT_EQ(window.record.ItemCount, 3) << "no row is selected";

  panel.faMedia.click(1, 4);
  panel.cmdRemoveMedia.press();
  EXPECT_NE(types.find("5M"), nullptr) << "another row has the type";
  panel.faMedia.click(1, 4);
  panel.cmdRemoveMedia.press();
  EXPECT_EQ(types.find("5M"), nullptr);
  EXPECT_EQ(types.find("M5|E31"), nullptr);
  EXPECT_EQ(window.record.EquipmentCount, 1);
  panel.faMedia.click(1, 4);
  panel.cmdRemoveMedia.press();
  EXPECT_EQ(window.record.ItemCount, 0);
  EXPECT_FALSE(panel.cmdRemoveMedia.Enabled);
  EXPECT_FALSE(panel.cmdMARC.Enabled);
  EXPECT_TRUE(server.requests().empty());
  EXPECT_EQ(window.changes, 3);
}

TEST_F(Media, AStoredRowAsksForItsDetails) {
  expectDetails();
  expectHoldings();
  AddStoredMediaRow(window.parts, {"10", "20", "30", {"5", "DVD"}, "Bees", "", "", "", "", "", ""});
  server.expect("GMD", "MI=20 BI=10").replies("MI=20 CN=QL 560 LO=West");
  AddStoredMediaRow(window.parts, {"10", "20", "0", {"0", ""}, "Bees", "", "", "", "", "", ""});
  AddStoredMediaRow(window.parts, {"10", "0", "0", {"5", "DVD"}, "Bees", "", "", "", "", "", ""});
  server.expect("GID", "MI=0 IM=31").replies("LO=Main CP=4 MTID=5 MTY=DVD");
  AddStoredMediaRow(window.parts, {"10", "0", "31", {"0", ""}, "Bees", "", "", "", "", "", ""});
  EXPECT_EQ(window.mediaRows(),
            (std::vector<std::string>{kBeesRow, "10|20|0|0|Bees|No Media Type|West||QL 560|||",
                                      "10|0|0|5|Bees|DVD||||||", "10|0|31|0|Bees|No Media Type|Main|4||||"}))
      << "what was booked without a type keeps none";
}

TEST_F(Media, TheRecordOfTheSelectedRowIsShown) {
  AddMediaRow(window.parts, {"10", "0", "0", {"5", "DVD"}, "Bees", "", "", "", "", "", ""});
  panel.enableCommands();
  panel.faMedia.click(1, 4);
  desktop.expectPopup("mnuPopupMarc", "mnuPopupMarcBib");
  server.expect("CATREC", "BI=10").fails(2);
  desktop.expectInformation("The catalogue holds no such record.");
  panel.cmdMARC.press();
  EXPECT_FALSE(panel.mnuPopupMarcHoldings.Enabled) << "the row has no holdings";
}

TEST_F(Media, ABookingThatCanOnlyBeReadTakesNothing) {
  AddMediaRow(window.parts, {"10", "20", "30", {"5", "DVD"}, "Bees", "", "", "", "", "", ""});
  panel.disableEditing();
  panel.faMedia.click(1, 4);
  for (Button* button : {&panel.cmdAddMediaViaBarcode, &panel.cmdAddMediaViaNumber, &panel.cmdSearchMedia,
                         &panel.cmdRemoveMedia})
    EXPECT_FALSE(button->Enabled) << button->Name();
  EXPECT_TRUE(panel.cmdMARC.Enabled);
  panel.txtItemBarcode.pressEnter();
  EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace vantry::test
