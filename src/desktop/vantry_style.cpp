#include "desktop/vantry_style.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QGroupBox>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleOption>
#include <QToolButton>
#include <QtMath>

#include "desktop/style.h"

namespace vantry {

using style::kRadius;
using style::kUnit;

static constexpr int kButtonWidth = 84;
static constexpr int kIndicator = 16;
static constexpr int kScrollBar = 12;
static constexpr int kMenuRow = 28;

VantryStyle::VantryStyle() : QProxyStyle("fusion") {}

// Shapes

static void panel(QPainter& painter, const QRect& rect, const QColor& line, const QColor& ground,
                  double radius = kRadius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(line.isValid() ? QPen(line) : QPen(Qt::NoPen));
  painter.setBrush(ground.isValid() ? QBrush(ground) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  painter.restore();
}

/// A small arrow without a body.
static void chevron(QPainter& painter, const QRect& rect, const QColor& colour, double turn) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect).center());
  painter.rotate(turn);
  painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF({{-3.5, -1.75}, {0, 1.75}, {3.5, -1.75}}));
  painter.restore();
}

static bool isOn(const QStyleOption& option, QStyle::StateFlag flag) {
  return option.state & flag;
}

static QColor fieldLine(const QStyleOption& option) {
  if (!isOn(option, QStyle::State_Enabled)) return style::hairline();
  return isOn(option, QStyle::State_HasFocus) ? style::accent() : style::outline();
}

static QColor hovered(const QColor& ground, const QStyleOption& option) {
  const QColor text = option.palette.color(QPalette::WindowText);
  if (!isOn(option, QStyle::State_Enabled)) return ground;
  if (isOn(option, QStyle::State_Sunken)) return style::blend(ground, text, 0.12);
  return isOn(option, QStyle::State_MouseOver) ? style::blend(ground, text, 0.05) : ground;
}

static bool isDefault(const QStyleOption& option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  return button && button->features & QStyleOptionButton::DefaultButton &&
         isOn(option, QStyle::State_Enabled);
}

static void drawButtonPanel(const QStyleOption& option, QPainter& painter) {
  const bool chosen = isDefault(option);
  const QColor own = option.palette.color(QPalette::Button);
  QColor ground = hovered(chosen ? style::accent() : own, option);
  if (!isOn(option, QStyle::State_Enabled)) ground = option.palette.color(QPalette::Window);
  const QColor line = chosen ? ground : fieldLine(option);
  panel(painter, option.rect, line, ground);
  // On the accent the focus shows as a line within.
  if (chosen && isOn(option, QStyle::State_HasFocus))
    panel(painter, option.rect.adjusted(2, 2, -2, -2), option.palette.color(QPalette::HighlightedText), {},
          kRadius - 1);
}

static void drawToolPanel(const QStyleOption& option, QPainter& painter) {
  const bool pressed = isOn(option, QStyle::State_Sunken) || isOn(option, QStyle::State_On);
  const bool focus = isOn(option, QStyle::State_HasFocus) && isOn(option, QStyle::State_KeyboardFocusChange);
  const QColor ground = option.palette.color(QPalette::Window);
  const QColor text = option.palette.color(QPalette::WindowText);
  QColor fill;
  if (isOn(option, QStyle::State_Enabled) && isOn(option, QStyle::State_MouseOver))
    fill = style::blend(ground, text, 0.07);
  if (pressed) fill = style::tint();
  if (fill.isValid() || focus) panel(painter, option.rect, focus ? style::accent() : QColor(), fill);
}

