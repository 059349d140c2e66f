#include "platform/controls.h"

#include <gtest/gtest.h>

#include "platform/bars.h"
#include "platform/fields.h"
#include "platform/form.h"
#include "platform/tree.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct Controls : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Form form{windows, "frmTest"};
  std::string log;  ///< what happened, in its order

  Event noting(std::string what) {
    return [this, what] { log += what + ' '; };
  }
  std::string take() { return std::exchange(log, {}); }
};

TEST_F(Controls, ANewValueIsShownBeforeItsEventWhoeverSetIt) {
  TextBox text(form, "txtName");
  text.Shower = [this](Aspect aspect) { log += aspect == Aspect::Text ? "shown " : "other "; };
  text.Change = noting("change");
  text.Text = "a";
  EXPECT_EQ(take(), "shown change ");
  text.type("b");
  EXPECT_EQ(take(), "shown change ");
  text.Text = "b";
  text.type("b");
  EXPECT_EQ(take(), "") << "an equal value does nothing";
  text.Locked = true;
  take();
  text.type("c");
  EXPECT_EQ(text.Text, "b") << "a locked field takes nothing from the operator";
  text.Text = "c";
  EXPECT_EQ(take(), "shown change ") << "but from the program";
}

TEST_F(Controls, ATextIsSelectedAndReplacedByCharacters) {
  TextBox text(form, "txtName");
  text.SelChange = noting("sel");
  text.Change = noting("change");
  text.Text = "Müller, Zoë";
  EXPECT_EQ(text.SelStart(), 11) << "the cursor is behind a new text";
  take();
  text.Select(1, 5);
  EXPECT_EQ(text.SelText(), "üller");
  text.SelText("ø");
  EXPECT_EQ(text.Text, "Mø, Zoë");
  EXPECT_EQ(text.SelStart(), 2);
  EXPECT_EQ(take(), "sel change sel ");
  text.selected(4, 99);
  EXPECT_EQ(text.SelText(), "Zoë") << "what lies beyond the end does not count";
  text.selected(4, 3);
  EXPECT_EQ(take(), "sel ") << "the same part once";
  text.SelectText();
  EXPECT_EQ(text.SelText(), "Mø, Zoë");
}

TEST_F(Controls, AWindowAnswersTheKeysThatItTakes) {
  TextBox text(form, "txtName");
  EXPECT_FALSE(text.pressKey("F4"));
  text.KeyDown = [this](std::string_view key) {
    log += std::string(key) + ' ';
    return key == "F4";
  };
  text.DblClick = noting("double");
  text.Locked = true;
  EXPECT_TRUE(text.pressKey("F4")) << "also where the text cannot be changed";
  EXPECT_FALSE(text.pressKey("Ctrl+C"));
  text.doubleClick();
  EXPECT_EQ(take(), "F4 Ctrl+C double ");
  text.Enabled = false;
  EXPECT_FALSE(text.pressKey("F4"));
  text.doubleClick();
  EXPECT_EQ(take(), "");
}

TEST_F(Controls, ALockedListTakesNoChoiceOfTheOperators) {
  ComboBox combo(form, "cboType");
  combo.AddItem("One");
  combo.AddItem("Two");
  combo.Locked = true;
  combo.select(1);
  EXPECT_EQ(combo.ListIndex, -1);
  combo.ListIndex = 0;
  EXPECT_EQ(combo.Text(), "One");
}

TEST_F(Controls, AScanFindsTheFieldThatWaitsForIt) {
  TextBox name(form, "txtName");
  Frame frame(form, "fraCharge");
  TextBox barcode(frame, "txtBarcode");
  name.Enter = [&] { log += "name " + name.Text.get() + ' '; };
  barcode.Enter = [&] { log += "barcode " + barcode.Text.get() + ' '; };
  EXPECT_FALSE(form.scan("A1")) << "no field has the focus";
  name.SetFocus();
  EXPECT_TRUE(form.scan("A1"));
  barcode.TakesScans = true;
  barcode.Text = "rest of a search";
  EXPECT_TRUE(form.scan("A2"));
  EXPECT_EQ(take(), "name A1 barcode A2 ");
  frame.Visible = false;
  EXPECT_FALSE(form.takesScans()) << "another view shows";
  form.ScanReceived = [this](std::string_view text) { log += "window " + std::string(text) + ' '; };
  EXPECT_TRUE(form.scan("A3"));
  EXPECT_EQ(take(), "window A3 ");
  form.Enabled = false;
  EXPECT_FALSE(form.scan("A4")) << "a busy window takes nothing";
}

TEST_F(Controls, AnEventMaySetTheValueAgain) {
  TextBox text(form, "txtName");
  text.Change = [&] {
    log += text.Text.get() + ' ';
    if (text.Text.get().size() > 2) text.Text = text.Text.get().substr(0, 2);
  };
  text.Text = "abcd";
  EXPECT_EQ(text.Text, "ab");
  EXPECT_EQ(take(), "abcd ab ");
}

