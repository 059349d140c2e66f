#pragma once

#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/tabs.h"

namespace vantry {

/// The pages of a tab strip: one frame for each tab, of which one is shown.
class TabPages {
 public:
  struct Page {
    std::string caption;
    Frame& frame;
    /// Runs before the page is shown for the first time, for what is read only then.
    Event firstVisit = {};
    std::string toolTip = {};
  };
  /// Makes a tab for each page and shows the first one.
  TabPages(TabStrip& strip, std::vector<Page> pages);
  TabPages(const TabPages&) = delete;
  TabPages& operator=(const TabPages&) = delete;

  int count() const { return static_cast<int>(pages_.size()); }
  int selected() const { return strip_.SelectedTab; }
  void select(int page) { strip_.SelectedTab = page; }

  /// Reads what a page reads at its first visit, without showing it.
  void visit(int page);

  Event Changed;  ///< another page is shown

 private:
  void show();

  TabStrip& strip_;
  std::vector<Page> pages_;
  int shown_ = 0;
};

}  // namespace vantry
