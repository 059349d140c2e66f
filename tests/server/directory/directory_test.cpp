// What the directory of the house says, asked of a real one.
#include "server/directory/directory.h"

#include <thread>

#include <gtest/gtest.h>

#include "server/base/user_error.h"
#include "support/server_silent_proxy.h"
#include "support/server_slapd.h"

namespace vantry::server {
namespace {

using Verdict = Directory::Verdict;

class DirectoryTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::Slapd::isInstalled()) GTEST_SKIP() << "slapd is not installed";
    slapd = std::make_unique<test::Slapd>();
  }
  std::unique_ptr<test::Slapd> slapd;
};

TEST_F(DirectoryTest, SaysYesToTheRightPasswordOfTheRightEntryOnly) {
  struct Case {
    std::string login;
    std::string password;
    Verdict byName;
    Verdict bySearch;
  };
  const Case cases[] = {
      {"all", "house-all", Verdict::Right, Verdict::Right},
      {"ALL", "house-all", Verdict::Right, Verdict::Right},
      {"all", "house-view", Verdict::Wrong, Verdict::Wrong},
      {"all", "", Verdict::Wrong, Verdict::Wrong},
      {"all", std::string("house-all\0", 10), Verdict::Wrong, Verdict::Wrong},
      {"nobody", "house-all", Verdict::Wrong, Verdict::Wrong},
      {"a,b", "house-a,b", Verdict::Right, Verdict::Right},
      {"*)(uid=*", "house-*)(uid=*", Verdict::Right, Verdict::Right},
      {"*", "house-all", Verdict::Wrong, Verdict::Wrong},
      {"all)(uid=*", "house-all", Verdict::Wrong, Verdict::Wrong},
      {"all,ou=people", "house-all", Verdict::Wrong, Verdict::Wrong},
      {"twin", "house-twin", Verdict::Right, Verdict::Away},
  };
  Directory byName(slapd->byName());
  Directory bySearch(slapd->bySearch());
  for (const Case& each : cases) {
    EXPECT_EQ(byName.judge(each.login, each.password), each.byName) << each.login << ' ' << each.password;
    EXPECT_EQ(bySearch.judge(each.login, each.password), each.bySearch) << each.login << ' ' << each.password;
  }
}

TEST_F(DirectoryTest, IsAwayWhereItCannotBeAskedSafely) {
  SilentProxy silent(slapd->port());
  silent.beSilent(true);
  const test::Slapd open(test::Slapd::Tls::Unknown);
  const auto at = [](const std::string& scheme, int port) { return scheme + std::to_string(port); };
  const std::string here = slapd->address();
  const std::string own = slapd->byName().authority;
  const struct {
    std::string address;
    std::string authority;
    bool plain;
    const char* reason;  ///< in the sentence of the doctor; empty for a sound one
  } cases[] = {
      {here, own, false, ""},
      {slapd->sealedAddress(), own, false, ""},
      {open.address(), own, true, ""},
      {open.address(), own, false, "Protocol error"},
      {here, slapd->otherAuthority(), false, "is not trusted"},
      {slapd->sealedAddress(), slapd->otherAuthority(), false, "is not trusted"},
      {at("ldap://localhost:", slapd->port()), own, false, "of another host"},
      {here, "/nowhere.pem", false, "the file of the authority"},
      {at("ldap://127.0.0.1:", 1), own, false, "Can't contact LDAP server"},
      {at("ldap://127.0.0.1:", silent.port()), own, false, "in time"},
      {at("ldaps://127.0.0.1:", silent.port()), own, false, "in time"},
  };
  for (const auto& each : cases) {
    DirectorySettings settings = slapd->byName();
    settings.address = each.address;
    settings.authority = each.authority;
    settings.plain = each.plain;
    settings.limit = 1;
    Directory directory(settings);
    const std::vector<std::string> faults = directory.faults();
    const std::string fault = faults.empty() ? "" : faults.front();
    const bool isSound = *each.reason == '\0';
    EXPECT_EQ(directory.judge("all", "house-all"), isSound ? Verdict::Right : Verdict::Away) << each.address;
    EXPECT_EQ(fault.empty(), isSound) << fault;
    EXPECT_NE(fault.find(each.reason), std::string::npos) << each.address << ": " << fault;
  }
}

