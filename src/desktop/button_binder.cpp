#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

/// A button that stands beside its field and opens a choice for it.
static constexpr std::string_view kEllipsis = "...";

class ButtonBinder : public Binder {
 public:
  ButtonBinder(Button& button, Host& host, QPushButton& widget)
      : Binder(button, host, widget), button_(button), widget_(widget) {
    widget.setDefault(button.Default);
    if (button.Caption == kEllipsis) widget.setFixedWidth(6 * style::kUnit);
    connect(&widget, &QPushButton::clicked, this, [this] { act([this] { button_.press(); }); });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Caption) widget_.setText(qt(button_.Caption.get()));
    Binder::update(aspect);
  }

 private:
  Button& button_;
  QPushButton& widget_;
};

std::unique_ptr<Binder> bindButton(Control& control, Host& host, QWidget* parent) {
  auto* widget = new QPushButton(parent);
  widget->setAutoDefault(false);
  return std::make_unique<ButtonBinder>(static_cast<Button&>(control), host, *widget);
}

class CheckBoxBinder : public Binder {
 public:
  CheckBoxBinder(CheckBox& box, Host& host, QCheckBox& widget)
      : Binder(box, host, widget), box_(box), widget_(widget) {
    connect(&widget, &QCheckBox::clicked, this, [this] {
      const bool wanted = widget_.isChecked();
      widget_.setChecked(box_.Value);  // the control answers whether it takes the value
      if (wanted != box_.Value) act([this] { box_.toggle(); });
    });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Caption) widget_.setText(qt(box_.Caption.get()));
    if (aspect == Aspect::Value) widget_.setChecked(box_.Value);
    Binder::update(aspect);
  }

 private:
  CheckBox& box_;
  QCheckBox& widget_;
};

std::unique_ptr<Binder> bindCheckBox(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<CheckBoxBinder>(static_cast<CheckBox&>(control), host, *new QCheckBox(parent));
}

class OptionBinder : public Binder {
 public:
  OptionBinder(OptionButton& option, Host& host, QRadioButton& widget)
      : Binder(option, host, widget), option_(option), widget_(widget) {
    connect(&widget, &QRadioButton::toggled, this, [this](bool on) {
      if (on && !option_.Value) act([this] { option_.choose(); });
    });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Caption) widget_.setText(qt(option_.Caption.get()));
    if (aspect == Aspect::Value) showValue();
    Binder::update(aspect);
  }

 private:
  void showValue() {
    // The last one of a group can be taken back only while it stands alone.
    widget_.setAutoExclusive(option_.Value);
    widget_.setChecked(option_.Value);
    widget_.setAutoExclusive(true);
  }

  OptionButton& option_;
  QRadioButton& widget_;
};

std::unique_ptr<Binder> bindOptionButton(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<OptionBinder>(static_cast<OptionButton&>(control), host, *new QRadioButton(parent));
}

}  // namespace vantry
