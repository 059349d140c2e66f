#include "messaging/dialogs.h"

#include <gtest/gtest.h>

#include "messaging/frmLogon.h"
#include "messaging/server_session.h"
#include "support/scripted_desktop.h"
#include "support/scripted_server.h"

namespace vantry::test {
namespace {

struct Dialogs : testing::Test {
  ScriptedDesktop desktop;
  ScriptedServer server;
  Windows windows{desktop};
  TagMessage message{server};
  ServerSession session{server};
  ServerTools tools{desktop};

  bool connect(ConnectDialog& dialog) {
    dialog.SetSession(session);
    return message.Connect(6, session, dialog);
  }
  bool logon(std::string_view only = {}) { return LogonDialog(windows, tools).Run(session, message, only); }
  void expectLogonWindow(std::function<void(frmLogon&)> play) {
    desktop.expectModalWindow<frmLogon>("frmLogon", std::move(play));
  }
  static void tryPassword(frmLogon& window, std::string_view password) {
    window.txtPassword.type(password);
    window.cmdOK.press();
  }
  void expectRetryBox(std::string reason, bool retry) {
    desktop.expectBox(Box::Kind::Warning, std::move(reason), retry ? 0 : 1);
  }
};

TEST_F(Dialogs, TheConnectionWindowStandsUntilItIsClosed) {
  ConnectDialog dialog(windows);
  server.isSecured = true;
  EXPECT_TRUE(connect(dialog));
  ASSERT_EQ(windows.Count(), 1);
  EXPECT_EQ(windows[0].Name(), "frmConnect");
  EXPECT_TRUE(windows[0].isShown());
  EXPECT_TRUE(session.IsIndicatorShown()) << "the line is protected";
  dialog.Close();
  EXPECT_EQ(windows.Count(), 0);
}

TEST_F(Dialogs, ConnectTriesAgainAsLongAsTheOperatorWants) {
  ConnectDialog dialog(windows);
  server.expectUnreachable("No server at desk.example.");
  server.expectUnreachable("It is starting up.");
  expectRetryBox("No server at desk.example.", true);
  expectRetryBox("It is starting up.", true);
  EXPECT_TRUE(connect(dialog));
  EXPECT_FALSE(session.IsIndicatorShown());
}

TEST_F(Dialogs, AGivenUpConnectionLeavesNoWindow) {
  ConnectDialog dialog(windows);
  server.expectUnreachable("No server.");
  expectRetryBox("No server.", false);
  EXPECT_FALSE(connect(dialog));
  EXPECT_EQ(windows.Count(), 0);
}

TEST_F(Dialogs, AnOperatorLogsOn) {
  server.expectLogon("desk", "open sesame");
  expectLogonWindow([&](frmLogon& window) {
    EXPECT_EQ(window.ActiveControl(), &window.txtOperator);
    EXPECT_FALSE(window.cmdOK.Enabled) << "nothing to send yet";
    window.txtOperator.type(" desk ");
    window.txtOperator.pressEnter();
    EXPECT_EQ(window.ActiveControl(), &window.txtPassword);
    EXPECT_TRUE(window.cmdOK.Default);
    tryPassword(window, "open sesame");
    EXPECT_FALSE(window.isShown());
    EXPECT_EQ(window.txtPassword.Text, "") << "nothing keeps the password";
  });
  EXPECT_TRUE(logon());
  EXPECT_EQ(session.GetOperatorId(), "desk");
  EXPECT_EQ(windows.Count(), 0);
}

TEST_F(Dialogs, TheSessionsOperatorIsWrittenAsTheServerWritesThem) {
  server.expectLogon("DESK", "secret", {LogonResult::Accepted, "desk", {}});
  expectLogonWindow([](frmLogon& window) {
    window.txtOperator.type("DESK");
    tryPassword(window, "secret");
  });
  EXPECT_TRUE(logon());
  EXPECT_EQ(session.GetOperatorId(), "desk");
}

TEST_F(Dialogs, AWrongPasswordIsToldAndMayBeCorrected) {
  server.expectLogon("desk", "wrong", LogonResult::Refused);
  server.expectLogon("desk", "right");
  expectLogonWindow([&](frmLogon& window) {
    EXPECT_FALSE(window.lblMessage.Visible);
    window.txtOperator.type("desk");
    tryPassword(window, "wrong");
    EXPECT_TRUE(window.lblMessage.Visible);
    EXPECT_EQ(window.lblMessage.Caption, "The operator or the password is wrong. Please try again.");
    EXPECT_EQ(window.txtPassword.Text, "");
    EXPECT_EQ(window.ActiveControl(), &window.txtPassword);
    window.cmdOK.press();
    tryPassword(window, "right");
  });
  EXPECT_TRUE(logon());
}

TEST_F(Dialogs, ThreeWrongTriesEndTheLogon) {
  for (int i = 0; i < 3; ++i) server.expectLogon("desk", "wrong", LogonResult::Refused);
  expectLogonWindow([&](frmLogon& window) {
    window.txtOperator.type("desk");
    tryPassword(window, "wrong");
    tryPassword(window, "wrong");
    desktop.expectWarning("The operator or the password was wrong three times.");
    tryPassword(window, "wrong");
    EXPECT_FALSE(window.isShown());
  });
  EXPECT_FALSE(logon());
  EXPECT_EQ(session.GetOperatorId(), "");
}

TEST_F(Dialogs, WhatTheOperatorCannotHelpIsNoWrongTry) {
  server.expectLogon("desk", "secret", {LogonResult::Unreachable, {}, "The database is being repaired."});
  server.expectLogon("desk", "secret", LogonResult::TooManyTries);
  server.expectLogon("desk", "secret", LogonResult::Unreachable);
  server.expectLogon("desk", "secret");
  expectLogonWindow([&](frmLogon& window) {
    window.txtOperator.type("desk");
    tryPassword(window, "secret");
    EXPECT_EQ(window.lblMessage.Caption, "The database is being repaired.");
    EXPECT_EQ(desktop.pointer, Pointer::Default);
    window.cmdOK.press();
    EXPECT_EQ(window.lblMessage.Caption, "There were too many tries. Please wait a little, then try again.");
    window.cmdOK.press();
    window.cmdOK.press();
  });
  EXPECT_TRUE(logon());
}

TEST_F(Dialogs, CancelAndTheCloseCommandGiveUp) {
  expectLogonWindow([](frmLogon& window) { window.cmdCancel.press(); });
  EXPECT_FALSE(logon());
  expectLogonWindow([](frmLogon& window) { window.closeByOperator(); });
  EXPECT_FALSE(logon());
}

TEST_F(Dialogs, ALogonEndsTheSessionOfTheOperatorBefore) {
  server.expectLogon("desk", "secret");
  expectLogonWindow([](frmLogon& window) {
    window.txtOperator.type("desk");
    tryPassword(window, "secret");
  });
  EXPECT_TRUE(logon());
  EXPECT_EQ(server.operatorId(), "desk");
  expectLogonWindow([](frmLogon& window) { window.cmdCancel.press(); });
  EXPECT_FALSE(logon());
  EXPECT_EQ(server.operatorId(), "");
}

TEST_F(Dialogs, AnEndedSessionGoesOnForTheSameOperatorOnly) {
  Form busy(windows, "frmBusy");
  busy.Load();
  busy.Enabled = false;
  session.setOperatorId("desk");
  message.OnSessionEnded = [&] { return logon(session.GetOperatorId()); };
  server.expect("DELBK", "BOOKID=7").endsSession();
  server.expectLogon("desk", "secret");
  server.expectAgain().replies("");
  expectLogonWindow([&](frmLogon& window) {
    EXPECT_TRUE(window.Enabled);
    EXPECT_EQ(window.lblHeading.Caption, "Your session has ended");
    EXPECT_EQ(window.ActiveControl(), &window.txtPassword);
    window.txtOperator.type("supervisor");
    tryPassword(window, "secret");
  });
  message.Add("BOOKID", "7");
  EXPECT_EQ(message.Send("DELBK"), 0);
  EXPECT_FALSE(busy.Enabled) << "the command that waits is still busy";
  EXPECT_EQ(desktop.pointer, Pointer::Hourglass);
}

}  // namespace
}  // namespace vantry::test
