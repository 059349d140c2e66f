#include <array>

#include "desktop/binder.h"

namespace vantry {

struct BinderRow {
  ControlKind kind;
  BinderMaker* make;
};

/// One binder per kind. A timer is nothing to be seen.
static constexpr std::array kBinders = {
    BinderRow{ControlKind::Label, bindLabel},
    BinderRow{ControlKind::Button, bindButton},
    BinderRow{ControlKind::TextBox, bindTextBox},
    BinderRow{ControlKind::CheckBox, bindCheckBox},
    BinderRow{ControlKind::OptionButton, bindOptionButton},
    BinderRow{ControlKind::ComboBox, bindComboBox},
    BinderRow{ControlKind::ListBox, bindListBox},
    BinderRow{ControlKind::Frame, bindFrame},
    BinderRow{ControlKind::DateField, bindDateField},
    BinderRow{ControlKind::TimeField, bindTimeField},
    BinderRow{ControlKind::Grid, bindGrid},
    BinderRow{ControlKind::Tree, bindTree},
    BinderRow{ControlKind::StatusBar, bindStatusBar},
    BinderRow{ControlKind::ToolBar, bindToolBar},
    BinderRow{ControlKind::ListBar, bindListBar},
    BinderRow{ControlKind::Image, bindImage},
    BinderRow{ControlKind::MonthCalendar, bindMonthCalendar},
    BinderRow{ControlKind::YearCalendar, bindYearCalendar},
    BinderRow{ControlKind::TabStrip, bindTabStrip},
    BinderRow{ControlKind::NumberField, bindNumberField},
    BinderRow{ControlKind::CurrencyField, bindCurrencyField},
    BinderRow{ControlKind::MaskedField, bindMaskedField},
    BinderRow{ControlKind::SpinTimeField, bindSpinTimeField},
    BinderRow{ControlKind::Ruler, bindRuler},
    BinderRow{ControlKind::ScheduleBar, bindScheduleBar},
    BinderRow{ControlKind::StepLine, bindStepLine},
};

std::unique_ptr<Binder> makeBinder(Control& control, Host& host, QWidget* parent) {
  for (const BinderRow& row : kBinders) {
    if (row.kind == control.kind()) return row.make(control, host, parent);
  }
  return nullptr;
}

}  // namespace vantry
