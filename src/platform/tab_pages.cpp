#include "platform/tab_pages.h"

#include <utility>

namespace vantry {

TabPages::TabPages(TabStrip& strip, std::vector<Page> pages) : strip_(strip), pages_(std::move(pages)) {
  for (const Page& page : pages_) {
    strip_.addTab(page.caption, page.toolTip);
    strip_.Pages.push_back(&page.frame);
    page.frame.Visible = &page == &pages_.front();
  }
  strip_.Click = [this] { show(); };
}

void TabPages::visit(int page) {
  raise(std::exchange(pages_.at(static_cast<std::size_t>(page)).firstVisit, {}));
}

void TabPages::show() {
  const int next = strip_.SelectedTab;
  if (next == shown_ || next < 0 || next >= count()) return;
  // Never both at once: a window that has to hold two pages grows, and stays so.
  pages_[static_cast<std::size_t>(std::exchange(shown_, next))].frame.Visible = false;
  visit(next);
  if (shown_ == next) pages_[static_cast<std::size_t>(next)].frame.Visible = true;
  raise(Changed);
}

}  // namespace vantry
