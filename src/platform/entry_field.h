#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/control.h"

namespace vantry {

/// A field whose text is read as a value. Text that cannot be read empties the field, which still shows it.
class EntryField : public Control {
 public:
  using Control::Control;
  Event Change;

  virtual bool isEmpty() const = 0;
  /// Empties the field, also of text that cannot be read.
  virtual void clear() = 0;
  /// What was typed and cannot be read.
  const std::string& Unreadable() const { return unreadable_; }
  /// What the operator is told of such text in a field of this name.
  virtual std::string complaint(const std::string& name) const { return name + " is invalid!"; }

 protected:
  std::string unreadable_;
};

/// One whose value may be missing.
template <class T>
class ValueField : public EntryField {
 public:
  ValueField(Container& parent, std::string name, ControlKind kind)
      : EntryField(parent, std::move(name), kind) {
    Value.Changed = [this] {
      if (!isEmpty()) unreadable_.clear();
      raise(Change);
    };
  }
  Property<std::optional<T>> Value{*this, Aspect::Value};

  bool isEmpty() const final { return !Value.get().has_value(); }
  void clear() final { take({}, {}); }

 protected:
  /// Sets what the text reads as. Other text that cannot be read is a change, too.
  void take(std::optional<T> value, std::string_view text) {
    std::string unreadable(value ? std::string_view() : text);
    const bool onlyText = Value.get() == value && unreadable != unreadable_;
    unreadable_ = std::move(unreadable);
    tell(Aspect::Value);
    if (onlyText) return raise(Change);
    Value = value;
  }
};

}  // namespace vantry
