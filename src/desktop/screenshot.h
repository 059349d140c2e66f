#pragma once

#include <QTimer>
#include <functional>
#include <string>

namespace vantry {

class App;
class QtDesktop;

/// Works the program as the small library's operator would: logs on, takes the first location, waits for the
/// first view, writes its picture and ends the program.
class Screenshot {
 public:
  /// `app` is asked for when it is needed; the program is made after this object.
  Screenshot(QtDesktop& desktop, std::function<App&()> app, std::string file);

  bool isWritten() const { return written_; }

 private:
  void step();
  QtDesktop& desktop_;
  std::function<App&()> app_;
  std::string file_;
  QTimer timer_;
  int passes_ = 0;
  bool written_ = false;
};

}  // namespace vantry
