#include "platform/entry_check.h"

#include <algorithm>

#include "platform/desktop.h"
#include "platform/entry_field.h"
#include "platform/find_control.h"
#include "platform/form.h"
#include "platform/tabs.h"
#include "platform/windows.h"

namespace vantry {
namespace {

enum class State { Given, Empty, Unreadable };

State stateOf(const Control& control) {
  const auto* field = dynamic_cast<const EntryField*>(&control);
  if (!field || !field->isEmpty()) return State::Given;
  return field->Unreadable().empty() ? State::Empty : State::Unreadable;
}

/// The tab strip whose tabs show the frame, and which of them does; nothing for other controls.
struct Tab {
  TabStrip* strip = nullptr;
  int place = 0;
};
Tab tabOf(const Control& page) {
  for (Control* each : page.parent().Controls()) {
    if (each->kind() != ControlKind::TabStrip) continue;
    auto& strip = static_cast<TabStrip&>(*each);
    const auto found = std::find(strip.Pages.begin(), strip.Pages.end(), &page);
    if (found != strip.Pages.end()) return {&strip, static_cast<int>(found - strip.Pages.begin())};
  }
  return {};
}

const Frame* frameOf(const Control& control) {
  return dynamic_cast<const Frame*>(&control.parent());
}

/// Whether the operator can use it now, or once the tab is chosen that shows it.
bool isWithinReach(const Control& control) {
  if (!control.Enabled || !(control.Visible || tabOf(control).strip)) return false;
  const Frame* frame = frameOf(control);
  return frame ? isWithinReach(*frame) : control.parent().reachable();
}

void bringForward(const Control& control) {
  const Frame* frame = frameOf(control);
  if (!frame) return;
  bringForward(*frame);
  if (const Tab tab = tabOf(*frame); tab.strip) tab.strip->SelectedTab = tab.place;
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
      container, [&](const Control& control) { return stateOf(control) >= least && isWithinReach(control); });
  if (!wrong) return true;
  bringForward(*wrong);
  informationBox(wrong->form().windows().desktop(),
                 static_cast<EntryField&>(*wrong).complaint(nameOf(*wrong)));
  wrong->SetFocus();
  return false;
}

}  // namespace

bool entriesAreReadable(const Container& container) {
  return refuse(container, State::Unreadable);
}

bool entriesAreGiven(const Container& container) {
  return refuse(container, State::Empty);
}

}  // namespace vantry