TEST_F(DirectoryTest, IsAskedAgainAsSoonAsItIsBack) {
  Directory directory(slapd->byName());
  slapd->stop();
  EXPECT_EQ(directory.judge("all", "house-all"), Verdict::Away);
  slapd->start();
  EXPECT_EQ(directory.judge("all", "house-all"), Verdict::Right)
      << "what ends at once is asked again at once";

  SilentProxy proxy(slapd->port());
  proxy.beSilent(true);
  DirectorySettings settings = slapd->byName();
  settings.address = "ldap://127.0.0.1:" + std::to_string(proxy.port());
  settings.limit = 1;
  Directory behind(settings);
  EXPECT_EQ(behind.judge("all", "house-all"), Verdict::Away);
  proxy.beSilent(false);
  while (behind.judge("all", "house-all") == Verdict::Away) std::this_thread::yield();
}

TEST_F(DirectoryTest, TheNextAddressIsAsked) {
  const test::Slapd second;
  SilentProxy silent(slapd->port());
  silent.beSilent(true);
  const std::string gone = slapd->address();
  const std::string quiet = "ldap://127.0.0.1:" + std::to_string(silent.port());
  slapd->stop();
  DirectorySettings settings = second.byName();
  settings.limit = 6;
  const struct {
    std::string addresses;
    Verdict verdict;
    std::size_t faults;
  } cases[] = {
      {gone + ' ' + second.address(), Verdict::Right, 1},
      {second.address() + ", " + gone, Verdict::Right, 1},
      {quiet + ' ' + gone + ' ' + second.sealedAddress(), Verdict::Right, 2},
      {quiet + ' ' + gone, Verdict::Away, 2},
  };
  for (const auto& each : cases) {
    settings.address = each.addresses;
    Directory directory(settings);
    EXPECT_EQ(directory.judge("all", "house-all"), each.verdict) << each.addresses;
    EXPECT_EQ(directory.faults().size(), each.faults) << each.addresses;
  }
  settings.address = gone + ' ' + second.address();
  EXPECT_EQ(Directory(settings).judge("all", "house-view"), Verdict::Wrong);
}

TEST(DirectorySettings, AreRefusedWhereNobodyCouldBeAskedByThem) {
  const std::string host = "ldap://host:389";
  const std::string name = "uid={login},dc=example";
  EXPECT_NO_THROW(checkDirectory({.address = "ldap://one ldaps://two,ldap://[::1]:389", .name = name}));
  EXPECT_NO_THROW(checkDirectory({.address = "ldap://127.0.0.1", .plain = true, .base = "dc=example"}));
  const DirectorySettings faulty[] = {
      {.address = "https://host", .name = name},
      {.address = "ldap://", .name = name},
      {.address = "ldap://one https://two", .name = name},
      {.address = "ldap://127.0.0.1 ldap://two", .plain = true, .name = name},
      {.address = host, .plain = true, .name = name},
      {.address = "ldap://127.example.org", .plain = true, .name = name},
      {.address = host},
      {.address = host, .name = "uid=dana,dc=example"},
      {.address = host, .name = "{login}"},
      {.address = host, .name = name, .base = "dc=example"},
      {.address = host, .base = "example"},
      {.address = host, .base = "dc=example", .filter = "(uid=dana)"},
      {.address = host, .base = "dc=example", .account = "cn=reader,dc=example"},
  };
  for (const DirectorySettings& each : faulty)
    EXPECT_THROW(checkDirectory(each), UserError) << &each - faulty;
}

}  // namespace
}  // namespace vantry::server
