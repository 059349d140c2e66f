#include <QLineEdit>
#include <QPointer>

#include "desktop/qtext.h"
#include "desktop/step_box.h"
#include "desktop/style.h"
#include "platform/number_fields.h"
#include "platform/text.h"

namespace vantry {

class NumberBinder : public TypedBinder {
 public:
  NumberBinder(NumberField& field, Host& host, StepBox& box)
      : TypedBinder(field, host, box, box.line()), field_(field), box_(box) {
    box.fitTo(QString::number(field.Max()) + "00");
    box.onStep = [this](int steps) {
      if (settle()) act([this, steps] { stepField(steps); });
    };
    box.onLeave = [this] { commit(); };
  }
  ~NumberBinder() override {
    box_.onStep = nullptr;
    box_.onLeave = nullptr;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::State) box_.setReadOnly(field_.Locked);
    TypedBinder::update(aspect);
  }

 protected:
  QString shown() const override { return field_.isEmpty() ? unreadable() : qt(field_.Text()); }
  QString unreadable() const override { return field_.isEmpty() ? qt(field_.Unreadable()) : QString(); }
  bool isWhole(const QString& text) const override {
    return isNumber(utf8(text)) && QString::number(intOf(utf8(text))) == text &&
           intOf(utf8(text)) >= field_.Min() && intOf(utf8(text)) <= field_.Max();
  }
  void enter(const std::string& text) override { field_.type(text); }
  bool isLocked() const override { return field_.Locked; }

 private:
  void stepField(int steps) {
    const QPointer<Binder> alive(this);
    for (int i = 0; i < std::abs(steps) && alive; ++i) field_.spin(steps > 0 ? 1 : -1);
  }
  NumberField& field_;
  StepBox& box_;
};

/// Amounts and masked texts are lines; the model brings them into shape.
template <class Field>
class LineBinderOf : public TypedBinder {
 public:
  LineBinderOf(Field& field, Host& host, QLineEdit& line)
      : TypedBinder(field, host, line, line), field_(field), line_(line) {}

  void update(Aspect aspect) override {
    if (aspect == Aspect::State) line_.setReadOnly(field_.Locked);
    TypedBinder::update(aspect);
  }

 protected:
  QString shown() const override;
  QString unreadable() const override { return {}; }
  bool isWhole(const QString&) const override { return false; }
  void enter(const std::string& text) override { field_.type(text); }
  bool isLocked() const override { return field_.Locked; }

 private:
  Field& field_;
  QLineEdit& line_;
};

template <>
QString LineBinderOf<CurrencyField>::unreadable() const {
  return field_.isEmpty() ? qt(field_.Unreadable()) : QString();
}
template <>
QString LineBinderOf<CurrencyField>::shown() const {
  return unreadable().isEmpty() ? qt(field_.Text()) : unreadable();
}
template <>
QString LineBinderOf<MaskedField>::shown() const {
  return qt(field_.Text.get());
}

static QLineEdit* lineFor(const QString& widest, QWidget* parent) {
  auto* line = new QLineEdit(parent);
  line->setFixedWidth(line->fontMetrics().horizontalAdvance(widest) + 4 * style::kUnit);
  return line;
}

std::unique_ptr<Binder> bindNumberField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<NumberBinder>(static_cast<NumberField&>(control), host, *new StepBox(parent));
}

std::unique_ptr<Binder> bindCurrencyField(Control& control, Host& host, QWidget* parent) {
  auto* line = lineFor(QStringLiteral("$9000000000.00"), parent);
  line->setAlignment(Qt::AlignRight);
  return std::make_unique<LineBinderOf<CurrencyField>>(static_cast<CurrencyField&>(control), host, *line);
}

std::unique_ptr<Binder> bindMaskedField(Control& control, Host& host, QWidget* parent) {
  auto& field = static_cast<MaskedField&>(control);
  auto* line = lineFor(qt(field.Mask()), parent);
  line->setPlaceholderText(qt(field.Mask()).replace('#', '_'));
  return std::make_unique<LineBinderOf<MaskedField>>(field, host, *line);
}

}  // namespace vantry
