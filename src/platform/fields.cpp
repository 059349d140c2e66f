#include "platform/fields.h"

#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/text.h"
#include "platform/typed_moments.h"
#include "platform/windows.h"

namespace vantry {

DateField::DateField(Container& parent, std::string name)
    : ValueField(parent, std::move(name), ControlKind::DateField) {}

std::string DateField::shortDate() const {
  if (isEmpty()) return {};
  return formatDate(*Value.get(), form().windows().shortDateFormat());
}

std::string DateField::complaint(const std::string& name) const {
  return "Please enter a valid date for " + name + ".";
}

void DateField::enter(std::optional<Date> date) {
  if (usable()) Value = date;
}

std::optional<Date> DateField::read(std::string_view text, const Date& today) const {
  return readDate(text, form().windows().shortDateFormat(), today, Value.get().value_or(today));
}

void DateField::type(std::string_view text, const Date& today) {
  if (usable()) take(read(text, today), trim(text));
}

void DateField::pressEnter() {
  if (usable()) raise(Enter);
}

TimeField::TimeField(Container& parent, std::string name)
    : TimeField(parent, std::move(name), ControlKind::TimeField) {}

TimeField::TimeField(Container& parent, std::string name, ControlKind kind)
    : ValueField(parent, std::move(name), kind) {}

std::string TimeField::text24() const {
  return isEmpty() ? std::string() : hourMinute(*Value.get());
}

std::string TimeField::textAmPm() const {
  return isEmpty() ? std::string() : hourMinuteAmPm(*Value.get());
}

void TimeField::enter(std::optional<Time> time) {
  if (usable()) Value = time;
}

void TimeField::type(std::string_view text) {
  if (usable()) take(readTime(text), trim(text));
}

void TimeField::pressEnter() {
  if (usable()) raise(Enter);
}

}  // namespace vantry
