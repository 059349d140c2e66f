#include "platform/moment_check.h"

#include "platform/desktop.h"
#include "platform/fields.h"
#include "platform/find_control.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry {
namespace {

enum class State { Given, Empty, Unreadable };

template <class Field>
State stateOf(const Control& control) {
  const auto& field = static_cast<const Field&>(control);
  if (!field.isEmpty()) return State::Given;
  return field.Unreadable().empty() ? State::Empty : State::Unreadable;
}

State stateOf(const Control& control) {
  switch (control.kind()) {
    case ControlKind::DateField:
      return stateOf<DateField>(control);
    case ControlKind::TimeField:
    case ControlKind::SpinTimeField:
      return stateOf<TimeField>(control);
    default:
      return State::Given;
  }
}

/// What the operator reads beside the field: the caption of the label before it, without its marks.
std::string nameOf(const Control& field) {
  if (!field.AccessibleName.empty()) return field.AccessibleName;
  std::string name;
  for (const Control* control : field.parent().Controls()) {
    if (control == &field) break;
    if (control->kind() == ControlKind::Label) name = static_cast<const Label*>(control)->Caption;
  }
  std::erase(name, '&');
  if (name.ends_with(':')) name.pop_back();
  return name;
}

bool refuse(const Container& container, State least) {
  Control* const wrong = findIn(
      container, [&](const Control& control) { return control.usable() && stateOf(control) >= least; });
  if (!wrong) return true;
  const std::string name = nameOf(*wrong);
  informationBox(wrong->form().windows().desktop(), wrong->kind() == ControlKind::DateField
                                                        ? "Please enter a valid date for " + name + "."
                                                        : name + " is invalid!");
  wrong->SetFocus();
  return false;
}

}  // namespace

bool momentsAreReadable(const Container& container) {
  return refuse(container, State::Unreadable);
}

bool momentsAreGiven(const Container& container) {
  return refuse(container, State::Empty);
}

}  // namespace vantry
