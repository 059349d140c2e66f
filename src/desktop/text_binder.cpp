#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <limits>

#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"
#include "platform/text.h"

namespace vantry {

/// Up to this many characters a field is as wide as its text can be.
static constexpr int kShortText = 12;
/// Without it the widget cuts a text at 32,767 characters.
static constexpr int kNoLimit = std::numeric_limits<int>::max();

/// What single lines and notes have in common. The platform counts characters, the widget units of UTF-16.
class TextBoxBinder : public Binder {
 public:
  TextBoxBinder(TextBox& box, Host& host, QWidget& widget) : Binder(box, host, widget), box_(box) {
    widget.installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && answersKey(static_cast<const QKeyEvent&>(*event))) return true;
    if (event->type() == QEvent::MouseButtonDblClick && box_.DblClick) {
      act([this] { box_.doubleClick(); });
      return true;
    }
    return Binder::eventFilter(watched, event);
  }

 protected:
  TextBox& box() const { return box_; }
  void typed(const QString& text) {
    const QPointer<Binder> alive(this);
    act([this, text = utf8(text)] { box_.type(text); });
    if (alive) tellSelection();
  }
  /// Tells the box what the widget has selected.
  void tellSelection() {
    const auto [start, length] = selection();
    const QString text = shownText();
    const int from = characters(utf8(text.left(start)));
    const int count = characters(utf8(text.mid(start, length)));
    if (!box_.SelChange) return box_.selected(from, count);
    act([this, from, count] { box_.selected(from, count); });
  }
  struct Part {
    int start;
    int length;
  };
  /// The part that the box wants selected, in the widget's units.
  Part wanted() const {
    const auto before = qt(box_.Text.get().substr(0, placeOfCharacter(box_.Text.get(), box_.SelStart())));
    return {static_cast<int>(before.size()), static_cast<int>(qt(box_.SelText()).size())};
  }
  virtual Part selection() const = 0;
  virtual QString shownText() const = 0;

 private:
  bool answersKey(const QKeyEvent& event) {
    if (!box_.KeyDown) return false;
    const std::string key = keyName(event);
    bool answered = false;
    if (!key.empty()) act([&] { answered = box_.pressKey(key); });
    return answered;
  }
  TextBox& box_;
};

class LineBinder : public TextBoxBinder {
 public:
  LineBinder(TextBox& box, Host& host, QLineEdit& widget)
      : TextBoxBinder(box, host, widget), widget_(widget) {
    widget.setMaxLength(box.MaxLength > 0 ? box.MaxLength : kNoLimit);
    if (box.MaxLength > 0 && box.MaxLength <= kShortText)
      widget.setMaximumWidth(widget.fontMetrics().averageCharWidth() * (box.MaxLength + 5));
    if (box.Password) widget.setEchoMode(QLineEdit::Password);
    connect(&widget, &QLineEdit::textEdited, this, [this](const QString& text) { typed(text); });
    connect(&widget, &QLineEdit::selectionChanged, this, [this] { moved(); });
    connect(&widget, &QLineEdit::cursorPositionChanged, this, [this] { moved(); });
  }

  /// An Enter that the window answers goes no further: it moves the focus, and the button behind was not
  /// meant.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (!box().Enter || !isEnter(*event)) return TextBoxBinder::eventFilter(watched, event);
    act([this] { box().pressEnter(); });
    return true;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Text) showText();
    if (aspect == Aspect::State) widget_.setReadOnly(box().Locked);
    if (aspect == Aspect::Selection && widget_.window()->focusWidget() == &widget_) showSelection();
    Binder::update(aspect);
  }

 protected:
  Part selection() const override {
    if (!widget_.hasSelectedText()) return {widget_.cursorPosition(), 0};
    return {widget_.selectionStart(), widget_.selectionLength()};
  }
  QString shownText() const override { return widget_.text(); }

 private:
  /// In the middle of a change the text of the box is another one.
  void moved() {
    if (utf8(widget_.text()) == box().Text.get()) tellSelection();
  }
  /// The click that brought the focus still places the cursor, so that the selection comes after it.
  void showSelection() {
    const Part part = wanted();
    QTimer::singleShot(0, &widget_, [line = &widget_, part] {
      if (part.length > 0) return line->setSelection(part.start, part.length);
      line->deselect();
      line->setCursorPosition(part.start);
    });
  }
  void showText() {
    const QString text = qt(box().Text.get());
    if (widget_.text() == text) return;
    widget_.setText(text);
    if (!widget_.hasFocus()) widget_.setCursorPosition(0);
  }

  QLineEdit& widget_;
};

