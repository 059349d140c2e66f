#include "options/frmOptions.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include "frame/modMain.h"
#include "platform/find_control.h"
#include "platform/number_fields.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kImages = "Images (*.gif;*.jpg;*.bmp;*.ico)|*.gif;*.jpg;*.bmp;*.ico";
constexpr const char* kWaves = "Wave (*.wav)|*.wav";

const PreferenceRow& rowOf(std::string_view key) {
  for (const PreferenceRow& row : preferenceTable()) {
    if (row.key == key) return row;
  }
  throw std::logic_error("no row");
}

class Options : public Desk {
 public:
  void SetUp() override { start(); }

  /// The operator opens the options, does something in them, and closes them if it has not.
  void open(const std::function<void(frmOptions&)>& play) {
    desktop.expectModalWindow<frmOptions>("frmOptions", [&](frmOptions& window) {
      play(window);
      if (window.isLoaded()) window.cmdCancel.press();
    });
    main().menus.mnuToolsOptions.choose();
  }
  /// The control of this name, on its page, which the operator turns to.
  template <class T>
  static T& at(frmOptions& window, const std::string& name) {
    Control* control = window.findControl(name);
    if (!control) throw std::logic_error("no control " + name);
    for (int page = 0; page <= kSoundPage; ++page) {
      if (findIn(window.pages.fraOpt(page), [=](const Control& each) { return &each == control; }))
        window.pages.tabOptions.choose(page);
    }
    return dynamic_cast<T&>(*control);
  }
  std::string stored(std::string_view key) const {
    return settings.GetSetting(kSettingsApplication, kSettingsSection, key, "(none)");
  }
  std::string inUse(std::string_view key) const { return storedText(rowOf(key), app->preferences); }
  /// Makes a file in the folder of the test.
  std::string file(const char* name) const {
    const auto path = folder / name;
    std::ofstream(path) << "RIFF";
    return path.string();
  }
};

/// The text of another value that the row's control can take.
std::string otherText(const std::string& key, const std::string& now) {
  if (now == "true" || now == "false") return now == "true" ? "false" : "true";
  if (key == "View") return "9";
  if (key.starts_with("Color")) return std::to_string(std::stoul(now) == 77 ? 78 : 77);
  return now == "2" ? "1" : "2";
}

TEST_F(Options, EveryPreferenceButTheLastViewIsEditedByOneControl) {
  open([](frmOptions& window) {
    std::multiset<std::string> edited;
    for (const OptionField& field : window.pages.fields()) edited.emplace(field.key);
    for (const PreferenceRow& row : preferenceTable())
      EXPECT_EQ(edited.count(std::string(row.key)), row.key == "LastView" ? 0U : 1U) << row.key;
  });
}

TEST_F(Options, EveryKeyIsShownChangedStoredAndTakenOver) {
  server.always("BOOKDAY");
  for (const PreferenceRow& row : preferenceTable()) {
    const std::string key(row.key);
    if (key == "LastView" || key == "Background" || key.starts_with("Sound"))
      continue;  // these are not lists
    const std::string other = otherText(key, inUse(key));
    open([&](frmOptions& window) {
      for (const OptionField& field : window.pages.fields()) {
        if (field.key != key) continue;
        EXPECT_EQ(field.text(), inUse(key)) << key;
        EXPECT_FALSE(window.cmdApply.Enabled) << key;
        field.show(other);
        const bool tells = !key.starts_with("Color") && key != "Barcodes";  // the other option tells of it
        EXPECT_EQ(window.cmdApply.Enabled, tells) << key;
        EXPECT_EQ(field.text(), other) << key;
      }
      window.cmdOK.press();
      EXPECT_FALSE(window.isLoaded()) << key;
    });
    EXPECT_EQ(stored(key), other) << key;
    EXPECT_EQ(inUse(key), other) << key;
  }
}

TEST_F(Options, AllKeysAreStoredInOneWriteAndTheWindowShowsThemAgain) {
  settings.writes = 0;
  open([&](frmOptions& window) {
    window.cmdOK.press();
    EXPECT_EQ(settings.writes, 1);
  });
  for (const PreferenceRow& row : preferenceTable()) {
    EXPECT_EQ(stored(row.key), inUse(row.key).empty() ? "(none)" : inUse(row.key)) << row.key;
  }
  settings.prefer("View", "11");
  ReadPreferences(*app);
  open([](frmOptions& window) { EXPECT_TRUE(at<OptionButton>(window, "optView(14)").Value); });
}

