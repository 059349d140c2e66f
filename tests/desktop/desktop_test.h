#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include "desktop/form_window.h"
#include "desktop/qt_desktop.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry::test {

/// Real widgets on a screen that nobody sees.
class DesktopTest : public testing::Test {
 protected:
  QtDesktop desktop;
  Windows windows{desktop};

  void show(Form& form) {
    form.Show();
    desktop.handleEvents();
  }
  QWidget& window(const Form& form) { return *desktop.windowOf(form); }

  /// The widget of that name, which must be there.
  template <class Widget>
  Widget& find(const Form& form, const char* name) {
    auto* widget = window(form).findChild<Widget*>(name);
    if (!widget) throw std::runtime_error(std::string("no widget ") + name);
    return *widget;
  }

  /// Waits until it is so, for a second at most.
  template <class Condition>
  bool waitUntil(Condition condition) {
    return QTest::qWaitFor(condition, 1000);
  }

  /// Runs `then` as soon as a nested event loop runs.
  template <class Action>
  void later(Action then) {
    QTimer::singleShot(0, &desktop, then);
  }
};

}  // namespace vantry::test
