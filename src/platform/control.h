#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/element.h"
#include "platform/layout.h"

namespace vantry {

class Control;
class Form;

enum class ControlKind {
  Label,
  Button,
  TextBox,
  CheckBox,
  OptionButton,
  ComboBox,
  ListBox,
  Frame,
  DateField,
  TimeField,
  Grid,
  Tree,
  StatusBar,
  ToolBar,
  ListBar,
  Timer,
  Image,
  MonthCalendar,
  YearCalendar,
  TabStrip,
  NumberField,
  CurrencyField,
  MaskedField,
  SpinTimeField,
  Ruler,
  ScheduleBar,
  StepLine
};

/// Holds controls in the order in which they were made, which is their tab order: a form or a frame.
class Container {
 public:
  explicit Container(Form& form) : form_(form) {}
  virtual ~Container() = default;

  const std::vector<Control*>& Controls() const { return controls_; }
  Form& form() const { return form_; }

  /// Whether the operator can reach the controls in this container.
  virtual bool reachable() const = 0;

  /// How the controls are placed.
  LayoutNode Layout;

 private:
  friend class Control;
  Form& form_;
  std::vector<Control*> controls_;
};

/// What all controls share. A control lives as long as the window that declares it.
class Control : public Element {
 public:
  Control(Container& parent, std::string name, ControlKind kind);

  const std::string& Name() const { return name_; }
  ControlKind kind() const { return kind_; }
  Container& parent() const { return parent_; }
  Form& form() const { return parent_.form(); }

  Property<bool> Enabled{*this, Aspect::Enabled, true};
  Property<bool> Visible{*this, Aspect::Visible, true};
  Property<std::string> Tag{*this, Aspect::State};
  Property<std::string> ToolTipText{*this, Aspect::ToolTip};
  Property<Colour> BackColor{*this, Aspect::Colour, kOwnColour};
  Property<Colour> ForeColor{*this, Aspect::Colour, kOwnColour};

  /// The name that a screen reader says; empty where the control's label or its own text is the name.
  std::string AccessibleName;

  Event GotFocus;
  /// The focus has moved to another control of the window. The handler may take it back.
  Event LostFocus;

  /// Moves the focus here if the control is enabled and visible.
  void SetFocus();

  /// Whether the operator can use it now: it and every container around it are enabled and visible.
  bool usable() const;

 private:
  Container& parent_;
  std::string name_;
  ControlKind kind_;
};

}  // namespace vantry