static void drawCheck(const QStyleOption& option, QPainter& painter, bool round) {
  const bool on = isOn(option, QStyle::State_On) || isOn(option, QStyle::State_NoChange);
  const bool enabled = isOn(option, QStyle::State_Enabled);
  const QRect box = option.rect;
  const QColor filled = enabled ? style::accent() : style::outline();
  const QColor empty = hovered(
      enabled ? option.palette.color(QPalette::Base) : option.palette.color(QPalette::Window), option);
  const double radius = round ? box.width() / 2.0 : 3.0;
  // A locked box has no ground of its own: only its line shows that it is there.
  const QColor line = enabled ? fieldLine(option) : style::outline();
  panel(painter, box, on ? filled : line, on ? filled : empty, radius);
  if (isOn(option, QStyle::State_HasFocus) && isOn(option, QStyle::State_KeyboardFocusChange))
    panel(painter, box.adjusted(-2, -2, 2, 2), style::accent(), {}, radius + 2);
  if (!on) return;
  const QColor ink = option.palette.color(QPalette::HighlightedText);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(box).center());
  if (round) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(QPointF(0, 0), 3, 3);
  } else {
    painter.setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{-3.6, 0.2}, {-1.2, 2.6}, {3.6, -2.6}}));
  }
  painter.restore();
}

// Metrics

int VantryStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_LayoutLeftMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutBottomMargin:
      return 2 * kUnit;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return kUnit;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return kIndicator;
    case PM_ScrollBarExtent:
      return kScrollBar;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_ListViewIconSize:
      return style::kMenuIcon;
    case PM_ToolBarIconSize:
      return style::kToolIcon;
    case PM_ToolBarItemSpacing:
      return 2;
    case PM_ToolBarItemMargin:
      return kUnit / 2 + 1;
    case PM_ToolBarFrameWidth:
      return 1;
    case PM_ToolBarSeparatorExtent:
      return 2 * kUnit + 1;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return 4;
    case PM_MenuBarPanelWidth:
    case PM_MenuBarVMargin:
      return 0;
    case PM_MenuBarHMargin:
      return kUnit;
    case PM_MenuBarItemSpacing:
      return 0;
    case PM_MenuButtonIndicator:
      return 18;
    case PM_HeaderMargin:
      return style::kCellMargin;
    case PM_FocusFrameHMargin:
      return kUnit / 2;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int VantryStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* data) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ComboBox_Popup:
      return 0;
    case SH_ItemView_ActivateItemOnSingleClick:
      return 0;
    case SH_Table_GridLineColor:
      return static_cast<int>(style::hairline().rgb());
    case SH_FormLayoutLabelAlignment:
      return Qt::AlignLeft;
    default:
      return QProxyStyle::styleHint(hint, option, widget, data);
  }
}

QSize VantryStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                    const QWidget* widget) const {
  QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
  const int field = std::max(style::kFieldHeight, option->fontMetrics.height() + 2 * kUnit);
  switch (type) {
    case CT_PushButton:
      return {std::max(kButtonWidth, size.width() + 4 * kUnit), field};
    case CT_LineEdit:
      result.setHeight(field);
      return result;
    case CT_ComboBox:
      return {size.width() + 6 * kUnit, field};
    case CT_ToolButton: {
      const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
      const bool text =
          button && button->toolButtonStyle != Qt::ToolButtonIconOnly && !button->text.isEmpty();
      return {size.width() + (text ? 2 * kUnit : kUnit + 4), std::max(field + 2, size.height() + kUnit + 2)};
    }
    case CT_TabBarTab:
      return {size.width() + 2 * kUnit, field + 4};
    case CT_MenuBarItem:
      return {size.width() + 3 * kUnit, kMenuRow};
    case CT_MenuItem: {
      const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      if (item && item->menuItemType == QStyleOptionMenuItem::Separator) return {size.width(), kUnit + 3};
      const bool keys = item && item->text.contains('\t');
      return {size.width() + style::kMenuIcon + (keys ? 10 : 8) * kUnit, kMenuRow};
    }
    case CT_CheckBox: {
      const auto* box = qstyleoption_cast<const QStyleOptionButton*>(option);
      return box && box->text.isEmpty() ? QSize(kIndicator + 4, kIndicator + 4) : result;
    }
    case CT_ItemViewItem:
      result.setHeight(std::max(style::kRowHeight, result.height()));
      return result;
    default:
      return result;
  }
}

QRect VantryStyle::subElementRect(SubElement element, const QStyleOption* option,
                                  const QWidget* widget) const {
  if (element == SE_LineEditContents) return option->rect.adjusted(kUnit / 2 + 1, 1, -kUnit / 2 - 1, -1);
  if (element == SE_PushButtonContents) return option->rect;
  return QProxyStyle::subElementRect(element, option, widget);
}

