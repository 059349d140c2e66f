// The real program sets a library up from a file of rules.

#include <gmock/gmock.h>

#include "server/program/program_case.h"

namespace vantry::server {
namespace {

using test::contentOf;
using test::TempFolder;
using testing::HasSubstr;

class RulesProgram : public StoreOnEach {
 protected:
  /// "exit code|standard output|standard error"
  std::string run(const std::string& arguments) {
    const std::string command = "echo a-good-password | " VANTRY_SERVER_PROGRAM " --database '" +
                                store->url() + "' " + arguments + " > " + folder.file("out") + " 2> " +
                                folder.file("err");
    const int code = WEXITSTATUS(std::system(command.c_str()));
    return std::to_string(code) + "|" + contentOf(folder.file("out")) + "|" + contentOf(folder.file("err"));
  }

  TempFolder folder;
};
INSTANTIATE_TEST_SUITE_P(Databases, RulesProgram, eachDatabase, databaseName);

constexpr const char* smallRules = R"({
  "room_types": [{"name": "Store", "storage": true}],
  "equipment_types": [{"name": "Camera"}, {"name": "Laptop", "setup_minutes": 5}],
  "calendars": [{"location": "Main", "for": "pick-ups", "name": "2026", "from": "2026-01-01", "until": "2026-12-31",
                 "week": {"monday": "08:00-18:00"}, "exceptions": [{"date": "2026-03-09", "hours": "closed"}]}],
  "policies": [{"location": "Main", "group": "Students", "limits": {"fees_in_cents": 500}, "locations": ["Main"],
                "equipment_types": [{"type": "Camera", "book": false}, {"type": "Laptop", "longest": "2 hours"}]}]})";

TEST_P(RulesProgram, ALibraryThatWasSetUpFromAFileDecidesByIt) {
  for (const char* command :
       {"init", "library add City", "location add Main --library City", "group add Students",
        "operator add dana --name Dana --location Main --rights all"}) {
    ASSERT_THAT(run(command), testing::StartsWith("0|")) << command;
  }
  std::ofstream(folder.file("bad.json")) << R"({"policies": [{"location": "Main", "group": "Alumni"}]})";
  EXPECT_EQ(run("rules take " + folder.file("bad.json")),
            "1||policies[0].locations: is missing.\npolicies[0].group: there is no patron group \"Alumni\".\n"
            "vantry-server: Nothing was taken. The file has 2 faults.\n");
  EXPECT_EQ(run("rules take " + folder.file("none.json")),
            "1||vantry-server: The file \"" + folder.file("none.json") + "\" cannot be read.\n");
  std::ofstream(folder.file("rules.json")) << smallRules;
  const std::string counts =
      "Room types: 1 added, 0 changed, 0 as they were.\nEquipment types: 2 added, 0 changed, 0 as they "
      "were.\n"
      "Calendars: 1 added, 0 changed, 0 as they were.\nPolicies: 1 added, 0 changed, 0 as they were.\n";
  EXPECT_EQ(run("rules take --check " + folder.file("rules.json")),
            "0|The file is sound. Taken in, it would come to this:\n" + counts + "|");
  EXPECT_EQ(run("rules take " + folder.file("rules.json")), "0|" + counts + "|");
  EXPECT_THAT(
      run("rules show"),
      HasSubstr(
          R"({"type": "Laptop", "book": true, "deliver": true, "pick_up": true, "longest": "2 hours"})"));

  Database(store->url()).write([](Connection& db) {
    db.run(
        "insert into rooms (id, location_id, room_type_id, number, name, created_at) values (1, 1, 1, '1', "
        "'Store', 0)");
    db.run(
        "insert into equipment (id, equipment_type_id, number, location_id, room_id, created_at) values "
        "(1, 1, 'CAM1', 1, 1, 0), (2, 2, 'LAP1', 1, 1, 0)");
  });
  test::DanasDesk dana(store->url(), makeMoment(2026, 3, 1, 9));
  dana.ask("SLL", "LOC=1");
  const auto use = [&](const std::string& piece, const std::string& clock) {
    return dana.ask("VEQUSG", "BOOKID=0; EID=" + piece +
                                  "; PGID=1; LOC=1; STIME=2026-03-02 10:00:00; ETIME=2026-03-02 " + clock);
  };
  EXPECT_EQ(use("1", "11:00:00").all("VUF"), "155") << "cameras are not for students";
  EXPECT_EQ(use("2", "12:00:00").rc, 0);
  EXPECT_EQ(use("2", "12:01:00").all("VUF"), "153") << "longer than two hours";
  const auto fetch = [&](const std::string& day, const std::string& clock) {
    return dana.ask("CPUPTM", "PGID=1; ADBK=N; STIME=" + day + " 10:00:00; SDOW=2; ETIME=" + day + " " +
                                  clock + "; EDOW=2");
  };
  EXPECT_EQ(fetch("2026-03-02", "18:00:00").rc, 0);
  EXPECT_EQ(fetch("2026-03-02", "18:30:00").all("VUF"), "170") << "it closes at six";
  EXPECT_EQ(fetch("2026-03-03", "12:00:00").all("VUF"), "166,166") << "Mondays only";
  EXPECT_EQ(fetch("2026-03-09", "12:00:00").all("VUF"), "168,168") << "closed on that Monday";
}

}  // namespace
}  // namespace vantry::server
