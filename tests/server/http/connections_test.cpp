// The server as a program among connections.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <future>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_certificate.h"
#include "support/server_files.h"
#include "support/server_raw_line.h"

namespace vantry::server {
namespace {

using test::contentOf;
using test::exchange;
using test::RawLine;
using test::ServerCase;
using test::WireClient;

const std::string healthCall = "GET /v1/health HTTP/1.1\r\nHost: x\r\n\r\n";

class ConnectionsTest : public ServerCase {
 protected:
  /// A server on the same database with narrow limits.
  std::unique_ptr<Server> limited(const HttpLimits& limits, int threads = 2) {
    Server::Options narrow = options();
    narrow.limits = limits;
    narrow.threads = threads;
    auto started = std::make_unique<Server>(narrow);
    started->start();
    return started;
  }

  /// Wide enough for a loaded machine, and far below the minutes that a kept connection would live.
  static constexpr std::chrono::seconds soon{20};
};

TEST_F(ConnectionsTest, StopsAtOnceAlthoughClientsKeepTheirConnections) {
  std::vector<std::unique_ptr<WireClient>> clients;
  for (int each = 0; each < 6; ++each) clients.push_back(client());
  const auto before = std::chrono::steady_clock::now();
  stop();
  EXPECT_LT(std::chrono::steady_clock::now() - before, soon);
  EXPECT_THROW(clients.front()->send("GETLOCS", {}), std::runtime_error);
}

TEST_F(ConnectionsTest, KeepsMoreClientsThanItHasThreads) {
  std::vector<std::unique_ptr<WireClient>> clients;
  for (int each = 0; each < 30; ++each) clients.push_back(client());
  for (auto& each : clients) EXPECT_EQ(each->send("GETLOCS", {}).rc, 0);
}

TEST_F(ConnectionsTest, AClientThatDripsDoesNotStretchItsTime) {
  const auto narrow = limited({.head = std::chrono::milliseconds(300),
                               .request = std::chrono::milliseconds(300),
                               .farewell = std::chrono::milliseconds(300)});
  const char* starts[] = {"", "GET /v1/he", "POST /v1/login HTTP/1.1\r\nContent-Length: 4000\r\n\r\n{"};
  for (const char* start : starts) {
    SCOPED_TRACE(start);
    RawLine line(narrow->port());
    const auto before = std::chrono::steady_clock::now();
    ASSERT_TRUE(line.send(start));
    while (line.send("a")) {
      ASSERT_LT(std::chrono::steady_clock::now() - before, soon);
      std::this_thread::yield();
    }
  }
  RawLine silent(narrow->port());
  EXPECT_EQ(silent.readToEnd(), "");
}

TEST_F(ConnectionsTest, AnAddressHasOnlySoManyAndTheOthersAreServed) {
  const auto narrow = limited({.connections = 6, .connectionsPerAddress = 4});
  std::vector<std::unique_ptr<RawLine>> lines;
  const auto isServed = [&](const std::string& from) {
    lines.push_back(std::make_unique<RawLine>(narrow->port(), from));
    lines.back()->send(healthCall);
    return lines.back()->readUntil("vantry").starts_with("HTTP/1.1 200");
  };
  for (int each = 0; each < 4; ++each) EXPECT_TRUE(isServed("127.0.0.2"));
  EXPECT_FALSE(isServed("127.0.0.2"));
  EXPECT_TRUE(isServed("127.0.0.3"));
  EXPECT_TRUE(isServed("127.0.0.4"));
  EXPECT_FALSE(isServed("127.0.0.5")) << "more than there may be in all";
  lines.clear();
  const auto before = std::chrono::steady_clock::now();  // the server has yet to hear that they have gone
  while (!isServed("127.0.0.2")) ASSERT_LT(std::chrono::steady_clock::now() - before, soon);
}

TEST_F(ConnectionsTest, HeadsAreBoundedAndRangesAreNotKnown) {
  const auto isTooLarge = testing::StartsWith("HTTP/1.1 431");
  const std::string call = "GET /v1/health HTTP/1.1\r\n";
  EXPECT_THAT(exchange(server->port(), call + "X: " + std::string(4'000'000, 'x') + "\r\n\r\n"), isTooLarge);
  std::string many = call;
  for (int each = 0; each < 5000; ++each) many += "A: b\r\n";
  EXPECT_THAT(exchange(server->port(), many), isTooLarge);
  const std::string whole =
      exchange(server->port(), call + "Range: bytes=0-1,0-2,0-3\r\nConnection: close\r\n\r\n");
  EXPECT_THAT(whole, testing::StartsWith("HTTP/1.1 200"));
  EXPECT_THAT(whole, testing::EndsWith("\"}"));
}

TEST_F(ConnectionsTest, RequestsSentAtOnceAreServedInOrder) {
  const std::string told =
      exchange(server->port(), healthCall + "POST /v1/logout HTTP/1.1\r\nContent-Length: 0\r\n\r\n" +
                                   "GET /v1/nothing HTTP/1.1\r\nConnection: close\r\n\r\n" + healthCall);
  EXPECT_THAT(told, testing::ContainsRegex("^HTTP/1.1 200.*HTTP/1.1 401.*HTTP/1.1 404[^1]*$"));
}

TEST_F(ConnectionsTest, ALargeBodyIsTakenOnlyOfSomebodyKnown) {
  const auto told = [&](const std::string& path, const std::string& token) {
    RawLine line(server->port());
    line.send("POST " + path + " HTTP/1.1\r\nRequest-Id: 1\r\nAuthorization: Bearer " + token +
              "\r\nContent-Length: 200000\r\n\r\n");
    return line.readUntil("}").substr(0, 12);
  };
  EXPECT_EQ(told("/v1/request/GETLOCS", "nobody"), "HTTP/1.1 401") << "and none of the body was sent";
  EXPECT_EQ(told("/v1/login", ""), "HTTP/1.1 413");
  auto known = client();
  test::Record headers = known->authorization();
  headers["Request-Id"] = "large";
  const std::string body = R"({"tags":[["X",")" + std::string(200'000, 'x') + R"("]]})";
  EXPECT_EQ(known->post("/v1/request/GETLOCS", body, headers).rc, -98) << "it was read";
}

TEST_F(ConnectionsTest, WhatHasNoPlaceInTheQueueIsToldToComeAgain) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  const auto narrow = limited({.waiting = 1}, 1);
  const std::string token = client()->token;
  std::vector<std::unique_ptr<RawLine>> lines;
  int turnedAway = 0;
  Database(database).write([&](Connection& db) {
    db.run("update patrons set fees = 1");  // whoever writes waits now
    for (int each = 0; each < 5; ++each) {
      lines.push_back(std::make_unique<RawLine>(narrow->port()));
      lines.back()->send("POST /v1/request/CANBK HTTP/1.1\r\nAuthorization: Bearer " + token +
                         "\r\nRequest-Id: " + std::to_string(each) +
                         "\r\nContent-Length: 25\r\n\r\n{\"tags\":[[\"BOOKID\",\"1\"]]}");
    }
    for (auto& each : lines)
      turnedAway += each->readUntil("}").find("Retry-After: 1") != std::string::npos ? 1 : 0;
  });
  EXPECT_GE(turnedAway, 3);
  EXPECT_EQ(client()->send("CANBK", {{"BOOKID", "1"}}).rc, 0);
}

TEST_F(ConnectionsTest, ATakenPortIsToldSo) {
  Server::Options options;
  options.database = database;
  options.port = server->port();
  Server second(options);
  EXPECT_THROW(second.start(), std::runtime_error);
}

/// A server that speaks TLS.
class TlsTest : public ConnectionsTest {
 protected:
  std::unique_ptr<Server> secured(const HttpLimits& limits = {}) {
    Server::Options with = options();
    makeCertificate(folder, "localhost");
    with.certificate = folder.file("localhost.pem");
    with.key = folder.file("localhost.key");
    with.limits = limits;
    auto started = std::make_unique<Server>(with);
    started->start();
    return started;
  }
  void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0); }
};

