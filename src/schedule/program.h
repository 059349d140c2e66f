#pragma once

#include <string>

#include "circulation/circulation_dialogs.h"
#include "frame/app.h"
#include "reports/modPrint.h"
#include "schedule/frmMain.h"

namespace vantry {

/// The client whole: what it shares, its main window, and all that lower floors reach through interfaces.
/// `Main(program.app)` starts it.
class Program {
 public:
  Program(const App::Outside& outside, std::string commandLine);
  Program(const Program&) = delete;

  App app;
  frmMain main;

 private:
  CirculationDialogs circulation_;
  modPrint reports_;
};

}  // namespace vantry
