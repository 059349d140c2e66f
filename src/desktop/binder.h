#pragma once

#include <QObject>
#include <QPoint>
#include <functional>
#include <memory>

#include "platform/control.h"

class QWidget;

namespace vantry {

class Binder;

/// What a binder needs of the window that it stands in.
class Host {
 public:
  virtual ~Host() = default;
  /// Calls every binder's `flush` before anything is painted.
  virtual void flushLater() = 0;
  /// Runs an event of the platform's. It must be the last that the caller does: the window may be gone after
  /// it.
  virtual void act(const std::function<void()>& event) = 0;
  /// Where a popup menu opens that the next event asks for.
  virtual void popupAt(const QPoint& position) = 0;
  virtual Binder* binderOf(const Control& control) const = 0;
};

/// Shows one control as a widget: mirrors its state and hands the operator's actions on. It has no rules.
///
/// The widget belongs to its parent and may outlive the binder, as the control may have gone before it; so
/// whatever is connected to the widget has the binder as its context.
class Binder : public QObject {
 public:
  Binder(Control& control, Host& host, QWidget& widget);
  ~Binder() override = default;

  Control& control() const { return control_; }
  QWidget& widget() const { return widget_; }
  Host& host() const { return host_; }

  /// Shows the control's whole state and listens to it from now on.
  void bind();
  /// Stops listening; for a control that lives on.
  virtual void release();

  /// Shows what has changed, or marks it for `flush`.
  virtual void update(Aspect aspect);
  /// Shows what was marked.
  virtual void flush() {}
  /// Takes over what the operator typed and has not ended yet.
  virtual void commit() {}

 protected:
  void act(const std::function<void()>& event) { host_.act(event); }
  /// Commits; false when the window, and this with it, has gone over what the value led to.
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

// The makers of the kinds, for the table in binders.cpp.
using BinderMaker = std::unique_ptr<Binder>(Control&, Host&, QWidget*);
BinderMaker bindLabel, bindImage, bindButton, bindTextBox, bindCheckBox, bindOptionButton, bindComboBox,
    bindListBox, bindFrame, bindDateField, bindTimeField, bindGrid, bindTree, bindStatusBar, bindToolBar,
    bindListBar, bindMonthCalendar, bindYearCalendar, bindTabStrip, bindNumberField, bindCurrencyField,
    bindMaskedField, bindSpinTimeField, bindRuler, bindScheduleBar;

}  // namespace vantry
