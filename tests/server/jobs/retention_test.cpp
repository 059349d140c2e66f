#include "server/jobs/retention.h"

#include <gtest/gtest.h>

#include "server/jobs/housekeeping.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

/// Today is 2 March 2026.
class RetentionTest : public OnEachDatabase {
 protected:
  /// A booking that ended at noon of that day; `status` is a number of the store's.
  void add(const std::string& day, const std::string& status) {
    const std::string noon = std::to_string(*parseMoment(day) + 12 * hour);
    execute(
        "insert into bookings (location_id, booking_type, patron_id, patron_group_id, pickup_patron_id, "
        "setup_staff_id, starts_at, ends_at, note, status, created_at, updated_at) values (1, 3, 1, 1, 2, "
        "3, " +
        noon + " - 60, " + noon + ", 'for Ada Bell', " + status + ", 0, 0)");
  }

  void addAudit(const std::string& day, const std::string& action) {
    execute("insert into audit (at, action, subject, detail) values (" + std::to_string(*parseMoment(day)) +
            ", '" + action + "', '0000001', 'PID=1')");
  }

  void keep(int bookings, int audit) {
    library().database().write([&](Connection& db) { setRetention(db, {bookings, audit}); });
  }

  RetentionReport apply(int steps = 10'000) {
    return applyRetention(library().database(), library().clock()(), [&] { return steps-- > 0; });
  }
  std::string countWhere(const std::string& what) { return value("select count(*) from " + what); }
};
INSTANTIATE_TEST_SUITE_P(Databases, RetentionTest, eachDatabase, databaseName);

TEST_P(RetentionTest, MakesAnonymousWhatIsOverForLongerThanItIsKept) {
  for (const char* over : {"1", "2", "3", "4"}) add("2024-12-31", over);
  add("2024-12-31", "999");
  add("2024-12-31", "99");
  add("2025-03-02", "1");
  EXPECT_EQ(apply().bookings, 0) << "nothing is set";
  keep(12, 0);
  EXPECT_EQ(apply().bookings, 4);
  EXPECT_EQ(
      countWhere("bookings where patron_id is null and pickup_patron_id is null and setup_staff_id is null "
                 "and note = '' and patron_group_id = 1 and status < 99"),
      "4");
  EXPECT_EQ(countWhere("bookings where patron_id = 1 and note <> ''"), "3") << "out, or not so long over";
  EXPECT_EQ(apply().bookings, 0);
  execute("update bookings set status = 1 where status = 999");
  keepHouse(library().database(), library().clock()());
  EXPECT_EQ(countWhere("bookings where patron_id = 1"), "2") << "came back at last";
  EXPECT_EQ(send("GETMSD", "BOOKID=1").first("PATNM"), "");
}

TEST_P(RetentionTest, WorksThroughMoreThanOneStep) {
  execute(
      "insert into bookings (location_id, booking_type, patron_id, starts_at, ends_at, status, created_at, "
      "updated_at) "
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 401) select 1, 3, 1, i, i, "
      "1, 0, 0 "
      "from n");
  keep(1, 0);
  const RetentionReport stopped = apply(1);
  EXPECT_EQ(stopped.bookings, 200);
  EXPECT_TRUE(stopped.isStopped);
  EXPECT_EQ(apply().bookings, 201);
  EXPECT_FALSE(apply().isStopped);
}

TEST_P(RetentionTest, BlanksAndPrunesTheAudit) {
  execute("delete from audit");
  for (const char* day : {"2020-05-01", "2024-12-31", "2025-03-02"}) {
    addAudit(day, "booking made");
    addAudit(day, "barcode written");
  }
  keep(12, 0);
  EXPECT_EQ(apply().blankedRows, 2);
  EXPECT_EQ(countWhere("audit where detail = '' and action = 'booking made'"), "2");
  EXPECT_EQ(apply().blankedRows, 0);
  keep(12, 24);
  EXPECT_EQ(apply().auditRows, 2);
  EXPECT_EQ(countWhere("audit"), "4");
}

}  // namespace
}  // namespace vantry::server
