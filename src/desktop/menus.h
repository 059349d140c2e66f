#pragma once

#include <QObject>
#include <memory>
#include <unordered_map>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace vantry {

class Form;
class Host;
class MenuItem;

/// The menus of one window: the bar and the popups, mirrored from its entries.
class Menus : public QObject {
 public:
  Menus(Form& form, Host& host, QWidget& window);
  /// For entries that live on.
  void release();

  /// The menu bar; nullptr while the window shows no menu.
  QMenuBar* bar() const { return bar_; }
  /// Opens the menu of an entry and returns the entry chosen, or nullptr.
  MenuItem* open(MenuItem& menu, const QPoint& position);

 private:
  QMenu* makeMenu(MenuItem& item, QWidget* parent);
  QAction* makeEntry(MenuItem& item, QMenu& menu);
  void show(const MenuItem& item, QAction& action);

  Host& host_;
  QMenuBar* bar_ = nullptr;
  bool popup_ = false;
  struct Entry {
    QAction* action = nullptr;
    QMenu* menu = nullptr;
  };
  std::unordered_map<MenuItem*, Entry> entries_;
};

}  // namespace vantry
