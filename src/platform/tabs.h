#pragma once

#include <string>
#include <vector>

#include "platform/controls.h"

namespace vantry {

/// A row of tabs. The window shows and hides what belongs to them.
class TabStrip : public Control {
 public:
  TabStrip(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::TabStrip) {
    SelectedTab.Changed = [this] { raise(Click); };
  }
  struct Tab {
    std::string caption;
    std::string toolTip;
  };
  /// Counted from 0.
  Property<int> SelectedTab{*this, Aspect::Selection, 0};
  Event Click;
  /// The frames of which each tab shows one; empty where the tabs show no frames.
  std::vector<const Frame*> Pages;

  void addTab(std::string caption, std::string toolTip = {}) {
    tabs_.push_back({std::move(caption), std::move(toolTip)});
    tell(Aspect::List);
  }
  const std::vector<Tab>& Tabs() const { return tabs_; }
  /// The operator chooses a tab.
  void choose(int tab) {
    if (usable() && tab >= 0 && tab < static_cast<int>(tabs_.size())) SelectedTab = tab;
  }

 private:
  std::vector<Tab> tabs_;
};

}  // namespace vantry
