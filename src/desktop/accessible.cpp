#include "desktop/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDate>
#include <QLocale>
#include <QPointer>
#include <map>

#include "desktop/calendar_widget.h"

namespace vantry::accessible {
namespace {

constexpr const char* kRole = "accessibleRole";
constexpr const char* kValue = "accessibleValue";

/// A widget whose binder has said what it is and what it shows.
class PlainAccessible : public QAccessibleWidget {
 public:
  explicit PlainAccessible(QWidget& widget)
      : QAccessibleWidget(&widget, static_cast<QAccessible::Role>(widget.property(kRole).toInt())) {}

  QString text(QAccessible::Text kind) const override {
    const QString value = widget()->property(kValue).toString();
    const QString own = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Value) return value;
    const bool isText = role() == QAccessible::StaticText || role() == QAccessible::AlertMessage;
    if (kind != QAccessible::Name || !isText || value.isEmpty()) return own;
    return own.isEmpty() ? value : own + ": " + value;
  }
};

/// One day of a calendar; by its place, since the calendar may turn to another month.
class DayAccessible : public QAccessibleInterface {
 public:
  DayAccessible(CalendarWidget& calendar, int place) : calendar_(&calendar), place_(place) {}

  bool isValid() const override { return calendar_ && place_ < calendar_->dayCount(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(calendar_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    const Date date = day();
    const QDate shown(date.year, date.month, date.day);
    if (kind == QAccessible::Name) return QLocale::c().toString(shown, "dddd, d MMMM yyyy");
    const bool tells = kind == QAccessible::Description || kind == QAccessible::Value;
    return tells && calendar_->lookOf ? calendar_->lookOf(date).hint : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect place = calendar_->rectOf(day());
    return {calendar_->mapToGlobal(place.topLeft()), place.size()};
  }
  QAccessible::Role role() const override { return QAccessible::Cell; }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.focusable = state.selectable = true;
    state.selected = isValid() && day() == calendar_->chosen();
    state.focused = state.selected && calendar_->hasFocus();
    return state;
  }

 private:
  Date day() const { return addDays(calendar_->firstDay(), place_); }
  QPointer<CalendarWidget> calendar_;
  int place_;
};

class CalendarAccessible : public QAccessibleWidget {
 public:
  explicit CalendarAccessible(CalendarWidget& calendar)
      : QAccessibleWidget(&calendar, QAccessible::Table), calendar_(calendar) {}
  ~CalendarAccessible() override {
    for (const auto& [place, id] : days_) QAccessible::deleteAccessibleInterface(id);
  }
  int childCount() const override { return calendar_.dayCount(); }
  QAccessibleInterface* child(int place) const override {
    if (place < 0 || place >= childCount()) return nullptr;
    const auto known = days_.find(place);
    if (known != days_.end()) return QAccessible::accessibleInterface(known->second);
    auto* day = new DayAccessible(calendar_, place);  // the toolkit's cache owns it
    days_[place] = QAccessible::registerAccessibleInterface(day);
    return day;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const auto day = calendar_.dayAt(calendar_.mapFromGlobal(QPoint(x, y)));
    return day ? child(dayNumber(*day) - dayNumber(calendar_.firstDay())) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (const auto& [place, id] : days_) {
      if (QAccessible::accessibleInterface(id) == child) return place;
    }
    return -1;
  }
  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
    const Date& day = calendar_.chosen();
    return QLocale::c().toString(QDate(day.year, day.month, day.day), "d MMMM yyyy");
  }

 private:
  CalendarWidget& calendar_;
  mutable std::map<int, QAccessible::Id> days_;
};

/// Asked for each class of the object's, from its own to the base ones.
QAccessibleInterface* make(const QString&, QObject* object) {
  if (!object || !object->isWidgetType()) return nullptr;
  auto& widget = static_cast<QWidget&>(*object);
  if (auto* calendar = dynamic_cast<CalendarWidget*>(&widget)) return new CalendarAccessible(*calendar);
  if (widget.property(kRole).isValid()) return new PlainAccessible(widget);
  return nullptr;
}

}  // namespace

void install() {
  QAccessible::installFactory(make);
}

void setRole(QWidget& widget, int role) {
  widget.setProperty(kRole, role);
}

void setValue(QWidget& widget, const QString& value) {
  if (widget.property(kValue).toString() == value) return;
  widget.setProperty(kValue, value);
  QAccessibleEvent event(&widget, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}

}  // namespace vantry::accessible
