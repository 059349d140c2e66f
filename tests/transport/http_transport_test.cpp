#include "transport/http_transport.h"

#include <gtest/gtest.h>

#include "support/scripted_reply.h"
#include "transport/raw_server.h"
#include "transport/server_address.h"

namespace vantry::test {
namespace {

using namespace std::chrono_literals;
using After = RawServer::After;

TEST(ServerAddress, IsTakenApart) {
  const auto parts = [](std::string_view text) {
    const ServerAddress address = parseServerAddress(text);
    return std::tuple(address.secured, address.host, address.port);
  };
  EXPECT_EQ(parts("https://desk.example"), std::tuple(true, "desk.example", 443));
  EXPECT_EQ(parts(" HTTP://Localhost:8080/ "), std::tuple(false, "localhost", 8080));
  EXPECT_EQ(parts("http://127.0.0.1"), std::tuple(false, "127.0.0.1", 80));
  EXPECT_EQ(parts("https://[::1]:9443"), std::tuple(true, "::1", 9443));
  for (const char* text :
       {"", "desk.example", "ftp://desk.example", "https://", "https://:80",
        "https://desk:", "https://desk:0", "https://desk:65536", "https://desk:8o", "https://desk/path",
        "https://a b", "https://[::1", "https://[::1]9443", "https://user@desk"})
    EXPECT_THROW((void)parseServerAddress(text), std::invalid_argument) << text;
}

TEST(ServerAddress, PasswordsTravelUnprotectedOnThisMachineOnly) {
  for (const char* text :
       {"http://127.0.0.1:8080", "http://localhost", "http://[::1]:1", "https://desk.example"})
    EXPECT_NO_THROW(HttpTransport({text})) << text;
  EXPECT_THROW(HttpTransport({"http://desk.example"}), std::invalid_argument);
  HttpTransport::Options behindATunnel{"http://desk.example"};
  behindATunnel.plainBeyondLoopback = true;
  EXPECT_NO_THROW(HttpTransport{behindATunnel});
}

struct Misbehaving : testing::Test {
  RawServer server;
  HttpTransport transport{options()};

