#include "platform/form.h"

#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/menu.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct Probe : Form {
  Probe(Windows& windows, std::string name, std::string* where = nullptr)
      : Form(windows, std::move(name)), log(where) {}
  ~Probe() override { note("freed"); }
  void Form_Load() override {
    note("load");
    if (unloadsInLoad) Unload();
  }
  void Form_Activate() override { note("activate"); }
  bool Form_Unload() override {
    note("unload");
    return !refuses;
  }
  void note(const char* what) {
    if (log) *log += Name() + ':' + what + ' ';
  }
  std::string* log;
  bool refuses = false;
  bool unloadsInLoad = false;
};

struct Forms : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  std::string log;
  std::string take() { return std::exchange(log, {}); }
  std::string loaded() const {
    std::string names;
    for (int i = 0; i < windows.Count(); ++i) names += windows[i].Name() + ' ';
    return names;
  }
};

TEST_F(Forms, AWindowLoadsOnceUntilItHasUnloaded) {
  Probe form(windows, "a", &log);
  form.Load();
  form.Show();
  form.Show();
  EXPECT_EQ(take(), "a:load a:activate a:activate ");
  EXPECT_TRUE(form.isLoaded() && form.isShown());
  EXPECT_TRUE(form.Unload());
  EXPECT_FALSE(form.isLoaded() || form.isShown());
  EXPECT_EQ(take(), "a:unload ");
  EXPECT_TRUE(form.Unload()) << "what is gone need not go";
  EXPECT_EQ(take(), "");
  form.Show();
  EXPECT_EQ(take(), "a:load a:activate ");
  form.Hide();
  EXPECT_TRUE(form.isLoaded()) << "hidden is not gone";
}

TEST_F(Forms, AWindowMayRefuseToGo) {
  Probe form(windows, "a");
  form.Show();
  form.refuses = true;
  EXPECT_FALSE(form.Unload());
  EXPECT_TRUE(form.isLoaded() && form.isShown());
  EXPECT_EQ(loaded(), "a ");
  form.closeByOperator();
  EXPECT_TRUE(form.isLoaded());
  form.refuses = false;
  form.Enabled = false;
  form.closeByOperator();
  EXPECT_TRUE(form.isLoaded()) << "a busy window cannot be closed";
  form.Enabled = true;
  form.closeByOperator();
  EXPECT_FALSE(form.isLoaded());
}

TEST_F(Forms, AWindowThatUnloadsWhileItLoadsIsNotShown) {
  Probe form(windows, "a", &log);
  form.unloadsInLoad = true;
  form.Show();
  form.ShowModal();
  EXPECT_EQ(take(), "a:load a:unload a:load a:unload ");
  EXPECT_FALSE(form.isShown());
  EXPECT_EQ(windows.Count(), 0);
}

TEST_F(Forms, AModalWindowReturnsWhenItIsHiddenOrGone) {
  Probe form(windows, "a");
  desktop.expectModal("a", [](Form& shown) { shown.Hide(); });
  form.ShowModal();
  EXPECT_TRUE(form.isLoaded());
  desktop.expectModal("a", [](Form& shown) { shown.Unload(); });
  form.ShowModal();
  EXPECT_FALSE(form.isLoaded());
}

TEST_F(Forms, TheLoadedWindowsKeepTheirOrderWhileTheyShrink) {
  std::vector<std::unique_ptr<Probe>> forms;
  for (const char* name : {"main", "a", "b", "c"}) {
    forms.push_back(std::make_unique<Probe>(windows, name));
    forms.back()->Load();
  }
  forms[2]->refuses = true;
  forms[1]->Unload();
  forms[2]->Unload();
  EXPECT_EQ(loaded(), "main b c ");
  forms[0].reset();
  EXPECT_EQ(loaded(), "b c ") << "a destroyed window is none";
}

TEST_F(Forms, KeptWindowsAreFreedOnlyAfterTheyHaveGone) {
  auto& form = windows.keep(std::make_unique<Probe>(windows, "a", &log));
  auto& other = windows.keep(std::make_unique<Probe>(windows, "b", &log));
  form.Load();
  other.Load();
  other.Unload();
  take();
  windows.sweep();
  EXPECT_EQ(take(), "b:freed ");
  form.Unload();
  EXPECT_EQ(take(), "a:unload ") << "not within its own event";
  windows.sweep();
  EXPECT_EQ(take(), "a:freed ");
}

TEST_F(Forms, ControlsAreFoundWithinFramesAsWell) {
  Form form(windows, "a");
  Frame outer(form, "fraOuter");
  Frame inner(outer, "fraInner");
  TextBox text(inner, "txtDeep");
  EXPECT_EQ(form.findControl("txtDeep"), &text);
  EXPECT_EQ(form.findControl("fraInner"), &inner);
  EXPECT_EQ(form.findControl("txtNone"), nullptr);
  EXPECT_THAT(form.Controls(), testing::ElementsAre(&outer)) << "what lies in a frame is the frame's";
}

TEST_F(Forms, TheFocusGoesWhereTheOperatorCouldGo) {
  Form form(windows, "a");
  TextBox first(form, "txtFirst");
  TextBox second(form, "txtSecond");
  int events = 0;
  second.GotFocus = [&] { ++events; };
  first.SetFocus();
  second.SetFocus();
  EXPECT_EQ(form.ActiveControl(), &second);
  EXPECT_EQ(events, 1);
  first.Enabled = false;
  first.SetFocus();
  EXPECT_EQ(form.ActiveControl(), &second);
  form.focusMoved(&second);
  EXPECT_EQ(events, 1) << "it is there already";
  form.Enabled = false;
  first.Enabled = true;
  first.SetFocus();
  EXPECT_EQ(form.ActiveControl(), &first) << "commands place the focus while their window is busy";
}

TEST_F(Forms, AMenuEntryIsChosenWhereItCanBeReached) {
  Form form(windows, "a");
  MenuItem file(form, "mnuFile", "&File");
  MenuItem open(file, "mnuFileNew", "&New");
  MenuItem room(open, "mnuFileNewRoom", "&Room");
  int chosen = 0;
  room.Click = [&] { ++chosen; };
  const auto reaches = [&] {
    const int before = chosen;
    room.choose();
    return chosen > before;
  };
  EXPECT_TRUE(reaches());
  for (Property<bool>* cause :
       {&room.Enabled, &room.Visible, &open.Enabled, &open.Visible, &file.Enabled, &form.Enabled}) {
    *cause = false;
    EXPECT_FALSE(reaches());
    *cause = true;
  }
  file.Visible = false;
  EXPECT_TRUE(reaches()) << "a hidden entry of the bar serves as a popup";
  EXPECT_THAT(form.Menus(), testing::ElementsAre(&file));
}

}  // namespace
}  // namespace vantry::test
