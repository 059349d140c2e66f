#include "frame/modMain.h"

#include "frame/components.h"
#include "frame/frmLocation.h"
#include "messaging/ask.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

static constexpr int kModuleNumber = 6;

bool Main(App& app) {
  app.components.RegisterComponents();
  app.components.ValidateResources(app.commandLine);
  app.helpFile = (app.programFolder() / "Vantry.chm").string();
  app.session.Initialise("Vantry", app.commandLine);
  app.context.abort = false;
  if (app.tools.CheckStartup(app.session)) return false;
  app.supportCaption = app.session.GetSupportWebCaption();
  app.connectDialog.SetSession(app.session);
  if (!app.message.Connect(kModuleNumber, app.session, app.connectDialog)) return false;
  app.ini.Open("vantry.ini");
  ReadPreferences(app);
  app.main().form().Show();
  app.main().placeFrames();
  app.main().form().Refresh();
  app.desktop.handleEvents();
  app.connectDialog.Close();
  app.main().showStatus(2, "Vantry Login...");
  LoadOperatorContext(app);
  app.global.BusyAllForms();
  app.bibSearch.Initialise(app.message, app.session, true);
  app.global.ReadyAllForms();
  return true;
}

void ReadPreferences(App& app) {
  bool unreadable = false;
  for (const PreferenceRow& row : preferenceTable()) {
    if (!readPreference(row, app.settings, app.preferences)) unreadable = true;
  }
  // Only now: a part of the main window that asks the server needs more than its own values.
  for (const PreferenceRow& row : preferenceTable()) {
    if (row.applies != Applies::Nothing) app.main().applyPreferences(row.applies);
  }
  app.bibSearch.RetainSearch = app.preferences.RetainSearch;
  app.bibSearch.AutoTruncate = app.preferences.AutoTruncateBib;
  app.daySlots = daySlots(app.preferences.Start, app.preferences.End, app.preferences.Interval);
  const bool monitors = app.mode == Mode::Monitor;
  if (monitors) app.main().StartStopTimer(false);  // by the period that it was started with
  app.daemonPeriod = MinutesToMilliseconds(app.preferences.DaemonInterval);
  if (monitors) app.main().StartStopTimer(true);
  if (unreadable) app.settings.keepAside();
}

/// Asks outside of any window.
static Ask askOf(App& app) {
  return {app.global, ""};
}

static void readAuthorizedLocations(App& app) {
  OperatorContext& context = app.context;
  // After a failure, which is told, the routine goes on with what the reply gave.
  static_cast<void>(askOf(app)("RLL", {{tags::OI, context.operatorId}}));
  context.authorizedLocations.clear();
  if (app.message.Count(tags::LNA) == 0) {
    criticalBox(app.desktop,
                "No authorized locations found for Media. Please consult your system administrator.");
    context.abort = true;
    return;
  }
  while (app.message.NextRecord(tags::LNA)) {
    context.authorizedLocations.push_back(
        {app.message.Get(tags::LNA), app.message.Get(tags::LOC), app.message.Get(tags::OLN)});
  }
  if (context.authorizedLocations.size() == 1) {
    context.locationName = context.authorizedLocations.front().name;
    context.locationId = context.authorizedLocations.front().id;
  } else {
    frmLocation(app).ShowModal();
  }
}

/// Ends the program where the rights cannot be read.
static std::array<std::string, kRights> readRights(App& app) {
  if (!askOf(app)("SLL", {{tags::LOC, app.context.locationId}})) app.main().Abort();
  std::array<std::string, kRights> values;
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = app.message.Get(kRightCodes[i]);
  return values;
}

static void readAllLocations(App& app) {
  app.context.allLocations.clear();
  if (!askOf(app)("GETLOCS")) return;
  app.context.allLocations.reserve(static_cast<std::size_t>(app.message.Count(tags::LOC)));
  while (app.message.NextRecord(tags::LOC))
    app.context.allLocations.push_back({app.message.Get(tags::LNA), app.message.Get(tags::LOC), {}});
}

static bool isMonitorView(int view) {
  return view >= 8 && view <= 12;
}
static bool isStandardView(int view) {
  return (view >= 0 && view <= 7) || view == 13 || view == 14;
}

static void chooseFirstView(App& app) {
  const int view = app.preferences.View >= 15 ? app.preferences.LastView : app.preferences.View;
  if (isMonitorView(view)) app.main().mnuModeDaemon_Click();
  if (isStandardView(view)) app.main().mnuModeStandard_Click();
  // Where no view is chosen, bars and menus take the operator's rights all the same.
  if (app.mode == Mode::None) app.main().SetFormSecurity(kKindWholeBar);
}

void LoadOperatorContext(App& app) {
  app.context.abort = false;
  if (!LogonDialog(app.windows, app.tools).Run(app.session, app.message)) app.main().Abort();
  app.global.BusyAllForms();
  app.context.operatorId = app.session.GetOperatorId();
  app.monitorLocations.clear();  // they were the last operator's
  readAuthorizedLocations(app);
  if (app.context.abort) app.main().Abort();
  app.global.BusyAllForms();
  const auto values = readRights(app);
  readAllLocations(app);
  app.context.rights.set(values);
  app.main().refillStaff();
  app.global.BusyAllForms();
  LoadCategoryLists(app);
  chooseFirstView(app);
  app.main().showStatus(1, app.context.locationName);
  if (app.preferences.BookingCalendars) app.makers.run("frmSched", app);
  app.main().showOperator(app.context.operatorId);
  app.global.ReadyAllForms();
}

/// One list of categories, walked by the tag of its ids.
static std::vector<Category> readCategories(App& app, std::string_view code, std::string_view id,
                                            std::string_view name) {
  std::vector<Category> categories;
  if (!askOf(app)(code)) return categories;
  while (app.message.NextRecord(id)) {
    categories.push_back({app.message.Get(id), app.message.Get(name), app.message.Get(tags::MIC),
                          app.message.Get(tags::RST) == "Y"});
  }
  return categories;
}

void LoadCategoryLists(App& app) {
  CategoryLists& lists = app.context.categories;
  lists.equipment = readCategories(app, "GETECAT", tags::ETI, tags::ETY);
  lists.groups = readCategories(app, "GETGCAT", tags::ETI, tags::ETY);
  lists.rooms = readCategories(app, "GETRCAT", tags::RTI, tags::RTY);
  lists.years.clear();
  if (askOf(app)("GETMYER")) {
    while (app.message.NextRecord(tags::MYE)) lists.years.push_back(app.message.Get(tags::MYE).substr(0, 4));
  }
  app.main().BuildMainTrees();
}

}  // namespace vantry
