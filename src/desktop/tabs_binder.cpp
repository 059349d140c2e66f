#include <QTabBar>

#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "platform/tabs.h"

namespace vantry {

class TabsBinder : public Binder {
 public:
  TabsBinder(TabStrip& tabs, Host& host, QTabBar& widget)
      : Binder(tabs, host, widget), tabs_(tabs), widget_(widget) {
    connect(&widget, &QTabBar::currentChanged, this, [this](int tab) {
      if (tab >= 0 && tab != tabs_.SelectedTab) act([this, tab] { tabs_.choose(tab); });
    });
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::List) showTabs();
    if (aspect == Aspect::Selection || aspect == Aspect::List) widget_.setCurrentIndex(tabs_.SelectedTab);
    Binder::update(aspect);
  }

 private:
  void showTabs() {
    const QSignalBlocker quiet(widget_);
    while (widget_.count() > 0) widget_.removeTab(0);
    for (const TabStrip::Tab& tab : tabs_.Tabs())
      widget_.setTabToolTip(widget_.addTab(qt(tab.caption)), qt(tab.toolTip));
    widget_.updateGeometry();  // an unseen bar does not tell of its new tabs
  }

  TabStrip& tabs_;
  QTabBar& widget_;
};

std::unique_ptr<Binder> bindTabStrip(Control& control, Host& host, QWidget* parent) {
  auto* widget = new QTabBar(parent);
  widget->setExpanding(false);
  widget->setDocumentMode(true);
  return std::make_unique<TabsBinder>(static_cast<TabStrip&>(control), host, *widget);
}

}  // namespace vantry
