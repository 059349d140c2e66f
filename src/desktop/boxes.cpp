#include "desktop/boxes.h"

#include <QAccessible>
#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/desktop.h"

namespace vantry {

static constexpr int kPicture = 40;
static constexpr int kTextWidth = 420;
static constexpr int kNarrowest = 300;

static const char* pictureOf(Box::Kind kind) {
  static constexpr const char* kPictures[] = {"question", "information", "warning", "error", ""};
  return kPictures[static_cast<int>(kind)];
}

/// The text above, the buttons below on a ground of their own.
class BoxDialog : public QDialog {
 public:
  explicit BoxDialog(std::string_view caption) {
    setWindowTitle(caption.empty() ? QApplication::applicationDisplayName() : qt(caption));
    setWindowIcon(icon("vantry"));
    setWindowModality(Qt::ApplicationModal);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->setSizeConstraint(QLayout::SetFixedSize);
    upper_ = new QHBoxLayout;
    upper_->setContentsMargins(4 * style::kUnit, 4 * style::kUnit, 4 * style::kUnit, 3 * style::kUnit);
    upper_->setSpacing(3 * style::kUnit);
    outer->addLayout(upper_);
    footer_ = new QWidget(this);
    footer_->setMinimumWidth(kNarrowest);
    buttons_ = new QHBoxLayout(footer_);
    buttons_->setContentsMargins(3 * style::kUnit, 2 * style::kUnit, 3 * style::kUnit, 2 * style::kUnit);
    buttons_->setSpacing(style::kUnit);
    buttons_->addStretch(1);
    outer->addWidget(footer_);
  }

  QLabel& addText(std::string_view text, QBoxLayout& layout) {
    auto* label = new QLabel(qt(text), this);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const int width =
        label->fontMetrics().boundingRect({0, 0, kTextWidth, 10000}, Qt::TextWordWrap, qt(text)).width();
    label->setWordWrap(true);
    label->setMinimumWidth(std::min(width + 1, kTextWidth));
    label->setMaximumWidth(kTextWidth);
    label->setObjectName("text");
    layout.addWidget(label, 1, Qt::AlignVCenter);
    return *label;
  }

  /// Buttons answer with their place, counted from 1; closing the box with 0.
  QPushButton& addButton(const QString& caption) {
    auto* button = new QPushButton(caption, footer_);
    const int index = count_++;
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this, index] { done(index + 1); });
    buttons_->addWidget(button);
    return *button;
  }

  /// Escape and close do nothing from now on; only a button answers.
  void keepOpen() {
    stays_ = true;
    setWindowFlag(Qt::WindowCloseButtonHint, false);
  }
  void reject() override {
    if (!stays_) QDialog::reject();
  }

  QHBoxLayout& upper() { return *upper_; }
  int count() const { return count_; }

  /// Stands above the window in front, which may go meanwhile: it is no child of it.
  int ask() {
    const QWidget* front = QApplication::activeWindow();
    winId();
    adjustSize();
    if (front) windowHandle()->setTransientParent(front->windowHandle());
    const QRect around = front ? front->frameGeometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
    return exec();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.fillRect(footer_->geometry(), palette().color(QPalette::Window));
    painter.setPen(style::hairline());
    painter.drawLine(footer_->geometry().topLeft(), footer_->geometry().topRight());
  }

 private:
  QHBoxLayout* upper_;
  QHBoxLayout* buttons_;
  QWidget* footer_;
  int count_ = 0;
  bool stays_ = false;
};

int runBox(const Box& box) {
  BoxDialog dialog(box.caption);
  dialog.setObjectName("messageBox");
  if (box.kind != Box::Kind::Plain) {
    auto* picture = new QLabel(&dialog);
    picture->setPixmap(icon(pictureOf(box.kind)).pixmap(kPicture, kPicture));
    dialog.upper().addWidget(picture, 0, Qt::AlignTop);
  }
  dialog.addText(box.text, dialog.upper());
  for (const std::string& caption : box.buttons) {
    const bool first = dialog.count() == box.defaultButton;
    QPushButton& button = dialog.addButton(qt(caption));
    if (!first) continue;
    button.setDefault(true);
    button.setFocus();
  }
  if (box.closing == Box::kNone) dialog.keepOpen();
  dialog.setAccessibleName(dialog.windowTitle());
  dialog.setAccessibleDescription(qt(box.text));
  const int answer = dialog.ask();
  if (answer > 0) return answer - 1;
  return box.closing == Box::kLast ? dialog.count() - 1 : box.closing;
}

std::optional<std::string> runInputBox(std::string_view prompt, std::string_view caption,
                                       std::string_view initial) {
  BoxDialog dialog(caption);
  dialog.setObjectName("inputBox");
  auto* column = new QVBoxLayout;
  column->setSpacing(style::kUnit);
  dialog.upper().addLayout(column, 1);
  QLabel& label = dialog.addText(prompt, *column);
  auto* line = new QLineEdit(qt(initial), &dialog);
  line->setMinimumWidth(kNarrowest);
  line->setAccessibleName(qt(prompt));
  line->selectAll();
  label.setBuddy(line);
  column->addWidget(line);
  dialog.addButton(QObject::tr("&OK")).setDefault(true);
  dialog.addButton(QObject::tr("&Cancel"));
  line->setFocus();
  if (dialog.ask() != 1) return std::nullopt;
  return utf8(line->text());
}

}  // namespace vantry
