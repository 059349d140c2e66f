#include "schedule/program.h"

#include "schedule/makers_table.h"

namespace vantry {

Program::Program(const App::Outside& outside, std::string commandLine)
    : app(outside, std::move(commandLine)), main(app), circulation_(app), reports_(app) {
  app.setMain(main);
  app.setCirculation(circulation_);
  app.setReports(reports_);
  fillMakers(app.makers);
  // A box, since the editor has no status bar and covers that of the main window.
  app.makers.notBuilt = [this](std::string_view) {
    app.global.ReadyAllForms();
    informationBox(app.desktop, "This command is not part of this version.");
  };
}

}  // namespace vantry
