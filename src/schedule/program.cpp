#include "schedule/program.h"

#include "schedule/makers_table.h"

namespace vantry {

Program::Program(const App::Outside& outside, std::string commandLine)
    : app(outside, std::move(commandLine)), main(app), circulation_(app) {
  app.setMain(main);
  app.setCirculation(circulation_);
  fillMakers(app.makers);
}

}  // namespace vantry
