#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "messaging/tagmessage.h"
#include "support/noon.h"
#include "transport/certificate.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"
#include "transport/sealed_box.h"

// The line and the real server together.

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

/// One small library for all tests of this file.
struct RealServer : testing::Test {
  static inline fs::path folder;
  static inline std::unique_ptr<EmbeddedServer> embedded;

  static DemoOptions small() {
    DemoOptions demo;
    demo.date = "2026-11-24";
    demo.daysBack = 3;
    demo.daysAhead = 3;
    return demo;
  }
  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "vantry-real-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
    embedded = std::make_unique<EmbeddedServer>(
        EmbeddedServer::Options{folder / "new" / "library.sqlite", small(), true, noon});
  }
  static void TearDownTestSuite() {
    embedded.reset();
    fs::remove_all(folder);
  }

  HttpTransport transport{{embedded->address()}};

  static DeliveryResult send(HttpTransport& over, std::string code, std::vector<TagValue> tags = {}) {
    return over.send({newRequestId(), std::move(code), std::move(tags)});
  }
  DeliveryResult send(std::string code, std::vector<TagValue> tags = {}) {
    return send(transport, std::move(code), std::move(tags));
  }
};

TEST_F(RealServer, ASupervisorsSealedLoginStandsInForARight) {
  ASSERT_EQ(transport.logon("desk", "desk-demo"), LogonResult::Accepted);
  TagMessage message(transport);
  message.Add("OI", "desk");
  ASSERT_EQ(message.Send("RLL"), 0);
  ASSERT_TRUE(message.NextRecord("LNA"));
  message.Add("LOC", message.Get("LOC"));
  ASSERT_EQ(message.Send("SLL"), 0);
  SealedBox sealer(transport);
  const auto override = [&](std::string_view login, std::string_view password) {
    const auto sealed = sealer.seal(password);
    if (!sealed) throw std::runtime_error("the server tells no key");
    message.Add("OVOTR", "Y");
    message.Add("OI", login);
    message.Add("PW", *sealed);
    return message.Send("OPOV");
  };
  static constexpr int notAuthorized = 120;
  EXPECT_EQ(override("admin", "admin-demo"), 0);
  EXPECT_EQ(override("view", "view-demo"), notAuthorized);
  const int wrong = override("admin", "guess");
  EXPECT_NE(wrong, 0);
  EXPECT_NE(wrong, notAuthorized);
}

TEST_F(RealServer, ASecondStartKeepsTheLibrary) {
  const EmbeddedServer again({folder / "new" / "library.sqlite", {}, true, noon});
  HttpTransport other({again.address()});
  EXPECT_EQ(other.logon("desk", "desk-demo"), LogonResult::Accepted);
  EXPECT_NE(again.address(), embedded->address());
}

TEST_F(RealServer, AFileThatCannotBeUsedIsTold) {
  fs::create_directory(folder / "is-a-folder.sqlite");
  EXPECT_THROW(EmbeddedServer({folder / "is-a-folder.sqlite", small()}), std::runtime_error);
}

TEST_F(RealServer, WithoutASessionNothingIsAnswered) {
  EXPECT_EQ(send("GETLOCS").delivery, Delivery::SessionEnded);
  EXPECT_EQ(transport.logon("desk", "wrong"), LogonResult::Refused);
  EXPECT_EQ(transport.logon("nobody", "desk-demo"), LogonResult::Refused);
  EXPECT_EQ(send("GETLOCS").delivery, Delivery::SessionEnded);
  const LogonAnswer answer = transport.logon("desk", "desk-demo");
  ASSERT_EQ(answer, LogonResult::Accepted);
  EXPECT_EQ(answer.operatorId, "desk");
  EXPECT_EQ(send("GETLOCS").delivery, Delivery::Answered);
  transport.logoff();
  EXPECT_EQ(send("GETLOCS").delivery, Delivery::SessionEnded);
}

TEST_F(RealServer, APasswordIsChangedOrTheReasonTold) {
  ASSERT_EQ(transport.logon("view", "view-demo"), LogonResult::Accepted);
  std::string reason;
  EXPECT_FALSE(transport.changePassword("wrong", "a long enough one", reason));
  EXPECT_NE(reason, "");
  EXPECT_FALSE(transport.changePassword("view-demo", "x", reason));
  EXPECT_NE(reason, "");
  EXPECT_TRUE(transport.changePassword("view-demo", "a long enough one", reason));
  EXPECT_EQ(transport.logon("view", "view-demo"), LogonResult::Refused);
  EXPECT_EQ(transport.logon("view", "a long enough one"), LogonResult::Accepted);
}

/// A server that is stopped and started anew at its old port, with and without TLS.
struct Restarted : RealServer, testing::WithParamInterface<bool> {
  Server::Options options;
  HttpTransport::Options client;

  Restarted() {
    options.database = (folder / "restarted.sqlite").string();
    options.quickHashes = true;
    createDemoDatabase(options.database, small());
    if (!GetParam()) return;
    options.certificate = (folder / "certificate.pem").string();
    options.key = (folder / "key.pem").string();
    writeCertificate(options.certificate, options.key);
    client.certificateFile = options.certificate;
  }
  std::unique_ptr<Server> start() {
    auto server = std::make_unique<Server>(options);
    server->start();
    options.port = server->port();
    client.address = (GetParam() ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(options.port);
    return server;
  }
};

TEST_P(Restarted, TheSessionAndTheLineSurvive) {
  auto server = start();
  HttpTransport line(client);
  EXPECT_EQ(line.secured(), GetParam());
  ASSERT_EQ(line.logon("desk", "desk-demo"), LogonResult::Accepted);
  EXPECT_EQ(send(line, "GETLOCS").delivery, Delivery::Answered);
  server.reset();
  const DeliveryResult gone = send(line, "GETLOCS");
  EXPECT_EQ(gone.delivery, Delivery::NotDelivered) << gone.reason;
  server = start();
  EXPECT_EQ(send(line, "GETLOCS").delivery, Delivery::Answered);
  server.reset();
  server = start();
  EXPECT_EQ(send(line, "GETLOCS").delivery, Delivery::Answered)
      << "over a kept connection that is none any more";
}

INSTANTIATE_TEST_SUITE_P(PlainAndProtected, Restarted, testing::Bool(),
                         [](const auto& each) { return each.param ? "Protected" : "Plain"; });

TEST_F(RealServer, AServerThatNobodyVouchesForIsNotSpokenTo) {
  Server::Options options;
  options.database = (folder / "unknown.sqlite").string();
  static_cast<void>(createDemoDatabase(options.database, {}));
  options.certificate = (folder / "unknown.pem").string();
  options.key = (folder / "unknown-key.pem").string();
  writeCertificate(options.certificate, options.key);
  Server server(options);
  server.start();
  HttpTransport line({"https://localhost:" + std::to_string(server.port())});
  std::string reason;
  EXPECT_FALSE(line.reach(reason));
  EXPECT_EQ(reason, "The certificate of the server at localhost:" + std::to_string(server.port()) +
                        " is not trusted.");
  EXPECT_EQ(send(line, "GETLOCS").delivery, Delivery::NotDelivered);
}

}  // namespace
}  // namespace vantry::test
