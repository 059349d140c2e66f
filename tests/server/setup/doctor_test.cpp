// What is wrong with a library's set-up.
#include "server/setup/doctor.h"

#include <gmock/gmock.h>

#include "server/desk/due_bookings.h"
#include "server/setup/administration.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Not;

const Moment now = makeMoment(2026, 3, 2, 9);

class Doctor : public OnEachDatabase {
 protected:
  std::vector<std::string> examine(Moment at = now) {
    std::vector<std::string> found;
    library().database().read([&](Connection& db) { found = examineLibrary(db, at); });
    return found;
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, Doctor, eachDatabase, databaseName);

TEST_P(Doctor, TellsWhatKeepsALibraryFromOpening) {
  TestStore store(GetParam());
  Database empty(store.url());
  migrate(empty);
  std::vector<std::string> found;
  empty.read([&](Connection& db) { found = examineLibrary(db, now); });
  EXPECT_THAT(found, AllOf(Contains("There is no library yet: add one with \"library add\"."),
                           Contains("No operator can log on: all are disabled, or there is none."),
                           Contains("There are no patrons yet: take them in with \"import patrons\".")));
}

TEST_P(Doctor, TellsWhatIsMissingAndWhatEnds) {
  const std::vector<std::string> before = examine();
  library().database().write([](Connection& db) {
    addLibrary(db, "Branch Library");
    addLocation(db, "Annex", "Branch Library");
    addPatronGroup(db, "Guests");
    addOperator(db, {.login = "idle", .name = "Idle", .passwordHash = "none"}, now);
    db.run(
        "insert into operator_locations (operator_id, location_id) select o.id, l.id from operators o, "
        "locations l "
        "where o.login = 'idle' and l.name <> 'Annex'");
    db.run(
        "insert into calendars (location_id, kind, description, starts_on, ends_on) select id, 1, 'Spring', "
        "0, " +
        std::to_string(makeMoment(2026, 3, 31)) + " from locations where name = 'Annex'");
  });
  EXPECT_THAT(before, Not(Contains("Nobody may work at the location \"Annex\".")));
  EXPECT_THAT(
      examine(),
      AllOf(Contains("Nobody may work at the location \"Annex\"."),
            Contains("The operator \"idle\" has no right at any location."),
            Contains(
                "The patron group \"Guests\" has no policy at any location: its 0 cards can book nothing."),
            Contains("The location \"Annex\" has no calendar for deliveries."),
            Contains("The calendar for rooms of \"Annex\" ends on 2026-03-31.")));
  EXPECT_THAT(examine(makeMoment(2026, 1, 1)),
              Not(Contains("The calendar for rooms of \"Annex\" ends on 2026-03-31.")));
  EXPECT_THAT(examine(makeMoment(2026, 4, 1)),
              Contains("The calendar for rooms of \"Annex\" ended on 2026-03-31."));
}

TEST_P(Doctor, TellsOfHousekeepingThatRests) {
  const auto told = [&](Moment last) {
    library().database().write([&](Connection& db) { rememberSettled(db, last); });
    const std::vector<std::string> found = examine();
    const auto sentence = std::ranges::find_if(
        found, [](const std::string& each) { return each.starts_with("Housekeeping ran last on "); });
    return sentence == found.end() ? std::string() : sentence->substr(25);
  };
  EXPECT_EQ(told(now - 2 * minute), "");
  EXPECT_EQ(told(now - hour), "2026-03-02 08:00:00: no server has worked on the database since.");
  EXPECT_EQ(told(now + 3 * day),
            "2026-03-05 09:00:00, which is still to come: the clock was or is wrong. It waits until "
            "\"trust-clock\" says that the clock is right.");
}

TEST_P(Doctor, TellsTheSizes) {
  LibrarySizes sizes;
  library().database().read([&](Connection& db) { sizes = librarySizes(db); });
  EXPECT_GT(sizes.bytes, 100'000);
  EXPECT_EQ(sizesText({.bytes = 1'500'000, .auditRows = 7, .auditSince = now}),
            "The database has 2 MB; its audit has 7 rows since 2026-03-02.");
}

TEST(DoctorOfTheMachine, TellsWhatIsWrongOrWillBe) {
  struct Case {
    MachineState state;
    std::vector<std::string> told;
  };
  const std::int64_t large = 5'000'000'000;
  const std::vector<Case> cases{
      {{}, {}},
      {{.freeBytes = large, .databaseBytes = large, .clockSkew = -10}, {}},
      {{.freeBytes = 900'000'000, .databaseBytes = 1'000'000},
       {"The disk of the database has 900 MB left; the database has 1 MB."}},
      {{.freeBytes = large - 1, .databaseBytes = large},
       {"The disk of the database has 5000 MB left; the database has 5000 MB."}},
      {{.clockSkew = -40},
       {"The clock of this machine is 40 seconds behind the database server's: a server starts with 60 at "
        "most."}},
      {{.now = now, .certificate = "c.pem", .certificateEnd = now + 30 * day}, {}},
      {{.now = now, .certificate = "c.pem", .certificateEnd = now + 29 * day},
       {"The certificate \"c.pem\" ends on 2026-03-31: renew it."}},
      {{.now = now, .certificate = "c.pem", .certificateEnd = now - 1},
       {"The certificate \"c.pem\" ended on 2026-03-02: no desk trusts it any more."}},
  };
  for (const Case& each : cases) EXPECT_EQ(examineMachine(each.state), each.told);
}

}  // namespace
}  // namespace vantry::server
