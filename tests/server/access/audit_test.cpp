// Everything that is written leaves a row that names who wrote it, where, what it was and what was asked.

#include <algorithm>
#include <array>

#include "server/requests/audit_words.h"
#include "server/setup/administration.h"
#include "support/server_desk_library.h"
#include "words/pattern.h"
#include "words/requests.h"

namespace vantry::server {
namespace {

class Audit : public OnEachDatabase {
 protected:
  /// The rows since the last look, as "code action subject: detail".
  std::string news() {
    const std::string since = std::exchange(seen_, value("select coalesce(max(id), 0) from audit"));
    std::string all;
    for (int id = std::stoi(since) + 1; id <= std::stoi(seen_); ++id) {
      const std::string row =
          value("select code || ' ' || action || ' ' || subject || ': ' || detail from audit where id = " +
                std::to_string(id));
      all += (all.empty() ? "" : "\n") + row;
    }
    return all;
  }

 private:
  std::string seen_ = "0";
};
INSTANTIATE_TEST_SUITE_P(Databases, Audit, eachDatabase, databaseName);

TEST(AuditWords, AreThereForEveryRequestThatWrites) {
  constexpr std::array bySelf{"OPOV", "ADDREQP", "GECN"};
  for (const RequestRow& row : requestTable()) {
    const AuditWord* word = findAuditWord(row.code);
    const bool needsOne = row.writes && std::ranges::find(bySelf, row.code) == bySelf.end();
    EXPECT_EQ(word != nullptr, needsOne) << row.code;
    if (word == nullptr || word->key.empty()) continue;
    const TagPattern pattern(row.sent);
    EXPECT_TRUE(std::ranges::any_of(pattern.uses(), [&](const auto& use) { return use.tag == word->key; }))
        << row.code;
  }
}

TEST_P(Audit, TellsABookingsLifeWithWhatItWasBefore) {
  news();
  const std::string ten = times(2, "09:30", "10:00");
  newBooking(ten, "EID=1");
  EXPECT_EQ(
      news(),
      "NEWBK booking made 0000001: STIME=2026-03-02 09:30:00, ETIME=2026-03-02 10:00:00, PID=1, PGID=1, "
      "PPID=0, ADBK=N, LOC=1, BTID=3, EID=1, ODE=0, OPU=0, WIZ=N, UTIME=0, CTIME=0");
  send("UPDBK", "BOOKID=1; " + booking(ten, "LOC=1", 3, "EID=3"));
  EXPECT_EQ(news().substr(0, 122),
            "UPDBK booking changed 0000001: status 0, patron 1, room 0, equipment 1, media 0, 2026-03-02 "
            "09:30:00 to "
            "2026-03-02 10:00:0");
  send("CBK", "BOOKID=1");
  send("DBK", "BOOKID=1; EID=3");
  const std::string still =
      ", patron 1, room 0, equipment 1, media 0, 2026-03-02 09:30:00 to 2026-03-02 10:00:00";
  EXPECT_EQ(news(), "CBK booking charged 0000001: status 0" + still +
                        "\nDBK booking discharged 0000001: status 99" + still + " -> EID=3");
  EXPECT_EQ(value("select operator_id || ' ' || location_id from audit where code = 'CBK'"), "1 1");
  EXPECT_EQ(send("CANBK", "BOOKID=1").rc, 7);
  send("DELBK", "BOOKID=1");
  EXPECT_EQ(send("DELBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(news(), "DELBK booking deleted 0000001: status 1" + still) << "once, and no refusal";
}

TEST_P(Audit, TellsWhatHappensToTheInventory) {
  news();
  send("NEWGITM", "EID=1; GRPID=5; ULI=1");
  send("REMGITM", "EID=1; GRPID=5; ULI=1");
  send("NEWEGSTS", "EID=1; SID=1; SNO=" + std::string(80, 'x') + "; ULI=1");
  EXPECT_EQ(send("ADDREQP", "EID=3; RID=5").rc, 0);
  EXPECT_EQ(send("ADDREQP", "EID=3; RID=5").rc, 0) << "a question";
  EXPECT_EQ(news(),
            "NEWGITM member added 1: number TV1, type 1, location 1, room 3, group 0 -> GRPID=5, ULI=1\n"
            "REMGITM member removed 1: number TV1, type 1, location 1, room 3, group 5 -> GRPID=5, ULI=1\n"
            "NEWEGSTS status applied 1: number TV1, type 1, location 1, room 3, group 0 -> SID=1, SNO=" +
                std::string(60, 'x') + ", ULI=1\n" + "ADDREQP equipment moved 3: room 3 -> 5");
}

TEST_P(Audit, NamesTheSystemsUserOfTheCommandLine) {
  library().database().write([](Connection& db) { setOperatorActive(db, "clerk", false, 0); });
  EXPECT_EQ(value("select subject from audit where system_user <> '' and action = 'operator disabled'"),
            "clerk");
}

}  // namespace
}  // namespace vantry::server
