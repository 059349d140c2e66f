#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/control.h"
#include "platform/datetime.h"

namespace vantry {

/// A date that may be missing. Shown in the system's short form.
class DateField : public Control {
 public:
  DateField(Container& parent, std::string name);
  Property<std::optional<Date>> Value{*this, Aspect::Value};
  Event Change;
  Event Enter;

  bool isEmpty() const { return !Value.get().has_value(); }
  /// The date in the system's short form; empty without a date.
  std::string shortDate() const;
  /// What was typed and is no date. The field is empty then and still shows it.
  const std::string& Unreadable() const { return unreadable_; }
  /// Empties the field, also of text that cannot be read.
  void clear();

  // The operator's actions.
  /// Sets a date; nothing empties the field.
  void enter(std::optional<Date> date);
  /// Enters what the text reads as (`readDate`).
  void type(std::string_view text, const Date& today);
  std::optional<Date> read(std::string_view text, const Date& today) const;
  void pressEnter();

 private:
  std::string unreadable_;
};

/// A time of day that may be missing.
class TimeField : public Control {
 public:
  TimeField(Container& parent, std::string name);
  Property<std::optional<Time>> Value{*this, Aspect::Value};
  Event Change;
  Event Enter;

  bool isEmpty() const { return !Value.get().has_value(); }
  /// The value as "hh:mm" or "hh:mm AMPM"; empty without a value.
  std::string text24() const;
  std::string textAmPm() const;
  /// What was typed and is no time. The field is empty then and still shows it.
  const std::string& Unreadable() const { return unreadable_; }
  /// Empties the field, also of text that cannot be read.
  void clear();

  // The operator's actions.
  void enter(std::optional<Time> time);
  /// Enters what the text reads as (`readTime`).
  void type(std::string_view text);
  void pressEnter();

 protected:
  TimeField(Container& parent, std::string name, ControlKind kind);

 private:
  std::string unreadable_;
};

}  // namespace vantry
