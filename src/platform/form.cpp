#include "platform/form.h"

#include <functional>
#include <utility>

#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/find_control.h"
#include "platform/windows.h"

namespace vantry {

Form::Form(Windows& windows, std::string name)
    : Container(static_cast<Form&>(*this)), windows_(windows), name_(std::move(name)) {}

Form::~Form() {
  if (loaded_) windows_.remove(*this);
  windows_.desktop().forget(*this);
}

void Form::Load() {
  if (loaded_) return;
  loaded_ = true;
  windows_.add(*this);
  Form_Load();
}

void Form::Show() {
  Load();
  if (!loaded_) return;  // Form_Load may have unloaded it
  shown_ = true;
  windows_.desktop().show(*this);
}

void Form::ShowModal() {
  Load();
  if (!loaded_) return;
  shown_ = true;
  windows_.desktop().runModal(*this);
}

void Form::Hide() {
  if (!shown_) return;
  shown_ = false;
  windows_.desktop().hide(*this);
}

bool Form::Unload() {
  if (!loaded_) return true;
  if (!Form_Unload()) return false;
  loaded_ = false;
  active_ = nullptr;
  Hide();
  windows_.remove(*this);
  return true;
}

void Form::SetFocus() {
  windows_.desktop().activate(*this);
}

void Form::Refresh() {
  windows_.desktop().repaint(*this, true);
}

void Form::closeByOperator() {
  if (Enabled) Unload();
}

Control* Form::findControl(std::string_view name) const {
  return findIn(*this, [name](const Control& control) { return control.Name() == name; });
}

TextBox* Form::scanField() const {
  return static_cast<TextBox*>(findIn(*this, [](const Control& control) {
    return control.kind() == ControlKind::TextBox && static_cast<const TextBox&>(control).TakesScans &&
           control.usable();
  }));
}

bool Form::scan(std::string_view text) {
  if (!Enabled) return false;
  if (ScanReceived) {
    ScanReceived(text);
    return true;
  }
  TextBox* field = scanField();
  if (!field && active_ && active_->kind() == ControlKind::TextBox) field = static_cast<TextBox*>(active_);
  if (!field || !field->Enter) return false;
  field->type(text);
  field->pressEnter();
  return true;
}

void Form::focusOn(Control& control) {
  // A busy window's controls cannot be used, yet commands place the focus before they make it ready again.
  if (!control.Enabled || !control.Visible) return;
  leaveFor(&control);
  if (active_ != &control) return;
  windows_.desktop().focus(control);
  raise(control.GotFocus);
}

void Form::focusMoved(Control* control) {
  if (active_ == control) return;
  leaveFor(control);
  if (control && active_ == control) raise(control->GotFocus);
}

bool Form::leaveField() {
  Control* const field = active_;
  leaveFor(nullptr);
  if (active_) return false;
  active_ = field;
  return true;
}

void Form::leaveFor(Control* next) {
  Control* left = std::exchange(active_, next);
  if (left && left != next) raise(left->LostFocus);
}

void Form::timerChanged(Timer& timer) {
  windows_.desktop().timerChanged(timer);
}

MenuItem::MenuItem(Form& form, std::string name, std::string caption) : form_(form), name_(std::move(name)) {
  Caption.put(std::move(caption));
  form.menus_.push_back(this);
}

MenuItem::MenuItem(MenuItem& parent, std::string name, std::string caption)
    : form_(parent.form()), parent_(&parent), name_(std::move(name)) {
  Caption.put(std::move(caption));
  parent.items_.push_back(this);
}

bool MenuItem::usable() const {
  if (!Enabled || !form_.Enabled) return false;
  if (!parent_) return true;  // bar entries that are hidden serve as popups
  return Visible && parent_->usable() && (!parent_->parent_ || parent_->Visible);
}

void MenuItem::choose() {
  if (usable()) raise(Click);
}

}  // namespace vantry
