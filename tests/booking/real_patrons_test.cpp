#include <algorithm>
#include <map>

#include "booking/frmOverride.h"
#include "booking/frmSupervisor.h"
#include "booking/modBooking_patrons.h"
#include "booking/modBooking_policy.h"
#include "booking/real_fixture.h"
#include "transport/sealed_box.h"

// Whom the real server turns away, and what a supervisor overrides there.

namespace vantry::test {
namespace {

/// A group of the demo library that is trusted with little.
constexpr const char* kAlumni = "7";
/// A type that it is not trusted with.
constexpr const char* kCamcorder = "8";
constexpr int kPatrons = 1500;

struct RealPatrons : RealLibrary {
  SealedBox sealer{transport};

  void SetUp() override {
    RealLibrary::SetUp();
    app.session.setSealer(sealer);
  }
  void mayOverride() {
    std::array<std::string, kRights> values;
    values[static_cast<std::size_t>(Right::OVOTR)] = "Y";
    app.context.rights.set(values);
  }
};

TEST_F(RealPatrons, WhoMayNotBook) {
  mayOverride();
  const std::pair<int, const char*> boxes[] = {{108, "Patron barcode not active!"},
                                               {109, "Patron address marked for hold mail!"},
                                               {144, "Patron id has expired!"}};
  std::map<int, int> patrons;
  const auto isComplete = [&] {
    return patrons.contains(110) && std::all_of(std::begin(boxes), std::end(boxes),
                                                [&](const auto& box) { return patrons.contains(box.first); });
  };
  for (int patron = 1; patron <= kPatrons && !isComplete(); ++patron)
    patrons.emplace(send("VALRP", {{"PID", std::to_string(patron)}, {"PGID", kAlumni}, {"PUP", "N"}}),
                    patron);
  ASSERT_TRUE(isComplete()) << "the demo library has patrons of each kind";
  BookingRecord record;
  record.PatronGroupId = intOf(kAlumni);
  for (const auto& [rc, text] : boxes) {
    SCOPED_TRACE(rc);
    record.RequesterId = patrons[rc];
    desktop.expectInformation(text);
    EXPECT_FALSE(ValidatePatron(app, record, PatronMode::Requester));
    EXPECT_EQ(record.RequesterId, 0);
  }
  record.RequesterId = patrons[110];
  desktop.expectModalWindow<frmOverride>("frmOverride", [](frmOverride& window) {
    EXPECT_THAT(window.lblMessage.Caption.get(),
                testing::MatchesRegex("Requester has .+\\.\n\rRequester is authorized for .+\\."));
    window.cmdOverride.press();
  });
  EXPECT_TRUE(ValidatePatron(app, record, PatronMode::Requester));
  EXPECT_EQ(record.BookingMax, 2) << "their privileges are read then";
}

TEST_F(RealPatrons, ASupervisorOverridesTwiceInOneWalk) {
  const auto logIn = [](frmSupervisor& window, const char* login, const char* password) {
    window.txtLogin.type(login);
    window.txtPassword.type(password);
    window.cmdOK.press();
  };
  const auto expectSupervised = [&](const std::string& pattern) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [pattern](frmOverride& window) {
      EXPECT_THAT(window.lblMessage.Caption.get(), testing::MatchesRegex(pattern));
      EXPECT_FALSE(window.cmdOverride.Visible);
      window.cmdSupervisor.press();
      EXPECT_EQ(window.OverrideResult, "1");
    });
    desktop.expectModalWindow<frmSupervisor>("frmSupervisor", [logIn](frmSupervisor& window) {
      logIn(window, "desk", "desk-demo");
      logIn(window, "admin", "wrong");
      logIn(window, "admin", "admin-demo");
      EXPECT_EQ(window.OperatorId, "admin");
    });
    desktop.expectCritical("Operator not authorized to perform override");
    desktop.expectCritical("Invalid Login -- Access Denied");
  };
  expectSupervised("Requester is not authorized to book equipment of type .+");
  expectSupervised("Equipment type .+ cannot be booked longer than 1 day\\.");
  const int rc = send("VEUL", {{"BOOKID", "0"},
                               {"PGID", kAlumni},
                               {"BTID", "2"},
                               {"STIME", "2026-11-25 09:00:00"},
                               {"ETIME", "2026-11-28 09:00:00"},
                               {"ETI", kCamcorder},
                               {"IFL", "N"}});
  EXPECT_TRUE(ValidateEquipmentLimit(app, rc, get("ETY")));
}

}  // namespace
}  // namespace vantry::test
