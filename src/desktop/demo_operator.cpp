#include "desktop/demo_operator.h"

#include "desktop/qt_desktop.h"
#include "frame/frmLocation.h"
#include "frame/modMain.h"
#include "messaging/frmLogon.h"

namespace vantry {

/// The small library's operator with all rights.
static constexpr const char* kOperator = "admin";
static constexpr const char* kPassword = "admin-demo";
static constexpr const char* kLocation = "Riverside Media Desk";
static constexpr int kStepMilliseconds = 20;
/// So many steps without a first view mean that none will come.
static constexpr int kPatience = 1500;

DemoOperator::DemoOperator(QtDesktop& desktop, App& app, std::function<void()> atTheDesk)
    : desktop_(desktop), app_(app), atTheDesk_(std::move(atTheDesk)) {
  timer_.setInterval(kStepMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, [this] { desktop_.dispatch([this] { step(); }); });
}

bool DemoOperator::start() {
  timer_.start();
  started_ = Main(app_);
  return started_;
}

static Form* shownWindow(App& app, std::string_view name) {
  for (int i = 0; i < app.windows.Count(); ++i) {
    if (app.windows[i].Name() == name && app.windows[i].isShown()) return &app.windows[i];
  }
  return nullptr;
}

void DemoOperator::step() {
  if (++passes_ > kPatience) desktop_.endProgram();
  if (auto* logon = dynamic_cast<frmLogon*>(shownWindow(app_, "frmLogon"))) {
    logon->txtOperator.type(kOperator);
    logon->txtPassword.type(kPassword);
    logon->cmdOK.press();
    return;
  }
  if (auto* location = dynamic_cast<frmLocation*>(shownWindow(app_, "frmLocation"))) {
    for (int row = 1; row < location->faLocations.Rows; ++row) {
      if (location->faLocations.TextMatrix(row, 0) == kLocation) location->faLocations.selectRow(row);
    }
    location->cmdOK.press();
    return;
  }
  if (!started_) return;
  timer_.stop();
  desktop_.handleEvents();
  atTheDesk_();
  desktop_.endProgram();
}

}  // namespace vantry
