#include "platform/tab_pages.h"

#include <gtest/gtest.h>

#include "platform/windows.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct TabPagesTest : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Form form{windows, "frmTest"};
  TabStrip strip{form, "tab"};
  Frame first{form, "first"}, second{form, "second"};
  int visits = 0;
  bool firstWasVisible = false;
  TabPages pages{strip, {{"First", first}, {"Second", second, [this] {
                                              ++visits;
                                              firstWasVisible = first.Visible;
                                            }}}};

  TabPagesTest() { form.Load(); }
};

TEST_F(TabPagesTest, OnePageIsShownAndAnotherIsReadOnItsFirstVisit) {
  EXPECT_EQ(strip.Tabs()[1].caption, "Second");
  EXPECT_TRUE(first.Visible);
  EXPECT_FALSE(second.Visible);
  for (int turn = 0; turn < 2; ++turn) {
    strip.choose(1);
    EXPECT_FALSE(first.Visible);
    EXPECT_TRUE(second.Visible);
    EXPECT_EQ(visits, 1);
    pages.select(0);
    EXPECT_TRUE(first.Visible);
  }
  EXPECT_FALSE(firstWasVisible) << "two pages at once would make the window grow";
}

}  // namespace
}  // namespace vantry::test
