#include <QAccessible>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPainter>

#include "desktop/accessible.h"
#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

/// From this length on a text is a sentence that may wrap.
static constexpr int kSentence = 70;
static constexpr int kImageSize = 40;
static constexpr int kEmblemSize = 56;

/// A label, or what looks like a field and cannot be changed, or a field of colour.
class LabelWidget : public QLabel {
 public:
  LabelWidget(const Label& label, QWidget* parent)
      : QLabel(parent),
        field_(label.ReadOnlyField),
        swatch_(label.Swatch || label.RowSample),
        row_(label.RowSample) {
    setTextFormat(Qt::PlainText);
    if (label.Heading) setFont(style::headingFont());
    if (field_) setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (field_ || swatch_) setContentsMargins(style::kUnit, 2, style::kUnit, 2);
    if (row_) setContentsMargins(style::kRowStripe + style::kUnit, 2, 2 * style::kUnit, 2);
    if (swatch_) {
      setAlignment(Qt::AlignCenter);
      setFixedHeight(std::max(style::kRowHeight, fontMetrics().height() + style::kUnit));
    }
    if (field_) setMinimumHeight(style::kFieldHeight);
    accessible::setRole(*this, label.Alert ? QAccessible::AlertMessage : QAccessible::StaticText);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (field_ || swatch_ || testAttribute(Qt::WA_SetPalette)) paintGround();
    QLabel::paintEvent(event);
  }

 private:
  void paintGround() {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // A ground was given only where it differs from the window's.
    const QColor given = palette().color(backgroundRole());
    const bool plain = given == QGuiApplication::palette().color(backgroundRole());
    if (plain && !field_ && !swatch_) return;
    if (row_) return paintRow(painter, given);
    const QColor ground = field_ && plain ? style::headerGround() : given;
    painter.setPen(field_ || swatch_ ? QPen(style::hairline()) : QPen(Qt::NoPen));
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), style::kRadius, style::kRadius);
  }
  /// As `GridDelegate` does.
  void paintRow(QPainter& painter, const QColor& colour) {
    painter.fillRect(rect(), style::rowTint(colour));
    painter.fillRect(0, 0, style::kRowStripe, height(), colour);
  }
  bool field_;
  bool swatch_;
  bool row_;
};

class LabelBinder : public Binder {
 public:
  LabelBinder(Label& label, Host& host, LabelWidget& widget)
      : Binder(label, host, widget), label_(label), widget_(widget) {}

  void update(Aspect aspect) override {
    if (aspect == Aspect::Caption) showCaption();
    Binder::update(aspect);
    if (aspect == Aspect::Colour && label_.RowSample) showRowColours();
  }

 private:
  /// The text is on the tint, not on the colour itself.
  void showRowColours() {
    QPalette palette;
    const QColor back = style::colour(label_.BackColor, palette.color(QPalette::Base));
    const QColor fore = style::colour(label_.ForeColor, palette.color(QPalette::Text));
    palette.setColor(widget_.backgroundRole(), back);
    palette.setColor(widget_.foregroundRole(), style::readable(fore, style::rowTint(back)));
    widget_.setPalette(palette);
  }
  /// A mnemonic works only where the layout has given the label its field; data are shown to the letter.
  QString shownText() const {
    const std::string& caption = label_.Caption;
    if (label_.ReadOnlyField || label_.Literal || widget_.buddy()) return qt(caption);
    // A heading takes the caption of a menu's entry, or a name that has "&" in it: no letter gets lost.
    if (label_.Heading) return qt(caption).replace("&&", "&");
    return withoutMnemonic(caption);
  }
  void showCaption() {
    QString text = shownText();
    text.remove('\r');  // whatever its order, a line break is one
    widget_.setWordWrap(text.size() > kSentence);
    if (widget_.wordWrap()) widget_.setMinimumWidth(widget_.fontMetrics().averageCharWidth() * kSentence);
    widget_.setText(text);
    accessible::setValue(widget_, text);
    if (!label_.Alert || text.isEmpty()) return;
    QAccessibleEvent event(&widget_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
  }

  Label& label_;
  LabelWidget& widget_;
};

std::unique_ptr<Binder> bindLabel(Control& control, Host& host, QWidget* parent) {
  auto& label = static_cast<Label&>(control);
  return std::make_unique<LabelBinder>(label, host, *new LabelWidget(label, parent));
}

std::unique_ptr<Binder> bindImage(Control& control, Host& host, QWidget* parent) {
  auto* label = new QLabel(parent);
  const std::string& picture = static_cast<Image&>(control).Picture;
  const int size = picture == "vantry" ? kEmblemSize : kImageSize;
  label->setPixmap(icon(picture).pixmap(QSize(size, size), label->devicePixelRatioF()));
  label->setAlignment(Qt::AlignCenter);
  return std::make_unique<Binder>(control, host, *label);
}

}  // namespace vantry
