#include <functional>
#include <optional>

#include "booking/frmSupervisor.h"
#include "circulation/circulation_fixture.h"
#include "messaging/password_sealer.h"
#include "messaging/return_codes.h"

namespace vantry::test {
namespace {

/// Passwords go through as they are.
struct PlainSealer : PasswordSealer {
  std::optional<std::string> seal(std::string_view password) override { return std::string(password); }
};

struct LostServer : CirculationTest {
  PlainSealer sealer;
  void SetUp() override { open(ViewId::Charge); }
  void lose(const char* code, std::string_view tags) { server.expect(code, tags).fails(codes::Lost); }
  void find(ViewId view, TextBox& text, const char* code) {
    main().showView(view);
    server.expect(code, "BNO=P1").replies("BOOKID=7 CNUM=M7\nBOOKID=8 CNUM=M8");
    text.type("P1");
    text.pressEnter();
  }
  void findForCharge() { find(ViewId::Charge, charge().txtChargeSearchFor, "SSC"); }
  void findForDischarge() { find(ViewId::Discharge, discharge().txtDischargeSearchFor, "SSD"); }
  void scan(std::string_view text) {
    main().showView(ViewId::QuickDischarge);
    quick().cboQuickDischargeType.select(2);
    quick().txtQuickDischargeItem.type(text);
    quick().txtQuickDischargeItem.pressEnter();
  }
};

/// No window says anything of its own: a box that was not announced fails the test.
TEST_F(LostServer, EveryCommandOfCirculationEndsTheProgram) {
  struct Case {
    const char* where;
    std::function<void()> play;
  };
  const Case cases[] = {
      {"a search for charge",
       [&] {
         main().showView(ViewId::Charge);
         lose("SSC", "BNO=P1");
         charge().txtChargeSearchFor.type("P1");
         charge().txtChargeSearchFor.pressEnter();
       }},
      {"a charge",
       [&] {
         findForCharge();
         lose("CBK", "BOOKID=7");
         charge().cmdCCharge.press();
       }},
      {"the details",
       [&] {
         findForCharge();
         lose("GETSITM", "BOOKID=7 SC=Y");
         charge().cmdCDetails.press();
       }},
      {"a search for discharge",
       [&] {
         main().showView(ViewId::Discharge);
         lose("SSD", "BNO=P1");
         discharge().txtDischargeSearchFor.type("P1");
         discharge().txtDischargeSearchFor.pressEnter();
       }},
      {"the window of a discharge",
       [&] {
         findForDischarge();
         lose("BND", "BOOKID=7");
         discharge().cmdDDischarge.press();
       }},
      {"a discharge",
       [&] {
         findForDischarge();
         server.expect("BND", "BOOKID=7").replies("TITL=Volcanoes IM=1");
         desktop.expectModalWindow<frmDischarge>("frmDischarge", [&](frmDischarge& window) {
           server.expect("GIREFD", "BOOKID=7");
           lose("DBK", "BOOKID=7 IM=1");
           window.cmdOK.press();
         });
         discharge().cmdDDischarge.press();
       }},
      {"a quick search",
       [&] {
         lose("SSD", "EQBAR=E1 QD=Y");
         scan("E1");
       }},
      {"a quick discharge",
       [&] {
         server.expect("SSD", "EQBAR=E1 QD=Y").replies("head: BOOKID=7 EID=5 RID=3");
         lose("DBK", "BOOKID=7 EID=5");
         scan("E1");
       }},
      {"a note of a piece",
       [&] {
         server.expect("SSD", "EQBAR=E1 QD=Y").replies("head: BOOKID=7 EID=5 RID=3");
         server.expect("DBK", "BOOKID=7 EID=5");
         lose("GETPMSG", "PWHI=1 PTYP=3 PWID=5");
         scan("E1");
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.where);
    open(ViewId::Charge);
    desktop.ended = false;
    EXPECT_TRUE(endsProgram(c.play));
    server.checkAllCame();
    desktop.checkAllCame();
  }
}

TEST_F(LostServer, ASupervisorsLoginEndsItAndIsNoWrongLogin) {
  desktop.ended = false;
  app->session.setSealer(sealer);
  frmSupervisor window(*app, "OVPAT");
  window.Load();
  window.txtLogin.type("boss");
  window.txtPassword.type("secret");
  server.expect("OPOV", "OVPAT=Y OI=boss PW=*").fails(codes::Lost);
  EXPECT_TRUE(endsProgram([&] { window.cmdOK.press(); }));
}

}  // namespace
}  // namespace vantry::test
