// A month whose numbers were counted by hand.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/base/user_error.h"
#include "server/desk/refusal_counts.h"
#include "server/setup/statistics_page.h"
#include "server/store/query.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The bookings of April 2026: desk, type, status, group, room, start, end, charge and return, in hours since
/// the month's beginning.
constexpr std::string_view bookings =
    "(1, 3, 1, 1, null, 9, 12, 10, 12), "         // 2 hours, in time
    "(1, 3, 1, 1, null, 33, 36, 33, 40), "        // 7 hours, late
    "(1, 3, 999, 2, null, 57, 60, 58, null), "    // out until now, 14 hours, late
    "(1, 3, 99, 2, null, 57, 90, 58, null), "     // out until now, 14 hours, not due yet
    "(2, 1, 1, null, 1, 80, 84, 80, 81), "        // administrative, a room, 1 hour
    "(1, 1, 2, 1, 2, 100, 104, null, null), "     // nobody came
    "(1, 3, 4, 1, null, 110, 112, null, null), "  // canceled
    "(2, 3, 3, 2, null, 719, 800, null, null), "  // canceled by the system; the month's last hour
    "(1, 3, 1, 1, null, 130, 130, 130, 140), "    // no end of its own: back on the day, 10 hours
    "(1, 3, 1, 1, null, 150, 150, 150, 170), "    // back on the day after, 20 hours, late
    // Before and behind it:
    "(1, 3, 1, 1, null, -1, 5, 0, 5), "
    "(1, 3, 1, 1, null, 720, 730, 720, 730)";

const Moment april = makeMoment(2026, 4, 1);

std::string hourOf(int hours) {
  return std::to_string(april + hours * hour);
}

class StatisticsTest : public OnEachDatabase {
 protected:
  void prepare() override {
    const auto atHour = [](const std::string& column) { return hourOf(0) + " + 3600 * " + column; };
    execute(
        "insert into bookings (location_id, booking_type, status, patron_group_id, room_id, starts_at, "
        "ends_at, charged_at, returned_at, room_charged_at, room_returned_at, created_at, updated_at) "
        "with b (desk, type, status, card, room, starts, ends, charged, returned) as (values " +
        std::string(bookings) + ") select desk, type, status, card, room, " + atHour("starts") + ", " +
        atHour("ends") + ", " + atHour("charged") + ", " + atHour("returned") + ", case when type = 1 then " +
        atHour("charged") + " end, case when type = 1 then " + atHour("returned") + " end, 0, 0 from b");
    // Booking 2: a television that came back late, a video set that did not, and what stands in a room.
    addLine(2, "equipment_id, equipment_type_id, charged_at, returned_at",
            "1, 1, " + hourOf(33) + ", " + hourOf(40));
    addLine(2, "equipment_id, equipment_type_id, charged_at, returned_at",
            "5, 3, " + hourOf(33) + ", " + hourOf(35));
    addLine(2, "equipment_id, equipment_type_id, in_room", "4, 2, 1");
    addLine(7, "equipment_type_id", "1");
    addLine(11, "equipment_id, equipment_type_id", "1, 1");
    execute(
        "insert into booking_items (booking_id, place, media_type_id, title_id, charged_at, returned_at) "
        "values "
        "(1, 1, 1, 1, " +
        hourOf(10) + ", " + hourOf(12) + "), (3, 1, null, 2, " + hourOf(58) + ", null)");
  }

  void addLine(int booking, const std::string& columns, const std::string& values) {
    execute("insert into booking_equipment (booking_id, place, " + columns + ") values (" +
            std::to_string(booking) + ", 1, " + values + ")");
  }

