#pragma once

#include <QTimer>
#include <functional>

namespace vantry {

class App;
class QtDesktop;

/// Works the program as the small library's operator would: logs on, takes the first location, waits for the
/// first view, then runs what was wanted and ends the program.
class DemoOperator {
 public:
  DemoOperator(QtDesktop& desktop, App& app, std::function<void()> atTheDesk);

  /// Starts the program; what `QtDesktop::run` wants.
  bool start();

 private:
  void step();
  QtDesktop& desktop_;
  App& app_;
  std::function<void()> atTheDesk_;
  QTimer timer_;
  int passes_ = 0;
  bool started_ = false;
};

}  // namespace vantry