static int titleHeight(const QStyleOptionGroupBox& box) {
  return box.text.isEmpty() ? 0 : QFontMetrics(style::captionFont()).height() + kUnit;
}

QRect VantryStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                  const QWidget* widget) const {
  const QRect rect = option->rect;
  if (control == CC_GroupBox) {
    const auto& box = *qstyleoption_cast<const QStyleOptionGroupBox*>(option);
    const int title = titleHeight(box);
    if (part == SC_GroupBoxFrame || part == SC_GroupBoxContents) return rect.adjusted(0, title, 0, 0);
    if (part == SC_GroupBoxLabel) return {rect.left() + 1, rect.top(), rect.width() - 2, title};
  }
  if (control == CC_ComboBox) {
    const int arrow = 4 * kUnit;
    if (part == SC_ComboBoxArrow) return {rect.right() - arrow, rect.top(), arrow, rect.height()};
    if (part == SC_ComboBoxEditField) return rect.adjusted(kUnit, 1, -arrow, -1);
  }
  if (control == CC_ScrollBar) {
    const auto& bar = *qstyleoption_cast<const QStyleOptionSlider*>(option);
    const bool upright = bar.orientation == Qt::Vertical;
    const int room = upright ? rect.height() : rect.width();
    const int range = bar.maximum - bar.minimum;
    const int length =
        range <= 0
            ? room
            : std::max(4 * kUnit, static_cast<int>(qint64(bar.pageStep) * room / (range + bar.pageStep)));
    const int start =
        sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - length, bar.upsideDown);
    if (part == SC_ScrollBarAddLine || part == SC_ScrollBarSubLine) return {};
    if (part == SC_ScrollBarGroove) return rect;
    const auto along = [&](int from, int size) {
      return upright ? QRect(rect.left(), rect.top() + from, rect.width(), size)
                     : QRect(rect.left() + from, rect.top(), size, rect.height());
    };
    if (part == SC_ScrollBarSlider) return along(start, length);
    if (part == SC_ScrollBarSubPage) return along(0, start);
    if (part == SC_ScrollBarAddPage) return along(start + length, room - start - length);
  }
  return QProxyStyle::subControlRect(control, option, part, widget);
}

// Drawing

void VantryStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
  switch (element) {
    case PE_PanelButtonCommand:
      return drawButtonPanel(*option, *painter);
    case PE_FrameDefaultButton:
      return;
    case PE_PanelButtonTool:
      return drawToolPanel(*option, *painter);
    case PE_FrameFocusRect:
      if (isOn(*option, State_KeyboardFocusChange) && !qobject_cast<const QAbstractItemView*>(widget))
        panel(*painter, option->rect, style::accent(), {}, 3);
      return;
    case PE_PanelLineEdit: {
      const bool readOnly = isOn(*option, State_ReadOnly) || !isOn(*option, State_Enabled);
      const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
      const QColor ground = readOnly ? style::headerGround() : option->palette.color(QPalette::Base);
      if (frame && frame->lineWidth > 0) {
        const bool wrong = widget && widget->property(style::kWrong).toBool();
        const QColor line = isOn(*option, State_ReadOnly) ? style::hairline() : fieldLine(*option);
        panel(*painter, option->rect, wrong ? style::warning() : line, ground);
      } else {
        painter->fillRect(option->rect, ground);
      }
      return;
    }
    case PE_FrameLineEdit:
      return;
    case PE_Frame:
      return panel(*painter, option->rect,
                   qobject_cast<const QAbstractItemView*>(widget) ? style::outline() : fieldLine(*option), {},
                   2);
    case PE_FrameMenu:
    case PE_FrameGroupBox:
    case PE_FrameTabBarBase:
      return;
    case PE_PanelItemViewRow:
    case PE_PanelItemViewItem:
      if (!isOn(*option, State_Selected) || (widget && widget->hasFocus())) break;
      painter->fillRect(option->rect, style::tint());
      return;
    case PE_PanelMenu:
      painter->fillRect(option->rect, option->palette.color(QPalette::Base));
      panel(*painter, option->rect, style::outline(), {}, 0);
      return;
    case PE_PanelTipLabel:
      return panel(*painter, option->rect, style::outline(), option->palette.color(QPalette::ToolTipBase), 0);
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return drawCheck(*option, *painter, false);
    case PE_IndicatorRadioButton:
      return drawCheck(*option, *painter, true);
    case PE_IndicatorArrowDown:
      return chevron(*painter, option->rect, style::quietText(), 0);
    case PE_IndicatorArrowUp:
      return chevron(*painter, option->rect, style::quietText(), 180);
    case PE_IndicatorArrowRight:
      return chevron(*painter, option->rect, style::quietText(), -90);
    case PE_IndicatorArrowLeft:
      return chevron(*painter, option->rect, style::quietText(), 90);
    case PE_IndicatorBranch:
      if (isOn(*option, State_Children))
        chevron(*painter, option->rect, style::quietText(), isOn(*option, State_Open) ? 0 : -90);
      return;
    case PE_PanelStatusBar:
    case PE_FrameStatusBarItem:
      return;
    case PE_IndicatorToolBarSeparator: {
      const int x = option->rect.center().x();
      painter->setPen(style::hairline());
      painter->drawLine(x, option->rect.top() + kUnit, x, option->rect.bottom() - kUnit);
      return;
    }
    default:
      break;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

static void drawMenuItem(const QStyle& base, const QStyleOptionMenuItem& item, QPainter& painter) {
  const QRect rect = item.rect;
  if (item.menuItemType == QStyleOptionMenuItem::Separator) {
    painter.setPen(style::hairline());
    painter.drawLine(rect.left() + kUnit, rect.center().y(), rect.right() - kUnit, rect.center().y());
    return;
  }
  const bool enabled = isOn(item, QStyle::State_Enabled);
  if (isOn(item, QStyle::State_Selected) && enabled) panel(painter, rect, {}, style::tint(), 3);
  const QRect sign(rect.left() + kUnit, rect.center().y() - 8 + 1, style::kMenuIcon, style::kMenuIcon);
  if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(sign).center());
    painter.setPen(QPen(style::accent(), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{-4, 0.2}, {-1.4, 2.8}, {4, -2.8}}));
    painter.restore();
  } else if (!item.icon.isNull()) {
    item.icon.paint(&painter, sign, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
  }
  const QRect room = rect.adjusted(kUnit + style::kMenuIcon + kUnit + 2, 0, -3 * kUnit, 0);
  const QColor ink =
      item.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
  const QStringList parts = item.text.split('\t');
  painter.setPen(ink);
  painter.setFont(item.font);
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                   parts.first());
  if (parts.size() > 1) {
    painter.setPen(enabled ? style::quietText() : ink);
    painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, parts.last());
  }
  if (item.menuItemType != QStyleOptionMenuItem::SubMenu) return;
  QStyleOption arrow;
  arrow.rect = QRect(rect.right() - 3 * kUnit, rect.top(), 2 * kUnit, rect.height());
  arrow.palette = item.palette;
  base.drawPrimitive(QStyle::PE_IndicatorArrowRight, &arrow, &painter);
}

static void drawHeaderSection(const QStyleOption& option, QPainter& painter) {
  painter.fillRect(option.rect, hovered(style::headerGround(), option));
  painter.setPen(style::hairline());
  painter.drawLine(option.rect.topRight() + QPoint(0, kUnit), option.rect.bottomRight() - QPoint(0, kUnit));
  painter.setPen(style::outline());
  painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
}

void VantryStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  switch (element) {
    case CE_PushButtonLabel: {
      QStyleOptionButton button = *qstyleoption_cast<const QStyleOptionButton*>(option);
      if (isDefault(*option))
        button.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
      return QProxyStyle::drawControl(element, &button, painter, widget);
    }
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
      return drawHeaderSection(*option, *painter);
    case CE_ItemViewItem: {
      QStyleOptionViewItem item = *qstyleoption_cast<const QStyleOptionViewItem*>(option);
      if (isOn(item, State_Selected) && widget && !widget->hasFocus()) {
        // The selection of a list without the focus stands back.
        painter->fillRect(item.rect, style::tint());
        item.state &= ~State_Selected;
      }
      return QProxyStyle::drawControl(element, &item, painter, widget);
    }
    case CE_MenuItem:
      return drawMenuItem(*proxy(), *qstyleoption_cast<const QStyleOptionMenuItem*>(option), *painter);
    case CE_MenuBarItem: {
      const auto& item = *qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      painter->fillRect(item.rect, item.palette.color(QPalette::Window));
      if (isOn(item, State_Selected)) panel(*painter, item.rect.adjusted(1, 2, -1, -2), {}, style::tint());
      const bool enabled = isOn(item, State_Enabled);
      painter->setPen(
          item.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
      painter->drawText(item.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine, item.text);
      return;
    }
    case CE_TabBarTabShape: {
      // The chosen tab carries the accent, the others only a line below.
      const bool chosen = isOn(*option, State_Selected);
      painter->setPen(style::hairline());
      painter->drawLine(option->rect.bottomLeft(), option->rect.bottomRight());
      const QRect bar(option->rect.left() + kUnit, option->rect.bottom() - 2,
                      option->rect.width() - 2 * kUnit, 3);
      if (chosen) panel(*painter, bar, {}, style::accent(), 1);
      return;
    }
    case CE_MenuBarEmptyArea:
      painter->fillRect(option->rect, option->palette.color(QPalette::Window));
      return;
    case CE_ToolBar:
      painter->fillRect(option->rect, option->palette.color(QPalette::Window));
      painter->setPen(style::hairline());
      painter->drawLine(option->rect.bottomLeft(), option->rect.bottomRight());
      return;
    default:
      QProxyStyle::drawControl(element, option, painter, widget);
  }
}

static void drawScrollBar(const QStyle& base, const QStyleOptionSlider& bar, QPainter& painter,
                          const QWidget* widget) {
  painter.fillRect(bar.rect, bar.palette.color(QPalette::Base));
  if (bar.maximum <= bar.minimum) return;
  const QRect slider = base.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget);
  const QColor text = bar.palette.color(QPalette::WindowText);
  const bool held = isOn(bar, QStyle::State_Sunken) || (isOn(bar, QStyle::State_MouseOver));
  panel(painter, slider.adjusted(3, 3, -3, -3), {},
        style::blend(bar.palette.color(QPalette::Base), text, held ? 0.5 : 0.28), 3);
}

void VantryStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
  switch (control) {
    case CC_GroupBox: {
      const auto& box = *qstyleoption_cast<const QStyleOptionGroupBox*>(option);
      if (box.features & QStyleOptionFrame::Flat) return;
      panel(*painter, subControlRect(control, option, SC_GroupBoxFrame, widget), style::hairline(),
            style::blend(box.palette.color(QPalette::Window), box.palette.color(QPalette::Base), 0.45));
      painter->setFont(style::captionFont());
      painter->setPen(style::quietText());
      painter->drawText(subControlRect(control, option, SC_GroupBoxLabel, widget),
                        Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic | Qt::TextSingleLine, box.text);
      return;
    }
    case CC_ComboBox: {
      const auto& combo = *qstyleoption_cast<const QStyleOptionComboBox*>(option);
      if (isOn(combo, State_ReadOnly) && isOn(combo, State_Enabled))
        return panel(*painter, combo.rect, isOn(combo, State_HasFocus) ? style::accent() : style::hairline(),
                     style::headerGround());
      const QColor own =
          combo.palette.color(isOn(combo, State_Enabled) ? QPalette::Button : QPalette::Window);
      panel(*painter, combo.rect, fieldLine(combo), hovered(own, combo));
      chevron(*painter, subControlRect(control, option, SC_ComboBoxArrow, widget), style::quietText(), 0);
      return;
    }
    case CC_ScrollBar:
      return drawScrollBar(*proxy(), *qstyleoption_cast<const QStyleOptionSlider*>(option), *painter, widget);
    default:
      QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

void VantryStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  const bool hovers = qobject_cast<QPushButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
                      qobject_cast<QToolButton*>(widget) || widget->inherits("QScrollBar") ||
                      widget->inherits("QAbstractButton");
  if (hovers) widget->setAttribute(Qt::WA_Hover);
}

}  // namespace vantry
