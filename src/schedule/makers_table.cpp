#include "schedule/makers_table.h"

#include <vector>

#include "frame/app.h"
#include "inventory/frmMultBarOrNo.h"
#include "platform/form.h"

namespace vantry {

namespace {

/// A window of its own for each record.
template <class Window>
[[maybe_unused]] std::unique_ptr<Form> make(App& app) {
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

struct CommandRow {
  const char* name;
  Makers::Command run;
};

}  // namespace

/// One row per record window: {kBooking, make<frmBooking>}.
static std::vector<RecordRow> recordRows() {
  return {};
}

/// One row per window or command that is asked for by name: {"frmOptions", runModal<frmOptions>}.
static std::vector<CommandRow> commandRows() {
  return {
      {"frmMultBarOrNo", runModal<frmMultBarOrNo>},
  };
}

void fillMakers(Makers& makers) {
  for (RecordRow& row : recordRows()) makers.addRecord(row.kind, std::move(row.maker));
  for (CommandRow& row : commandRows()) makers.addCommand(row.name, std::move(row.run));
}

}  // namespace vantry
