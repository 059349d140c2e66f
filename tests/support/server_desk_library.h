#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "server/base/moment.h"
#include "server/requests/runner.h"
#include "server/store/database.h"

namespace vantry::server {

/// A reply, read back.
struct Got {
  int rc = 0;
  std::map<std::string, std::string> head;
  std::vector<std::map<std::string, std::string>> records;

  /// The first value of the tag, as a window would read it.
  [[nodiscard]] std::string first(const std::string& tag) const;
  /// The values of the tag in the records that carry it, parted by commas.
  [[nodiscard]] std::string all(const std::string& tag) const;
  /// "rc|head|record|record", tags by name, as "TAG=value" parted by blanks.
  [[nodiscard]] std::string text() const;
};

/// Tags that are written as "TAG=value; TAG=value".
[[nodiscard]] std::vector<TagValue> readTags(const std::string& text);

/// What a runner that is not too busy answers.
[[nodiscard]] Got answerTo(RequestRunner& runner, const RequestRunner::Incoming& incoming);

/// A database of the kind "sqlite" or "postgresql", gone with this object. The second needs
/// VANTRY_TEST_POSTGRESQL, the address of a server where a schema may be made.
class TestStore {
 public:
  explicit TestStore(const std::string& kind);
  ~TestStore();
  TestStore(const TestStore&) = delete;
  TestStore& operator=(const TestStore&) = delete;

  [[nodiscard]] static bool isOffered(const std::string& kind);
  [[nodiscard]] const std::string& url() const { return url_; }

 private:
  std::filesystem::path folder_;
  std::string base_;
  std::string schema_;
  std::string url_;
};

/// What the statement finds, of several rows the last.
[[nodiscard]] std::string valueOf(Database& database, const std::string& sql);

/// A small library with one of everything that policy speaks of; see its SQL. Today is Monday, 2 March 2026,
/// nine o'clock.
class DeskLibrary {
 public:
  explicit DeskLibrary(const std::string& kind);

  /// Sends a request as an operator, "desk" unless told otherwise. Tags as "TAG=value; TAG=value".
  Got send(const std::string& code, const std::string& tags, const std::string& login = "desk");
  Got sendTo(RequestRunner& runner, const std::string& code, const std::string& tags,
             const std::string& login = "desk");
  /// The same under an id of the caller's, so that it can be sent again.
  Got sendWithId(RequestRunner& runner, const std::string& id, const std::string& code,
                 const std::string& tags, const std::string& login = "desk");
  /// The same with tags of which the values may be anything.
  Got run(const std::string& code, std::span<const TagValue> tags, const std::string& login = "desk");

  void setNow(int dayOfMarch, int hours, int minutes = 0);
  void execute(const std::string& sql);
  /// Lets the search find what was written by SQL.
  void foldForSearch();
  [[nodiscard]] std::string value(const std::string& sql);

  [[nodiscard]] Database& database() { return *database_; }
  [[nodiscard]] RequestRunner& runner() { return *runner_; }
  [[nodiscard]] const std::string& url() const { return store_.url(); }
  [[nodiscard]] Clock clock() const;
  [[nodiscard]] const std::string& token(const std::string& login) { return tokens_[login]; }

 private:
  std::string logOn(const std::string& login);

  TestStore store_;
  std::shared_ptr<Moment> now_;
  std::unique_ptr<Database> database_;
  std::unique_ptr<RequestRunner> runner_;
  std::map<std::string, std::string> tokens_;
};

/// The kind of error that the work ends with.
[[nodiscard]] std::optional<StoreError::Kind> errorOf(const std::function<void()>& work);

/// An empty store of each kind of database that is offered.
class StoreOnEach : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override;
  virtual void prepare() {}

  std::unique_ptr<TestStore> store;
};

/// Runs its tests on each kind of database that is offered.
class OnEachDatabase : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override;
  /// What a suite adds to the library.
  virtual void prepare() {}
  DeskLibrary& library() { return *library_; }
  Got send(const std::string& code, const std::string& tags) { return library_->send(code, tags); }
  Got newBooking(const std::string& when, const std::string& things, const std::string& place = "LOC=1",
                 int type = 3);
  void execute(const std::string& sql) { library_->execute(sql); }
  [[nodiscard]] std::string value(const std::string& sql) { return library_->value(sql); }

  std::unique_ptr<DeskLibrary> library_;
};

/// The kinds, for INSTANTIATE_TEST_SUITE_P, and how its tests are named.
inline const auto eachDatabase = testing::Values(std::string("sqlite"), std::string("postgresql"));
[[nodiscard]] std::string databaseName(const testing::TestParamInfo<std::string>& kind);

/// The times of a day in March 2026 as a message tells them: times(2, "10:00", "11:00").
[[nodiscard]] std::string times(int dayOfMarch, const std::string& from, const std::string& until);

/// A whole save; `place` as "LOC=1" or "RID=1", `things` as the tags of equipment and media, in this order.
[[nodiscard]] std::string booking(const std::string& times, const std::string& place, int type,
                                  const std::string& things, const std::string& rest = "UTIME=0; CTIME=0");

}  // namespace vantry::server
