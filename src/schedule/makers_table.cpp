#include "schedule/makers_table.h"

#include <vector>

#include "booking/frmBookWiz.h"
#include "booking/frmBooking.h"
#include "frame/app.h"
#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/frmMaintenance.h"
#include "inventory/frmMultBarOrNo.h"
#include "inventory/frmRoom.h"
#include "inventory/maintenance_setup.h"
#include "messaging/session_dialogs.h"
#include "platform/form.h"
#include "records/search_window.h"
#include "schedule/frmSched.h"
#include "search/frmFind.h"

namespace vantry {

namespace {

/// A window of its own for each record.
template <class Window>
std::unique_ptr<Form> make(App& app) {
  return std::make_unique<Window>(app);
}

/// What asks and answers while the program waits.
template <class Window>
void runModal(App& app) {
  Window(app).ShowModal();
}

struct RecordRow {
  int kind;
  Makers::RecordMaker maker;
};

struct WindowRow {
  std::string_view name;
  Makers::WindowMaker maker;
};

struct CommandRow {
  const char* name;
  Makers::Command run;
};

}  // namespace

/// One row per record window.
static std::vector<RecordRow> recordRows() {
  return {
      {kEquipment, make<frmEquipment>},     {kGroup, make<frmGroup>},           {kRoom, make<frmRoom>},
      {kMaintenance, make<frmMaintenance>}, {kGroupMember, make<frmEquipment>}, {kBooking, make<frmBooking>},
      {kWizard, make<frmBookWiz>},
  };
}

/// One row per window that is asked by name and read when it is answered.
static std::vector<WindowRow> windowRows() {
  return {
      {kSearchWindow, make<frmFind>},
  };
}

/// One row per window or command that is asked for by name: {"frmOptions", runModal<frmOptions>}.
static std::vector<CommandRow> commandRows() {
  return {
      {"About", [](App& app) { AboutBox(app.windows).Run(app.session); }},
      {"NewMaintenanceSetup", AskMaintenanceEquipment},
      {"frmMultBarOrNo", runModal<frmMultBarOrNo>},
      {"frmSched", ShowBookingCalendars},
  };
}

void fillMakers(Makers& makers) {
  for (RecordRow& row : recordRows()) makers.addRecord(row.kind, std::move(row.maker));
  for (WindowRow& row : windowRows()) makers.addWindow(std::string(row.name), std::move(row.maker));
  for (CommandRow& row : commandRows()) makers.addCommand(row.name, std::move(row.run));
  makers.setSearch(ShowSearch);
}

}  // namespace vantry
