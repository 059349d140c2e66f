// Two servers send what is in one outbox, and one of them is killed meanwhile.

#include <set>

#include "server/mail/outbox.h"
#include "server/program/program_case.h"
#include "server/store/migrations.h"

namespace vantry::server {
namespace {

constexpr int mails = 40;

class MailServers : public test::ProgramTest, public testing::WithParamInterface<std::string> {
 protected:
  void SetUp() override {
    if (!TestStore::isOffered(GetParam())) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
    store_ = std::make_unique<TestStore>(GetParam());
    database = store_->url();
    std::filesystem::create_directory(folder.file("sent"));
    Database own(database);
    migrate(own);
    const std::string now = std::to_string(wallClock());
    own.write([&](Connection& db) {
      db.run(
          "insert into patrons (id, last_name, search_name, email) values (1, 'Bell', 'bell', "
          "'ada@example.org')");
      db.run(
          "insert into outbox (kind, booking_id, patron_id, about, queued_at, due_at, kept) with recursive "
          "n(i) "
          "as (select 1 union all select i + 1 from n where i < " +
          std::to_string(mails) + ") select 3, i, 1, " + now + " + 86400, " + now +
          ", 0, '{\"number\":\"7\"}' from n");
    });
  }

  /// A server that sends through a program of these shell commands, of which $SENT is where letters are kept.
  std::unique_ptr<test::Serving> serve(const std::string& name, const std::string& commands) {
    const std::string program = folder.file(name);
    std::ofstream(program) << "#!/bin/sh\nSENT=" << folder.file("sent") << "\n" << commands << "\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return std::make_unique<test::Serving>(
        database, folder.file(name + ".log"),
        std::vector<std::string>{"--mail-kinds", "cancelled", "--mail-from", "desk@library.example",
                                 "--mail-through", program});
  }

  bool awaitWaiting(const std::string& count) {
    for (int wait = 0; wait < 6000; ++wait) {
      if (value("select count(*) from outbox where state = 0") == count) return true;
      usleep(10'000);
    }
    return false;
  }

  /// The Message-ID of each letter.
  std::multiset<std::string> sent() {
    std::multiset<std::string> ids;
    for (const auto& file : std::filesystem::directory_iterator(folder.file("sent"))) {
      std::ifstream lines(file.path());
      for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("Message-Id: ")) ids.insert(line);
      }
    }
    return ids;
  }

 private:
  std::unique_ptr<TestStore> store_;
};
INSTANTIATE_TEST_SUITE_P(Databases, MailServers, eachDatabase, databaseName);

TEST_P(MailServers, LoseNothingWhenOneIsKilledAndSendTwiceWhatItHadInItsHands) {
  const std::string keep = "cat > $(mktemp $SENT/XXXXXX)\n";
  const auto killed =
      serve("killed", keep + "[ $(ls $SENT | wc -l) -lt 5 ] || { touch $SENT.five; kill -9 $PPID; }");
  const auto other = serve("other", "until [ -e $SENT.five ]; do sleep 0.01; done\n" + keep);
  ASSERT_TRUE(WIFSIGNALED(killed->wait()));
  ASSERT_TRUE(awaitWaiting("1")) << "the other sends all but that";
  EXPECT_EQ(sent().size(), std::size_t{mails});
  Database(database).write(
      [](Connection& db) { db.run("update outbox set leased_until = 0 where state = 0"); });
  ASSERT_TRUE(awaitWaiting("0"));
  const std::multiset<std::string> ids = sent();
  EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), std::size_t{mails});
  EXPECT_EQ(ids.size(), std::size_t{mails + 1}) << "each once, but the one";
}

}  // namespace
}  // namespace vantry::server
