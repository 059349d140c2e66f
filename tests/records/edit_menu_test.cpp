#include "records/edit_menu.h"

#include <gtest/gtest.h>

#include "platform/windows.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct EditMenuTest : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Form form{windows, "frmTest"};
  TextBox number{form, "txtNumber"}, name{form, "txtName"};
  EditMenu edit{desktop};

  EditMenuTest() {
    form.Load();
    edit.follow({&number, &name});
    number.Text = "TV 12";
    name.Text = "Hall";
  }
};

TEST_F(EditMenuTest, CutAndPasteActOnTheFieldWithTheFocus) {
  EXPECT_FALSE(edit.cut.Enabled || edit.copy.Enabled || edit.paste.Enabled);
  number.SetFocus();
  number.selected(0, 3);
  EXPECT_TRUE(edit.cut.Enabled);
  edit.cut.run();
  EXPECT_EQ(desktop.clipboard, "TV") << "trimmed";
  EXPECT_EQ(number.Text, "12");
  name.SetFocus();
  name.selected(0, 4);
  edit.paste.run();
  EXPECT_EQ(name.Text, "TV");
  EXPECT_EQ(number.Text, "12");
}

TEST_F(EditMenuTest, ALockedFieldCanOnlyBeCopiedFrom) {
  desktop.clipboard = "x";
  name.Locked = true;
  name.SetFocus();
  name.selected(1, 2);
  EXPECT_FALSE(edit.cut.Enabled || edit.paste.Enabled);
  edit.copy.run();
  EXPECT_EQ(desktop.clipboard, "al");
}

}  // namespace
}  // namespace vantry::test
