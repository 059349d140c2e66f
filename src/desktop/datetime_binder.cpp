#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <optional>

#include "desktop/binder.h"
#include "desktop/date_popup.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/step_box.h"
#include "desktop/style.h"
#include "platform/clock.h"
#include "platform/fields.h"
#include "platform/form.h"
#include "platform/typed_moments.h"
#include "platform/windows.h"

namespace vantry {

static constexpr int kQuarter = 15;
static constexpr int kMinutesOfDay = 24 * 60;

/// A line that tells of the keys which step its value and of leaving it.
class EntryLine : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  /// Steps: 1 or -1; large with the page keys.
  std::function<void(int, bool)> onStep;
  std::function<void()> onLeave;
  std::function<void()> onOpen;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key == Qt::Key_F4 || (key == Qt::Key_Down && event->modifiers() & Qt::AltModifier))
      return call(onOpen);
    const bool up = key == Qt::Key_Up || key == Qt::Key_PageUp;
    const bool down = key == Qt::Key_Down || key == Qt::Key_PageDown;
    const auto step = onStep;  // whoever listens may go while it does
    if ((up || down) && step && !isReadOnly())
      return step(up ? 1 : -1, key == Qt::Key_PageUp || key == Qt::Key_PageDown);
    QLineEdit::keyPressEvent(event);
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) call(onLeave);
  }

 private:
  /// A copy: whoever listens may go while it does.
  static void call(std::function<void()> handler) {
    if (handler) handler();
  }
};

/// What date and time fields share.
template <class Field>
class EntryBinder : public TypedBinder {
 public:
  EntryBinder(Field& field, Host& host, EntryLine& line)
      : TypedBinder(field, host, line, line), field_(field), line_(line) {
    line.installEventFilter(this);
    line.onLeave = [this] { commit(); };
  }
  ~EntryBinder() override {
    line_.onLeave = line_.onOpen = nullptr;
    line_.onStep = nullptr;
  }

  /// Enter ends the entry. Where the window answers it, it goes no further: the focus may move, and the
  /// button that has it then was not meant.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!isEnter(*event)) return TypedBinder::eventFilter(watched, event);
    const bool answered = static_cast<bool>(field_.Enter);
    if (settle() && answered) act([this] { field_.pressEnter(); });
    return answered;
  }

 protected:
  QString unreadable() const override { return field_.isEmpty() ? qt(field_.Unreadable()) : QString(); }
  template <class Value>
  void set(const Value& value) {
    if (value != field_.Value.get()) act([this, value] { field_.enter(value); });
  }
  Field& field() const { return field_; }
  EntryLine& line() const { return line_; }

 private:
  Field& field_;
  EntryLine& line_;
};

class DateBinder : public EntryBinder<DateField> {
 public:
  DateBinder(DateField& field, Host& host, EntryLine& line)
      : EntryBinder(field, host, line), format_(field.form().windows().shortDateFormat()) {
    line.setPlaceholderText(qt(format_).toLower());
    line.setFixedWidth(line.fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000")) + 9 * style::kUnit);
    auto* open = line.addAction(icon("calendar"), QLineEdit::TrailingPosition);
    open->setToolTip(QObject::tr("Calendar"));
    connect(open, &QAction::triggered, this, [this] { openCalendar(); });
    line.onOpen = [this] { openCalendar(); };
    line.onStep = [this](int step, bool large) { moveBy(step, large); };
  }

 protected:
  QString shown() const override {
    return field().isEmpty() ? unreadable() : qt(formatDate(*field().Value.get(), format_));
  }
  bool isWhole(const QString& text) const override {
    const auto date = field().read(utf8(text), today());
    return date && qt(formatDate(*date, format_)) == text;
  }
  void enter(const std::string& text) override { field().type(text, today()); }

 private:
  static Date today() { return SystemClock().now().date; }

  void moveBy(int step, bool large) {
    if (!settle()) return;
    const auto& value = field().Value.get();
    if (!value) return set(std::optional(today()));
    set(std::optional(large ? addMonths(*value, step) : addDays(*value, step)));
  }

  void openCalendar() {
    if (!field().usable() || !settle()) return;
    auto* popup = new DatePopup(field().Value.get().value_or(today()), &line());
    popup->onChosen = [self = QPointer<DateBinder>(this)](const Date& day) {
      if (self) self->set(std::optional(day));
    };
    popup->openBelow(line());
  }

  std::string format_;
};

class TimeBinder : public EntryBinder<TimeField> {
 public:
  TimeBinder(TimeField& field, Host& host, EntryLine& line) : EntryBinder(field, host, line) {
    line.setFixedWidth(line.fontMetrics().horizontalAdvance(QStringLiteral("00:00 PM")) + 6 * style::kUnit);
    line.onStep = [this](int step, bool large) { moveBy(step * (large ? 60 : kQuarter)); };
  }

 protected:
  QString shown() const override {
    return field().isEmpty() ? unreadable() : shortTime(*field().Value.get());
  }
  bool isWhole(const QString& text) const override {
    const auto time = readTime(utf8(text));
    return time && shortTime(*time) == text;
  }
  void enter(const std::string& text) override { field().type(text); }

 private:
  void moveBy(int minutes) {
    if (!settle()) return;
    const Time now = field().Value.get().value_or(Time{12, 0, 0});
    const int moment = (now.hour * 60 + now.minute + minutes + kMinutesOfDay) % kMinutesOfDay;
    set(std::optional(Time{moment / 60, moment % 60, 0}));
  }
};

std::unique_ptr<Binder> bindDateField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<DateBinder>(static_cast<DateField&>(control), host, *new EntryLine(parent));
}

std::unique_ptr<Binder> bindTimeField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<TimeBinder>(static_cast<TimeField&>(control), host, *new EntryLine(parent));
}

}  // namespace vantry
