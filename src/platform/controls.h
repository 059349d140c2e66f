#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/control.h"

namespace vantry {

/// Text that is only read. With `ReadOnlyField` it looks like a field that cannot be changed.
class Label : public Control {
 public:
  Label(Container& parent, std::string name, std::string caption = {})
      : Control(parent, std::move(name), ControlKind::Label) {
    Caption.put(std::move(caption));
  }
  Property<std::string> Caption{*this, Aspect::Caption};
  bool ReadOnlyField = false;
  bool Heading = false;    ///< drawn large, as the heading of what is below
  bool Swatch = false;     ///< drawn as a field of its BackColor, as legends are
  bool RowSample = false;  ///< drawn as a row of a list that has its colours
  bool Literal = false;    ///< shows data: an "&" in it is no mnemonic
  bool Alert = false;      ///< tells a fault: a screen reader says a new caption at once
};

/// A picture from the program's own set, by its name.
class Image : public Control {
 public:
  Image(Container& parent, std::string name, std::string picture)
      : Control(parent, std::move(name), ControlKind::Image), Picture(std::move(picture)) {}
  std::string Picture;
};

class Button : public Control {
 public:
  Button(Container& parent, std::string name, std::string caption)
      : Control(parent, std::move(name), ControlKind::Button) {
    Caption.put(std::move(caption));
  }
  Property<std::string> Caption{*this, Aspect::Caption};
  Event Click;
  bool Default = false;  ///< pressed by Enter
  bool Cancel = false;   ///< pressed by Escape

  /// The operator presses it; a button that cannot be used stays silent.
  void press();
};

class TextBox : public Control {
 public:
  TextBox(Container& parent, std::string name);
  Property<std::string> Text{*this, Aspect::Text};
  Property<bool> Locked{*this, Aspect::State};
  Event Change;
  Event DblClick;
  Event SelChange;    ///< another part of the text is selected
  Event Enter;        ///< the operator pressed Enter in it
  int MaxLength = 0;  ///< in characters; 0: no limit
  bool Password = false;
  bool MultiLine = false;
  /// A scan anywhere in the window is entered here while the box can be used (`Form::scan`).
  bool TakesScans = false;
  /// The operator presses a key, named as in `MenuItem::Shortcut`: "F4", "Ctrl+C". True keeps the key from
  /// its usual effect. Enter raises `Enter` instead.
  std::function<bool(std::string_view key)> KeyDown;

  /// The selected part of the text, in characters. Without a selection its length is 0 and it starts at the
  /// cursor. A new text has the cursor at its end.
  int SelStart() const { return selStart_; }
  int SelLength() const { return selLength_; }
  std::string SelText() const;
  /// Replaces the selected part; the cursor is placed behind the new one.
  void SelText(std::string_view text);
  /// Selects a part of the text, up to its end at most.
  void Select(int start, int length);
  /// Selects the whole text, so that typing replaces it.
  void SelectText();

  // The operator's actions.
  void type(std::string_view text);  ///< replaces the whole text
  void pressEnter();
  bool pressKey(std::string_view key);  ///< whether the window has answered the key
  void doubleClick();
  void selected(int start, int length);

 private:
  void place(int start, int length);
  int selStart_ = 0;
  int selLength_ = 0;
};

class CheckBox : public Control {
 public:
  CheckBox(Container& parent, std::string name, std::string caption);
  Property<std::string> Caption{*this, Aspect::Caption};
  Property<bool> Value{*this, Aspect::Value};
  Event Click;

  void toggle();
};

/// One of several: choosing one takes the choice from the others of the same container.
class OptionButton : public Control {
 public:
  OptionButton(Container& parent, std::string name, std::string caption);
  Property<std::string> Caption{*this, Aspect::Caption};
  Property<bool> Value{*this, Aspect::Value};
  Event Click;

  void choose();
};

/// A list of entries, each a text with a text of data behind it; -1 is no selection.
class ListControl : public Control {
 public:
  Property<int> ListIndex{*this, Aspect::Selection, -1};
  Event Click;

  void AddItem(std::string text, std::string data = {});
  void Clear();
  int ListCount() const { return static_cast<int>(items_.size()); }
  /// The text or the data of an entry; empty beyond the ends.
  const std::string& List(int index) const;
  const std::string& ItemData(int index) const;
  /// The first entry with this data or text, or -1.
  int indexOfData(std::string_view data) const;
  int indexOf(std::string_view text) const;

  /// The operator selects an entry.
  void select(int index);

 protected:
  ListControl(Container& parent, std::string name, ControlKind kind);
  /// Whether the operator may choose another entry.
  virtual bool takesChoice() const { return usable(); }

  struct Item {
    std::string text;
    std::string data;
    bool selected = false;
  };
  std::vector<Item> items_;
};

class ComboBox : public ListControl {
 public:
  ComboBox(Container& parent, std::string name)
      : ListControl(parent, std::move(name), ControlKind::ComboBox) {}
  /// Shows its entry and lets the operator choose no other.
  Property<bool> Locked{*this, Aspect::State};
  /// The selected entry's text; empty without a selection.
  const std::string& Text() const { return List(ListIndex); }

 protected:
  bool takesChoice() const override { return usable() && !Locked; }
};

class ListBox : public ListControl {
 public:
  ListBox(Container& parent, std::string name) : ListControl(parent, std::move(name), ControlKind::ListBox) {}
  Event DblClick;
  void doubleClick(int index);

  /// Each entry can be selected by itself; `ListIndex` has no meaning then, and `Click` tells of the
  /// operator's choices alone.
  bool MultiSelect = false;
  bool Selected(int index) const { return items_.at(static_cast<std::size_t>(index)).selected; }
  void Selected(int index, bool on);
  /// The operator selects an entry, or takes that back.
  void toggle(int index);
};

/// A part of a window that holds controls of its own. `BorderStyle` 0 shows neither line nor caption.
class Frame : public Control, public Container {
 public:
  Frame(Container& parent, std::string name, std::string caption = {}, int border = 1);
  Property<std::string> Caption{*this, Aspect::Caption};
  Property<int> BorderStyle{*this, Aspect::State, 1};
  /// One of many of which an operator sees some: what stands in it is made when it is first shown.
  bool FillsWhenShown = false;
  bool reachable() const override { return usable(); }

  using Container::form;
};

/// Raises `Tick` at an interval; not while it is disabled or the interval is 0.
class Timer : public Control {
 public:
  Timer(Container& parent, std::string name);
  Property<int> Interval{*this, Aspect::Value};  ///< milliseconds
  Event Tick;
};

/// The name of one of several controls that share a name: "fraMain(2)".
[[nodiscard]] inline std::string arrayName(std::string_view name, int index) {
  return std::string(name) + '(' + std::to_string(index) + ')';
}

/// Controls of one kind under one name, told apart by their index: "chkLegend(0)".
template <class T>
class ControlArray {
 public:
  ControlArray(std::string name, int first = 0) : name_(std::move(name)), first_(first) {}

  /// Makes the next one.
  template <class... Args>
  T& add(Container& parent, Args&&... args) {
    const int index = first_ + static_cast<int>(items_.size());
    items_.push_back(std::make_unique<T>(parent, arrayName(name_, index), std::forward<Args>(args)...));
    return *items_.back();
  }
  T& operator()(int index) { return *items_.at(static_cast<std::size_t>(index - first_)); }
  const T& operator()(int index) const { return *items_.at(static_cast<std::size_t>(index - first_)); }

 private:
  std::string name_;
  int first_;
  std::vector<std::unique_ptr<T>> items_;
};

}  // namespace vantry