TEST_F(Controls, EachKindRaisesItsEventForCodeAndOperator) {
  CheckBox check(form, "chkAll", "All");
  check.Click = noting("check");
  check.Value = true;
  check.toggle();
  EXPECT_EQ(take(), "check check ");

  ComboBox list(form, "cboType");
  list.Click = noting("list");
  list.AddItem("One", "1");
  list.AddItem("Two", "2");
  EXPECT_EQ(take(), "") << "filling is no choice";
  list.ListIndex = 1;
  list.select(0);
  list.select(0);
  EXPECT_EQ(take(), "list list ");

  DateField date(form, "dtDay");
  date.Change = noting("date");
  date.Value = Date{2026, 11, 24};
  date.enter(Date{2026, 11, 25});
  date.enter(std::nullopt);
  EXPECT_EQ(take(), "date date date ");
  EXPECT_TRUE(date.isEmpty());
}

TEST_F(Controls, AFieldThatCannotBeUsedIgnoresTheOperator) {
  Frame frame(form, "fraOne");
  Frame inner(frame, "fraTwo");
  Button button(inner, "cmdGo", "&Go");
  button.Click = noting("click");
  const auto presses = [&] {
    button.press();
    return !take().empty();
  };
  EXPECT_TRUE(presses());
  EXPECT_TRUE(button.usable());
  for (Property<bool>* cause : {&button.Enabled, &button.Visible, &inner.Enabled, &inner.Visible,
                                &frame.Enabled, &frame.Visible, &form.Enabled}) {
    *cause = false;
    EXPECT_FALSE(button.usable());
    EXPECT_FALSE(presses());
    *cause = true;
  }
  EXPECT_TRUE(presses());
}

TEST_F(Controls, OneOptionOfAContainerIsChosen) {
  OptionButton red(form, "optRed", "Red");
  OptionButton green(form, "optGreen", "Green");
  Frame frame(form, "fraOther");
  OptionButton other(frame, "optOther", "Other");
  red.Click = noting("red");
  green.Click = noting("green");
  other.Value = true;
  red.Value = true;
  green.choose();
  green.choose();
  EXPECT_EQ(take(), "red green ") << "losing its value is no click";
  EXPECT_FALSE(red.Value);
  EXPECT_TRUE(green.Value);
  EXPECT_TRUE(other.Value) << "another container is another question";
  green.Value = false;
  EXPECT_FALSE(red.Value || green.Value) << "none may be chosen";
}

TEST_F(Controls, AListKeepsDataBehindItsTexts) {
  ListBox list(form, "lstRooms");
  list.Click = noting("click");
  list.DblClick = noting("double");
  list.AddItem("Hall", "7");
  list.AddItem("Attic", "9");
  EXPECT_EQ(list.indexOf("Hall"), 0);
  EXPECT_EQ(list.indexOf("hall"), -1);
  EXPECT_EQ(list.List(-1) + list.List(2) + list.ItemData(2), "") << "beyond its ends it is empty";
  list.select(2);
  list.select(-2);
  EXPECT_EQ(list.ListIndex, -1);
  list.doubleClick(1);
  EXPECT_EQ(take(), "click double ");
  list.Clear();
  EXPECT_EQ(take(), "") << "an emptied list has no choice to tell";
  EXPECT_EQ(list.ListIndex, -1);
  EXPECT_EQ(list.ListCount(), 0);
}

TEST_F(Controls, ATreeRefusesATakenKeyAndAnUnknownParent) {
  Tree tree(form, "tvwMain");
  TreeNode* root = tree.Add("", "E", "Equipment", 1);
  ASSERT_NE(root, nullptr);
  TreeNode* child = tree.Add("E", "E1", "Projectors");
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(child->parent, root);
  EXPECT_EQ(tree.Add("", "E1", "Again"), nullptr) << "a key is taken in the whole tree";
  EXPECT_EQ(tree.Add("X", "X1", "Lost"), nullptr);
  EXPECT_EQ(tree.Count(), 2);
  EXPECT_EQ(tree.find("E1")->text, "Projectors");
}

TEST_F(Controls, ARemovedNodeTakesWhatIsBelowItAndTheSelection) {
  Tree tree(form, "tvwMain");
  for (const auto& [parent, key] : std::vector<std::pair<std::string, std::string>>{
           {"", "A"}, {"A", "A1"}, {"A1", "A11"}, {"A", "A2"}, {"", "B"}})
    ASSERT_NE(tree.Add(parent, key, key), nullptr);
  tree.SelectedKey = "A11";
  tree.Remove("A1");
  EXPECT_EQ(tree.Count(), 3);
  EXPECT_EQ(tree.SelectedKey, "");
  ASSERT_EQ(tree.find("A")->children.size(), 1U);
  EXPECT_EQ(tree.find("A")->children.front()->key, "A2");
  EXPECT_NE(tree.Add("", "A11", "free again"), nullptr);
  tree.Remove("B");
  ASSERT_EQ(tree.Roots().size(), 2U);
  tree.Clear();
  EXPECT_EQ(tree.Count(), 0);
  EXPECT_TRUE(tree.Roots().empty());
}