  MonthStatistics read(std::string_view location = {}) {
    MonthStatistics statistics;
    library().database().read([&](Connection& db) {
      statistics = monthStatistics(db, makeMoment(2026, 4, 17), location, april + 72 * hour);
    });
    return statistics;
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, StatisticsTest, eachDatabase, databaseName);

TEST_P(StatisticsTest, CountWhatBeginsWithinTheMonth) {
  execute("insert into refusals (on_day, location_id, reason, times) values (" + hourOf(-1) +
          " - 82800, 1, 159, 50), (" + std::to_string(april) + ", 1, 159, 2), (" +
          std::to_string(april + 29 * day) + ", 2, 159, 1), (" + std::to_string(april) + ", 1, 138, 2), (" +
          std::to_string(april) + ", 1, 184, 2), (" + std::to_string(april + 30 * day) + ", 1, 159, 50)");
  EXPECT_EQ(statisticsCsv(read()),
            "by,name,bookings,hours_out,late,unclaimed,cancelled,refused\r\n"
            "\"All\",\"\",10,68.0,3,1,2,\r\n"
            "\"Desk\",\"Branch\",2,1.0,0,0,1,\r\n"
            "\"Desk\",\"Main Desk\",8,67.0,3,1,1,\r\n"
            "\"Desk\",\"Museum\",0,0.0,0,0,0,\r\n"
            "\"Patron group\",\"(administrative)\",1,1.0,0,0,0,\r\n"
            "\"Patron group\",\"Students\",6,39.0,2,1,1,\r\n"
            "\"Patron group\",\"Teachers\",3,28.0,1,0,1,\r\n"
            "\"Equipment type\",\"Television\",2,7.0,1,0,1,\r\n"
            "\"Equipment type\",\"Video Set (group)\",1,2.0,0,0,0,\r\n"
            "\"Room type\",\"Classroom\",2,1.0,0,1,0,\r\n"
            "\"Media type\",\"(without a type)\",1,14.0,1,0,0,\r\n"
            "\"Media type\",\"Film\",1,2.0,0,0,0,\r\n"
            "\"Refused\",\"Kept at a location that is not in the policy\",,,,,,4\r\n"
            "\"Refused\",\"The equipment is booked\",,,,,,3\r\n");
  const MonthStatistics branch = read("Branch");
  EXPECT_EQ(branch.all.booked, 2);
  ASSERT_EQ(branch.refusals.size(), 1U);
  EXPECT_EQ(branch.refusals.front().times, 1);
  EXPECT_THROW((void)read("Moon"), UserError);
}

TEST_P(StatisticsTest, PrintOnAPageOfTheirOwn) {
  execute("update locations set name = '<b> & \"Branch\"' where id = 2");
  const std::string page = statisticsHtml(read());
  EXPECT_THAT(page, HasSubstr("<h1>Statistics of April 2026</h1>\n<p>All locations</p>"));
  EXPECT_THAT(page, HasSubstr("<th scope=\"row\">&lt;b&gt; &amp; \"Branch\"</th><td>2</td><td>1.0</td>"));
  EXPECT_THAT(page, HasSubstr("Made on 2026-04-04 00:00."));
  EXPECT_THAT(page, Not(HasSubstr("http")));
}

/// What desks are told is counted by day, desk and reason, and each reason once for a reply.
TEST_P(StatisticsTest, CountWhatTheServerRefuses) {
  RefusalCounts refusals;
  RequestRunner runner(library().database(), library().clock(), HashCost::Quick, {}, {.refusals = &refusals});
  const auto sending = [&](const std::string& code, const std::string& tags) {
    return library().sendTo(runner, code, tags).rc;
  };
  EXPECT_EQ(sending("VEQUSG", "BOOKID=0; EID=9; PGID=1; LOC=1; " + times(3, "10:00", "11:00")), 149);
  EXPECT_EQ(sending("VES", "EID=9"), 151);
  EXPECT_EQ(sending("VALRP", "PID=2; PGID=1; PUP=N"), 109);
  EXPECT_EQ(sending("VALRP", "PID=1; PGID=1; PUP=N"), 0);
  EXPECT_EQ(sending("CPUPTM",
                    "PGID=1; ADBK=N; STIME=2026-03-07 10:00:00; SDOW=7; ETIME=2026-03-07 11:00:00; EDOW=7"),
            167);
  EXPECT_EQ(sending("GETMSD", "BOOKID=99"), 2) << "asks for nothing that could be refused";
  const std::string made = booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=1");
  ASSERT_EQ(sending("NEWBK", made), 0);
  EXPECT_EQ(library().sendWithId(runner, "twice", "NEWBK", made).rc, 149);
  EXPECT_EQ(library().sendWithId(runner, "twice", "NEWBK", made).rc, 149) << "the stored reply";
  refusals.store(library().database());
  refusals.store(library().database());
  library().setNow(3, 9);
  EXPECT_EQ(library().sendTo(runner, "NEWBK", made).rc, 149);
  refusals.store(library().database());
  EXPECT_EQ(sending("NEWBK", made), 149);
  refusals.store(library().database());
  EXPECT_EQ(value("select sum(times) from refusals where on_day = " + std::to_string(makeMoment(2026, 3, 3))),
            "2");
  std::string told;
  library().database().read([&](Connection& db) {
    for (const auto& [reason, count] : refusalsAt(db, 1, makeMoment(2026, 3, 2), makeMoment(2026, 3, 3)))
      told += std::to_string(reason) + "=" + std::to_string(count) + " ";
  });
  EXPECT_EQ(told, "109=1 151=1 155=1 159=1 167=1 ");
}

}  // namespace
}  // namespace vantry::server
