// The main window as a whole: every way into every view, modes, menus, tools.
#include <algorithm>
#include <fstream>
#include <set>

#include "frame/app.h"
#include "frame/modMain.h"
#include "messaging/frmAbout.h"
#include "messaging/frmPassword.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

MenuItem* entryNamed(const MenuItem& menu, std::string_view name) {
  for (MenuItem* item : menu.Items()) {
    if (item->Name() == name) return item;
    if (MenuItem* inner = entryNamed(*item, name)) return inner;
  }
  return nullptr;
}

class MainWindowTest : public Desk {
 public:
  void SetUp() override {
    for (const char* code : {"BOOKDAY", "BOOKMTH", "GETOPS", "GECN", "DELD", "PICKD", "LIBSD", "GLSRM"})
      server.always(code);
    logOn();
  }
  /// Logged on, on the day view, with no request of a view announced.
  void logOn(const std::string& rights = allRightsBut()) {
    build();
    expectLogOn();
    server.expect("RLL", "OI=desk").replies("LNA=\"Main Desk\" LOC=3 OLN=\"City Library\"");
    server.expect("SLL", "LOC=3").replies(rights);
    server.expect("GETLOCS");
    for (const char* code : {"GETECAT", "GETGCAT", "GETRCAT", "GETMYER"}) server.expect(code);
    ASSERT_TRUE(vantry::Main(*app));
  }
  MenuItem& entry(std::string_view name) {
    for (const MenuItem* menu : main().Menus()) {
      if (MenuItem* found = entryNamed(*menu, name)) return *found;
    }
    throw std::logic_error("no entry " + std::string(name));
  }
  int framesShown() {
    int shown = 0;
    for (const ViewRow& view : viewTable()) shown += main().frames.of(view).Visible ? 1 : 0;
    return shown;
  }
  void expectShows(const ViewRow& view, const char* way) {
    SCOPED_TRACE(std::string(view.picture) + ", " + way);
    EXPECT_EQ(framesShown(), 1);
    EXPECT_TRUE(main().frames.of(view).Visible);
    EXPECT_EQ(main().abView.Text(), view.comboText);
    EXPECT_EQ(main().StatusBar1.Panels(2).Text.get().find("..."), std::string::npos);
  }
  std::string rememberedView() {
    EXPECT_TRUE(endsProgram([&] { main().Unload(); }));
    IniFile file(folder);
    file.Open("vantry.ini");
    file.SelectSection("ListBar");
    return file.ReadSection();
  }
};

TEST_F(MainWindowTest, EveryWayLeadsToEveryView) {
  app->preferences.sounds[1] = "click.wav";
  for (const ViewRow& view : viewTable()) {
    const bool monitor = view.mode == Mode::Monitor;
    if (monitor && app->mode != Mode::Monitor) main().menus.mnuModeDaemon.choose();
    (main().menus.*view.menu).choose();
    expectShows(view, "menu");
    ListBar& bar = monitor ? main().albDaemon : main().albStandard;
    const std::string inBar = bar.CurrentItem;
    // Away from it, and back by the other ways.
    const ViewId other = monitor ? (view.id == ViewId::Conflict ? ViewId::Pickup : ViewId::Conflict)
                                 : (view.id == ViewId::Day ? ViewId::Rooms : ViewId::Day);
    main().showView(other);
    bar.click(inBar);
    expectShows(view, "list bar");
    main().showView(other);
    main().abView.select(main().abView.indexOf(view.comboText));
    expectShows(view, "combo");
    main().menus.mnuHelpTopics.choose();
  }
  const std::set<std::string> pages(desktop.helpTopics.begin(), desktop.helpTopics.end());
  EXPECT_EQ(pages.size(), viewTable().size()) << "each view has a page of its own";
  EXPECT_EQ(desktop.sounds, std::vector<std::string>(viewTable().size(), "click.wav")) << "of the list bar";
  app->preferences.sounds[0] = "group.wav";
  main().albDaemon.clickGroup(0);
  EXPECT_EQ(desktop.sounds.back(), "group.wav");
}