TEST_F(Options, CancelForgetsWhatWasNotApplied) {
  settings.writes = 0;
  open([](frmOptions& window) {
    EXPECT_FALSE(window.cmdApply.Enabled);
    at<CheckBox>(window, "chkSuggestEquip").toggle();
    EXPECT_TRUE(window.cmdApply.Enabled);
    window.cmdCancel.press();
  });
  EXPECT_EQ(settings.writes, 0);
  EXPECT_FALSE(app->preferences.SuggestEquip);
  open([&](frmOptions& window) {
    at<CheckBox>(window, "chkSuggestEquip").toggle();
    window.cmdApply.press();
    EXPECT_FALSE(window.cmdApply.Enabled);
    at<CheckBox>(window, "chkAutoCharge").toggle();
    EXPECT_TRUE(window.cmdApply.Enabled);
    window.cmdCancel.press();
  });
  EXPECT_EQ(settings.writes, 1);
  EXPECT_EQ(stored("SuggestEquip"), "true") << "what was applied stays";
  EXPECT_EQ(stored("AutoCharge"), "false");
}

TEST_F(Options, AStoreThatCannotBeWrittenKeepsTheWindowOpen) {
  settings.refusal = "Cannot write settings.ini: Read-only file system";
  desktop.expectModalWindow<frmOptions>("frmOptions", [&](frmOptions& window) {
    at<CheckBox>(window, "chkSuggestEquip").toggle();
    window.cmdOK.press();
    EXPECT_TRUE(window.isLoaded());
    EXPECT_TRUE(window.cmdApply.Enabled);
    EXPECT_TRUE(at<CheckBox>(window, "chkSuggestEquip").Value);
    settings.refusal.clear();
    window.cmdOK.press();
    EXPECT_FALSE(window.isLoaded());
  });
  desktop.expectWarning("Cannot write settings.ini: Read-only file system");
  main().menus.mnuToolsOptions.choose();
  EXPECT_TRUE(app->preferences.SuggestEquip);
}

TEST_F(Options, ChangesMakeTheirWayIntoTheMainWindowAtOnce) {
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=Y");
  open([&](frmOptions& window) {
    at<CheckBox>(window, "chkLegend(0)").toggle();
    at<CheckBox>(window, "chkLegend(4)").toggle();
    at<CheckBox>(window, "chkIncHistBookings").toggle();
    at<CheckBox>(window, "chkToolTips").toggle();
    at<CheckBox>(window, "chkMergeCells").toggle();
    at<OptionButton>(window, "optPosition(2)").choose();
    at<TextBox>(window, "txtBackgroundImage").type("/pictures/desk.gif");
    at<NumberField>(window, "txtInterval").type("3");
    at<ComboBox>(window, "cboSchedInterval").select(5);
    at<NumberField>(window, "txtStartHour").type("8");
    at<ComboBox>(window, "cboChargeSearch").select(2);
    at<CheckBox>(window, "chkRetainSearch").toggle();
    window.cmdApply.press();
    EXPECT_FALSE(day().chkLegend(0).Value);
    EXPECT_FALSE(day().chkLegend(4).Value);
    EXPECT_FALSE(main().barMain.ToolTips);
    EXPECT_EQ(day().faDayBookings.MergeCells.get(), MergeMode::Free);
    EXPECT_FALSE(main().albStandard.Visible);
    EXPECT_EQ(main().albStandard.BackgroundPicture.get(), "/pictures/desk.gif");
    EXPECT_EQ(app->daemonPeriod, 180000);
    EXPECT_EQ(app->daySlots.count, 14);
    EXPECT_EQ(control<ComboBox>("cboChargeSearch").Text(), "Confirmation Number");
    EXPECT_TRUE(app->bibSearch.RetainSearch);
  });
  EXPECT_TRUE(main().menus.mnuViewMergeCells.Checked);
  EXPECT_TRUE(app->preferences.MergeCells);
}

