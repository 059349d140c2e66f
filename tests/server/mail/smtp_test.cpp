// Mail servers that speak TLS and want a log-on.

#include <unistd.h>

#include <cstdio>
#include <fstream>

#include <gtest/gtest.h>

#include "server/mail/mail_case.h"
#include "support/server_certificate.h"
#include "support/server_files.h"

namespace vantry::server {
namespace {

/// See mail_server.py.
class MailServer {
 public:
  MailServer(const std::string& kind, const std::string& certificate, std::string told)
      : told_(std::move(told)) {
    std::ofstream(told_).close();
    const std::string files = certificate + ".pem " + certificate + ".key";
    const std::string outputs = " > " + told_ + " 2> " + told_ + ".log";
    pipe_ =
        popen(("exec /usr/bin/python3 " VANTRY_TEST_SUPPORT "/mail_server.py " + kind + " " + files + outputs)
                  .c_str(),
              "we");
    for (int wait = 0; wait < 2000 && port_ == 0; ++wait) {
      usleep(10'000);
      std::string line;
      std::ifstream lines(told_);
      if (std::getline(lines, line) && !lines.eof()) port_ = std::stoi(line);
    }
  }
  ~MailServer() { end(); }
  MailServer(const MailServer&) = delete;
  MailServer& operator=(const MailServer&) = delete;

  /// By a name that is not the one of which no TLS is asked.
  [[nodiscard]] std::string address(const std::string& scheme) const {
    return scheme + "://mail.localhost:" + std::to_string(port_);
  }

  /// Ends it, and tells what it has taken.
  std::string taken() {
    end();
    const std::string text = test::contentOf(told_);
    return text.substr(text.find('\n') + 1);
  }

 private:
  void end() {
    if (pipe_ != nullptr) pclose(pipe_);
    pipe_ = nullptr;
  }

  std::string told_;
  FILE* pipe_ = nullptr;
  int port_ = 0;
};

class SmtpTest : public MailCase {
 protected:
  void SetUp() override {
    MailCase::SetUp();
    for (const char* name : {"mail.localhost", "other"}) test::makeCertificate(folder, name);
  }

  struct Given {
    const char* scheme = "smtp";
    const char* password = "a-good-password";
    const char* authority = "mail.localhost.pem";
  };
  bool sendDueTo(const MailServer& server, const Given& given) {
    std::ofstream(folder.file("password")) << given.password << '\n';
    MailSettings secure = settings();
    secure.through = server.address(given.scheme);
    secure.user = "desk";
    secure.passwordFile = folder.file("password");
    secure.authority = folder.file(given.authority);
    later();
    return Postman(library().database(), library().clock(), secure).sendDue();
  }

  test::TempFolder folder;
};
INSTANTIATE_TEST_SUITE_P(OnAFile, SmtpTest, testing::Values(std::string("sqlite")));

TEST_P(SmtpTest, ALetterWaitsUntilTheServerProvesItselfAndTakesTheLogOn) {
  const struct {
    const char* kind;
    Given given;
    const char* fault;  ///< nullptr: it is sent
  } cases[] = {
      {"starttls", {.password = "a-bad-password"}, "Login denied"},
      {"tls", {.scheme = "smtps", .password = "a-bad-password"}, "Login denied"},
      {"starttls", {.authority = "other.pem"}, "certificate"},
      {"tls", {.scheme = "smtps", .authority = "other.pem"}, "certificate"},
      {"plain", {}, "STARTTLS not supported"},
      {"plain", {.scheme = "smtps"}, "SSL"},
      {"starttls", {}, nullptr},
      {"tls", {.scheme = "smtps"}, nullptr},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.kind) + " " + (each.fault == nullptr ? "" : each.fault));
    if (outbox().empty()) book(3, "10:00", "11:00");
    MailServer server(each.kind, folder.file("mail.localhost"), folder.file("told"));
    EXPECT_EQ(sendDueTo(server, each.given), each.fault == nullptr);
    EXPECT_EQ(server.taken(), each.fault == nullptr ? "desk@library.example ada@example.org\n" : "");
    if (each.fault == nullptr) {
      EXPECT_EQ(outbox(), "");
    } else {
      EXPECT_EQ(outbox(), "confirmed 1");
      EXPECT_THAT(value("select fault from outbox"), testing::HasSubstr(each.fault));
    }
  }
}

}  // namespace
}  // namespace vantry::server
