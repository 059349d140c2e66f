#include "booking/booking_fixture.h"
#include "booking/frmOverride.h"
#include "booking/frmSupervisor.h"
#include "booking/modBooking_policy.h"
#include "messaging/return_codes.h"

namespace vantry::test {
namespace {

struct Override : BookingTest {
  OverrideFacts facts(int code, std::string name = {}, std::string name2 = {}) {
    OverrideFacts f;
    f.OverrideCode = code;
    f.OverrideName = std::move(name);
    f.OverrideName2 = std::move(name2);
    return f;
  }
  std::string limitSentence(std::string subCode, std::string count, std::string limit) {
    OverrideFacts f = facts(110, std::move(subCode));
    f.OverrideCount = std::move(count);
    f.OverrideLimit = std::move(limit);
    frmOverride window(app, f);
    window.Load();
    return window.lblMessage.Caption;
  }
  void expectSupervisor(std::function<void(frmSupervisor&)> play) {
    desktop.expectModalWindow<frmSupervisor>("frmSupervisor", std::move(play));
  }
  static void logIn(frmSupervisor& window, std::string_view login, std::string_view password) {
    window.txtLogin.type(login);
    window.txtPassword.type(password);
    window.cmdOK.press();
  }
};

TEST_F(Override, LimitsOfAPatronInNumberAndPlural) {
  EXPECT_EQ(limitSentence("1", "1", "2"),
            "Requester has 1 booking.\n\rRequester is authorized for 2 bookings.");
  EXPECT_EQ(limitSentence("2", "0", "1"),
            "Requester has 0 late return.\n\rRequester is authorized for 1 late return.");
  EXPECT_EQ(limitSentence("3", "5", "0"),
            "Requester has 5 cancelled bookings.\n\rRequester is authorized for 0 cancelled booking.");
  EXPECT_EQ(limitSentence("4", "2", "1"),
            "Requester has 2 unclaimed bookings.\n\rRequester is authorized for 1 unclaimed booking.");
  EXPECT_EQ(limitSentence("5", "12.5", "10"),
            "Requester has $12.50 in outstanding fees.\n\rRequester is authorized for a maximum of $10.00.");
  EXPECT_EQ(limitSentence("6", "1", "1"), "");
}

TEST_F(Override, LocationsNameWhatTheyAreAbout) {
  const std::pair<int, const char*> contexts[] = {
      {149, "Location of equipment not in booking desk's policy."},
      {150, "Location of media item not in booking desk's policy."},
      {185, "Location of room not in booking desk's policy."},
      {157, "Location not in booking desk's policy."}};
  for (const auto& [context, sentence] : contexts) {
    OverrideFacts f = facts(138);
    f.OverrideContext = context;
    frmOverride window(app, f);
    window.Load();
    EXPECT_EQ(window.lblMessage.Caption, sentence);
  }
  frmOverride item(app, facts(152, "Lost 100%"));
  item.Load();
  EXPECT_EQ(item.lblMessage.Caption, "Cannot book item.  Item Status:  Lost 100%");
}

struct NeedCase {
  int code;
  const char* name;
  std::initializer_list<Right> rights;
  const char* asksFor;  ///< the right asked of a supervisor; nullptr: the operator overrides by themselves
};

TEST_F(Override, WhoMayOverrideByThemselves) {
  const NeedCase cases[] = {
      {110, "1", {Right::OVPAT}, nullptr},
      {110, "1", {Right::OVITM}, "OVPAT"},
      {145, "MTID", {Right::OVITM}, nullptr},
      {145, "ETI", {Right::OVITM, Right::OVPAT}, "OVOTR"},
      {146, "MTID", {}, "OVITM"},
      {146, "ETI", {}, "OVOTR"},
      {154, "", {Right::OVITM}, nullptr},
      {156, "DVD", {Right::OVPAT}, "OVITM"},
      {187, "", {Right::OVITM, Right::OVPAT}, "OVOTR"},
      {145, "ETI", {Right::OVOTR}, nullptr},
      {110, "1", {Right::OVOTR}, nullptr},
  };
  for (const NeedCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.code) + ' ' + c.name);
    grant(c.rights);
    frmOverride window(app, facts(c.code, c.name));
    window.Load();
    EXPECT_EQ(window.cmdOverride.Visible, c.asksFor == nullptr);
    EXPECT_EQ(window.cmdSupervisor.Visible, c.asksFor != nullptr);
    if (!c.asksFor) continue;
    expectSupervisor([](frmSupervisor& supervisor) { logIn(supervisor, "boss", "secret"); });
    server.expect("OPOV", std::string(c.asksFor) + "=Y OI=boss PW=sealed secret");
    window.cmdSupervisor.press();
    EXPECT_EQ(window.OverrideResult, "1");
  }
}

