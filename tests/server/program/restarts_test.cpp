// The database is restarted under two servers that write.

#include <atomic>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

#include "server/base/moment.h"
#include "server/program/program_case.h"

namespace vantry::server {
namespace {

using test::ProgramTest;
using test::Serving;
using test::WireAnswer;
using test::WireClient;

/// A PostgreSQL server of its own, since others use that of the test run. It keeps what it has acknowledged.
class OwnPostgresql {
 public:
  explicit OwnPostgresql(const std::string& told) {
    std::filesystem::remove(told);
    const std::string command = "VANTRY_POSTGRES_DURABLE=1 " VANTRY_TOOLS
                                "/with-postgres sh -c 'echo \"$VANTRY_TEST_POSTGRESQL\"; echo "
                                "\"$VANTRY_TEST_PG_CTL\"; echo up; exec cat "
                                ">/dev/null' > " +
                                told;
    alive_ = popen(command.c_str(), "we");
    for (int wait = 0; wait < 6000 && mark_ != "up"; ++wait) {
      usleep(10'000);
      std::ifstream lines(told);
      if (!std::getline(lines, url_) || !std::getline(lines, control_) || !std::getline(lines, mark_))
        mark_ = {};
    }
  }
  ~OwnPostgresql() {
    if (alive_ != nullptr) pclose(alive_);
  }
  OwnPostgresql(const OwnPostgresql&) = delete;
  OwnPostgresql& operator=(const OwnPostgresql&) = delete;

  [[nodiscard]] bool isUp() const { return mark_ == "up"; }
  [[nodiscard]] const std::string& url() const { return url_; }
  [[nodiscard]] bool restart(const std::string& mode) const {
    return std::system((control_ + " -m " + mode + " restart > /dev/null 2>&1").c_str()) == 0;
  }

 private:
  FILE* alive_ = nullptr;
  std::string url_;
  std::string control_;
  std::string mark_;
};

/// Makes one booking after another, and repeats what was not answered under its id, as a desk does.
class SavingDesk {
 public:
  SavingDesk(int port, int number) : port_(port), number_(number) {}

  void run(const std::atomic<bool>& ends) {
    while (!ends) save();
  }
  /// The answered ones.
  [[nodiscard]] int saved() const { return saved_; }
  [[nodiscard]] int repeated() const { return repeated_; }

 private:
  void save() {
    const std::string id = std::to_string(number_) + " " + std::to_string(saved_);
    const Moment starts = makeMoment(2099, 1, 1) + saved_ * hour;
    const test::Tags tags = test::NewBooking{.from = starts, .until = starts + hour, .note = id}.tags();
    for (;; ++repeated_) {
      if (isDone(tags, id)) break;
      usleep(20'000);  // the server asks to wait a second; a test wants many of these
    }
    ++saved_;
  }

  bool isDone(const test::Tags& tags, const std::string& id) {
    try {
      if (!client_) {
        client_ = std::make_unique<WireClient>(port_);
        if (client_->login("dana", "a-good-password").status != 200 ||
            client_->send("SLL", {{"LOC", "1"}}).status != 200) {
          client_.reset();
          return false;
        }
      }
      const WireAnswer answer = client_->send("NEWBK", tags, id);
      if (answer.status == 200 && answer.rc != 0) ADD_FAILURE() << answer.body;
      return answer.status == 200;
    } catch (const std::runtime_error&) {
      client_.reset();
      return false;
    }
  }

  int port_;
  int number_;
  std::unique_ptr<WireClient> client_;
  std::atomic<int> saved_ = 0;
  std::atomic<int> repeated_ = 0;
};

TEST_F(ProgramTest, RestartsOfTheDatabaseLoseNothingAndRepeatNothing) {
  if (std::getenv("VANTRY_TEST_POSTGRESQL") == nullptr) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
  const OwnPostgresql postgresql(folder.file("told"));
  ASSERT_TRUE(postgresql.isUp());
  database = "'" + postgresql.url() + "'";
  makeLibrary();
  database = postgresql.url();
  Serving first(database, folder.file("first"));
  Serving second(database, folder.file("second"));
  std::vector<std::unique_ptr<SavingDesk>> desks;
  for (int number = 0; number < 4; ++number)
    desks.push_back(std::make_unique<SavingDesk>(number % 2 == 0 ? first.port() : second.port(), number));
  std::atomic<bool> ends = false;
  std::vector<std::thread> threads;
  for (const auto& desk : desks) threads.emplace_back([&] { desk->run(ends); });
  const auto savedByAll = [&](int more) {
    std::vector<int> goals;
    for (const auto& desk : desks) goals.push_back(desk->saved() + more);
    for (std::size_t desk = 0; desk < desks.size(); ++desk) {
      for (int wait = 0; wait < 6000 && desks[desk]->saved() < goals[desk]; ++wait) usleep(10'000);
      if (desks[desk]->saved() < goals[desk]) return false;
    }
    return true;
  };
  EXPECT_TRUE(savedByAll(10));
  for (const char* mode : {"fast", "immediate", "immediate", "fast"}) {
    EXPECT_TRUE(postgresql.restart(mode)) << mode;
    EXPECT_TRUE(savedByAll(10)) << "they go on after " << mode;
  }
  ends = true;
  for (std::thread& thread : threads) thread.join();
  int saved = 0;
  int repeated = 0;
  for (const auto& desk : desks) {
    saved += desk->saved();
    repeated += desk->repeated();
  }
  EXPECT_GT(repeated, 0) << "some were under way";
  EXPECT_EQ(value("select count(distinct note) from bookings"), std::to_string(saved)) << "none is lost";
  EXPECT_EQ(value("select count(*) from bookings"), std::to_string(saved)) << "none is there twice";
  EXPECT_EQ(value("select count(*) from replies where code = 'NEWBK'"), std::to_string(saved));
}

}  // namespace
}  // namespace vantry::server
