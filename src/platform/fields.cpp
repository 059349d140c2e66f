#include "platform/fields.h"

#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry {

DateField::DateField(Container& parent, std::string name)
    : Control(parent, std::move(name), ControlKind::DateField) {
  Value.Changed = [this] { raise(Change); };
}

std::string DateField::shortDate() const {
  if (isEmpty()) return {};
  return formatDate(*Value.get(), form().windows().shortDateFormat());
}

void DateField::enter(std::optional<Date> date) {
  if (usable()) Value = date;
}

void DateField::pressEnter() {
  if (usable()) raise(Enter);
}

TimeField::TimeField(Container& parent, std::string name)
    : TimeField(parent, std::move(name), ControlKind::TimeField) {}

TimeField::TimeField(Container& parent, std::string name, ControlKind kind)
    : Control(parent, std::move(name), kind) {
  Value.Changed = [this] { raise(Change); };
}

std::string TimeField::text24() const {
  return isEmpty() ? std::string() : hourMinute(*Value.get());
}

std::string TimeField::textAmPm() const {
  return isEmpty() ? std::string() : hourMinuteAmPm(*Value.get());
}

void TimeField::enter(std::optional<Time> time) {
  if (usable()) Value = time;
}

void TimeField::pressEnter() {
  if (usable()) raise(Enter);
}

}  // namespace vantry
