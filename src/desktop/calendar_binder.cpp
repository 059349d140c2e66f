#include "platform/calendars.h"

#include "desktop/binder.h"
#include "desktop/calendar_widget.h"
#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

class CalendarBinder : public Binder {
 public:
  CalendarBinder(CalendarControl& calendar, Host& host, CalendarWidget& widget)
      : Binder(calendar, host, widget), calendar_(calendar), widget_(widget) {
    widget.lookOf = [this](const Date& day) {
      const DayMark& mark = calendar_.markOf(day);
      return CalendarWidget::Look{style::colour(mark.colour, QColor()), qt(mark.hint)};
    };
    widget.onAction = [this](CalendarWidget::Action action, const Date& day) {
      const bool twice = action == CalendarWidget::Action::DoubleClick;
      act([this, twice, day] { twice ? calendar_.doubleClick(day) : calendar_.click(day); });
    };
  }
  ~CalendarBinder() override {
    widget_.lookOf = nullptr;
    widget_.onAction = nullptr;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Value) widget_.setChosen(calendar_.Value);
    if (aspect == Aspect::Cells) widget_.update();
    if (aspect == Aspect::Value || aspect == Aspect::Cells) describe();
    Binder::update(aspect);
  }

 private:
  /// What a screen reader says of the chosen day.
  void describe() {
    const std::string& hint = calendar_.markOf(calendar_.Value).hint;
    widget_.setAccessibleDescription(qt(serverDate(calendar_.Value) + (hint.empty() ? "" : ", " + hint)));
  }

  CalendarControl& calendar_;
  CalendarWidget& widget_;
};

std::unique_ptr<Binder> bindMonthCalendar(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<CalendarBinder>(static_cast<CalendarControl&>(control), host,
                                          *new CalendarWidget(CalendarWidget::Span::Month, parent));
}

std::unique_ptr<Binder> bindYearCalendar(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<CalendarBinder>(static_cast<CalendarControl&>(control), host,
                                          *new CalendarWidget(CalendarWidget::Span::Year, parent));
}

}  // namespace vantry
