#include "desktop/menus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <algorithm>

#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "platform/form.h"
#include "platform/menu.h"

namespace vantry {

Menus::Menus(Form& form, Host& host, QWidget& window) : host_(host) {
  const auto& items = form.Menus();
  const bool shows =
      std::any_of(items.begin(), items.end(), [](const MenuItem* i) { return i->Visible.get(); });
  if (shows) {
    bar_ = new QMenuBar(&window);
    bar_->setNativeMenuBar(false);
  }
  for (MenuItem* item : items) {
    QMenu* menu = makeMenu(*item, &window);
    if (bar_) bar_->addMenu(menu);
  }
}

void Menus::release() {
  for (const auto& [item, entry] : entries_) item->Shower = nullptr;
}

QMenu* Menus::makeMenu(MenuItem& item, QWidget* parent) {
  auto* menu = new QMenu(parent);
  menu->setObjectName(qt(item.Name()));
  QAction* action = menu->menuAction();
  action->setObjectName(qt(item.Name()));
  entries_[&item] = {action, menu};
  item.Shower = [this, &item, action](Aspect) { show(item, *action); };
  show(item, *action);
  for (MenuItem* entry : item.Items()) menu->addAction(makeEntry(*entry, *menu));
  // Opening a menu is an event of its entry, which may change what stands below it.
  connect(menu, &QMenu::aboutToShow, this, [this, &item] { host_.act([&item] { item.choose(); }); });
  return menu;
}

QAction* Menus::makeEntry(MenuItem& item, QMenu& menu) {
  if (!item.Items().empty()) return makeMenu(item, &menu)->menuAction();
  auto* action = new QAction(&menu);
  action->setObjectName(qt(item.Name()));
  if (item.isLine()) action->setSeparator(true);
  if (!item.Shortcut.empty()) action->setShortcut(QKeySequence(qt(item.Shortcut)));
  if (!item.Picture.empty()) action->setIcon(icon(item.Picture));
  entries_[&item] = {action, nullptr};
  item.Shower = [this, &item, action](Aspect) { show(item, *action); };
  show(item, *action);
  connect(action, &QAction::triggered, this, [this, &item, action] {
    show(item, *action);  // a check mark is the entry's to set
    // A popup's choice runs when the menu has closed.
    if (!popup_) host_.act([&item] { item.choose(); });
  });
  return action;
}

void Menus::show(const MenuItem& item, QAction& action) {
  if (!item.isLine()) action.setText(qt(item.Caption.get()));
  action.setEnabled(item.Enabled);
  action.setVisible(item.Visible);
  if (item.Checked || action.isCheckable()) {
    action.setCheckable(true);
    action.setChecked(item.Checked);
  }
}

MenuItem* Menus::open(MenuItem& menu, const QPoint& position) {
  const auto found = entries_.find(&menu);
  if (found == entries_.end() || !found->second.menu) return nullptr;
  popup_ = true;
  const QPointer<Menus> alive(this);
  const QAction* chosen = found->second.menu->exec(position);
  if (!alive) return nullptr;
  popup_ = false;
  for (const auto& [item, entry] : entries_) {
    if (chosen && entry.action == chosen) return item;
  }
  return nullptr;
}

}  // namespace vantry