TEST_F(MainWindowTest, TheHeadingNamesTheKindOfListAndTheView) {
  for (const auto& [view, heading] : std::initializer_list<std::pair<ViewId, const char*>>{
           {ViewId::Groups, "Inventory - Equipment Groups"},
           {ViewId::Day, " Booking Schedule - Day View"},
           {ViewId::Staff, " Staff"},
           {ViewId::Conflict, " Schedule Monitor - Conflict Resolution && Warning"}}) {
    main().showView(view);
    EXPECT_EQ(main().lblView.Caption, heading);
  }
}

TEST_F(MainWindowTest, TheLastViewIsRememberedByItsNumberAndOneWithoutANumberAsTheDay) {
  for (const ViewRow& view : viewTable()) {
    logOn();
    main().showView(view.id);
    EXPECT_EQ(rememberedView(), "LastView=" + std::to_string(std::max(view.number, 0)));
    if (view.number == kNoNumber) continue;
    settings.prefer("View", std::to_string(view.number));
    logOn();
    expectShows(view, "first view");
  }
}

TEST_F(MainWindowTest, TheFirstViewOfEachModeFollowsThePreferences) {
  struct Case {
    const char *view, *lastView;
    ViewId first, standard, monitor;
  };
  using enum ViewId;
  for (const Case& c : {Case{"0", "0", Day, Day, Conflict}, Case{"4", "0", Rooms, Rooms, Conflict},
                        Case{"15", "14", Discharge, Discharge, Conflict},
                        Case{"12", "0", LibRooms, Day, LibRooms}, Case{"15", "10", Pickup, Day, Pickup}}) {
    SCOPED_TRACE(std::string(c.view) + ", " + c.lastView);
    settings.prefer("View", c.view);
    settings.prefer("LastView", c.lastView);
    logOn();
    expectShows(viewOf(c.first), "at the start");
    main().menus.mnuModeStandard.choose();
    expectShows(viewOf(c.standard), "standard");
    main().menus.mnuModeDaemon.choose();
    expectShows(viewOf(c.monitor), "monitor");
  }
}

TEST_F(MainWindowTest, ModesSwitchedTwiceLeaveTheirOwnBarChecksAndTimer) {
  for (int round = 0; round < 2; ++round) {
    for (const bool monitor : {true, false}) {
      (monitor ? main().menus.mnuModeDaemon : main().menus.mnuModeStandard).choose();
      EXPECT_EQ(main().tmrDaemon.Enabled, monitor);
      EXPECT_EQ(main().menus.mnuModeDaemon.Checked, monitor);
      EXPECT_EQ(main().menus.mnuModeStandard.Checked, !monitor);
      EXPECT_EQ(main().menus.mnuFileGetRequests.Visible, monitor);
      EXPECT_EQ(main().menus.mnuFileNew.Visible, !monitor);
      EXPECT_EQ(main().barMain.tool("abSearch").Enabled, !monitor);
      EXPECT_TRUE(main().menus.mnuFilePrint.Visible);
      EXPECT_EQ(main().albDaemon.Visible, monitor);
      EXPECT_EQ(main().albStandard.Visible, !monitor);
      EXPECT_EQ(entry("mnuViewScheduleDay").Visible, !monitor);
      EXPECT_EQ(entry("mnuViewDaemonPickup").Visible, monitor);
      EXPECT_EQ(framesShown(), 1);
    }
  }
}

TEST_F(MainWindowTest, TheListBarStandsWhereItIsWanted) {
  const auto order = [&] {
    // The bars and the column of the views, from left to right.
    std::string places;
    for (const LayoutNode& node : main().Layout.children[1].children)
      places += node.control == &main().albStandard ? 'S' : node.control == &main().albDaemon ? 'M' : 'v';
    return places;
  };
  for (const auto& [position, places] :
       std::initializer_list<std::pair<const char*, const char*>>{{"0", "SMv"}, {"1", "vSM"}}) {
    settings.prefer("Position", position);
    logOn();
    EXPECT_EQ(order(), places);
    EXPECT_TRUE(main().albStandard.Visible);
  }
  settings.prefer("Position", "2");
  logOn();
  for (MenuItem* mode : {&main().menus.mnuModeDaemon, &main().menus.mnuModeStandard}) {
    mode->choose();
    EXPECT_FALSE(main().albStandard.Visible);
    EXPECT_FALSE(main().albDaemon.Visible);
  }
  main().abView.select(main().abView.indexOf("Inventory - Rooms"));
  expectShows(viewOf(ViewId::Rooms), "combo without a list bar");
}

