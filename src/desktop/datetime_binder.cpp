#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <optional>

#include "desktop/binder.h"
#include "desktop/date_popup.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/clock.h"
#include "platform/fields.h"
#include "platform/form.h"
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

/// What date and time fields share: the text is taken over once it is whole or the operator leaves it; a text
/// that is no value gives way to the value before it.
template <class Field, class Value>
class EntryBinder : public Binder {
 public:
  EntryBinder(Field& field, Host& host, EntryLine& line)
      : Binder(field, host, line), field_(field), line_(line) {
    connect(&line, &QLineEdit::textEdited, this, [this] {
      typed_ = true;
      if (isWhole(line_.text())) take();
    });
    line.installEventFilter(this);
    line.onLeave = [this] { commit(); };
  }
  ~EntryBinder() override {
    line_.onLeave = line_.onOpen = nullptr;
    line_.onStep = nullptr;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Value && !taking_) showValue();
    Binder::update(aspect);
  }

  /// Enter ends the entry. Where the window answers it, it goes no further: the focus may move, and the
  /// button that has it then was not meant.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!isEnter(*event)) return Binder::eventFilter(watched, event);
    const bool answered = static_cast<bool>(field_.Enter);
    if (settle() && answered) act([this] { field_.pressEnter(); });
    return answered;
  }

  void commit() override {
    if (!typed_) return;
    typed_ = false;
    const QString text = line_.text().trimmed();
    const auto value = read(text);
    if (!value && !text.isEmpty()) return showValue();
    showText(value);
    enter(value);
  }

 protected:
  virtual std::optional<Value> read(const QString& text) const = 0;
  virtual QString write(const Value& value) const = 0;
  /// Whether a text under way can only be meant as it stands.
  virtual bool isWhole(const QString& text) const = 0;

  void enter(const std::optional<Value>& value) {
    if (value != field_.Value.get()) act([this, value] { field_.enter(value); });
  }
  Field& field() const { return field_; }
  EntryLine& line() const { return line_; }

 private:
  void take() {
    const auto value = read(line_.text().trimmed());
    taking_ = true;  // the text stands as the operator writes it
    QPointer<Binder> alive(this);
    enter(value);
    if (alive) taking_ = false;
  }
  void showValue() { showText(field_.Value.get()); }
  void showText(const std::optional<Value>& value) {
    const QString text = value ? write(*value) : QString();
    if (line_.text() != text) line_.setText(text);
    typed_ = false;
  }

  Field& field_;
  EntryLine& line_;
  bool typed_ = false;
  bool taking_ = false;
};

class DateBinder : public EntryBinder<DateField, Date> {
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
  std::optional<Date> read(const QString& text) const override { return parseDate(utf8(text), format_); }
  QString write(const Date& date) const override { return qt(formatDate(date, format_)); }
  bool isWhole(const QString& text) const override {
    const auto date = read(text);
    return date && write(*date) == text;
  }

 private:
  static Date today() { return SystemClock().now().date; }

  void moveBy(int step, bool large) {
    if (!settle()) return;
    const auto& value = field().Value.get();
    if (!value) return enter(today());
    enter(large ? addMonths(*value, step) : addDays(*value, step));
  }

  void openCalendar() {
    if (!field().usable() || !settle()) return;
    auto* popup = new DatePopup(field().Value.get().value_or(today()), &line());
    popup->onChosen = [self = QPointer<DateBinder>(this)](const Date& day) {
      if (self) self->enter(day);
    };
    popup->openBelow(line());
  }

  std::string format_;
};

class TimeBinder : public EntryBinder<TimeField, Time> {
 public:
  TimeBinder(TimeField& field, Host& host, EntryLine& line) : EntryBinder(field, host, line) {
    line.setFixedWidth(line.fontMetrics().horizontalAdvance(QStringLiteral("00:00 PM")) + 6 * style::kUnit);
    line.onStep = [this](int step, bool large) { moveBy(step * (large ? 60 : kQuarter)); };
  }

 protected:
  std::optional<Time> read(const QString& text) const override { return parseClockTime(utf8(text)); }
  QString write(const Time& time) const override { return shortTime(time); }
  bool isWhole(const QString& text) const override {
    const auto time = read(text);
    return time && write(*time) == text;
  }

 private:
  void moveBy(int minutes) {
    if (!settle()) return;
    const Time now = field().Value.get().value_or(Time{12, 0, 0});
    const int moment = (now.hour * 60 + now.minute + minutes + kMinutesOfDay) % kMinutesOfDay;
    enter(Time{moment / 60, moment % 60, 0});
  }
};

std::unique_ptr<Binder> bindDateField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<DateBinder>(static_cast<DateField&>(control), host, *new EntryLine(parent));
}

std::unique_ptr<Binder> bindTimeField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<TimeBinder>(static_cast<TimeField&>(control), host, *new EntryLine(parent));
}

}  // namespace vantry
