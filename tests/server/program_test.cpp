// The real program, in a folder of its own.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using test::WireClient;
using testing::HasSubstr;

struct Outcome {
  int code = -1;
  std::string text;  ///< both outputs
};

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() : database(folder.file("library.sqlite")) {}

  Outcome run(const std::string& arguments, const std::string& input = {}) {
    std::ofstream(folder.file("input")) << input;
    const std::string output = folder.file("output");
    const std::string command = std::string(VANTRY_SERVER_PROGRAM) + " --database " + database + " " +
                                arguments + " < " + folder.file("input") + " > " + output + " 2>&1";
    Outcome outcome;
    outcome.code = WEXITSTATUS(std::system(command.c_str()));
    std::stringstream text;
    text << std::ifstream(output).rdbuf();
    outcome.text = text.str();
    return outcome;
  }

  void makeLibrary() {
    ASSERT_EQ(run("init").code, 0);
    ASSERT_EQ(run("library add 'City Library'").code, 0);
    ASSERT_EQ(run("location add Main --library 'City Library'").code, 0);
    ASSERT_EQ(
        run("operator add Dana --name 'Dana D.' --location Main --rights all", "a-good-password\n").code, 0);
  }

  TempFolder folder;
  std::string database;
};

TEST_F(ProgramTest, SetsALibraryUpWithoutTheDemo) {
  makeLibrary();
  EXPECT_EQ(run("group add Students").code, 0);
  EXPECT_EQ(run("library list").text, "1\tCity Library\n");
  EXPECT_EQ(run("location list").text, "1\tMain\tCity Library\n");
  EXPECT_EQ(run("group list").text, "1\tStudents\n");
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tactive\tMain\n");
  EXPECT_EQ(run("operator disable dana").code, 0);
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tdisabled\tMain\n");
  EXPECT_EQ(run("operator rights dana --location Main --rights none").code, 0);
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tdisabled\n");
  EXPECT_EQ(run("operator enable dana").code, 0);
  EXPECT_EQ(run("operator password dana", "another-password\n").code, 0);
}

struct WrongCase {
  const char* arguments;
  const char* input;
  const char* text;
};

TEST_F(ProgramTest, TellsWhatIsWrongAndChangesNothing) {
  makeLibrary();
  const WrongCase cases[] = {
      {"operator add dana --name D", "a-good-password\n", "There is already an operator of this name."},
      {"operator add eve --name E", "short\n", "A password needs at least 8 characters."},
      {"operator add eve --name E", "", "A password needs at least 8 characters."},
      {"operator add eve --name E --location Nowhere --rights all", "a-good-password\n",
       "There is no location named \"Nowhere\"."},
      {"operator rights dana --location Main --rights BKV,NOSUCH", "", "There is no right \"NOSUCH\"."},
      {"operator rights eve --location Main --rights view", "", "There is no operator named \"eve\"."},
      {"operator password eve", "a-good-password\n", "There is no operator named \"eve\"."},
      {"location add Main --library 'City Library'", "", "There is already a location of this name."},
      {"location add Second --library Elsewhere", "", "There is no library named \"Elsewhere\"."},
      {"library add ''", "", "A library needs a name."},
      {"demo", "", "The database holds a library already."},
      {"serve --address 0.0.0.0 --port 0", "", "Passwords would travel in the clear"},
      {"serve --certificate /none --key /none --port 0", "", "cannot be read"},
  };
  for (const WrongCase& each : cases) {
    const Outcome outcome = run(each.arguments, each.input);
    EXPECT_EQ(outcome.code, 1) << each.arguments;
    EXPECT_THAT(outcome.text, HasSubstr(each.text)) << each.arguments;
  }
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tactive\tMain\n");
  EXPECT_NE(run("").code, 0);
  EXPECT_NE(run("fly").code, 0);
}

TEST_F(ProgramTest, TakesNoPasswordOnTheCommandLine) {
  makeLibrary();
  EXPECT_NE(run("operator add eve --name E --password secret-secret").code, 0);
  EXPECT_NE(run("operator password dana secret-secret").code, 0);
}

TEST_F(ProgramTest, ServesUntilItIsToldToEndAndIsCopiedMeanwhile) {
  makeLibrary();
  const std::string log = folder.file("log");
  const pid_t child = fork();
  if (child == 0) {
    if (freopen(log.c_str(), "w", stdout) == nullptr) _exit(9);
    execl(VANTRY_SERVER_PROGRAM, "vantry-server", "--database", database.c_str(), "serve", "--port", "0",
          nullptr);
    _exit(9);
  }
  int port = 0;
  for (int wait = 0; wait < 2000 && port == 0; ++wait) {
    std::string line;
    std::ifstream file(log);
    std::getline(file, line);
    const std::size_t at = line.find(" port ");
    if (at != std::string::npos && !file.eof()) port = std::stoi(line.substr(at + 6));
    if (port == 0) usleep(10'000);
  }
  ASSERT_NE(port, 0);
  WireClient client(port);
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  EXPECT_EQ(client.send("SLL", {{"LOC", "1"}}).rc, 0);
  const std::string copy = folder.file("copy.sqlite");
  EXPECT_EQ(run("backup " + copy).code, 0);
  EXPECT_EQ(run("backup " + copy).code, 1) << "a copy is never written over";
  Database restored(copy);
  int sessions = 0;
  restored.read([&](Connection& db) {
    Query query(db, "select count(*) from sessions");
    query.into(sessions);
    while (query.next()) {
    }
  });
  EXPECT_EQ(sessions, 1);
  kill(child, SIGTERM);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace vantry::server
