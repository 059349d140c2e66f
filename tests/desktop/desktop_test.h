#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
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

  /// A window that is worked in has the focus, which no window manager gives it here.
  void activate(QWidget& window) {
    const auto isFront = [&] { return QApplication::activeWindow() == &window; };
    if (isFront()) return;
    window.activateWindow();
    EXPECT_TRUE(waitUntil(isFront)) << window.objectName().toStdString();
  }
  /// The widget that keys go to, or nullptr.
  static QWidget* typingTarget() {
    QWidget* popup = QApplication::activePopupWidget();
    if (popup) return popup->focusWidget() ? popup->focusWidget() : popup;
    QWidget* focused = QApplication::focusWidget();
    return focused ? focused : QApplication::activeWindow();
  }
  /// A text whose keys follow each other after so many milliseconds, and Enter.
  void keys(const char* text, quint64 gap) {
    keyTime_ += 1000;
    for (const QChar letter : QString(text)) {
      key(letter == '\r' ? int{Qt::Key_Return} : letter.toUpper().unicode(), letter);
      keyTime_ += gap;
    }
    key(Qt::Key_Return, "\r");
  }
  /// As a barcode reader types, and as a hand does.
  void wand(const char* text) { keys(text, 5); }
  void hand(const char* text) { keys(text, 90); }

  /// Runs `then` as soon as a nested event loop runs.
  template <class Action>
  void later(Action then) {
    QTimer::singleShot(0, &desktop, then);
  }

 private:
  void key(int code, const QString& text) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, code, {}, text);
      event.setTimestamp(keyTime_);
      if (QWidget* target = typingTarget()) QApplication::sendEvent(target, &event);
    }
  }
  quint64 keyTime_ = 1000;
};

}  // namespace vantry::test
