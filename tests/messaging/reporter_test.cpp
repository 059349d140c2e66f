#include <gtest/gtest.h>

#include "messaging/frmError.h"
#include "messaging/modGlobal.h"
#include "messaging/return_codes.h"
#include "support/scripted_desktop.h"
#include "support/scripted_server.h"

namespace vantry::test {
namespace {

struct Reporter : testing::Test {
  ScriptedDesktop desktop;
  ScriptedServer server;
  Windows windows{desktop};
  TagMessage message{server};
  ServerTools tools{desktop};
  modGlobal global{windows, message, tools};
  int aborts = 0;

  Reporter() {
    global.Abort = [this] { ++aborts; };
  }
  void fail(int rc, std::string_view head = {}) {
    server.expect("DELBK", "BOOKID=7").fails(rc, head);
    message.Add("BOOKID", "7");
    global.ReportRequestError(message.Send("DELBK"), "DELBK", "frmBooking");
  }
};

TEST_F(Reporter, ACodeWithoutWordsShowsNothing) {
  for (const int rc : {0, 2, 99, 111, 128, 999, -95}) global.ReportRequestError(rc, "DELBK", "frmBooking");
  EXPECT_EQ(aborts, 0);  // and the desktop saw no box and no window
}

TEST_F(Reporter, ARefusedRequestShowsTheServersOwnSentence) {
  server.expect("DELBK", "BOOKID=7").rejects("The request is too large.");
  desktop.expectWarning("The request is too large.");
  message.Add("BOOKID", "7");
  global.ReportRequestError(message.Send("DELBK"), "DELBK", "frmBooking");
}

TEST_F(Reporter, AGivenUpConnectionEndsTheProgramWithoutAWord) {
  global.ReportRequestError(codes::Lost, "DELBK", "frmBooking");
  EXPECT_EQ(aborts, 1);
}

TEST_F(Reporter, ASystemErrorShowsWhatSupportHasToKnow) {
  const auto expectError = [this](std::string text, std::string rc, std::string tags) {
    desktop.expectModalWindow<frmError>("frmError", [=](frmError& window) {
      EXPECT_EQ(window.Caption, "System Error");
      EXPECT_EQ(window.lblErrorMessage.Caption, text);
      EXPECT_EQ(window.lblModuleText.Caption, "DELBK");
      EXPECT_EQ(window.lblReturnCodeText.Caption, rc);
      EXPECT_EQ(window.lblFormNameText.Caption, "frmBooking");
      EXPECT_EQ(window.lblTagsText.Caption, tags);
      window.cmdOKCompress.press();
    });
  };
  expectError("Required tag missing!\nContact Brindlex support with this information.", "-98", "DATE");
  fail(-98, "CANTREAD=DATE");
  expectError("Database Operation Failed!\nContact Brindlex support with this information.", "-97", "");
  fail(-97, "CANTREAD=DATE");
  expectError("Required tag missing!\nContact Brindlex support with this information.", "-98", "");
  fail(-98);
  expectError("Database Media Error!", "1", "");
  fail(1);
}

TEST_F(Reporter, TheErrorWindowOpensAndClosesItsDetails) {
  desktop.expectModalWindow<frmError>("frmError", [](frmError& window) {
    const auto state = [&] {
      return std::tuple(window.fraDetails.Visible.get(), window.fraDetails.BorderStyle.get(),
                        window.fraDetails.Caption.get(), window.cmdDetailsExpand.Visible.get(),
                        window.cmdDetailsCompress.Visible.get());
    };
    const auto closed = std::tuple(false, 0, std::string(), true, false);
    const auto open = std::tuple(true, 1, std::string(), false, true);
    EXPECT_EQ(state(), closed);
    window.cmdDetailsExpand.press();
    EXPECT_EQ(state(), open);
    window.cmdDetailsCompress.press();
    EXPECT_EQ(state(), closed);
    window.cmdOKCompress.press();
  });
  fail(1);
}

TEST_F(Reporter, TheErrorWindowCanBeUsedWhereEveryWindowWasDisabled) {
  Form other(windows, "frmOther");
  other.Load();
  global.BusyAllForms();
  desktop.expectModal("frmError", [this](Form& window) {
    EXPECT_TRUE(window.Enabled);
    EXPECT_EQ(desktop.pointer, Pointer::Default);
    dynamic_cast<frmError&>(window).cmdOKCompress.press();
  });
  fail(1);
  EXPECT_TRUE(other.Enabled) << "windows stay enabled after it";
  EXPECT_EQ(windows.Count(), 1) << "only the other one is still loaded";
}

TEST_F(Reporter, BusyAndReadyReachOneWindowOrAll) {
  Form first(windows, "frmFirst");
  Form second(windows, "frmSecond");
  Form unloaded(windows, "frmUnloaded");
  first.Load();
  second.Load();

  global.BusyForm(first);
  EXPECT_EQ(desktop.pointer, Pointer::Hourglass);
  EXPECT_FALSE(first.Enabled);
  EXPECT_TRUE(second.Enabled);
  global.ReadyForm(first);
  EXPECT_EQ(desktop.pointer, Pointer::Default);
  EXPECT_TRUE(first.Enabled);

  global.BusyAllForms();
  global.BusyAllForms();
  EXPECT_FALSE(first.Enabled || second.Enabled);
  EXPECT_TRUE(unloaded.Enabled) << "only loaded windows count";
  EXPECT_EQ(desktop.pointer, Pointer::Hourglass);
  global.ReadyAllForms();
  EXPECT_TRUE(first.Enabled && second.Enabled) << "the pair does not nest";
  EXPECT_EQ(desktop.pointer, Pointer::Default);
}

}  // namespace
}  // namespace vantry::test