TEST_F(MainWindowTest, ToolsRunTheirCommands) {
  std::string opened;
  for (const int kind : {kEquipment, kGroup, kRoom, kBooking, kWizard}) {
    app->makers.addRecord(kind, [&opened, kind](App& a) {
      opened = std::to_string(kind) + (a.slots.opening.pickUp ? " pick-up" : "") + " from " +
               std::to_string(a.slots.opening.source);
      return nullptr;
    });
  }
  app->makers.addCommand("frmOptions", [&opened](App&) { opened = "frmOptions"; });
  app->makers.setSearch([&opened](App&, SearchCategory) { opened = "frmFind"; });
  for (const auto& [tool, opens] :
       std::initializer_list<std::pair<int, const char*>>{{204, "7 pick-up from 5"},
                                                          {202, "7 from 5"},
                                                          {203, "8 from 5"},
                                                          {301, "0 from 5"},
                                                          {302, "1 from 5"},
                                                          {303, "2 from 5"},
                                                          {32776, "frmOptions"},
                                                          {57636, "frmFind"}}) {
    opened.clear();
    app->slots.opening = {};
    main().barMain.choose(main().barMain.tool(tool));
    EXPECT_EQ(opened, opens) << tool;
  }
  main().barMain.choose(main().barMain.tool(57630));
  EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"day"});
}

/// Whatever can be chosen with all rights runs something: no name is a spelling that nobody answers.
TEST_F(MainWindowTest, EveryCommandReachesAWindow) {
  std::set<std::string> missing;
  app->makers.notBuilt = [&](std::string_view name) { missing.emplace(name); };
  for (const char* read : {"ADDREQP", "GETEGSTY", "GETRDTLTY", "GETRSTY", "GETMDTY"}) server.always(read);
  for (const char* later : {"frmMultBarOrNo", "frmOptions", "NewMaintenanceSetup"})  // they ask the operator
    app->makers.addCommand(later, [](App&) {});
  Command MainCommands::*const commands[] = {
      &MainCommands::getRequests,   &MainCommands::newEquipment,   &MainCommands::newGroup,
      &MainCommands::newRoom,       &MainCommands::newMaintenance, &MainCommands::newByWizard,
      &MainCommands::printDetail,   &MainCommands::printDetailAll, &MainCommands::printListing,
      &MainCommands::search,        &MainCommands::options,        &MainCommands::helpTopics,
      &MainCommands::sortAscending, &MainCommands::sortDescending, &MainCommands::mergeCells};
  for (Command MainCommands::*command : commands) {
    (main().commands.*command).Enabled = true;
    (main().commands.*command).run();
  }
  EXPECT_THAT(missing, testing::IsEmpty());
}

TEST_F(MainWindowTest, ACommandWithoutAWindowSaysSo) {
  Program bare({desktop, server, clock, settings, components, folder, folder}, "");
  desktop.expectInformation("This command is not part of this version.");
  bare.app.makers.run("PrintListing", bare.app);
}

TEST_F(MainWindowTest, MergedCellsFollowTheOptionsAndAreAppliedOnce) {
  main().showView(ViewId::Day);
  for (const bool on : {true, true, false}) {
    app->makers.addCommand("frmOptions", [on](App& a) {
      a.preferences.MergeCells = on;
      a.main().applyPreferences(Applies::Searches);
    });
    main().menus.mnuToolsOptions.choose();
    EXPECT_EQ(app->preferences.MergeCells, on);
    EXPECT_EQ(main().menus.mnuViewMergeCells.Checked, on);
    EXPECT_EQ(day().faDayBookings.MergeCells.get(), on ? MergeMode::Free : MergeMode::Never);
  }
}

TEST_F(MainWindowTest, TheSearchOpensOnTheCategoryOfTheListThatShows) {
  std::vector<SearchCategory> sought;
  app->makers.setSearch([&](App&, SearchCategory category) { sought.push_back(category); });
  for (const auto& [view, kind] :
       std::initializer_list<std::pair<ViewId, int>>{{ViewId::Rooms, kFindRooms},
                                                     {ViewId::Equipment, kFindEquipment},
                                                     {ViewId::Groups, kFindGroups},
                                                     {ViewId::Maintenance, kFindMaintenance},
                                                     {ViewId::Day, kFindBookings},
                                                     {ViewId::Staff, kFindBookings}}) {
    main().showView(view);
    main().menus.mnuToolsSearch.choose();
    EXPECT_EQ(sought.back(), kind);
  }
}

