#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/datetime.h"
#include "platform/entry_field.h"

namespace vantry {

/// A date that may be missing. Shown in the system's short form.
class DateField : public ValueField<Date> {
 public:
  DateField(Container& parent, std::string name);
  Event Enter;

  /// The date in the system's short form; empty without a date.
  std::string shortDate() const;
  std::string complaint(const std::string& name) const override;

  // The operator's actions.
  /// Sets a date; nothing empties the field.
  void enter(std::optional<Date> date);
  /// Enters what the text reads as (`readDate`).
  void type(std::string_view text, const Date& today);
  std::optional<Date> read(std::string_view text, const Date& today) const;
  void pressEnter();
};

/// A time of day that may be missing.
class TimeField : public ValueField<Time> {
 public:
  TimeField(Container& parent, std::string name);
  Event Enter;

  /// The value as "hh:mm" or "hh:mm AMPM"; empty without a value.
  std::string text24() const;
  std::string textAmPm() const;

  // The operator's actions.
  void enter(std::optional<Time> time);
  /// Enters what the text reads as (`readTime`).
  void type(std::string_view text);
  void pressEnter();

 protected:
  TimeField(Container& parent, std::string name, ControlKind kind);
};

}  // namespace vantry
