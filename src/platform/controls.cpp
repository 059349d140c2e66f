#include "platform/controls.h"

#include <algorithm>

#include "platform/form.h"
#include "platform/text.h"

namespace vantry {

Control::Control(Container& parent, std::string name, ControlKind kind)
    : parent_(parent), name_(std::move(name)), kind_(kind) {
  parent.controls_.push_back(this);
}

bool Control::usable() const {
  return Enabled && Visible && parent_.reachable();
}

void Control::SetFocus() {
  form().focusOn(*this);
}

void Button::press() {
  if (usable()) raise(Click);
}

TextBox::TextBox(Container& parent, std::string name)
    : Control(parent, std::move(name), ControlKind::TextBox) {
  Text.Changed = [this] {
    place(characters(Text.get()), 0);
    raise(Change);
  };
}

std::string TextBox::SelText() const {
  const std::size_t from = placeOfCharacter(Text.get(), selStart_);
  return Text.get().substr(from, placeOfCharacter(Text.get(), selStart_ + selLength_) - from);
}

void TextBox::SelText(std::string_view text) {
  const int end = selStart_ + characters(text);
  const std::size_t from = placeOfCharacter(Text.get(), selStart_);
  const std::size_t to = placeOfCharacter(Text.get(), selStart_ + selLength_);
  Text = Text.get().substr(0, from) + std::string(text) + Text.get().substr(to);
  Select(end, 0);
}

void TextBox::Select(int start, int length) {
  place(start, length);
  tell(Aspect::Selection);
  raise(SelChange);
}

void TextBox::SelectText() {
  Select(0, characters(Text.get()));
}

void TextBox::place(int start, int length) {
  const int all = characters(Text.get());
  selStart_ = std::clamp(start, 0, all);
  selLength_ = std::clamp(length, 0, all - selStart_);
}

void TextBox::type(std::string_view text) {
  if (usable() && !Locked) Text = std::string(text);
}

void TextBox::pressEnter() {
  if (usable()) raise(Enter);
}

bool TextBox::pressKey(std::string_view key) {
  return usable() && KeyDown && KeyDown(key);
}

void TextBox::doubleClick() {
  if (usable()) raise(DblClick);
}

void TextBox::selected(int start, int length) {
  if (start == selStart_ && length == selLength_) return;
  place(start, length);
  raise(SelChange);
}

CheckBox::CheckBox(Container& parent, std::string name, std::string caption)
    : Control(parent, std::move(name), ControlKind::CheckBox) {
  Caption.put(std::move(caption));
  Value.Changed = [this] { raise(Click); };
}

void CheckBox::toggle() {
  if (usable()) Value = !Value;
}

OptionButton::OptionButton(Container& parent, std::string name, std::string caption)
    : Control(parent, std::move(name), ControlKind::OptionButton) {
  Caption.put(std::move(caption));
  Value.Changed = [this] {
    if (!Value) return;
    for (Control* other : this->parent().Controls()) {
      if (other != this && other->kind() == ControlKind::OptionButton)
        static_cast<OptionButton*>(other)->Value = false;
    }
    raise(Click);
  };
}

void OptionButton::choose() {
  if (usable()) Value = true;
}

ListControl::ListControl(Container& parent, std::string name, ControlKind kind)
    : Control(parent, std::move(name), kind) {
  ListIndex.Changed = [this] { raise(Click); };
}

void ListControl::AddItem(std::string text, std::string data) {
  items_.push_back({std::move(text), std::move(data), false});
  tell(Aspect::List);
}

void ListControl::Clear() {
  items_.clear();
  ListIndex.put(-1);  // an emptied list has lost its selection, which is no choice of the operator's
  tell(Aspect::List);
}

const std::string& ListControl::List(int index) const {
  static const std::string none;
  return index < 0 || index >= ListCount() ? none : items_[static_cast<std::size_t>(index)].text;
}

const std::string& ListControl::ItemData(int index) const {
  static const std::string none;
  return index < 0 || index >= ListCount() ? none : items_[static_cast<std::size_t>(index)].data;
}

int ListControl::indexOfData(std::string_view data) const {
  const auto found =
      std::find_if(items_.begin(), items_.end(), [&](const Item& i) { return i.data == data; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

int ListControl::indexOf(std::string_view text) const {
  const auto found =
      std::find_if(items_.begin(), items_.end(), [&](const Item& i) { return i.text == text; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ListControl::select(int index) {
  if (takesChoice() && index >= -1 && index < ListCount()) ListIndex = index;
}

void ListBox::doubleClick(int index) {
  if (!usable()) return;
  select(index);
  raise(DblClick);
}

void ListBox::Selected(int index, bool on) {
  bool& selected = items_.at(static_cast<std::size_t>(index)).selected;
  if (selected == on) return;
  selected = on;
  tell(Aspect::Selection);
}

void ListBox::toggle(int index) {
  if (!usable()) return;
  Selected(index, !Selected(index));
  raise(Click);
}

Frame::Frame(Container& parent, std::string name, std::string caption, int border)
    : Control(parent, std::move(name), ControlKind::Frame), Container(parent.form()) {
  Caption.put(std::move(caption));
  BorderStyle.put(border);
}

Timer::Timer(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::Timer) {
  Enabled.put(false);
  Visible.put(false);
  Enabled.Changed = [this] { form().timerChanged(*this); };
  Interval.Changed = [this] { form().timerChanged(*this); };
}

}  // namespace vantry
