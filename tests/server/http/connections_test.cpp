// The server as a program among connections.

#include <chrono>
#include <cstdlib>
#include <thread>

#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::ServerCase;
using test::WireClient;

class ConnectionsTest : public ServerCase {
 protected:
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

TEST_F(ConnectionsTest, ServesAsManyAtOnceAsItHasThreads) {
  std::vector<std::unique_ptr<WireClient>> clients;
  for (int each = 0; each < 8; ++each) clients.push_back(client());
  for (auto& each : clients) EXPECT_EQ(each->send("GETLOCS", {}).rc, 0);
}

TEST_F(ConnectionsTest, ATakenPortIsToldSo) {
  Server::Options options;
  options.database = database;
  options.port = server->port();
  Server second(options);
  EXPECT_THROW(second.start(), std::runtime_error);
}

TEST_F(ConnectionsTest, SpeaksTlsWithACertificate) {
  const std::string key = folder.file("key.pem");
  const std::string certificate = folder.file("certificate.pem");
  const std::string command =
      "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost -keyout " + key + " -out " +
      certificate + " 2> /dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  Server::Options options;
  options.database = database;
  options.certificate = certificate;
  options.key = key;
  Server secure(options);
  secure.start();
  WireClient client(secure.port(), true);
  EXPECT_EQ(client.login("all", "password-1").status, 200);
  EXPECT_THROW(WireClient(secure.port()).get("/v1/health"), std::runtime_error);
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
