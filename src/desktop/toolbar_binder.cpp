#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/bars.h"

namespace vantry {

class ToolBarBinder : public Binder {
 public:
  ToolBarBinder(ToolBar& bar, Host& host, QToolBar& widget)
      : Binder(bar, host, widget), bar_(bar), widget_(widget) {
    for (Tool* tool : bar.Tools()) add(*tool);
    chooseStop();
  }

  /// One stop of the Tab key leads to the tools; the arrow keys move among them.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return Binder::eventFilter(watched, event);
    const int key = static_cast<const QKeyEvent*>(event)->key();
    if (key != Qt::Key_Left && key != Qt::Key_Right) return Binder::eventFilter(watched, event);
    const auto found = std::find(buttons_.begin(), buttons_.end(), watched);
    const auto count = static_cast<std::ptrdiff_t>(buttons_.size());
    const std::ptrdiff_t start = found - buttons_.begin();
    for (std::ptrdiff_t step = 1; step < count; ++step) {
      const auto place = (start + (key == Qt::Key_Right ? step : count - step)) % count;
      QToolButton* next = buttons_[static_cast<std::size_t>(place)];
      if (!next->isEnabled() || !next->isVisible()) continue;
      next->setFocus(Qt::TabFocusReason);
      break;
    }
    return true;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::ToolTip) {
      for (const auto& [tool, action] : actions_) showToolTip(*tool, *action);
      return;
    }
    Binder::update(aspect);
  }

  void flush() override {
    if (combo_) combo_->flush();
  }

  void release() override {
    for (const auto& [tool, action] : actions_) tool->Shower = nullptr;
    if (combo_) combo_->release();
    Binder::release();
  }

 private:
  void add(Tool& tool) {
    switch (tool.kind) {
      case Tool::Kind::Line:
        widget_.addSeparator();
        return;
      case Tool::Kind::Combo:
        return addCombo(tool);
      case Tool::Kind::Button:
        return addButton(tool);
    }
  }

  void addButton(Tool& tool) {
    auto* button = new QToolButton(&widget_);
    button->setObjectName(qt(tool.name));
    button->setAutoRaise(true);
    QAction* action = makeAction(tool);
    button->setDefaultAction(action);
    button->setToolButtonStyle(tool.Caption.get().empty() ? Qt::ToolButtonIconOnly
                                                          : Qt::ToolButtonTextBesideIcon);
    button->setAccessibleName(
        withoutMnemonic(tool.Caption.get().empty() ? tool.toolTip : tool.Caption.get()));
    button->installEventFilter(this);
    buttons_.push_back(button);
    if (!tool.choices.empty()) {
      auto* menu = new QMenu(button);
      for (Tool* choice : tool.choices) menu->addAction(makeAction(*choice));
      button->setMenu(menu);
      button->setPopupMode(QToolButton::MenuButtonPopup);
    }
    // The button's place in the bar hides with the tool.
    placeOf(tool, widget_.addWidget(button));
  }

  void addCombo(Tool& tool) {
    auto* place = new QWidget(&widget_);
    auto* layout = new QHBoxLayout(place);
    layout->setContentsMargins(style::kUnit, 0, style::kUnit, 0);
    layout->setSpacing(style::kUnit);
    combo_ = makeBinder(*tool.combo, host(), place);
    if (!tool.Caption.get().empty()) {
      auto* label = new QLabel(qt(tool.Caption.get()), place);
      label->setBuddy(&combo_->widget());
      layout->addWidget(label);
    }
    layout->addWidget(&combo_->widget());
    combo_->bind();
    placeOf(tool, widget_.addWidget(place));
    tool.Shower = [this, &tool](Aspect) { places_.at(&tool)->setVisible(tool.Visible); };
  }

  QAction* makeAction(Tool& tool) {
    auto* action = new QAction(&widget_);
    if (!tool.picture.empty()) action->setIcon(icon(tool.picture));
    connect(action, &QAction::triggered, this, [this, &tool] { act([this, &tool] { bar_.choose(tool); }); });
    actions_.emplace_back(&tool, action);
    tool.Shower = [this, &tool, action](Aspect) { show(tool, *action); };
    show(tool, *action);
    return action;
  }

  void show(const Tool& tool, QAction& action) {
    action.setText(qt(tool.Caption.get()));
    action.setEnabled(tool.Enabled);
    action.setVisible(tool.Visible);
    showToolTip(tool, action);
    if (const auto place = places_.find(&tool); place != places_.end())
      place->second->setVisible(tool.Visible);
    chooseStop();
  }

  /// The Tab key stops at the first tool that can be used. By the mouse the tools leave the focus where it
  /// is.
  void chooseStop() {
    const auto stop = std::find_if(buttons_.begin(), buttons_.end(), [](const QToolButton* button) {
      return button->defaultAction()->isEnabled() && button->defaultAction()->isVisible();
    });
    for (auto button = buttons_.begin(); button != buttons_.end(); ++button)
      (*button)->setFocusPolicy(button == stop ? Qt::TabFocus : Qt::NoFocus);
  }

  void showToolTip(const Tool& tool, QAction& action) {
    // Without a text of its own a tool tip would be the caption.
    const std::string& text = tool.toolTip.empty() ? tool.Caption.get() : tool.toolTip;
    action.setToolTip(bar_.ToolTips ? withoutMnemonic(text) : QString());
    if (!bar_.ToolTips) action.setToolTip(QStringLiteral(" "));
  }

  void placeOf(const Tool& tool, QAction* place) {
    place->setVisible(tool.Visible);
    places_[&tool] = place;
  }

  ToolBar& bar_;
  QToolBar& widget_;
  std::vector<QToolButton*> buttons_;
  std::vector<std::pair<Tool*, QAction*>> actions_;
  std::unordered_map<const Tool*, QAction*> places_;
  std::unique_ptr<Binder> combo_;
};

std::unique_ptr<Binder> bindToolBar(Control& control, Host& host, QWidget* parent) {
  auto* widget = new QToolBar(parent);
  widget->setMovable(false);
  widget->setFloatable(false);
  widget->setContextMenuPolicy(Qt::PreventContextMenu);
  widget->setIconSize({style::kToolIcon, style::kToolIcon});
  return std::make_unique<ToolBarBinder>(static_cast<ToolBar&>(control), host, *widget);
}

}  // namespace vantry