TEST_F(TlsTest, IsSpokenWithACertificate) {
  const auto secure = secured();
  WireClient client(secure->port(), true);
  EXPECT_EQ(client.login("all", "password-1").status, 200);
  EXPECT_THROW(WireClient(secure->port()).get("/v1/health"), std::runtime_error);
}

TEST_F(TlsTest, AClientComesBackWithItsSession) {
  const auto secure = secured();
  std::ofstream(folder.file("request")) << "GET /v1/health HTTP/1.1\r\nConnection: close\r\n\r\n";
  const auto ask = [&](const std::string& session) {
    run("openssl s_client -ign_eof -connect 127.0.0.1:" + std::to_string(secure->port()) + " " + session +
        folder.file("session") + " < " + folder.file("request") + " > " + folder.file("told") +
        " 2> /dev/null || true");
    return contentOf(folder.file("told"));
  };
  EXPECT_THAT(ask("-sess_out "), testing::HasSubstr("\nNew, TLSv1.3"));
  EXPECT_THAT(ask("-sess_in "), testing::HasSubstr("\nReused, TLSv1.3"));
}

/// Keeps whoever tells of a failed handshake from going on until it is let go. Outlives the server, whose
/// threads tell through it.
class HeldHandshake {
 public:
  HeldHandshake() { spdlog::set_default_logger(std::make_shared<spdlog::logger>("", sink_)); }
  ~HeldHandshake() { spdlog::set_default_logger(before_); }
  HeldHandshake(const HeldHandshake&) = delete;
  HeldHandshake& operator=(const HeldHandshake&) = delete;

