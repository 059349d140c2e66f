// The example files of packaging/, in front of the real program.

#include <gmock/gmock.h>

#include <regex>

#include "server/program/program_case.h"
#include "support/server_raw_line.h"

namespace vantry::server {
namespace {

using test::ProgramTest;
using test::Serving;
using test::WireClient;

/// A proxy on the file of packaging/, with its ports and paths set for this test.
class ProxiesTest : public ProgramTest {
 protected:
  void SetUp() override {
    makeLibrary();
    serving_ =
        std::make_unique<Serving>(database, folder.file("log"),
                                  std::vector<std::string>{"--behind-proxy", "--trusted-proxy", "127.0.0.1"});
    ASSERT_NE(serving_->port(), 0);
    test::makeCertificate(folder, "localhost");
    std::filesystem::rename(folder.file("localhost.key"), folder.file("key.pem"));
    std::filesystem::rename(folder.file("localhost.pem"), folder.file("certificate.pem"));
    std::ofstream(folder.file("both.pem")) << std::ifstream(folder.file("certificate.pem")).rdbuf()
                                           << std::ifstream(folder.file("key.pem")).rdbuf();
  }
  void TearDown() override {
    if (proxy_ <= 0) return;
    kill(proxy_, SIGTERM);
    waitpid(proxy_, nullptr, 0);
  }

  [[nodiscard]] std::string example(const std::string& name) const {
    std::stringstream text;
    text << std::ifstream(std::string(VANTRY_PACKAGING) + "/" + name).rdbuf();
    std::string set = std::regex_replace(text.str(), std::regex("127\\.0\\.0\\.1:8750"),
                                         "127.0.0.1:" + std::to_string(serving_->port()));
    set = std::regex_replace(set, std::regex("8443"), std::to_string(port_));
    return std::regex_replace(set, std::regex("/etc/ssl/vantry/"), folder.file(""));
  }

  void start(const std::vector<std::string>& words) {
    proxy_ = fork();
    if (proxy_ != 0) return;
    if (freopen(folder.file("proxy").c_str(), "w", stderr) == nullptr) _exit(9);
    std::vector<char*> arguments;
    std::vector<std::string> own = words;
    for (std::string& each : own) arguments.push_back(each.data());
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(9);
  }

  /// Waits until the proxy lets requests through.
  bool isUp() {
    for (int wait = 0; wait < 1000; ++wait) {
      try {
        if (WireClient(port_, true).get("/v1/health").status == 200) return true;
      } catch (const std::runtime_error&) {
      }
      if (waitpid(proxy_, nullptr, WNOHANG) == proxy_) break;
      usleep(20'000);
    }
    std::stringstream told;
    told << std::ifstream(folder.file("proxy")).rdbuf();
    ADD_FAILURE() << told.str();
    return false;
  }

  void expectADeskWorks() {
    ASSERT_TRUE(isUp());
    WireClient client(port_, true);
    EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
    EXPECT_EQ(client.send("SLL", {{"LOC", "1"}}).rc, 0);
    EXPECT_EQ(client.send("GETLOCS", {}).records.size(), 1U);
    EXPECT_EQ(client.get("/metrics").status, 404) << "the figures are not for everybody";
    test::Record claims{{"X-Forwarded-For", "203.0.113.9, 203.0.113.7"}};
    EXPECT_EQ(client.post("/v1/login", R"({"operator":"eve","password":"wrong"})", claims).status, 401);
    EXPECT_EQ(value("select detail from audit where action = 'login refused'"), "203.0.113.7")
        << "the last one that is no proxy";
  }

  /// Free when the test asked; the examples' own may be taken.
  const int port_ = [] {
    const test::FreePort free;
    return free.number();
  }();
  std::unique_ptr<Serving> serving_;
  pid_t proxy_ = 0;
};

TEST_F(ProxiesTest, NginxLetsADeskWork) {
  std::ofstream(folder.file("nginx.conf"))
      << "daemon off; pid " << folder.file("pid") << "; error_log stderr; events {}\nhttp { access_log off; "
      << "client_body_temp_path " << folder.file("bodies") << "; proxy_temp_path " << folder.file("replies")
      << ";\n"
      << example("nginx.conf") << "}\n";
  start({"nginx", "-c", folder.file("nginx.conf"), "-e", "stderr"});
  expectADeskWorks();
}

TEST_F(ProxiesTest, HaproxyLetsADeskWork) {
  std::ofstream(folder.file("haproxy.cfg")) << example("haproxy.cfg");
  start({"haproxy", "-db", "-f", folder.file("haproxy.cfg")});
  expectADeskWorks();
}

}  // namespace
}  // namespace vantry::server
