#include "desktop/binder.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QPointer>
#include <QWidget>
#include <array>

#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

static constexpr std::array kAspects = {
    Aspect::List,    Aspect::Structure, Aspect::Columns, Aspect::Cells,   Aspect::Text,
    Aspect::Caption, Aspect::Value,     Aspect::Picture, Aspect::State,   Aspect::Selection,
    Aspect::ToolTip, Aspect::Colour,    Aspect::Enabled, Aspect::Visible,
};

Binder::Binder(Control& control, Host& host, QWidget& widget)
    : control_(control), host_(host), widget_(widget) {
  widget.setObjectName(qt(control.Name()));
  if (!control.AccessibleName.empty()) widget.setAccessibleName(qt(control.AccessibleName));
}

void Binder::bind() {
  for (const Aspect aspect : kAspects) update(aspect);
  flush();
  control_.Shower = [this](Aspect aspect) { update(aspect); };
}

void Binder::release() {
  control_.Shower = nullptr;
}

bool Binder::settle() {
  const QPointer<Binder> alive(this);
  commit();
  return !alive.isNull();
}

void Binder::update(Aspect aspect) {
  switch (aspect) {
    case Aspect::Enabled:
      widget_.setEnabled(control_.Enabled);
      break;
    case Aspect::Visible:
      if (control_.Visible && widget_.window()->isVisible()) host_.holdSize();
      widget_.setVisible(control_.Visible);
      break;
    case Aspect::ToolTip:
      widget_.setToolTip(qt(control_.ToolTipText.get()));
      break;
    case Aspect::Colour:
      showColours();
      break;
    default:
      break;
  }
}

void Binder::showColours() {
  if (control_.BackColor == kOwnColour && control_.ForeColor == kOwnColour) {
    if (widget_.testAttribute(Qt::WA_SetPalette)) widget_.setPalette({});
    return;
  }
  QPalette palette;
  const QColor back = style::colour(control_.BackColor, palette.color(widget_.backgroundRole()));
  const QColor fore = style::colour(control_.ForeColor, palette.color(widget_.foregroundRole()));
  palette.setColor(widget_.backgroundRole(), back);
  palette.setColor(widget_.foregroundRole(), style::readable(fore, back));
  widget_.setPalette(palette);
  widget_.update();
}

bool isEnter(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

std::string keyName(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_unknown:
      return {};
    default:
      break;
  }
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  return utf8(QKeySequence(event.key() | static_cast<int>(modifiers)).toString(QKeySequence::PortableText));
}

}  // namespace vantry