  HttpTransport::Options options() const {
    HttpTransport::Options options;
    options.address = server.address();
    options.connectLimit = 500ms;
    options.silenceLimit = 150ms;
    options.replyLimit = 400ms;
    options.largestReply = 10'000;
    return options;
  }
  DeliveryResult send(std::string id = "1") { return transport.send({std::move(id), "GETLOCS", {}}); }
  static std::string record(std::string_view more = {}) {
    return R"({"rc":0,"records":[{"LOC":"3"}]})" + std::string(more);
  }
};

TEST_F(Misbehaving, ARequestSaysWhoAsksWhat) {
  server.answers(200, R"({"session":"token-1","operator":"desk"})");
  server.answers(200, record());
  EXPECT_EQ(transport.logon("desk", "a\"b"), LogonResult::Accepted);
  const DeliveryResult result = transport.send(
      {"0f4c7a10-0000-4000-8000-000000000001", "BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}});
  EXPECT_EQ(result.delivery, Delivery::Answered);
  EXPECT_EQ(result.reply.value(0, "LOC").text, "3");
  ASSERT_EQ(server.requests().size(), 2U);
  EXPECT_THAT(server.requests()[0], testing::StartsWith("POST /v1/login HTTP/1.1\r\n"));
  EXPECT_THAT(server.requests()[0],
              testing::EndsWith("\r\n\r\n{\"operator\":\"desk\",\"password\":\"a\\\"b\"}"));
  const std::string request = server.requests()[1];
  EXPECT_THAT(request, testing::StartsWith("POST /v1/request/BOOKDAY HTTP/1.1\r\n"));
  for (const char* header :
       {"\r\nAuthorization: Bearer token-1\r\n", "\r\nRequest-Id: 0f4c7a10-0000-4000-8000-000000000001\r\n",
        "\r\nContent-Type: application/json\r\n"})
    EXPECT_THAT(request, testing::HasSubstr(header));
  EXPECT_THAT(request, testing::EndsWith(R"({"tags":[["DATE","2026-11-24"],["HBK","N"]]})"));
  EXPECT_EQ(server.connections(), 1) << "the connection is kept";
}

TEST_F(Misbehaving, EveryStatusHasItsMeaning) {
  struct Case {
    int status;
    Delivery delivery;
  };
  const std::vector<Case> cases = {
      {400, Delivery::Rejected},     {401, Delivery::SessionEnded}, {404, Delivery::Rejected},
      {413, Delivery::Rejected},     {408, Delivery::NotDelivered}, {429, Delivery::NotDelivered},
      {503, Delivery::NotDelivered}, {500, Delivery::Unknown},      {502, Delivery::Unknown},
      {504, Delivery::Unknown},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.status);
    server.answers(c.status, R"({"error":"Because of this."})");
    const DeliveryResult told = send();
    EXPECT_EQ(told.delivery, c.delivery);
    EXPECT_EQ(told.reason, "Because of this.");
    server.answers(c.status, "<html>");
    const DeliveryResult untold = send();
    EXPECT_EQ(untold.delivery, c.delivery);
    EXPECT_NE(untold.reason, "") << "a sentence of our own";
  }
  server.answers(302, "");
  EXPECT_EQ(send().reason, "At this address answers no Vantry server.");
  EXPECT_EQ(server.requests().size(), 2 * cases.size() + 1) << "nothing is sent twice";
}

TEST_F(Misbehaving, ABusyServerIsAskedAgainForAWhile) {
  const std::string busy =
      "HTTP/1.1 503 Status\r\nRetry-After: 1\r\nContent-Length: 16\r\n\r\n{\"error\":\"Busy\"}";
  std::vector<std::chrono::milliseconds> waits;
  HttpTransport::Options options{server.address()};
  options.wait = [&](std::chrono::milliseconds time) { waits.push_back(time); };
  server.says(busy);
  server.says(busy);
  server.answers(200, record(), RawServer::After::HangUp);
  EXPECT_EQ(HttpTransport(options).send({"id-1", "BOOKDAY", {}}).delivery, Delivery::Answered);
  EXPECT_EQ(waits, (std::vector<std::chrono::milliseconds>(2, std::chrono::seconds(1))));
  ASSERT_EQ(server.requests().size(), 3U);
  EXPECT_EQ(server.requests()[0], server.requests()[2]) << "with the same id";

  options.busyLimit = std::chrono::milliseconds(500);
  HttpTransport impatient(options);
  server.says(busy);
  const DeliveryResult result = impatient.send({"id-2", "BOOKDAY", {}});
  EXPECT_EQ(result.delivery, Delivery::NotDelivered) << "and then the operator is asked";
  EXPECT_EQ(result.reason, "Busy");
  EXPECT_EQ(server.requests().size(), 4U);
}

TEST_F(Misbehaving, NonsenseLeavesUnknownWhatWasRun) {
  server.answers(200, record("x"));
  server.answers(200, "<html>Welcome</html>");
  server.answers(200, "");
  for (int i = 0; i < 3; ++i) {
    const DeliveryResult result = send();
    EXPECT_EQ(result.delivery, Delivery::Unknown);
    EXPECT_EQ(result.reason, "The server's reply could not be read.");
  }
}

TEST_F(Misbehaving, ABrokenOffAnswerLeavesUnknownWhatWasRun) {
  const std::string body = record();
  const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n";
  const std::string lost = "The connection to the server at " + server.address().substr(7) + " was lost.";
  for (const std::string& bytes :
       {std::string(), std::string("HTTP/1.1 20"), std::string("HTTP/1.1 200 OK\r\nContent-Le"), head,
        head + body.substr(0, 20), std::string("no HTTP at all\r\n\r\n"),
        std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{\"rc\"")}) {
    SCOPED_TRACE(bytes);
    server.says(bytes, After::HangUp);
    const DeliveryResult result = send();
    EXPECT_EQ(result.delivery, Delivery::Unknown);
    EXPECT_EQ(result.reason, lost);
  }
}

TEST_F(Misbehaving, ASilentServerIsGivenUpInTime) {
  server.says({}, After::Hold);
  const DeliveryResult silent = send();
  EXPECT_EQ(silent.delivery, Delivery::Unknown);
  EXPECT_EQ(silent.reason, "The server at " + server.address().substr(7) + " did not answer in time.");
  server.says("HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{", After::Hold);
  EXPECT_EQ(send().delivery, Delivery::Unknown);
  EXPECT_EQ(server.requests().size(), 2U) << "nothing is sent twice";
}

TEST_F(Misbehaving, AnEndlessAnswerIsCutOff) {
  server.answers(200, std::string(10'001, ' '));
  const DeliveryResult result = send();
  EXPECT_EQ(result.delivery, Delivery::Unknown);
  EXPECT_EQ(result.reason, "The answer of the server at " + server.address().substr(7) + " is too large.");
  server.answers(200, record());
  EXPECT_EQ(send().delivery, Delivery::Answered) << "the next request is not disturbed";
}

TEST_F(Misbehaving, AClosedKeptConnectionIsOpenedAnewWithTheSameId) {
  server.answers(200, record());
  server.hangsUp();  // the race: the server closes while the request is on its way
  server.answers(200, record());
  EXPECT_EQ(send("1").delivery, Delivery::Answered);
  EXPECT_EQ(send("2").delivery, Delivery::Answered);
  EXPECT_EQ(server.connections(), 2);
  ASSERT_EQ(server.requests().size(), 3U);
  EXPECT_THAT(server.requests()[1], testing::HasSubstr("Request-Id: 2\r\n"));
  EXPECT_EQ(server.requests()[1], server.requests()[2]);
}

TEST_F(Misbehaving, AFreshConnectionThatBreaksIsToldAtOnce) {
  server.hangsUp();
  server.hangsUp();
  EXPECT_EQ(send().delivery, Delivery::Unknown);
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(Misbehaving, ALogonIsNeverSentTwice) {
  server.answers(200, R"({"name":"vantry","protocol":1})");
  std::string reason;
  EXPECT_TRUE(transport.reach(reason));
  server.hangsUp();
  EXPECT_EQ(transport.logon("desk", "secret"), LogonResult::Unreachable);
  EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(Misbehaving, AnIdleConnectionIsNotTrusted) {
  HttpTransport::Options impatient = options();
  impatient.idleLimit = 0ms;
  HttpTransport other(impatient);
  server.answers(200, record());
  server.answers(200, record());
  EXPECT_EQ(other.send({"1", "GETLOCS", {}}).delivery, Delivery::Answered);
  EXPECT_EQ(other.send({"2", "GETLOCS", {}}).delivery, Delivery::Answered);
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Misbehaving, LogonsAreAnsweredInWords) {
  struct Case {
    int status;
    std::string body;
    LogonResult result;
    std::string reason;
  };
  const std::vector<Case> cases = {
      {200, R"({"session":"t","operator":"Desk"})", LogonResult::Accepted, ""},
      {200, R"({"session":"t"})", LogonResult::Unreachable, "The server's reply could not be read."},
      {200, "{}", LogonResult::Unreachable, "The server's reply could not be read."},
      {401, "{}", LogonResult::Refused, "The operator or the password is wrong."},
      {400, "{}", LogonResult::Refused, "The operator or the password is wrong."},
      {429, R"({"error":"Wait."})", LogonResult::TooManyTries, "Wait."},
      {503, R"({"error":"Starting up."})", LogonResult::Unreachable, "Starting up."},
      {503, "{}", LogonResult::Unreachable, "The server cannot work now."},
      {404, "", LogonResult::Unreachable, "At this address answers no Vantry server."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.status);
    server.answers(c.status, c.body, After::HangUp);
    const LogonAnswer answer = transport.logon("desk", "secret");
    EXPECT_EQ(answer, c.result);
    EXPECT_EQ(answer.reason, c.reason);
    EXPECT_EQ(answer.operatorId, c.result == LogonResult::Accepted ? "Desk" : "");
  }
}

TEST_F(Misbehaving, OnlyAServerOfThisKindIsReached) {
  struct Case {
    int status;
    std::string body;
    std::string reason;
  };
  const std::string notOurs = "At this address answers no Vantry server.";
  const std::vector<Case> cases = {
      {200, R"({"name":"vantry","protocol":1})", ""},
      {200, R"({"name":"vantry","protocol":2})", "The server is of another version than this program."},
      {200, R"({"name":"other","protocol":1})", notOurs},
      {200, "<html>", notOurs},
      {404, "", notOurs},
      {503, R"({"error":"Starting up."})", "Starting up."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.body);
    server.answers(c.status, c.body);
    std::string reason;
    EXPECT_EQ(transport.reach(reason), c.reason.empty());
    EXPECT_EQ(reason, c.reason);
  }
}

TEST(NoServer, IsToldAsSuch) {
  std::string address;
  {
    const RawServer gone;
    address = gone.address();
  }
  HttpTransport transport({address});
  std::string reason;
  EXPECT_FALSE(transport.reach(reason));
  EXPECT_EQ(reason, "The server at " + address.substr(7) + " cannot be reached.");
  const DeliveryResult result = transport.send({"1", "GETLOCS", {}});
  EXPECT_EQ(result.delivery, Delivery::NotDelivered);
  EXPECT_EQ(result.reason, reason);
  const LogonAnswer answer = transport.logon("desk", "secret");
  EXPECT_EQ(answer, LogonResult::Unreachable);
  EXPECT_EQ(answer.reason, reason);
}

}  // namespace
}  // namespace vantry::test
