#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "server/program/server.h"
#include "server/store/database.h"
#include "support/server_booking.h"
#include "support/server_desk_library.h"

namespace vantry::server::test {

/// A folder of its own that goes with the test.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

using Record = std::map<std::string, std::string>;

/// What came back over the wire, read apart.
struct WireAnswer : Got {
  int status = 0;
  std::string body;
  std::string error;       ///< of an answer that is no reply
  std::string retryAfter;  ///< the header

  /// The values of one tag, record by record.
  [[nodiscard]] std::vector<std::string> all(const std::string& tag) const;
};

/// A client that keeps one connection.
class WireClient {
 public:
  explicit WireClient(int port, bool tls = false);
  ~WireClient();
  WireClient(const WireClient&) = delete;
  WireClient& operator=(const WireClient&) = delete;

  WireAnswer get(const std::string& path);
  WireAnswer post(const std::string& path, const std::string& body, const Record& headers = {});
  WireAnswer login(const std::string& name, const std::string& password);
  /// Sends with the token of the last login and a fresh request id, unless one is given.
  WireAnswer send(const std::string& code, const Tags& tags, const std::string& requestId = {});
  [[nodiscard]] Record authorization() const;

  std::string token;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
  int requests_ = 0;
};

/// A running server on a small library in a store of its own, at 2026-11-24 12:00:00 until the test moves
/// its clock.
///
/// Two desks of one library: "Main" (1) and "Branch" (2). Operators, all with the password "password-1":
/// "all" with every right at both desks, "view" who may only look, at "Main".
class ServerCase : public testing::Test {
 protected:
  explicit ServerCase(std::string kind = "sqlite") : kind_(std::move(kind)) {}
  void SetUp() override;
  ~ServerCase() override;

  [[nodiscard]] Server::Options options() const;
  void start();
  void stop();
  /// Starts a second server on the same database.
  [[nodiscard]] std::unique_ptr<Server> another() const;
  /// A client that is logged on and works at a desk.
  std::unique_ptr<WireClient> client(const std::string& login = "all", int location = 1);
  std::unique_ptr<WireClient> stranger();

  /// Runs SQL on the store, beside the server.
  void sql(const std::string& statement);
  [[nodiscard]] std::string value(const std::string& query);

  /// Adds a booking; `fields` are columns and their SQL values beside the usual ones.
  std::int64_t addBooking(const std::string& starts, const std::string& ends, const Record& fields = {});

  TempFolder folder;
  std::string database;  ///< its address
  std::int64_t now = 0;
  DirectorySettings directory;  ///< of servers to come
  std::unique_ptr<Server> server;

 private:
  std::string kind_;
  std::unique_ptr<TestStore> place_;
  std::unique_ptr<Database> store_;
};

/// The same on each kind of database that is offered.
class ServerOnEachDatabase : public ServerCase, public testing::WithParamInterface<std::string> {
 protected:
  ServerOnEachDatabase() : ServerCase(GetParam()) {}
  void SetUp() override;
};

/// Makes the small library in an empty database.
void makeSmallLibrary(const std::string& database);

}  // namespace vantry::server::test
