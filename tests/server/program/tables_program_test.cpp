// The real program takes tables in and writes them: what it says, and its exit status.

#include <gmock/gmock.h>

#include "server/program/program_case.h"

namespace vantry::server::test {
namespace {

using testing::HasSubstr;

class TablesProgram : public ProgramTest {
 protected:
  void SetUp() override {
    makeLibrary();
    write("rules.json",
          R"({"room_types": [{"name": "Store", "storage": true}], "equipment_types": [{"name": "Camera"}]})");
    ASSERT_EQ(run("rules take " + folder.file("rules.json")).code, 0);
  }
  void write(const std::string& name, const std::string& content) {
    std::ofstream(folder.file(name), std::ios::binary) << content;
  }
};

TEST_F(TablesProgram, AnInventoryComesInAndOutAgain) {
  write("rooms.csv", "location,type,number,equipment\nMain,Store,1,none yet\n");
  Outcome outcome = run("import rooms " + folder.file("rooms.csv"));
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.text,
              HasSubstr("rooms.csv, line 2, column equipment: \"none yet\" is not exactly one thing"));
  EXPECT_THAT(outcome.text, HasSubstr("Nothing was taken. Faults in the file: 1."));
  outcome = run("import rooms --leave-out equipment " + folder.file("rooms.csv"));
  EXPECT_EQ(outcome.text, "Rooms: 1 new, 0 changed, 0 retired; 0 rows as they are.\n");

  write("pieces.csv", "type;number;location;room;dealer\nCamera;C1;Main;1;=1+1\n");
  outcome = run("import equipment --check " + folder.file("pieces.csv"));
  EXPECT_EQ(outcome.text,
            "line 2: Camera C1 is new.\nNothing was written. Taken in, the file would come to this:\n"
            "Pieces: 1 new, 0 changed, 0 retired; 0 rows as they are.\n");
  EXPECT_EQ(run("import equipment " + folder.file("pieces.csv")).code, 0);
  EXPECT_EQ(value("select supplier from equipment"), "=1+1");

  EXPECT_EQ(run("export equipment " + folder.file("out.csv")).code, 0);
  EXPECT_THAT(run("export equipment").text, HasSubstr("Camera,C1,,,Main,1,"));
  EXPECT_THAT(run("export equipment").text, HasSubstr(",'=1+1,"));
  EXPECT_THAT(run("import equipment --retire-missing " + folder.file("out.csv")).text,
              HasSubstr("Pieces: 0 new, 0 changed, 0 retired; 1 rows as they are."));
  EXPECT_THAT(run("export equipment " + folder.file("out.csv")).text, HasSubstr("exists already"));
}

TEST_F(TablesProgram, AFullDiskAndAWrongColumnAreTold) {
  const std::string command = std::string(VANTRY_SERVER_PROGRAM) + " --database " + database +
                              " export rooms > /dev/full 2> " + folder.file("err");
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
  write("staff.csv", "card\n");
  EXPECT_THAT(run("import staff --leave-out name " + folder.file("staff.csv")).text,
              HasSubstr("There is no column \"name\" to leave out."));
}

}  // namespace
}  // namespace vantry::server::test