  [[nodiscard]] bool isHeldWithin(std::chrono::seconds longest) {
    return sink_->held.get_future().wait_for(longest) == std::future_status::ready;
  }
  void letGo() { sink_->goesOn.set_value(); }

 private:
  struct Sink final : spdlog::sinks::base_sink<spdlog::details::null_mutex> {
    void sink_it_(const spdlog::details::log_msg& line) override {
      const std::string_view text(line.payload.data(), line.payload.size());
      if (text.find("makes no TLS connection") == std::string_view::npos) return;
      held.set_value();
      goesOn.get_future().wait();
    }
    void flush_() override {}
    std::promise<void> held;
    std::promise<void> goesOn;
  };
  std::shared_ptr<Sink> sink_ = std::make_shared<Sink>();
  std::shared_ptr<spdlog::logger> before_ = spdlog::default_logger();
};

TEST_F(TlsTest, AHandshakeThatTakesLongHoldsNoRequestUp) {
  HeldHandshake handshake;
  const auto secure = secured();
  WireClient desk(secure->port(), true);
  ASSERT_EQ(desk.get("/v1/health").status, 200);
  RawLine stranger(secure->port());
  stranger.send("no TLS at all\r\n\r\n");
  EXPECT_TRUE(handshake.isHeldWithin(soon));
  EXPECT_NO_THROW(EXPECT_EQ(desk.get("/v1/health").status, 200));
  handshake.letGo();
}

TEST_F(TlsTest, AnAddressHasOnlySoManyHandshakesUnderWay) {
  const auto secure = secured({.head = std::chrono::minutes(10), .handshakesPerAddress = 2});
  std::vector<std::unique_ptr<WireClient>> desks;
  for (int each = 0; each < 4; ++each) {
    desks.push_back(std::make_unique<WireClient>(secure->port(), true));
    EXPECT_EQ(desks.back()->get("/v1/health").status, 200) << "those that are connected do not count";
  }
  RawLine first(secure->port());
  RawLine second(secure->port());
  EXPECT_EQ(RawLine(secure->port()).readToEnd(), "");
  RawLine other(secure->port(), "127.0.0.2");
  other.send(std::string("\x16\x03\x01\0\x05 none", 10));
  EXPECT_THAT(other.readUntil("\x15"), testing::StartsWith("\x15")) << "an alert: its handshake began";
}

TEST_F(ConnectionsTest, ACertificateWithoutItsKeyOrOneThatCannotBeReadIsToldSo) {
  Server::Options options;
  options.database = database;
  options.certificate = folder.file("missing.pem");
  EXPECT_THROW(Server{options}, std::runtime_error);
  options.key = folder.file("missing.pem");
  EXPECT_THROW(Server{options}, std::runtime_error);
}

}  // namespace
}  // namespace vantry::server
