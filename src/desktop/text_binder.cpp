#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>

#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

/// Up to this many characters a field is as wide as its text can be.
static constexpr int kShortText = 12;

class LineBinder : public Binder {
 public:
  LineBinder(TextBox& box, Host& host, QLineEdit& widget)
      : Binder(box, host, widget), box_(box), widget_(widget) {
    if (box.MaxLength > 0) widget.setMaxLength(box.MaxLength);
    if (box.MaxLength > 0 && box.MaxLength <= kShortText)
      widget.setMaximumWidth(widget.fontMetrics().averageCharWidth() * (box.MaxLength + 5));
    if (box.Password) widget.setEchoMode(QLineEdit::Password);
    connect(&widget, &QLineEdit::textEdited, this,
            [this](const QString& text) { act([this, typed = utf8(text)] { box_.type(typed); }); });
    widget.installEventFilter(this);
  }

  /// An Enter that the window answers goes no further: it moves the focus, and the button behind was not
  /// meant.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!box_.Enter || !isEnter(*event)) return Binder::eventFilter(watched, event);
    act([this] { box_.pressEnter(); });
    return true;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Text) showText();
    if (aspect == Aspect::State) widget_.setReadOnly(box_.Locked);
    // The click that brought the focus still places the cursor, so that the selection comes after it.
    if (aspect == Aspect::Selection && widget_.window()->focusWidget() == &widget_)
      QTimer::singleShot(0, &widget_, &QLineEdit::selectAll);
    Binder::update(aspect);
  }

 private:
  void showText() {
    const QString text = qt(box_.Text.get());
    if (widget_.text() == text) return;
    widget_.setText(text);
    if (!widget_.hasFocus()) widget_.setCursorPosition(0);
  }

  TextBox& box_;
  QLineEdit& widget_;
};

class TextBinder : public Binder {
 public:
  TextBinder(TextBox& box, Host& host, QPlainTextEdit& widget)
      : Binder(box, host, widget), box_(box), widget_(widget) {
    widget.setTabChangesFocus(true);
    widget.setMinimumHeight(widget.fontMetrics().lineSpacing() * 3 + 2 * style::kUnit);
    connect(&widget, &QPlainTextEdit::textChanged, this, [this] { typed(); });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Text) showText();
    if (aspect == Aspect::State) showLocked();
    Binder::update(aspect);
  }

 private:
  void showLocked() {
    widget_.setReadOnly(box_.Locked);
    QPalette palette;
    if (box_.Locked) palette.setColor(QPalette::Base, style::headerGround());
    widget_.viewport()->setPalette(palette);
  }
  void typed() {
    QString text = widget_.toPlainText();
    if (box_.MaxLength > 0 && text.size() > box_.MaxLength) {
      text.truncate(box_.MaxLength);
      const int place = widget_.textCursor().position();
      widget_.setPlainText(text);
      QTextCursor cursor = widget_.textCursor();
      cursor.setPosition(std::min(place, box_.MaxLength));
      widget_.setTextCursor(cursor);
      return;  // setting the text has come here again
    }
    if (utf8(text) != box_.Text.get()) act([this, text] { box_.type(utf8(text)); });
  }
  void showText() {
    const QString text = qt(box_.Text.get());
    const QString before = widget_.toPlainText();
    if (before == text) return;
    if (box_.Locked && !before.isEmpty() && text.startsWith(before)) return append(text.mid(before.size()));
    widget_.setPlainText(text);
  }
  /// A log that grows stays at its last line.
  void append(const QString& text) {
    widget_.moveCursor(QTextCursor::End);
    widget_.insertPlainText(text);
    widget_.ensureCursorVisible();
  }

  TextBox& box_;
  QPlainTextEdit& widget_;
};

std::unique_ptr<Binder> bindTextBox(Control& control, Host& host, QWidget* parent) {
  auto& box = static_cast<TextBox&>(control);
  if (box.MultiLine) return std::make_unique<TextBinder>(box, host, *new QPlainTextEdit(parent));
  return std::make_unique<LineBinder>(box, host, *new QLineEdit(parent));
}

}  // namespace vantry
