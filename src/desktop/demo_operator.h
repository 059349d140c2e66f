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
  /// `app` is asked for when it is needed; the program may be made after this object.
  DemoOperator(QtDesktop& desktop, std::function<App&()> app, std::function<void()> atTheDesk);

 private:
  void step();
  QtDesktop& desktop_;
  std::function<App&()> app_;
  std::function<void()> atTheDesk_;
  QTimer timer_;
  int passes_ = 0;
};

}  // namespace vantry
