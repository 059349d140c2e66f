#include "desktop/layout_builder.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <algorithm>

#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

using Kind = LayoutNode::Kind;

static bool isList(ControlKind kind) {
  return kind == ControlKind::Grid || kind == ControlKind::Tree || kind == ControlKind::ListBox ||
         kind == ControlKind::MonthCalendar || kind == ControlKind::YearCalendar;
}

bool growsDown(const LayoutNode& node) {
  if (node.kind == Kind::Item) {
    const Control& control = *node.control;
    if (control.kind() == ControlKind::Frame) return growsDown(static_cast<const Frame&>(control).Layout);
    if (control.kind() == ControlKind::TextBox) return static_cast<const TextBox&>(control).MultiLine;
    return isList(control.kind());
  }
  return std::any_of(node.children.begin(), node.children.end(), growsDown);
}

bool growsAcross(const LayoutNode& node) {
  if (node.kind == Kind::Fields) return true;
  if (node.kind == Kind::Item) {
    const Control& control = *node.control;
    if (control.kind() == ControlKind::Frame) return growsAcross(static_cast<const Frame&>(control).Layout);
    if (control.kind() == ControlKind::Label) {
      const auto& label = static_cast<const Label&>(control);
      return label.ReadOnlyField || label.Heading;
    }
    return isList(control.kind()) || control.kind() == ControlKind::TextBox;
  }
  if (node.kind == Kind::Stretch) return false;
  return std::any_of(node.children.begin(), node.children.end(), growsAcross);
}

static Label* labelOf(const LayoutNode& node) {
  if (node.kind != Kind::Item || node.control->kind() != ControlKind::Label) return nullptr;
  auto* label = static_cast<Label*>(node.control);
  return label->ReadOnlyField || label->Heading || label->Swatch ? nullptr : label;
}

/// The first control of a field's node, which its label names.
static Control* firstControl(const LayoutNode& node) {
  if (node.kind == Kind::Item) return node.control;
  for (const LayoutNode& child : node.children) {
    if (Control* control = firstControl(child)) return control;
  }
  return nullptr;
}

/// Gives the label its field: its mnemonic leads there, and screen readers say it.
static void join(const LayoutNode& labelNode, const LayoutNode& fieldNode, const WidgetOf& widgetOf) {
  Label* label = labelOf(labelNode);
  Control* control = firstControl(fieldNode);
  if (!label || !control) return;
  auto* labelWidget = static_cast<QLabel*>(widgetOf(*label));
  QWidget* field = widgetOf(*control);
  if (!labelWidget || !field) return;
  if (control->kind() != ControlKind::Label && control->kind() != ControlKind::Button)
    labelWidget->setBuddy(field);
  if (labelWidget->buddy()) labelWidget->setText(qt(label->Caption.get()));
  if (field->accessibleName().isEmpty()) {
    QString name = withoutMnemonic(label->Caption.get());
    if (name.endsWith(':')) name.chop(1);
    field->setAccessibleName(name);
  }
}

static void addTo(QBoxLayout& box, const LayoutNode& node, const WidgetOf& widgetOf) {
  const bool down = box.direction() == QBoxLayout::TopToBottom;
  const int grows = (down ? growsDown(node) : growsAcross(node)) ? 1 : 0;
  const int share = node.stretch >= 0 ? node.stretch : grows;
  switch (node.kind) {
    case Kind::Empty:
      return;
    case Kind::Stretch:
      return box.addStretch(std::max(1, share));
    case Kind::Gap:
      return box.addSpacing(2 * style::kUnit);
    case Kind::Item:
      if (QWidget* widget = widgetOf(*node.control)) box.addWidget(widget, share);
      return;
    default:
      box.addLayout(buildLayout(node, widgetOf), share);
  }
}

static QLayout* buildBox(const LayoutNode& node, const WidgetOf& widgetOf) {
  const bool down = node.kind == Kind::Column;
  auto* box = new QBoxLayout(down ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  box->setContentsMargins(0, 0, 0, 0);
  box->setSpacing(style::kUnit);
  for (std::size_t i = 0; i < node.children.size(); ++i) {
    addTo(*box, node.children[i], widgetOf);
    if (i + 1 == node.children.size()) break;
    const LayoutNode& next = node.children[i + 1];
    // In a column only lists and notes have their label above them.
    if (!down || (next.kind == Kind::Item && growsDown(next) && next.control->kind() != ControlKind::Frame))
      join(node.children[i], next, widgetOf);
  }
  // Where nothing can use free space, it goes behind the last one.
  const bool used = std::any_of(node.children.begin(), node.children.end(), [down](const LayoutNode& child) {
    return child.kind == Kind::Stretch || child.stretch > 0 || (down ? growsDown(child) : growsAcross(child));
  });
  if (!used) box->addStretch(1);
  return box;
}

static void addField(QGridLayout& grid, int row, const LayoutNode& node, const WidgetOf& widgetOf) {
  const Qt::Alignment alignment = growsAcross(node) ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignVCenter;
  if (node.kind != Kind::Item) {
    grid.addLayout(buildLayout(node, widgetOf), row, 1);
  } else if (QWidget* widget = widgetOf(*node.control)) {
    grid.addWidget(widget, row, 1, alignment);
  }
  if (growsDown(node)) grid.setRowStretch(row, 1);
}

static QLayout* buildFields(const LayoutNode& node, const WidgetOf& widgetOf) {
  auto* grid = new QGridLayout;
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(2 * style::kUnit);
  grid->setVerticalSpacing(style::kUnit);
  grid->setColumnStretch(1, 1);
  for (std::size_t i = 0; i + 1 < node.children.size(); i += 2) {
    const int row = static_cast<int>(i / 2);
    const LayoutNode& label = node.children[i];
    const LayoutNode& field = node.children[i + 1];
    if (label.kind == Kind::Item) {
      if (QWidget* widget = widgetOf(*label.control))
        grid->addWidget(widget, row, 0, growsDown(field) ? Qt::AlignTop : Qt::AlignVCenter);
    }
    addField(*grid, row, field, widgetOf);
    join(label, field, widgetOf);
  }
  if (!growsDown(node)) grid->setRowStretch(grid->rowCount(), 1);
  return grid;
}

QLayout* buildLayout(const LayoutNode& node, const WidgetOf& widgetOf) {
  if (node.kind == Kind::Fields) return buildFields(node, widgetOf);
  if (node.kind == Kind::Column || node.kind == Kind::Row) return buildBox(node, widgetOf);
  LayoutNode column = Column{node};
  return buildBox(column, widgetOf);
}

}  // namespace vantry
