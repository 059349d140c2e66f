#include "platform/fields.h"

#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/text.h"
#include "platform/typed_moments.h"
#include "platform/windows.h"

namespace vantry {

DateField::DateField(Container& parent, std::string name)
    : Control(parent, std::move(name), ControlKind::DateField) {
  Value.Changed = [this] {
    if (!isEmpty()) unreadable_.clear();
    raise(Change);
  };
}

std::string DateField::shortDate() const {
  if (isEmpty()) return {};
  return formatDate(*Value.get(), form().windows().shortDateFormat());
}

void DateField::clear() {
  unreadable_.clear();
  tell(Aspect::Value);
  Value = std::nullopt;
}

void DateField::enter(std::optional<Date> date) {
  if (usable()) Value = date;
}

std::optional<Date> DateField::read(std::string_view text, const Date& today) const {
  return readDate(text, form().windows().shortDateFormat(), today, Value.get().value_or(today));
}

void DateField::type(std::string_view text, const Date& today) {
  if (!usable()) return;
  const auto date = read(text, today);
  unreadable_ = date ? std::string_view() : trim(text);
  tell(Aspect::Value);
  Value = date;
}

void DateField::pressEnter() {
  if (usable()) raise(Enter);
}

TimeField::TimeField(Container& parent, std::string name)
    : TimeField(parent, std::move(name), ControlKind::TimeField) {}

TimeField::TimeField(Container& parent, std::string name, ControlKind kind)
    : Control(parent, std::move(name), kind) {
  Value.Changed = [this] {
    if (!isEmpty()) unreadable_.clear();
    raise(Change);
  };
}

std::string TimeField::text24() const {
  return isEmpty() ? std::string() : hourMinute(*Value.get());
}

std::string TimeField::textAmPm() const {
  return isEmpty() ? std::string() : hourMinuteAmPm(*Value.get());
}

void TimeField::clear() {
  unreadable_.clear();
  tell(Aspect::Value);
  Value = std::nullopt;
}

void TimeField::enter(std::optional<Time> time) {
  if (usable()) Value = time;
}

void TimeField::type(std::string_view text) {
  if (!usable()) return;
  const auto time = readTime(text);
  unreadable_ = time ? std::string_view() : trim(text);
  tell(Aspect::Value);
  Value = time;
}

void TimeField::pressEnter() {
  if (usable()) raise(Enter);
}

}  // namespace vantry