TEST_F(Controls, ATreeTellsItsClicksAndItsExpansion) {
  Tree tree(form, "tvwMain");
  ASSERT_NE(tree.Add("", "A", "A"), nullptr);
  tree.Click = noting("click");
  tree.DblClick = noting("double");
  tree.Expand = noting("expand");
  tree.click("A");
  tree.click("A");
  tree.click("B");
  tree.doubleClick("A");
  tree.setExpanded("A", true);
  tree.setExpanded("A", true);
  tree.setExpanded("A", false);
  EXPECT_EQ(take(), "click click click double expand ");
  EXPECT_EQ(tree.SelectedKey, "A");
}

TEST_F(Controls, OnlyALeafWithABoxIsTicked) {
  Tree tree(form, "tvwTypes");
  tree.TickedImage = 1;
  tree.UntickedImage = 5;
  ASSERT_NE(tree.Add("", "A", "A", 5), nullptr);
  ASSERT_NE(tree.Add("A", "A1", "on", 1), nullptr);
  ASSERT_NE(tree.Add("A", "A2", "off", 5), nullptr);
  ASSERT_NE(tree.Add("A", "A3", "plain", 2), nullptr);
  std::string ticked;
  tree.Check = [&] { ticked += tree.SelectedKey.get() + " "; };
  for (const char* key : {"A", "A1", "A2", "A3", "B"}) tree.check(key);
  EXPECT_EQ(ticked, "A1 A2 ");
  EXPECT_EQ(tree.find("A1")->image, 1) << "the window sets the pictures";
}

TEST_F(Controls, ATreeKeepsTheOrderInWhichNodesWereSelected) {
  Tree tree(form, "tvwItems");
  for (const char* key : {"A", "B", "C"}) ASSERT_NE(tree.Add("", key, key), nullptr);
  tree.selectKeys({"B"});
  EXPECT_TRUE(tree.SelectedKeys().empty()) << "one node at a time";
  tree.MultiSelect = true;
  const auto selected = [&](const std::vector<std::string>& keys) {
    tree.selectKeys(keys);
    std::string text;
    for (const std::string& key : tree.SelectedKeys()) text += key;
    return text + " " + tree.SelectedKey.get();
  };
  EXPECT_EQ(selected({"C"}), "C C");
  EXPECT_EQ(selected({"A", "C"}), "CA A");
  EXPECT_EQ(selected({"A", "B", "C", "X"}), "CAB B");
  EXPECT_EQ(selected({"A", "B"}), "AB B");
  tree.Remove("B");
  EXPECT_EQ(selected({"A"}), "A A");
  EXPECT_EQ(selected({}), " ");
}

TEST_F(Controls, AToolIsChosenWhereItCanBeUsed) {
  ToolBar bar(form, "barMain");
  Tool& add = bar.addButton(3, "abNew", "New", "new");
  bar.addChoice(add, 4, "Room", "room");
  bar.addLine();
  bar.ToolClick = [this](const Tool& tool) { log += std::to_string(tool.id) + ' '; };
  bar.choose(bar.tool(3));
  bar.choose(bar.tool(4));
  add.Enabled = false;
  bar.choose(add);
  EXPECT_EQ(take(), "3 4 ");
  EXPECT_EQ(bar.Tools().size(), 2U) << "a choice stands beside its button";
  EXPECT_EQ(bar.tool("abNew").id, 3);
  EXPECT_THROW((void)bar.tool(5), std::out_of_range);
  EXPECT_THROW((void)bar.tool("abOld"), std::out_of_range);
}

TEST_F(Controls, AListBarKnowsTheEntriesThatItHas) {
  ListBar bar(form, "albStandard");
  bar.ItemClick = [this](std::string_view key) { log += std::string(key) + ' '; };
  bar.setGroups(
      {{"Schedule", {{"day", "Day", ""}, {"month", "Month", ""}}}, {"Inventory", {{"rooms", "Rooms", ""}}}});
  bar.CurrentGroup = 1;
  bar.click("month");
  bar.click("year");
  EXPECT_EQ(take(), "month ");
  bar.setGroups({{"Schedule", {{"day", "Day", ""}}}});
  EXPECT_EQ(bar.CurrentGroup, 0) << "the open group is gone";
  EXPECT_FALSE(bar.has("rooms"));
}

}  // namespace
}  // namespace vantry::test
