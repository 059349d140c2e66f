#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <memory>
#include <string>

#include "platform/control.h"

class QKeyEvent;
class QWidget;

namespace vantry {

class Binder;
class Frame;

/// What a binder needs of its window.
class Host {
 public:
  virtual ~Host() = default;
  /// Calls every binder's `flush` before anything is painted.
  virtual void flushLater() = 0;
  /// Keeps the window's size until the next `flush`: what is hidden for what is shown may follow.
  virtual void holdSize() = 0;
  /// Makes what stands in a frame that was hidden until now.
  virtual void fill(Frame& frame) = 0;
  /// Runs an event of the platform's. It must be the caller's last action: the window may no longer exist
  /// after it.
  virtual void act(const std::function<void()>& event) = 0;
  /// Where a popup menu opens that the next event asks for.
  virtual void popupAt(const QPoint& position) = 0;
  /// Milliseconds between two pictures of what changes fast, as often as the eye can follow.
  virtual int paintInterval() const = 0;
  virtual Binder* binderOf(const Control& control) const = 0;
};

/// Shows one control as a widget: mirrors its state and hands the operator's actions on. It has no rules.
///
/// The widget belongs to its parent. It may outlive the binder, and the binder the control; so whatever is
/// connected to the widget has the binder as its context.
class Binder : public QObject {
 public:
  Binder(Control& control, Host& host, QWidget& widget);
  ~Binder() override = default;

  Control& control() const { return control_; }
  QWidget& widget() const { return widget_; }
  Host& host() const { return host_; }

  /// Shows the control's whole state and listens to it from now on.
  void bind();
  /// Stops listening, for a control that still exists.
  virtual void release();

  /// Shows what has changed, or marks it for `flush`.
  virtual void update(Aspect aspect);
  /// Shows what was marked.
  virtual void flush() {}
  /// Takes over what the operator has typed so far.
  virtual void commit() {}

 protected:
  void act(const std::function<void()>& event) { host_.act(event); }
  /// Commits; false when that has closed the window, and this binder no longer exists.
  [[nodiscard]] bool settle();

 private:
  void showColours();
  Control& control_;
  Host& host_;
  QWidget& widget_;
};

/// Makes the binder of a control with its widget; nullptr for kinds that have none.
std::unique_ptr<Binder> makeBinder(Control& control, Host& host, QWidget* parent);

/// Whether the event is a press of one of the two Enter keys.
bool isEnter(const QEvent& event);
/// The key as menus name it: "F4", "Ctrl+C"; empty for a key that only modifies others.
std::string keyName(const QKeyEvent& event);

// The makers of the kinds, for the table in binders.cpp.
using BinderMaker = std::unique_ptr<Binder>(Control&, Host&, QWidget*);
BinderMaker bindLabel, bindImage, bindButton, bindTextBox, bindCheckBox, bindOptionButton, bindComboBox,
    bindListBox, bindFrame, bindDateField, bindTimeField, bindGrid, bindTree, bindStatusBar, bindToolBar,
    bindListBar, bindMonthCalendar, bindYearCalendar, bindTabStrip, bindNumberField, bindCurrencyField,
    bindMaskedField, bindSpinTimeField, bindRuler, bindScheduleBar, bindStepLine;

}  // namespace vantry
