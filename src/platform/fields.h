#pragma once

#include <optional>
#include <string>

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
  /// The operator enters a date; nothing empties the field.
  void enter(std::optional<Date> date);
  void pressEnter();
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
  void enter(std::optional<Time> time);
  void pressEnter();

 protected:
  TimeField(Container& parent, std::string name, ControlKind kind);
};

}  // namespace vantry