TEST_F(Override, ASupervisorsLoginLeavesTheWalkWhole) {
  receive("VALIAVL", "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24", 150,
          "head: MTY=DVD | VUF=156 | VUF=138 | VUF=158");
  for (const char* sentence : {"Requester is not authorized to book items of media type DVD.",
                               "Location of media item not in booking desk's policy."}) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [sentence](frmOverride& window) {
      EXPECT_EQ(window.lblMessage.Caption, sentence);
      window.cmdSupervisor.press();
      EXPECT_FALSE(window.isShown());
    });
    expectSupervisor([](frmSupervisor& supervisor) { logIn(supervisor, "boss", "secret"); });
  }
  server.expect("OPOV", "OVITM=Y OI=boss PW=sealed secret");
  server.expect("OPOV", "OVOTR=Y OI=boss PW=sealed secret");
  desktop.expectModal("frmErrorReport", [](Form& form) { form.Unload(); });
  EXPECT_FALSE(ValidateItemUsage(app, 150));
}

TEST_F(Override, ThreeWrongLoginsCloseTheSupervisorWindowOnly) {
  for (const int rc : {codes::NotJudged, 120, 121, 120})
    server.expect("OPOV", "OVOTR=Y OI=boss PW=*").fails(rc);
  expectSupervisor([&](frmSupervisor& supervisor) {
    EXPECT_EQ(supervisor.ActiveControl(), &supervisor.txtLogin);
    EXPECT_FALSE(supervisor.cmdOK.Enabled);
    supervisor.txtLogin.type("  boss ");
    supervisor.txtPassword.type("   ");
    EXPECT_FALSE(supervisor.cmdOK.Enabled) << "blanks are no password";
    supervisor.txtPassword.type(" secret ");
    desktop.expectWarning("The password cannot be checked now. Please try again later.");
    supervisor.cmdOK.press();
    desktop.expectCritical("Operator not authorized to perform override");
    supervisor.cmdOK.press();
    EXPECT_EQ(supervisor.ActiveControl(), &supervisor.txtLogin);
    EXPECT_TRUE(supervisor.Enabled);
    desktop.expectCritical("Invalid Login -- Access Denied");
    supervisor.cmdOK.press();
    EXPECT_TRUE(supervisor.isShown());
    desktop.expectCritical("Operator not authorized to perform override");
    supervisor.cmdOK.press();
    EXPECT_FALSE(supervisor.isShown());
  });
  frmOverride window(app, facts(187));
  window.Show();
  window.cmdSupervisor.press();
  EXPECT_TRUE(window.isShown());
  EXPECT_EQ(window.OverrideResult, "0");
  window.cmdCancel.press();
}

TEST_F(Override, NothingIsSentInClear) {
  sealer.reachable = false;
  expectSupervisor([&](frmSupervisor& supervisor) {
    desktop.expectWarning("The server does not answer. Please try again.");
    logIn(supervisor, "boss", "secret");
    EXPECT_TRUE(supervisor.isShown());
    supervisor.cmdCancel.press();
  });
  EXPECT_EQ(AskSupervisor(app, "OVOTR"), "");
  EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace vantry::test
