#include "platform/command.h"

#include <gtest/gtest.h>

#include "platform/bars.h"
#include "platform/form.h"
#include "platform/windows.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct CommandWindow : Form {
  explicit CommandWindow(Windows& windows) : Form(windows, "frmCommands") {}
  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuSave{mnuFile, "mnuSave", "&Save"};
  MenuItem mnuPrint{mnuFile, "mnuPrint", "&Print"};
  MenuItem mnuPrintAll{mnuPrint, "mnuPrintAll", "&All"};
  Button cmdSave{*this, "cmdSave", "&Save"};
  ToolBar bar{*this, "bar"};
};

struct CommandTest : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  CommandWindow window{windows};
  int runs = 0;
  Command save{[this] { ++runs; }};
};

TEST_F(CommandTest, EverythingThatIsLinkedRunsItAndShowsWhetherItCanBeUsed) {
  Tool& tool = window.bar.addButton(7, "abSave", "Save", "save");
  save.link(window.mnuSave, "Ctrl+S");
  save.link(window.cmdSave);
  save.link(tool);
  EXPECT_EQ(window.mnuSave.Shortcut, "Ctrl+S");
  const auto tryAll = [&] {
    runs = 0;
    window.mnuSave.choose();
    window.cmdSave.press();
    window.bar.choose(tool);
    save.run();
    return runs;
  };
  EXPECT_EQ(tryAll(), 4);
  save.Allowed = false;
  EXPECT_EQ(tryAll(), 0) << "a right is missing";
  save.Enabled = false;
  save.Allowed = true;
  EXPECT_EQ(tryAll(), 0) << "the rights do not make up for the state";
  EXPECT_FALSE(window.mnuSave.Enabled);
  EXPECT_FALSE(window.cmdSave.Enabled);
  EXPECT_FALSE(tool.Enabled);
  save.Enabled = true;
  EXPECT_EQ(tryAll(), 4);
}

TEST_F(CommandTest, AnEntryGoesFromOneCommandToAnother) {
  int others = 0;
  Command other{[&] { ++others; }};
  other.Enabled = false;
  save.link(window.mnuSave);
  save.unlink(window.mnuSave);
  EXPECT_FALSE(window.mnuSave.Enabled);
  other.link(window.mnuSave);
  save.Enabled = false;
  save.Enabled = true;
  EXPECT_FALSE(window.mnuSave.Enabled) << "the command of before has no say any more";
  other.Enabled = true;
  save.Enabled = false;
  window.mnuSave.choose();
  EXPECT_EQ(runs, 0);
  EXPECT_EQ(others, 1);
}

TEST_F(CommandTest, AnEntryThatHoldsOthersRunsNothing) {
  save.link(window.mnuPrint);
  window.mnuPrint.choose();
  EXPECT_EQ(runs, 0);
  save.Enabled = false;
  EXPECT_FALSE(window.mnuPrintAll.usable());
}

}  // namespace
}  // namespace vantry::test