TEST_F(Options, ColoursReachLegendAndRowsWithoutARequest) {
  server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N")
      .replies("BOOKID=7 BKRES=1 STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:00:00");
  main().GetBookingsForDate();
  open([&](frmOptions& window) {
    desktop.expectPopup("mnuColor", "mnuBackColor");
    desktop.expectColour(16711935, Colour{0x00FF00});
    at<Button>(window, "cmdSchedColor(1)").press();
    desktop.expectPopup("mnuColor", "mnuTextColor");
    desktop.expectColour(0, std::nullopt);
    at<Button>(window, "cmdSchedColor(1)").press();
    EXPECT_EQ(window.pages.lblSchedColor(1).BackColor, Colour{0x00FF00});
    EXPECT_TRUE(window.cmdApply.Enabled);
    window.cmdOK.press();
  });
  EXPECT_EQ(day().legend.lblComplete.BackColor, Colour{0x00FF00});
  EXPECT_EQ(day().faDayBookings.cell(1, 2).back, Colour{0x00FF00});
}

TEST_F(Options, KeyedTimesGrayTheIntervalsAndKeepTheirValues) {
  open([](frmOptions& window) {
    at<OptionButton>(window, "optScheduler(1)").choose();
    for (const char* name : {"lblStartScheduling", "lblEndScheduling", "txtStartHour", "txtEndHour", "lblAM",
                             "lblPM", "lblScheduleInterval", "cboSchedInterval", "chkScheduleBar"})
      EXPECT_FALSE(at<Control>(window, name).Enabled) << name;
    window.cmdApply.press();
    EXPECT_EQ(at<NumberField>(window, "txtStartHour").number(), 6);
    EXPECT_FALSE(at<Control>(window, "txtStartHour").Enabled) << "also when shown again";
    at<OptionButton>(window, "optScheduler(0)").choose();
    EXPECT_TRUE(at<Control>(window, "txtStartHour").Enabled);
    EXPECT_TRUE(at<Control>(window, "chkScheduleBar").Enabled);
  });
  EXPECT_EQ(stored("UseIntervals"), "false");
  EXPECT_EQ(stored("Start"), "6");
}

TEST_F(Options, ANumberBeyondItsLimitsOrWithoutFiguresIsTold) {
  struct Case {
    const char *typed, *stored;
    bool isTold;
  };
  for (const Case& c : {Case{"100", "(none)", true}, Case{"0", "(none)", true}, Case{"42", "42", false},
                        Case{"", "42", true}}) {
    open([&](frmOptions& window) {
      window.pages.tabOptions.choose(kMonitorPage);
      at<NumberField>(window, "txtInterval").type(c.typed);
      window.pages.tabOptions.choose(0);
      if (c.isTold) desktop.expectInformation("Please enter a number from 1 to 99 for Update Interval.");
      window.cmdOK.press();
      EXPECT_EQ(window.isLoaded(), c.isTold);
      EXPECT_EQ(window.pages.tabOptions.SelectedTab, c.isTold ? kMonitorPage : 0) << "its page is shown";
    });
    EXPECT_EQ(stored("DaemonInterval"), c.stored) << c.typed;
  }
  settings.prefer("DaemonInterval", "0");
  ReadPreferences(*app);
  open([](frmOptions& window) { window.cmdOK.press(); });
  EXPECT_EQ(stored("DaemonInterval"), "0") << "no refresh, as somebody has stored by hand";
}

