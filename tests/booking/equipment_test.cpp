#include "booking/modBooking_equipment.h"

#include "booking/frmAddEquipType.h"
#include "booking/frmOverride.h"
#include "booking/frmPickEquip.h"
#include "booking/modBooking_media.h"
#include "booking/things_fixture.h"
#include "schedule/makers_table.h"

namespace vantry::test {
namespace {

constexpr const char* kPlace = "PGID=2 RID=40";

struct Equipment : ThingsTest {
  EquipmentPanel& panel = window.equipment;

  void expectUsage(const std::string& thing) {
    server.expect("VEQUSG", withTimes("BOOKID=7 " + thing + " " + kPlace)).replies("head: ETY=Projector");
  }
  void expectRefusal(const std::string& thing) {
    server.expect("VEQUSG", withTimes("BOOKID=7 " + thing + " " + kPlace))
        .fails(149, "head: ETY=Projector | VUF=163");
    desktop.expectCritical("No equipment of the selected type available in requester's policy");
  }
  void expectStatus(const char* id, int rc = 0, const char* reply = "") {
    server.expect("VES", std::string("EID=") + id).fails(rc, reply);
  }
  void expectNote(const char* id, const char* note = "") {
    server.expect("GETPMSG", std::string("PWHI=1 PTYP=1 PWID=") + id)
        .replies(std::string("PMSG=\"") + note + "\"");
  }
  void expectFound(const char* group = "N") {
    server.expect("GETIBYB", "EPT=3 BARORNO=0 BNO=B1")
        .replies(std::string("head: SRCHCNT=1 | EID=11 ENO=P-1 BNO=B1 STY=Clean ETY=Projector EIU=") + group);
  }
  void scan() {
    panel.txtEquipBarcode.type("B1");
    panel.txtEquipBarcode.pressEnter();
  }
  void expectLimitRefused() {
    desktop.expectModalWindow<frmOverride>("frmOverride", [](frmOverride& override) {
      EXPECT_THAT(override.lblMessage.Caption.get(),
                  testing::StartsWith("Media equipment count has exceeded requester's authorized limit of "));
      override.cmdCancel.press();
    });
  }
  void reachLimit() { window.record.EquipmentLimit = window.record.EquipmentCount; }
  bool hold(const EquipmentPiece& piece) { return AddPieceNode(window.parts, piece, kPieceAddedTwice); }
  std::string specific() { return below(panel.tvwOtherEquipment, roots::Specific); }
  std::string inRoom() { return below(panel.tvwOtherEquipment, roots::InRoom); }
  std::string required() { return below(panel.tvwEquipment, roots::MediaTypes); }
  std::string types() { return below(panel.tvwEquipment, roots::Types); }
};

constexpr const char* kSpecific = "ThirdRoot Specific Equipment and Equipment Groups\n";
constexpr const char* kTypes = "FourthRoot Equipment and Equipment Group Types\n";

// By barcode and number.

TEST_F(Equipment, AScannedPieceIsCheckedAndAddedWithItsNote) {
  expectFound();
  expectUsage("EID=11");
  expectStatus("11");
  expectNote("11", "Bring the remote.");
  scan();
  EXPECT_EQ(specific(), std::string(kSpecific) + " 11 B1 [Projector] [No] [Clean]\n");
  EXPECT_TRUE(panel.tvwOtherEquipment.find(roots::Specific)->expanded);
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_EQ(window.changes, 1);
  EXPECT_EQ(panel.txtEquipBarcode.Text, "");
  EXPECT_TRUE(app.booking.warnings.IsWarningMarked("11E"));
  EXPECT_EQ(circulation.notes,
            std::vector<std::string>{"Schedule Popup Note:  Projector - Bring the remote."});
}

TEST_F(Equipment, AGroupIsFoundByNumberAndSentWithoutItsSign) {
  app.preferences.Barcodes = false;
  server.expect("GETIBYB", "EPT=3 BARORNO=1 ENO=G-1")
      .replies("head: SRCHCNT=1 | EID=-12 ENO=G-1 BNO=B9 STY=Clean ETY=TV_VCRs EIU=Y");
  expectUsage("EID=12");
  expectStatus("12");
  expectNote("12", "  ");
  panel.txtEquipBarcode.type("G-1");
  panel.cmdAddEquipViaNumber.press();
  EXPECT_EQ(specific(), std::string(kSpecific) + " -12 G-1 [TV_VCRs] [Yes] [Clean]\n");
  EXPECT_TRUE(circulation.notes.empty()) << "the note is blank";
  server.expect("SUG", "RID=40 EID=12").replies("UTIME=15 CTIME=5");
  panel.cmdSuggestTimes.press();
  EXPECT_EQ(panel.txtSetupTime.number(), 15);
  EXPECT_EQ(window.record.SetupMinutes, 15);
  EXPECT_EQ(window.record.CleanupMinutes, 5);
  EXPECT_EQ(panel.txtCleanupTime.number(), 5);
}

TEST_F(Equipment, TheSamePieceAgainIsToldAndChangesNothing) {
  ASSERT_TRUE(hold({"11", "B1", "Projector", "N", "Clean"}));
  expectFound();
  expectUsage("EID=11");
  expectStatus("11");
  desktop.expectInformation("Equipment/Equipment group already in booking.");
  scan();
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_EQ(window.changes, 0);
}

TEST_F(Equipment, ARefusalAddsNothing) {
  struct Case {
    const char* rule;
    std::function<void()> expect;
  };
  const Case cases[] = {
      {"not found",
       [&] {
         server.expect("GETIBYB", "EPT=3 BARORNO=0 BNO=B1").replies("head: SRCHCNT=0");
         desktop.expectWarning("Barcode Not Found!");
       }},
      {"usage",
       [&] {
         expectFound();
         expectRefusal("EID=11");
       }},
      {"not in a storage room",
       [&] {
         expectFound();
         server.expect("VEQUSG", withTimes("BOOKID=7 EID=11 PGID=2 RID=40")).fails(179);
         desktop.expectCritical("Equipment not in a storage room.  Cannot be booked.");
       }},
      {"status",
       [&] {
         expectFound();
         expectUsage("EID=11");
         expectStatus("11", 151, "VD1=1 VD2=Damaged.");
         desktop.expectQuestion("Damaged.  Book anyway?", false);
       }},
      {"limit",
       [&] {
         expectFound();
         expectUsage("EID=11");
         expectStatus("11");
         reachLimit();
         expectLimitRefused();
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.rule);
    c.expect();
    scan();
    EXPECT_EQ(specific(), kSpecific);
    EXPECT_EQ(panel.txtEquipBarcode.Text, "B1") << "it may be corrected";
    EXPECT_EQ(window.changes, 0);
    EXPECT_EQ(desktop.pointer, Pointer::Default);
    server.checkAllCame();
    desktop.checkAllCame();
  }
}

TEST_F(Equipment, ANoteThatCannotBeReadIsToldAndThePieceStays) {
  expectFound();
  expectUsage("EID=11");
  expectStatus("11");
  server.expect("GETPMSG", "PWHI=1 PTYP=1 PWID=11").fails(-97);
  desktop.expectWarning("An error occurred while retreiving the booking note for the selected equipment.");
  scan();
  EXPECT_EQ(window.record.EquipmentCount, 1);
}

TEST_F(Equipment, WithoutATextNothingIsAsked) {
  panel.txtEquipBarcode.type("  ");
  panel.txtEquipBarcode.pressEnter();
  panel.cmdAddEquipViaNumber.press();
  EXPECT_TRUE(server.requests().empty());
}

// Picked from the lists.

struct Pick : Equipment {
  void expectTypes() {
    server.expect("GETEAVC").replies("ETI=31 ETY=Projector MIC=2 | ETI=32 ETY=Screen MIC=1");
    server.expect("GETGCAT").replies("ETI=35 ETY=TV_VCRs MIC=1");
  }
  void expectPieces() {
    server.expect("GETGITM", "ETI=31")
        .replies(
            "EID=11 BNO=B1 ENO=P-1 LNA=Main RNM=Store STY=Clean MNC=\"Old lamp\" |"
            "EID=13 BNO=B3 ENO=P-3 LNA=Main RNM=Store STY=Clean");
  }
  /// Without `EIU`, as the list comes to this window.
  void expectGroups() {
    server.expect("GETGITM", "ETI=35").replies("EID=12 BNO=B2 ENO=G-1 LNA=Main RNM=Store STY=Clean");
  }
  void play(std::function<void(frmPickEquip&)> steps) {
    desktop.expectModalWindow<frmPickEquip>("frmPickEquip", std::move(steps));
  }
  static void pick(frmPickEquip& window, const char* key, int row) {
    window.tvwEquip.click(key);
    window.fa.click(row, 1);
    window.cmdAdd.press();
  }
};

TEST_F(Pick, WhatIsPickedIsCheckedAtOnceAndAddedAtTheEnd) {
  expectTypes();
  expectPieces();
  expectUsage("EID=13");
  expectStatus("13");
  expectGroups();
  expectUsage("EID=12");
  expectStatus("12");
  expectNote("13");
  expectNote("12", "Two people.");
  play([&](frmPickEquip& dialog) {
    EXPECT_EQ(dialog.Caption, "Select Equipment For Booking");
    EXPECT_EQ(inWords(*dialog.tvwEquip.Roots()[0]),
              "Equipment|0|EquipTree Equipment\n Equipment|31|EquipTree Projector (2)\n"
              " Equipment|32|EquipTree Screen (1)\n");
    EXPECT_EQ(inWords(*dialog.tvwEquip.Roots()[1]),
              "Groups|0|EquipTree Groups\n Groups|35|EquipTree TV_VCRs (1)\n");
    EXPECT_EQ(dialog.fa.FormatString, "<ID|<Barcode|<Location|<Room|<Status|<Notes");
    EXPECT_EQ(dialog.faPicked.FormatString, "<ID|<Number|<Type|<Status");
    EXPECT_FALSE(dialog.cmdAdd.Enabled);
    dialog.tvwEquip.click("Equipment|0|EquipTree");  // a root lists nothing
    pick(dialog, "Equipment|31|EquipTree", 2);
    EXPECT_EQ(dialog.fa.Rows, 2);
    EXPECT_EQ(dialog.fa.TextMatrix(1, 5), "Old lamp");
    EXPECT_EQ(dialog.faPicked.TextMatrix(1, 1), "B3");
    pick(dialog, "Groups|35|EquipTree", 1);
    EXPECT_TRUE(specific() == kSpecific) << "the booking waits for OK";
    dialog.cmdOK.press();
  });
  panel.cmdSpecific.press();
  EXPECT_EQ(specific(),
            std::string(kSpecific) + " 13 B3 [Projector] [No] [Clean]\n -12 B2 [TV_VCRs] [Yes] [Clean]\n");
  EXPECT_EQ(window.record.EquipmentCount, 2);
  EXPECT_EQ(circulation.notes, std::vector<std::string>{"Schedule Popup Note:  TV_VCRs - Two people."});
}

TEST_F(Pick, APickGoesBackToItsOwnTypeOnly) {
  expectTypes();
  expectPieces();
  expectUsage("EID=11");
  expectStatus("11");
  expectPieces();
  expectGroups();
  play([&](frmPickEquip& dialog) {
    pick(dialog, "Equipment|31|EquipTree", 1);
    dialog.tvwEquip.click("Equipment|31|EquipTree");
    ASSERT_EQ(dialog.fa.Rows, 2) << "what is picked is not offered again";
    EXPECT_EQ(dialog.fa.TextMatrix(1, 1), "B3");
    dialog.faPicked.click(1, 1);
    dialog.cmdRemove.press();
    EXPECT_EQ(dialog.fa.Rows, 3);
    EXPECT_EQ(dialog.fa.TextMatrix(2, 5), "Old lamp");
    dialog.tvwEquip.click("Groups|35|EquipTree");
    EXPECT_EQ(dialog.fa.Rows, 2);
    dialog.cmdOK.press();
  });
  panel.cmdSpecific.press();
  EXPECT_EQ(specific(), kSpecific);
  EXPECT_EQ(window.changes, 0);
}

TEST_F(Pick, ARefusedPickStaysAndACancelledWindowAddsNothing) {
  expectTypes();
  expectPieces();
  play([&](frmPickEquip& dialog) {
    pick(dialog, "Equipment|31|EquipTree", 1);
    EXPECT_EQ(dialog.fa.Rows, 3);
    EXPECT_FALSE(dialog.faPicked.hasData());
    dialog.fa.click(2, 1);
    dialog.cmdAdd.press();
    dialog.cmdCancel.press();
  });
  expectRefusal("EID=11");
  expectUsage("EID=13");
  expectStatus("13");
  panel.cmdSpecific.press();
  EXPECT_EQ(specific(), kSpecific);
}

TEST_F(Pick, TheLimitIsAskedOnceForAllPicks) {
  expectTypes();
  expectPieces();
  expectUsage("EID=11");
  expectStatus("11");
  play([&](frmPickEquip& dialog) {
    pick(dialog, "Equipment|31|EquipTree", 1);
    dialog.cmdOK.press();
  });
  reachLimit();
  expectLimitRefused();
  panel.cmdSpecific.press();
  EXPECT_EQ(specific(), kSpecific);
}

TEST_F(Pick, TheMenuActsOnTheGridUnderTheMouse) {
  expectTypes();
  expectPieces();
  expectUsage("EID=13");
  expectStatus("13");
  play([&](frmPickEquip& dialog) {
    dialog.tvwEquip.click("Equipment|31|EquipTree");
    dialog.fa.rightClick(1, 1);
    EXPECT_EQ(dialog.fa.TextMatrix(1, 1), "B3");
    EXPECT_FALSE(dialog.mnuPopupToolsRemove.Enabled);
    dialog.fa.rightClick(2, 1);
    EXPECT_EQ(dialog.fa.Row, 1);
    dialog.fa.rightClick(1, 1);
    EXPECT_EQ(dialog.faPicked.TextMatrix(1, 1), "B3");
    dialog.faPicked.rightClick(1, 1);
    EXPECT_FALSE(dialog.mnuPopupToolsAdd.Enabled);
    EXPECT_FALSE(dialog.faPicked.hasData());
    dialog.cmdOK.press();
  });
  desktop.expectPopup("mnuPopupTools", "mnuPopupToolsSortDescending");
  desktop.expectPopup("mnuPopupTools", "mnuPopupToolsFind");
  desktop.expectInput("Find:", "b3");
  desktop.expectPopup("mnuPopupTools", "mnuPopupToolsAdd");
  desktop.expectPopup("mnuPopupTools", "mnuPopupToolsRemove");
  panel.cmdSpecific.press();
}

// Types.

TEST_F(Pick, ATypeIsCheckedBeforeItsWindowCloses) {
  expectTypes();
  const auto chooseGroups = [](frmAddEquipType& dialog) {
    EXPECT_FALSE(dialog.cmdOK.Enabled);
    dialog.tvwTypes.click("Groups|35|RoomTree");
    dialog.cmdOK.press();
  };
  desktop.expectModalWindow<frmAddEquipType>("frmAddEquipType", [&](frmAddEquipType& dialog) {
    dialog.tvwTypes.click("Equipment|0|RoomTree");
    EXPECT_FALSE(dialog.cmdOK.Enabled);
    dialog.tvwTypes.click("Equipment|31|RoomTree");
    dialog.cmdOK.press();
    EXPECT_TRUE(dialog.isShown());
    EXPECT_EQ(dialog.Tag, "");
    dialog.tvwTypes.click("Groups|35|RoomTree");
    dialog.cmdOK.press();
    EXPECT_EQ(dialog.Tag, "35|TV_VCRs");
  });
  expectRefusal("ETI=31");
  expectUsage("ETI=35");
  panel.cmdAddType.press();
  EXPECT_EQ(types(), std::string(kTypes) + " 35 TV_VCRs\n");
  EXPECT_FALSE(app.booking.warnings.IsWarningMarked("35E")) << "which would be a piece's";
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_EQ(window.changes, 1);

  expectTypes();
  expectUsage("ETI=35");
  desktop.expectModalWindow<frmAddEquipType>("frmAddEquipType", chooseGroups);
  desktop.expectInformation("Equipment/Equipment Group type TV_VCRs already in booking.");
  panel.cmdAddType.press();
  expectTypes();
  expectUsage("ETI=35");
  desktop.expectModalWindow<frmAddEquipType>("frmAddEquipType", chooseGroups);
  reachLimit();
  expectLimitRefused();
  panel.cmdAddType.press();
  expectTypes();
  desktop.expectModalWindow<frmAddEquipType>("frmAddEquipType",
                                             [](auto& dialog) { dialog.cmdCancel.press(); });
  panel.cmdAddType.press();
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_EQ(window.changes, 1);
}

// What media types require.

struct Required : Equipment {
  void require(const char* media, const char* reply) {
    server.expect("ITMEQS", std::string("MTID=") + media + " PGID=2 ADBK=N").replies(reply);
    AddMediaEquipmentTypes(window.parts, media);
  }
  Required() {
    require("5", "head: MTY=DVD | ETI=31 ETY=Player | ETI=32 ETY=Screen");
    require("6", "head: MTY=Film | ETI=32 ETY=Screen");
  }
  std::string tree(const char* dvd, const char* player, const char* screen, const char* film) {
    const auto line = [](const char* text, const char* image) {
      return std::string(text) + " (" + image + ")\n";
    };
    return "SecondRoot Media Item Types for Booking\n" + line(" 5M DVD", dvd) +
           line("  M5|E31 Player", player) + line("  M5|E32 Screen", screen) + line(" 6M Film", film) +
           line("  M6|E32 Screen", screen);
  }
};

TEST_F(Required, ATypeIsTickedUnderAllMediaTypesAfterItsCheck) {
  EXPECT_EQ(required(), tree("5", "5", "5", "5"));
  expectUsage("ETI=32");
  panel.tvwEquipment.check("M6|E32");
  EXPECT_EQ(required(), tree("1", "5", "1", "1"));
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_TRUE(app.booking.warnings.IsWarningMarked("32E"));
  expectUsage("ETI=31");
  panel.tvwEquipment.check("M5|E31");
  EXPECT_EQ(window.record.EquipmentCount, 2);

  // Off again asks nothing and leaves the node in the tree, but out of requests.
  panel.tvwEquipment.check("M5|E32");
  EXPECT_EQ(required(), tree("1", "1", "5", "5"));
  EXPECT_EQ(window.record.EquipmentCount, 1);
  EXPECT_EQ(window.changes, 3);
  server.expect("SUG", "RID=40 ETI=31 IFL=Y").replies("UTIME=0 CTIME=0");
  panel.cmdSuggestTimes.press();
}

TEST_F(Required, WhatIsRefusedStaysUnticked) {
  expectRefusal("ETI=31");
  panel.tvwEquipment.check("M5|E31");
  reachLimit();
  expectLimitRefused();
  panel.tvwEquipment.check("M5|E31");
  EXPECT_EQ(required(), tree("5", "5", "5", "5"));
  panel.tvwEquipment.check("5M");  // a media type cannot be ticked itself
  panel.disableEditing();
  panel.tvwEquipment.check("M5|E31");
  EXPECT_EQ(window.changes, 0);
}

TEST_F(Required, LoadingMarksWithoutARequest) {
  MarkRequiredEquipment(window.parts, requiredTypeKey("5", "32"));
  MarkRequiredEquipment(window.parts, requiredTypeKey("9", "32"));
  EXPECT_EQ(required(), tree("1", "5", "1", "1"));
  EXPECT_EQ(window.record.EquipmentCount, 1);
  require("5", "head: MTY=DVD | ETI=31 ETY=Player | ETI=33 ETY=Lamp");  // it stands already
  require("7", "head: MTY=Map");
  EXPECT_EQ(required(), tree("1", "5", "1", "1")) << "a map needs nothing";
}

// What stands in the room, and removal.

TEST_F(Equipment, AChangeOfRoomListsItsEquipmentAnew) {
  ASSERT_TRUE(hold({"11", "B1", "Projector", "N", "Clean"}));
  server.expect("GETREQP", "RID=40 BRTY=1")
      .replies(
          "EID=21 EIU=N BNO=B7 ENO=S-1 ETY=Screen ESDS=Clean | EID=22 EIU=Y BNO=B8 ETY=TV_VCRs ESDS=Damaged |"
          "EID=11 EIU=N BNO=B1 ETY=Projector");
  BuildEquipmentTab(window.parts);
  EXPECT_EQ(inRoom(),
            "FirstRoot In-Room Equipment\n 21 B7 [Screen] [No] [Clean]\n -22 B8 [TV_VCRs] [Yes] [Damaged]\n");
  EXPECT_TRUE(panel.tvwOtherEquipment.find(roots::InRoom)->expanded);
  EXPECT_EQ(window.record.EquipmentCount, 1) << "what is there need not be booked";
  EXPECT_TRUE(CheckEmptyBooking(window.parts));

  server.expect("GETREQP", "RID=40 BRTY=1").fails(108);
  desktop.expectWarning("Barcode is not active!");
  BuildEquipmentTab(window.parts);
  window.record.RoomId = 0;
  BuildEquipmentTab(window.parts);
  EXPECT_EQ(inRoom(), "FirstRoot In-Room Equipment\n");
}

TEST_F(Equipment, APieceThatTheRoomTookAwayCannotBeViewedAnyLonger) {
  grant({Right::EQV});
  server.expect("GETREQP", "RID=40 BRTY=1").replies("EID=21 EIU=N BNO=B7 ETY=Screen");
  BuildEquipmentTab(window.parts);
  panel.tvwOtherEquipment.click("21");
  ASSERT_TRUE(panel.cmdViewEquipment.Enabled);
  window.record.RoomId = 0;
  BuildEquipmentTab(window.parts);
  EXPECT_FALSE(panel.cmdViewEquipment.Enabled);
}

TEST_F(Equipment, OnlyWhatWasAddedCanBeRemoved) {
  Tree& pieces = panel.tvwOtherEquipment;
  server.expect("GETREQP", "RID=40 BRTY=1").replies("EID=21 EIU=N BNO=B7 ETY=Screen");
  BuildEquipmentTab(window.parts);
  ASSERT_TRUE(hold({"12", "B2", "TV_VCRs", "Y", ""}));
  ASSERT_TRUE(AddTypeNode(window.parts, "33", "Lamp"));
  EXPECT_EQ(window.record.EquipmentCount, 2);
  struct Case {
    const char* key;
    bool remove, view;
  };
  for (const Case& c : {Case{"FirstRoot", false, false}, Case{"21", false, true}, Case{"-12", true, true}}) {
    SCOPED_TRACE(c.key);
    grant({Right::EQV});
    pieces.click(c.key);
    EXPECT_EQ(panel.cmdRemoveEquipment.Enabled, c.remove);
    EXPECT_EQ(panel.cmdViewEquipment.Enabled, c.view);
    grant({});
    pieces.click(c.key);
    EXPECT_FALSE(panel.cmdViewEquipment.Enabled);
  }
  panel.cmdRemoveEquipment.press();
  EXPECT_EQ(specific(), kSpecific);
  EXPECT_FALSE(panel.cmdRemoveEquipment.Enabled);
  panel.tvwEquipment.click("FourthRoot");
  EXPECT_FALSE(panel.cmdRemoveEquipmentType.Enabled);
  panel.tvwEquipment.click("33");
  panel.cmdRemoveEquipmentType.press();
  EXPECT_EQ(types(), kTypes);
  EXPECT_EQ(window.record.EquipmentCount, 0);
  EXPECT_FALSE(CheckEmptyBooking(window.parts));
  EXPECT_EQ(window.changes, 2);
}

TEST_F(Equipment, AGroupIsViewedInTheWindowOfGroups) {
  fillMakers(app.makers);
  grant({Right::EQV});
  ASSERT_TRUE(hold({"11", "B1", "Projector", "N", ""}));
  ASSERT_TRUE(hold({"12", "B2", "TV_VCRs", "Y", ""}));
  struct Case {
    const char* key;
    const char* id;
    const char* read;
    const char* window;
  };
  for (const Case& c :
       {Case{"11", "11", "GETEDTL", "frmEquipment"}, Case{"-12", "12", "GETGDTL", "frmGroup"}}) {
    const std::string id = std::string("EID=") + c.id;
    server.expect("GETEGTN", id).replies("ETY=x ETI=1");
    server.expect(c.read, id);
    server.expect("ADDREQP", id + " RID=0");
    panel.tvwOtherEquipment.click(c.key);
    panel.cmdViewEquipment.press();
    EXPECT_EQ(app.windows[app.windows.Count() - 1].Name(), c.window);
  }
}

}  // namespace
}  // namespace vantry::test
