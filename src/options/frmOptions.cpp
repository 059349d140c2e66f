#include "options/frmOptions.h"

#include <algorithm>

#include "circulation/circulation_twin.h"
#include "frame/modMain.h"
#include "platform/entry_check.h"
#include "platform/wiring.h"

namespace vantry {

/// The place and the id of the entry that means all locations.
static constexpr int kAllLocations = 0;
static constexpr const char* kAllLocationsId = "0";

static std::vector<std::string> textsOf(const CirculationTwin& twin) {
  std::vector<std::string> texts;
  for (const SearchType& type : twin.searchTypes) texts.emplace_back(type.text);
  return texts;
}

frmOptions::frmOptions(App& app)
    : Form(app.windows, "frmOptions"),
      sounds(app, pages.fraOpt(kSoundPage), [this] { changed(); }),
      app_(app) {
  Caption = "Options";
  Icon = "options";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  mnuColor.Visible = false;
  lstBookingDeskLocation.MultiSelect = true;
  sounds.addTo(pages);
  pages.arrangeBelow(kMonitorPage, Column{Gap{}, Row{lblBookingDeskLocation, lblSessionOnly, Stretch{}},
                                          lstBookingDeskLocation});
  connect();
  LayoutNode all = Column{pages.tabOptions};
  for (int page = 0; page <= kSoundPage; ++page) all.children.emplace_back(pages.fraOpt(page));
  all.children.push_back(Row{Stretch{}, cmdOK, cmdCancel, cmdApply});
  Layout = all;
}

void frmOptions::connect() {
  pages.colourWanted = [this](int place) { cmdSchedColor_Click(place); };
  pages.pictureWanted = [this](TextBox& path) { cmdBrowse_Click(path, kImages); };
  sounds.fileWanted = [this](TextBox& path) { cmdBrowse_Click(path, kWaves); };
  on(lstBookingDeskLocation.Click, this, &frmOptions::lstBookingDeskLocation_Click);
  on(mnuBackColor.Click, this, &frmOptions::mnuBackColor_Click);
  on(mnuTextColor.Click, this, &frmOptions::mnuTextColor_Click);
  on(cmdOK.Click, this, &frmOptions::cmdOK_Click);
  on(cmdCancel.Click, this, &frmOptions::cmdCancel_Click);
  on(cmdApply.Click, this, &frmOptions::cmdApply_Click);
}

void frmOptions::Form_Load() {
  app_.tools.PrepareForm(*this);
  pages.fillList("cboChargeSearch", textsOf(chargeTwin()));
  pages.fillList("cboDischargeSearch", textsOf(dischargeTwin()));
  fillLocations();
  show();
}

/// Showing changes the controls, which is no change of the operator's.
void frmOptions::show() {
  pages.show(app_.preferences);
  sounds.load();
  EnableSchedulerSelections();
  disable(cmdApply);
}

void frmOptions::changed() {
  EnableSchedulerSelections();
  cmdApply.Enabled = true;
}

void frmOptions::EnableSchedulerSelections() {
  const bool byIntervals = dynamic_cast<OptionButton&>(*findControl("optScheduler(0)")).Value;
  for (const char* name : {"lblStartScheduling", "lblEndScheduling", "txtStartHour", "txtEndHour", "lblAM",
                           "lblPM", "lblScheduleInterval", "cboSchedInterval", "chkScheduleBar"})
    findControl(name)->Enabled = byIntervals;
}

// Buttons

/// An entry that cannot be read, or a refused write, leaves the window open with what was entered.
void frmOptions::cmdOK_Click() {
  cmdApply_Click();
  if (!cmdApply.Enabled) Unload();
}

void frmOptions::cmdApply_Click() {
  cmdApply.Enabled = true;
  if (!entriesAreGiven(*this)) return;
  app_.monitorLocations = chosenLocations();
  Preferences chosen = app_.preferences;
  pages.take(chosen);
  const std::string shown = app_.preferences.Background;
  if (!SavePreferences(app_, chosen)) return;
  ReadPreferences(app_);
  show();
  const std::string& image = app_.preferences.Background;
  if (image != shown && !image.empty() && !app_.desktop.canShow(image))
    warningBox(app_.desktop, "The background image cannot be shown: " + image);
}

// Colours and files

void frmOptions::cmdSchedColor_Click(int index) {
  colour_ = index;
  app_.desktop.popupMenu(mnuColor, findControl(arrayName("cmdSchedColor", index)));
}

void frmOptions::mnuBackColor_Click() {
  chooseColour(pages.lblSchedColor(colour_).BackColor);
}

void frmOptions::mnuTextColor_Click() {
  chooseColour(pages.lblSchedColor(colour_).ForeColor);
}

void frmOptions::chooseColour(Property<Colour>& colour) {
  const auto chosen = app_.desktop.chooseColour(colour);
  if (!chosen) return;
  colour = *chosen;
  changed();
}

void frmOptions::cmdBrowse_Click(TextBox& path, const WantedFile& wanted) {
  const auto chosen = app_.desktop.chooseFile("Open", wanted.filter, path.Text.get());
  if (chosen && isUsable(app_.desktop, *chosen, wanted)) path.Text = *chosen;
}

// The locations of the Schedule Monitor

void frmOptions::fillLocations() {
  ListBox& list = lstBookingDeskLocation;
  list.Clear();
  list.AddItem("All Locations", kAllLocationsId);
  for (const Location& location : app_.context.allLocations) list.AddItem(location.name, location.id);
  const std::string chosen = '|' + app_.monitorLocations + '|';
  bool any = false;
  for (int i = kAllLocations + 1; i < list.ListCount(); ++i) {
    const bool isChosen = chosen.find('|' + list.ItemData(i) + '|') != std::string::npos;
    list.Selected(i, isChosen);
    any = any || isChosen;
  }
  list.Selected(kAllLocations, !any);
  allLocations_ = !any;
}

/// The first entry and the others exclude each other; the choice that was made last counts.
void frmOptions::lstBookingDeskLocation_Click() {
  ListBox& list = lstBookingDeskLocation;
  if (list.Selected(kAllLocations) && !allLocations_) {
    for (int i = kAllLocations + 1; i < list.ListCount(); ++i) list.Selected(i, false);
  } else {
    list.Selected(kAllLocations, list.Selected(kAllLocations) && chosenLocations() == kAllLocationsId);
  }
  allLocations_ = list.Selected(kAllLocations);
  changed();
}

std::string frmOptions::chosenLocations() const {
  std::string ids;
  for (int i = 0; i < lstBookingDeskLocation.ListCount(); ++i) {
    if (!lstBookingDeskLocation.Selected(i)) continue;
    if (!ids.empty()) ids += '|';
    ids += lstBookingDeskLocation.ItemData(i);
  }
  return ids;
}

}  // namespace vantry
