#include "desktop/binder.h"
#include "desktop/calendar_widget.h"
#include "desktop/qtext.h"

namespace vantry {

class CalendarBinder : public Binder {
 public:
  CalendarBinder(CalendarControl& calendar, Host& host, CalendarWidget& widget)
      : Binder(calendar, host, widget), calendar_(calendar), widget_(widget) {
    widget.onClick = [this](const Date& day) { act([this, day] { calendar_.click(day); }); };
    widget.onOpen = [this](const Date& day) { act([this, day] { calendar_.doubleClick(day); }); };
    widget.onMove = [this](int days) { act([this, days] { calendar_.moveBy(days); }); };
  }
  ~CalendarBinder() override { widget_.onClick = widget_.onOpen = nullptr; }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Value || aspect == Aspect::Cells) {
      const DayMark& mark = calendar_.markOf(calendar_.Value);
      widget_.setAccessibleDescription(
          qt(serverDate(calendar_.Value) + (mark.hint.empty() ? "" : ", " + mark.hint)));
      widget_.update();
    }
    Binder::update(aspect);
  }

 private:
  CalendarControl& calendar_;
  CalendarWidget& widget_;
};

static std::unique_ptr<Binder> bindCalendar(Control& control, CalendarWidget::Span span, Host& host,
                                            QWidget* parent) {
  auto& calendar = static_cast<CalendarControl&>(control);
  return std::make_unique<CalendarBinder>(calendar, host, *new CalendarWidget(calendar, span, parent));
}

std::unique_ptr<Binder> bindMonthCalendar(Control& control, Host& host, QWidget* parent) {
  return bindCalendar(control, CalendarWidget::Span::Month, host, parent);
}

std::unique_ptr<Binder> bindYearCalendar(Control& control, Host& host, QWidget* parent) {
  return bindCalendar(control, CalendarWidget::Span::Year, host, parent);
}

}  // namespace vantry