TEST_F(Options, ASoundIsHeardChosenAndDroppedWhenItsFileIsGone) {
  const std::string bell = file("bell.wav");
  const std::string gong = file("gong.wav");
  settings.prefer("Sound4", bell);
  settings.prefer("Sound9", (folder / "gone.wav").string());
  ReadPreferences(*app);
  open([&](frmOptions& window) {
    SoundPage& sounds = window.sounds;
    window.pages.tabOptions.choose(kSoundPage);
    sounds.gtvEvents.click("Listbar");
    EXPECT_FALSE(sounds.txtSoundFile.Enabled);
    sounds.gtvEvents.click("Sound4");
    EXPECT_EQ(sounds.txtSoundFile.Text.get(), bell);
    EXPECT_FALSE(window.cmdApply.Enabled) << "a look is no change";
    sounds.cmdPlay.press();
    EXPECT_THAT(desktop.sounds, testing::ElementsAre(bell, bell));
    const int filled = sounds.gtvEvents.find("Sound4")->image;
    sounds.gtvEvents.click("Sound5");
    EXPECT_EQ(sounds.txtSoundFile.Text.get(), "");
    EXPECT_FALSE(sounds.cmdPlay.Enabled);
    desktop.expectFile(kWaves, (folder / "none.wav").string());
    desktop.expectWarning("File does not exist!");
    sounds.cmdBrowse.press();
    desktop.uselessFile = file("picture.wav");
    desktop.expectFile(kWaves, desktop.uselessFile);
    desktop.expectWarning("This file holds no sound that can be played.");
    sounds.cmdBrowse.press();
    EXPECT_EQ(sounds.txtSoundFile.Text.get(), "");
    sounds.txtSoundFile.type(desktop.uselessFile);
    desktop.expectWarning("This file holds no sound that can be played.");
    sounds.cmdPlay.press();
    desktop.expectFile(kWaves, gong);
    sounds.cmdBrowse.press();
    EXPECT_EQ(sounds.gtvEvents.find("Sound5")->image, filled);
    EXPECT_TRUE(window.cmdApply.Enabled);
    window.cmdApply.press();
    EXPECT_EQ(stored("Sound5"), gong);
    EXPECT_EQ(stored("Sound9"), "") << "also of a place without an event";
    std::filesystem::remove(bell);
    window.cmdApply.Enabled = true;
    window.cmdApply.press();
    EXPECT_NE(sounds.gtvEvents.find("Sound4")->image, filled);
    EXPECT_EQ(sounds.txtSoundFile.Text.get(), gong) << "the selection stays";
  });
  EXPECT_EQ(stored("Sound4"), "");
}

TEST_F(Options, APictureForTheListBarIsChosenByItsFile) {
  const std::string picture = file("desk.gif");
  open([&](frmOptions& window) {
    window.pages.tabOptions.choose(5);
    desktop.expectFile(kImages, std::nullopt);
    at<Button>(window, "cmdBrowse(0)").press();
    EXPECT_FALSE(window.cmdApply.Enabled);
    desktop.expectFile(kImages, picture);
    at<Button>(window, "cmdBrowse(0)").press();
    EXPECT_EQ(at<TextBox>(window, "txtBackgroundImage").Text.get(), picture);
    desktop.uselessFile = file("letter.gif");
    desktop.expectFile(kImages, desktop.uselessFile);
    desktop.expectWarning("This file holds no picture that can be shown.");
    at<Button>(window, "cmdBrowse(0)").press();
    EXPECT_EQ(at<TextBox>(window, "txtBackgroundImage").Text.get(), picture);
    window.cmdApply.press();
    EXPECT_EQ(stored("Background"), picture);
    at<TextBox>(window, "txtBackgroundImage").type(desktop.uselessFile);
    desktop.expectWarning("The background image cannot be shown: " + desktop.uselessFile);
    window.cmdOK.press();
  });
  EXPECT_EQ(stored("Background"), desktop.uselessFile);
}

TEST_F(Options, LocationsOfTheMonitorAreForTheSessionOnly) {
  app->context.allLocations = {{"Main Desk", "3", ""}, {"North Branch", "4", ""}, {"South Branch", "5", ""}};
  const auto selected = [](frmOptions& window) {
    std::string places;
    for (int i = 0; i < window.lstBookingDeskLocation.ListCount(); ++i)
      places += window.lstBookingDeskLocation.Selected(i) ? std::to_string(i) : "";
    return places;
  };
  settings.writes = 0;
  open([&](frmOptions& window) {
    window.pages.tabOptions.choose(kMonitorPage);
    ListBox& list = window.lstBookingDeskLocation;
    EXPECT_EQ(selected(window), "0");
    list.toggle(2);
    EXPECT_TRUE(window.cmdApply.Enabled);
    list.toggle(3);
    EXPECT_EQ(selected(window), "23") << "one location takes the choice from all";
    list.toggle(0);
    EXPECT_EQ(selected(window), "0") << "and all from each";
    list.toggle(1);
    list.toggle(3);
    window.cmdOK.press();
  });
  EXPECT_EQ(app->monitorLocations, "3|5");
  for (const auto& [key, text] : settings.texts) EXPECT_NE(text, "3|5") << key;
  open([&](frmOptions& window) {
    EXPECT_EQ(selected(window), "13");
    window.pages.tabOptions.choose(kMonitorPage);
    window.lstBookingDeskLocation.toggle(0);
    window.cmdOK.press();
  });
  EXPECT_EQ(app->monitorLocations, "0");
}

}  // namespace
}  // namespace vantry::test
