#include "records/field_kinds.h"

#include <algorithm>

#include "messaging/server_tools.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/number_fields.h"
#include "platform/schedule_bar.h"
#include "platform/text.h"

namespace vantry {
namespace {

constexpr std::string_view kYes = "Y";

template <class T>
T& as(Control& control) {
  return static_cast<T&>(control);
}
template <class T>
const T& as(const Control& control) {
  return static_cast<const T&>(control);
}

template <class T>
void lock(Control& control) {
  as<T>(control).Locked = true;
}
void disableField(Control& control) {
  control.Enabled = false;
}

template <class T>
Event& onChange(Control& control) {
  return as<T>(control).Change;
}
template <class T>
Event& onClick(Control& control) {
  return as<T>(control).Click;
}

void showCombo(Control& control, const std::string& value) {
  ComboBox& combo = as<ComboBox>(control);
  combo.ListIndex = combo.indexOfData(value);
}
std::string comboValue(const Control& control) {
  const ComboBox& combo = as<ComboBox>(control);
  return combo.ListIndex < 0 ? std::string() : combo.ItemData(combo.ListIndex);
}

void showTime(Control& control, const std::string& value) {
  ServerTools::PutControlTime(value, as<TimeField>(control));
}
std::string timeText(const Control& control) {
  return as<TimeField>(control).text24();
}

template <class T>
std::string textOf(const Control& control) {
  return as<T>(control).Text;
}

const FieldKind kKinds[] = {
    {ControlKind::TextBox, [](Control& c, const std::string& value) { as<TextBox>(c).Text = value; },
     textOf<TextBox>, textOf<TextBox>, lock<TextBox>, onChange<TextBox>},
    {ControlKind::ComboBox, showCombo, comboValue,
     [](const Control& c) -> std::string { return as<ComboBox>(c).Text(); }, disableField, onClick<ComboBox>},
    {ControlKind::CheckBox,
     [](Control& c, const std::string& value) { as<CheckBox>(c).Value = value == kYes; },
     [](const Control& c) -> std::string { return as<CheckBox>(c).Value ? "Y" : "N"; },
     [](const Control&) { return std::string(kYes); }, disableField, onClick<CheckBox>},
    {ControlKind::DateField,
     [](Control& c, const std::string& value) { ServerTools::PutControlDate(value, as<DateField>(c)); },
     [](const Control& c) { return ServerTools::GetControlDate(as<DateField>(c)); },
     [](const Control& c) { return as<DateField>(c).shortDate(); }, disableField, onChange<DateField>},
    {ControlKind::TimeField, showTime, timeText, timeText, disableField, onChange<TimeField>},
    {ControlKind::SpinTimeField, showTime, timeText, timeText, lock<SpinTimeField>, onChange<TimeField>},
    {ControlKind::NumberField,
     [](Control& c, const std::string& value) {
       if (value.empty()) return as<NumberField>(c).clear();
       as<NumberField>(c).Value = intOf(value);
     },
     [](const Control& c) { return as<NumberField>(c).Text(); },
     [](const Control& c) { return as<NumberField>(c).Text(); }, lock<NumberField>, onChange<NumberField>},
    {ControlKind::CurrencyField,
     [](Control& c, const std::string& value) { as<CurrencyField>(c).Text(value); },
     [](const Control& c) { return as<CurrencyField>(c).plain(); },
     [](const Control& c) { return as<CurrencyField>(c).plain(); }, lock<CurrencyField>,
     onChange<CurrencyField>},
    {ControlKind::MaskedField, [](Control& c, const std::string& value) { as<MaskedField>(c).Text = value; },
     textOf<MaskedField>, textOf<MaskedField>, lock<MaskedField>, onChange<MaskedField>},
};

}  // namespace

const FieldKind* fieldKindOf(const Control& control) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const FieldKind& row) { return row.kind == control.kind(); });
  return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace vantry
