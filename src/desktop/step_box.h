#pragma once

#include <QAbstractSpinBox>
#include <functional>

#include "desktop/binder.h"

namespace vantry {

/// A line with spin buttons; what a step means, and what the text reads as, is for its owner to say.
class StepBox : public QAbstractSpinBox {
 public:
  explicit StepBox(QWidget* parent);

  std::function<void(int)> onStep;
  std::function<void()> onLeave;
  std::function<void()> onOpen;  ///< F4, or Alt and Down

  QLineEdit& line() const { return *lineEdit(); }
  void stepBy(int steps) override;
  QValidator::State validate(QString&, int&) const override { return QValidator::Acceptable; }
  /// Makes the box as wide as this text and its buttons.
  void fitTo(const QString& text);

 protected:
  StepEnabled stepEnabled() const override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  /// Drawn like the other fields, with two quiet arrows.
  void paintEvent(QPaintEvent* event) override;
};

/// What the fields with a typed text share: it is taken over once it reads as the field would write it, or
/// when the operator leaves. What the text means is for the model to say; the field shows the answer.
class TypedBinder : public Binder {
 public:
  TypedBinder(Control& control, Host& host, QWidget& widget, QLineEdit& line);

  void update(Aspect aspect) override;
  void commit() override;

 protected:
  /// What the field shows: the model's value, or what was typed and is none.
  virtual QString shown() const = 0;
  /// What was typed and is no value; the field is marked then, and a screen reader told.
  virtual QString unreadable() const { return {}; }
  /// Hands the text to the model.
  virtual void enter(const std::string& text) = 0;
  /// Whether the text under way reads as the field would write it.
  virtual bool isWhole(const QString& text) const = 0;
  virtual bool isLocked() const { return false; }

 private:
  void take();
  void show();
  void mark();
  QLineEdit& line_;
  bool typed_ = false;
  bool taking_ = false;
};

}  // namespace vantry
