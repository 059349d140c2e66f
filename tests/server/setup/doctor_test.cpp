// What is wrong with a library's set-up.
#include "server/setup/doctor.h"

#include <gmock/gmock.h>

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
    db.run(
        "insert into calendars (location_id, kind, description, starts_on, ends_on) select id, 1, 'Spring', "
        "0, " +
        std::to_string(makeMoment(2026, 3, 31)) + " from locations where name = 'Annex'");
  });
  EXPECT_THAT(before, Not(Contains("Nobody may work at the location \"Annex\".")));
  EXPECT_THAT(
      examine(),
      AllOf(Contains("Nobody may work at the location \"Annex\"."),
            Contains(
                "The patron group \"Guests\" has no policy at any location: its 0 cards can book nothing."),
            Contains("The location \"Annex\" has no calendar for deliveries."),
            Contains("The calendar for rooms of \"Annex\" ends on 2026-03-31.")));
  EXPECT_THAT(examine(makeMoment(2026, 1, 1)),
              Not(Contains("The calendar for rooms of \"Annex\" ends on 2026-03-31.")));
  EXPECT_THAT(examine(makeMoment(2026, 4, 1)),
              Contains("The calendar for rooms of \"Annex\" ended on 2026-03-31."));
}

}  // namespace
}  // namespace vantry::server