class NoteBinder : public TextBoxBinder {
 public:
  NoteBinder(TextBox& box, Host& host, QPlainTextEdit& widget)
      : TextBoxBinder(box, host, widget), widget_(widget) {
    widget.setTabChangesFocus(true);
    widget.setMinimumHeight(widget.fontMetrics().lineSpacing() * 3 + 2 * style::kUnit);
    widget.viewport()->installEventFilter(this);
    connect(&widget, &QPlainTextEdit::textChanged, this, [this] { changed(); });
    connect(&widget, &QPlainTextEdit::selectionChanged, this, [this] { moved(); });
    connect(&widget, &QPlainTextEdit::cursorPositionChanged, this, [this] { moved(); });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Text) showText();
    if (aspect == Aspect::State) showLocked();
    if (aspect == Aspect::Selection) showSelection();
    Binder::update(aspect);
  }

 protected:
  Part selection() const override {
    const QTextCursor cursor = widget_.textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
  }
  QString shownText() const override { return widget_.toPlainText(); }

 private:
  void moved() {
    if (!showing_ && utf8(widget_.toPlainText()) == box().Text.get()) tellSelection();
  }
  void showSelection() {
    const Part part = wanted();
    QTextCursor cursor = widget_.textCursor();
    cursor.setPosition(part.start);
    cursor.setPosition(part.start + part.length, QTextCursor::KeepAnchor);
    showing_ = true;
    widget_.setTextCursor(cursor);
    showing_ = false;
  }
  void showLocked() {
    widget_.setReadOnly(box().Locked);
    QPalette palette;
    if (box().Locked) palette.setColor(QPalette::Base, style::headerGround());
    widget_.viewport()->setPalette(palette);
  }
  void changed() {
    QString text = widget_.toPlainText();
    if (box().MaxLength > 0 && text.size() > box().MaxLength) {
      text.truncate(box().MaxLength);
      const int place = widget_.textCursor().position();
      widget_.setPlainText(text);
      QTextCursor cursor = widget_.textCursor();
      cursor.setPosition(std::min(place, box().MaxLength));
      widget_.setTextCursor(cursor);
      return;  // setting the text has come here again
    }
    if (utf8(text) != box().Text.get()) typed(text);
  }
  void showText() {
    const QString text = qt(box().Text.get());
    const QString before = widget_.toPlainText();
    if (before == text) return;
    if (box().Locked && !before.isEmpty() && text.startsWith(before)) return append(text.mid(before.size()));
    widget_.setPlainText(text);
  }
  /// A log that grows stays at its last line.
  void append(const QString& text) {
    widget_.moveCursor(QTextCursor::End);
    widget_.insertPlainText(text);
    widget_.ensureCursorVisible();
  }

  QPlainTextEdit& widget_;
  bool showing_ = false;
};

std::unique_ptr<Binder> bindTextBox(Control& control, Host& host, QWidget* parent) {
  auto& box = static_cast<TextBox&>(control);
  if (box.MultiLine) return std::make_unique<NoteBinder>(box, host, *new QPlainTextEdit(parent));
  return std::make_unique<LineBinder>(box, host, *new QLineEdit(parent));
}

}  // namespace vantry