TEST_F(MainWindowTest, TheSessionsWindowsTellAndChange) {
  desktop.expectModalWindow<frmLoginInfo>("frmLoginInfo", [](frmLoginInfo& window) {
    EXPECT_EQ(window.lblOperatorText.Caption, "desk");
    EXPECT_EQ(window.lblLocationText.Caption, "Main Desk");
    EXPECT_EQ(window.lblLineText.Caption, "Not protected");
    window.cmdOK.press();
  });
  entry("mnuFileLoginInfo").choose();
  desktop.expectModalWindow<frmAbout>("frmAbout", [](frmAbout& window) {
    EXPECT_EQ(window.lblOperator.Caption, "Logged on: desk");
    window.cmdOK.press();
  });
  entry("mnuHelpAbout").choose();

  server.expectPasswordChange("old", "good enough", "The old password is wrong.");
  server.expectPasswordChange("secret", "good enough");
  desktop.expectModalWindow<frmPassword>("frmPassword", [&](frmPassword& window) {
    EXPECT_FALSE(window.cmdOK.Enabled);
    window.txtOld.type("old");
    window.txtNew.type("good enough");
    window.txtRepeat.type("good enoug");
    window.cmdOK.press();
    EXPECT_TRUE(window.lblMessage.Visible) << "nothing goes out for two different words";
    window.txtRepeat.type("good enough");
    window.cmdOK.press();
    EXPECT_EQ(window.lblMessage.Caption, "The old password is wrong.");
    EXPECT_EQ(window.txtOld.Text, "");
    window.txtOld.type("secret");
    desktop.expectInformation("Your password has been changed.");
    window.cmdOK.press();
  });
  entry("mnuFileChangePassword").choose();
}

TEST_F(MainWindowTest, WebEntriesOpenTheSupportPages) {
  for (const char* name : {"mnuHelpWebSite(0)", "mnuHelpWebSite(1)"}) entry(name).choose();
  EXPECT_THAT(desktop.addresses, testing::ElementsAre("https://support.brindlex.example/vantry",
                                                      "https://support.brindlex.example/vantry"));
}

TEST_F(MainWindowTest, TheGuideOpensWhereItIsInstalled) {
  desktop.expectInformation(
      "The guide is not installed on this workstation. It is in the package vantry-doc.");
  entry("mnuHelpGuide").choose();
  std::filesystem::create_directory(folder / "books");
  std::ofstream(folder / "books" / "guide.html") << "<p>";
  entry("mnuHelpGuide").choose();
  EXPECT_THAT(desktop.addresses, testing::ElementsAre((folder / "books" / "guide.html").string()));
}

TEST_F(MainWindowTest, PopupsStayOffTheBarAndOpeningTheViewMenuEmptiesThePanel) {
  std::string bar;
  for (const MenuItem* menu : main().Menus()) {
    if (menu->Visible) bar += menu->Caption.get() + " ";
  }
  EXPECT_EQ(bar, "&File &View &Tools &Mode &Help ");
  main().showStatus(2, "something");
  main().menus.mnuView.choose();
  EXPECT_EQ(main().StatusBar1.Panels(2).Text, "");
}

TEST_F(MainWindowTest, TheEndOfTheSessionGoesTheWayOfExit) {
  struct Working : Form {
    explicit Working(Windows& all) : Form(all, "frmWorking") {
      Caption = "Unsaved";
      Tag = "7 - 1";
    }
    bool Form_Unload() override { return mayGo; }
    bool mayGo = false;
  };
  Working working(app->windows);
  working.Show();
  desktop.expectInformation(
      "Vantry\nUnsaved\n\nUnable to quit application.  Please resolve any issues with open Vantry windows.");
  EXPECT_FALSE(endsProgram([&] { main().Form_Terminate(); }));
  working.mayGo = true;
  EXPECT_TRUE(endsProgram([&] { main().Form_Terminate(); }));
}

}  // namespace
}  // namespace vantry::test
