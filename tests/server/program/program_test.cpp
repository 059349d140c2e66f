// The real program, in a folder of its own.

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/program/program_case.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_marc_file.h"

namespace vantry::server {
namespace {

using test::Outcome;
using test::ProgramTest;
using test::Serving;
using test::TempFolder;
using test::WireClient;
using testing::HasSubstr;

TEST_F(ProgramTest, EachCommandTellsWhatItDid) {
  struct Told {
    const char* arguments;
    const char* text;
  };
  ASSERT_EQ(run("init").code, 0);
  const Told commands[] = {
      {"library add ' City '", "The library \"City\" is added.\n"},
      {"library rename City Town", "The library \"City\" is now named \"Town\".\n"},
      {"location add Main --library Town", "The location \"Main\" of the library \"Town\" is added.\n"},
      {"location rename Main Desk", "The location \"Main\" is now named \"Desk\".\n"},
      {"group add Pupils", "The patron group \"Pupils\" is added.\n"},
      {"group rename Pupils Students", "The patron group \"Pupils\" is now named \"Students\".\n"},
      {"operator add dana --name D", "The operator \"dana\" is added, and may work at no location yet.\n"},
      {"operator rights dana --location Desk --rights view",
       "The operator \"dana\" has the rights view at \"Desk\".\n"},
      {"operator rights dana --location Desk --rights none",
       "The operator \"dana\" may no longer work at \"Desk\".\n"},
      {"operator password dana", "The operator \"dana\" has a new password; their sessions are ended.\n"},
      {"operator disable dana", "The operator \"dana\" may not log on any more; their sessions are ended.\n"},
      {"operator list", "dana\tD\tdisabled\n"},
      {"operator enable dana", "The operator \"dana\" may log on again.\n"},
      {"operator add --name ' Eve E. ' --location Desk --rights BKV,BKCAN ' Eve '",
       "The operator \"Eve\" is added and has the rights BKCAN,BKV at \"Desk\".\n"},
      {"operator list", "dana\tD\tactive\neve\tEve E.\tactive\tDesk: BKCAN,BKV\n"},
      {"operator rights --location Desk --rights EQV eve",
       "The operator \"eve\" has the rights EQV at \"Desk\".\n"},
      {"operator list", "dana\tD\tactive\neve\tEve E.\tactive\tDesk: EQV\n"},
      {"library list", "1\tTown\n"},
      {"location list", "1\tDesk\tTown\n"},
      {"group list", "1\tStudents\n"},
      {"library rename Nowhere Town", "vantry-server: There is no library named \"Nowhere\".\n"},
      {"location rename Desk ' '", "vantry-server: A location needs a name.\n"},
      {"group rename Students Students", "vantry-server: There is already a patron group of this name.\n"},
  };
  for (const Told& each : commands) EXPECT_EQ(run(each.arguments, "a-good-password\n").text, each.text);
  EXPECT_EQ(value("select group_concat(action || ':' || subject || ':' || detail, ', ') from (select * from "
                  "audit where action like '%renamed' order by id) as a"),
            "library renamed:City:Town, location renamed:Main:Desk, patron group renamed:Pupils:Students");
  EXPECT_THAT(run("rights").text, HasSubstr("EQV\tThe operator may see equipment and groups.\n"));
}

TEST_F(ProgramTest, TheDoctorKnowsThePasswordsOfTheDemo) {
  const std::string sentence = "An operator of the demo library has a password that everybody knows";
  ASSERT_EQ(run("demo").code, 0);
  ASSERT_EQ(run("operator disable desk").code + run("operator disable view").code, 0);
  EXPECT_THAT(run("doctor").text, HasSubstr(sentence));
  ASSERT_EQ(run("operator password admin", "a-good-password\n").code, 0);
  EXPECT_THAT(run("doctor").text, testing::Not(HasSubstr(sentence)));
}

/// A mistyped name is told, and is no new database.
TEST_F(ProgramTest, NoOtherCommandMakesADatabase) {
  for (const char* command : {"serve --port 0", "doctor", "library list", "library add City", "operator list",
                              "rules show", "audit show", "trust-clock", "backup copy.sqlite",
                              "import marc none.mrc", "import patrons none.csv"}) {
    EXPECT_EQ(run(command).endedWith(1),
              "vantry-server: The database \"" + database +
                  "\" is not there: its name may be mistyped. The commands setup and init make a new one.\n")
        << command;
    EXPECT_FALSE(std::filesystem::exists(database)) << command;
  }
}

/// A server that still runs on it would not know the new tables.
TEST_F(ProgramTest, OnlyInitAndServeBringADatabaseUpToDate) {
  migrate(*std::make_unique<Database>(database, Database::Options{.create = true}), 12);
  for (const char* command : {"operator list", "library add City", "audit show", "trust-clock"}) {
    EXPECT_THAT(run(command).endedWith(1), HasSubstr("is of an older version.")) << command;
    EXPECT_EQ(value("select max(number) from schema_steps"), "12") << command;
  }
  EXPECT_EQ(run("init").code, 0);
  EXPECT_EQ(run("operator list").code, 0);
}

struct WrongCase {
  const char* arguments;
  const char* input;
  const char* text;
};

TEST_F(ProgramTest, TellsWhatIsWrongAndChangesNothing) {
  makeLibrary();
  const WrongCase cases[] = {
      {"operator add dana --name D", "", "There is already an operator of this name."},
      {"operator add eve --name E", "short\n", "A password needs at least 8 characters."},
      {"operator add eve --name E", "", "A password needs at least 8 characters."},
      {"operator add eve --name E --location Nowhere --rights all", "",
       "There is no location named \"Nowhere\"."},
      {"operator add eve --name E --location Main --rights BKV,NOSUCH", "", "There is no right \"NOSUCH\"."},
      {"operator add ' Dana ' --name D", "", "There is already an operator of this name."},
      {"operator add ' ' --name D", "", "An operator needs a name."},
      {"operator add eve --name ' '", "", "An operator's record needs a name."},
      {"operator rights dana --location Main --rights BKV,NOSUCH", "", "There is no right \"NOSUCH\"."},
      {"operator rights eve --location Main --rights view", "", "There is no operator named \"eve\"."},
      {"operator password eve", "", "There is no operator named \"eve\"."},
      {"location add Main --library 'City Library'", "", "There is already a location of this name."},
      {"location add Second --library Elsewhere", "", "There is no library named \"Elsewhere\"."},
      {"library add ''", "", "A library needs a name."},
      {"library add ' City Library '", "", "There is already a library of this name."},
      {"demo --bookings-on 2026-12-01 many", "", "\"many\" is no number of bookings."},
      {"demo --bookings-on 2026-12-01 12x", "", "\"12x\" is no number of bookings."},
      {"demo --bookings-on 2026-12-01 -5", "", "\"-5\" is no number of bookings."},
      {"demo --bookings-on 2026-12-01 99999999999", "", "is no number of bookings."},
      {"demo", "", "The database holds a library already."},
      {"serve --address 0.0.0.0 --port 0", "", "Passwords would travel in the clear"},
      {"serve --certificate /none --key /none --port 0", "", "cannot be read"},
  };
  for (const WrongCase& each : cases) {
    EXPECT_THAT(run(each.arguments, each.input).endedWith(1), HasSubstr(each.text)) << each.arguments;
  }
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tactive\tMain: all\n");
  EXPECT_NE(run("").code, 0);
  EXPECT_NE(run("fly").code, 0);
  EXPECT_THAT(run("operator add eve --name E --rights all", "a-good-password\n").text,
              HasSubstr("--rights requires --location"));
  EXPECT_THAT(run("operator add eve --name E --location Main", "a-good-password\n").text,
              HasSubstr("--location requires --rights"));
  EXPECT_EQ(run("operator list").text, "dana\tDana D.\tactive\tMain: all\n");
}

TEST_F(ProgramTest, TakesACatalogueInAndTellsWhatItCouldNotTake) {
  makeLibrary();
  writeFile(folder.file("export.mrc"),
            exchanged({{"001", "1"}, {"245", "00$aBees"}, {"852", "0 $bmain$hQL 5"}, {"876", "  $pI1"}}) +
                exchanged({{"001", "2"}, {"100", "1 $aNobody"}}));
  const Outcome taken = run("import marc " + folder.file("export.mrc"));
  EXPECT_EQ(taken.code, 0);
  EXPECT_THAT(taken.text,
              HasSubstr("Titles: 1 new, 0 changed, 0 as they are. Holdings: 1 new. Items: 1 new,"));
  EXPECT_THAT(taken.text, HasSubstr("Record 2, 001 2: it has no title in field 245."));
  EXPECT_THAT(taken.text, HasSubstr("Not taken: records 1,"));
  EXPECT_NE(run("import marc " + folder.file("missing.mrc")).code, 0);
  writeFile(folder.file("none.mrc"), exchanged({{"001", "2"}, {"100", "1 $aNobody"}}));
  EXPECT_THAT(run("import marc " + folder.file("none.mrc")).endedWith(1),
              HasSubstr("vantry-server: Nothing was taken."));
  writeFile(folder.file("map.json"), run("import marc --show-map").text);
  EXPECT_THAT(
      run("import marc --check --map " + folder.file("map.json") + " " + folder.file("export.mrc")).text,
      HasSubstr("Titles: 0 new, 0 changed, 1 as they are."))
      << "the printed map is the one that counts without a file";
  writeFile(folder.file("map.json"), R"({"locations": [{"code": "M", "location": "Moon"}], "practise": []})");
  const std::string faulty =
      run("import marc --map " + folder.file("map.json") + " " + folder.file("export.mrc")).endedWith(1);
  EXPECT_THAT(faulty, HasSubstr("map.json, practise: there is no such member here"));
  EXPECT_THAT(faulty, HasSubstr("map.json, locations[0].location: there is no location \"Moon\"."));
  const Outcome nowhere = run("import marc " + folder.file("export.mrc") + " --location Moon");
  EXPECT_NE(nowhere.code, 0);
  EXPECT_THAT(nowhere.text, HasSubstr("There is no location named \"Moon\"."));
}

TEST_F(ProgramTest, TakesOpeningHoursIn) {
  run("init --time-zone Europe/Berlin");
  run("library add \"City Library\"");
  run("location add Main --library \"City Library\"");
  writeFile(folder.file("hours.ics"),
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:1\r\nSUMMARY:Open\r\n"
            "DTSTART:20261201T080000Z\r\nDTEND:20261201T160000Z\r\nRRULE:FREQ=DAILY\r\nEND:VEVENT\r\n"
            "END:VCALENDAR\r\n");
  const std::string command = "import hours " + folder.file("hours.ics") + " --location Main --name Winter";
  const std::string taken = run(command + " --for rooms --from 2026-12-01 --until 2026-12-31").endedWith(0);
  EXPECT_THAT(taken, HasSubstr("monday 09:00-17:00\n"));
  EXPECT_THAT(taken, HasSubstr("Calendars: 1 added, 0 changed, 0 as they were."));
  EXPECT_THAT(run(command + " --for parties --from 2026-12-01 --until 2026-12-31").text,
              HasSubstr("--for takes deliveries, rooms or pick-ups."));
  EXPECT_EQ(run(command + " --for rooms --from 2025-12-01 --until 2025-12-31").code, 1) << "it begins later";
}

TEST_F(ProgramTest, WhatItChangesForOperatorsIsWrittenAndHoldsAtOnce) {
  makeLibrary();
  Serving serving(database, folder.file("log"));
  WireClient client(serving.port());
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  EXPECT_EQ(run("operator password dana", "another-password\n").code, 0);
  EXPECT_EQ(client.send("GETLOCS", {}).status, 401) << "the new password ended the session";
  EXPECT_EQ(client.login("dana", "a-good-password").status, 401);
  EXPECT_EQ(client.login("dana", "another-password").status, 200);
  EXPECT_EQ(run("operator rights dana --location Main --rights BKV").code, 0);
  EXPECT_EQ(run("operator disable dana").code, 0);
  EXPECT_EQ(client.send("GETLOCS", {}).status, 401);
  EXPECT_EQ(client.login("dana", "another-password").status, 401);
  EXPECT_EQ(
      value("select group_concat(action || ':' || subject, ', ') from (select action, subject from audit "
            "where action not like 'login%' order by id) as a"),
      "operator added:dana, rights set:dana at Main, password set:dana, rights set:dana at Main, "
      "operator disabled:dana");
}

/// The server dies twice: before it could run the request, and after it ran it but before anybody read the
/// reply. The same id then runs it once.
TEST_F(ProgramTest, ARequestRunsOnceThoughTheServerDiesOverIt) {
  makeLibrary();
  const auto sql = [&](const std::string& statement) {
    Database(database).write([&](Connection& db) { db.run(statement); });
  };
  sql("insert into patrons (id, last_name, search_name) values (1, 'Holm', 'holm')");
  sql("insert into bookings (id, location_id, booking_type, patron_id, created_at, updated_at, starts_at, "
      "ends_at) values (1, 1, 3, 1, 0, 0, 4102480800, 4102484400)");
  std::string token;
  const auto ask = [&](int port) {
    WireClient client(port);
    client.token = token;
    return client.send("CANBK", {{"BOOKID", "1"}}, "once");
  };
  {
    Serving first(database, folder.file("log1"));
    WireClient client(first.port());
    ASSERT_EQ(client.login("dana", "a-good-password").status, 200);
    ASSERT_EQ(client.send("SLL", {{"LOC", "1"}}).rc, 0);
    token = client.token;
    Database(database).write([&](Connection& db) {
      db.run("update patrons set fees = 1");
      std::thread waiting([&] { EXPECT_THROW(ask(first.port()), std::runtime_error); });
      usleep(300'000);
      first.end(SIGKILL);
      waiting.join();
    });
  }
  EXPECT_EQ(value("select cancelled_bookings from patrons"), "0");
  {
    Serving second(database, folder.file("log2"));
    EXPECT_EQ(ask(second.port()).rc, 0);
    second.end(SIGKILL);
  }
  Serving third(database, folder.file("log3"));
  EXPECT_EQ(ask(third.port()).rc, 0) << "the stored reply, as if the first had been lost";
  EXPECT_EQ(value("select cancelled_bookings from patrons"), "1");
}

TEST_F(ProgramTest, TellsOfADatabaseThatCannotBeUsedInASentence) {
  database = folder.file("letter.txt");
  const std::string letter = "Dear reader, this is a letter and no database.\n";
  std::ofstream(database) << letter;
  for (const char* command :
       {"init", "demo", "serve --port 0", "library list", "operator add eve --name E"}) {
    EXPECT_EQ(run(command).endedWith(1),
              "vantry-server: The database \"" + database +
                  "\" is no database of this program: the file holds something else.\n")
        << command;
    EXPECT_EQ(test::contentOf(database), letter) << command;
  }
}

TEST_F(ProgramTest, KeepsTheLibrarysTimeWhateverTheMachinesZone) {
  EXPECT_EQ(run("init --time-zone Mars/Base").text,
            "vantry-server: There is no time zone \"Mars/Base\" on this machine.\n");
  setenv("TZ", "CET-1CEST", 1);
  EXPECT_THAT(run("init").text, HasSubstr("The time zone of this machine has no name"));
  EXPECT_EQ(run("library list").code, 0) << "which stops nothing";
  unsetenv("TZ");
  ASSERT_EQ(run("init --time-zone Asia/Tokyo").code, 0);
  for (const char* zone : {"America/New_York", "Asia/Tokyo"}) {
    setenv("TZ", zone, 1);
    EXPECT_EQ(
        run(std::string("operator add --name N ") + (zone[1] == 'm' ? "one" : "two"), "a-good-password\n")
            .code,
        0);
  }
  unsetenv("TZ");
  // The zones are thirteen hours apart at least.
  EXPECT_EQ(value("select max(at) - min(at) < 6 * 3600 from audit where action = 'operator added'"), "1");
}

TEST_F(ProgramTest, EndsWhenItsFileIsMovedOrReplacedAndLosesNothing) {
  makeLibrary();
  const std::string moved = folder.file("moved.sqlite");
  for (const bool replaced : {false, true}) {
    Serving serving(database, folder.file("log"));
    WireClient client(serving.port());
    ASSERT_EQ(client.login("dana", "a-good-password").status, 200);
    const std::string sessions = value("select count(*) from sessions");
    std::filesystem::rename(database, moved);
    if (replaced) std::ofstream(database) << "somebody's notes";
    try {
      EXPECT_EQ(client.send("GETLOCS", {}).status, 503);
    } catch (const std::runtime_error&) {
      // Its housekeeping has noticed it first, and it has ended.
    }
    const int status = serving.wait();
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
    if (replaced) {
      EXPECT_EQ(std::filesystem::file_size(database), 16U) << "what lies there now stays as it is";
    } else {
      EXPECT_FALSE(std::filesystem::exists(database));
    }
    std::filesystem::rename(moved, database);
    EXPECT_EQ(value("select count(*) from sessions"), sessions);
  }
}

class TwoPrograms : public StoreOnEach {};
INSTANTIATE_TEST_SUITE_P(Databases, TwoPrograms, eachDatabase, databaseName);

TEST_P(TwoPrograms, ThatStartAtOnceOnAnOlderDatabaseBothServe) {
  for (int round = 0; round < 3; ++round) {
    const TempFolder logs;
    const TestStore older(GetParam());
    migrate(*std::make_unique<Database>(older.url()), 12);
    Serving first(older.url(), logs.file("first"));
    Serving second(older.url(), logs.file("second"));
    const int ports[] = {first.port(), second.port()};
    ASSERT_NE(ports[0], 0);
    ASSERT_NE(ports[1], 0);
    EXPECT_EQ(WireClient(ports[0]).get("/v1/health").body, WireClient(ports[1]).get("/v1/health").body)
        << "with one key";
    EXPECT_EQ(schemaVersion(*std::make_unique<Database>(older.url())), std::ssize(migrations()));
  }
}

/// Waits until the program has written the text to the terminal.
bool awaitText(int terminal, const std::string& wanted) {
  std::string text;
  pollfd ready{.fd = terminal, .events = POLLIN, .revents = 0};
  while (text.find(wanted) == std::string::npos && poll(&ready, 1, 20'000) > 0) {
    char part[256];
    const ssize_t got = read(terminal, part, sizeof part);
    if (got <= 0) return false;
    text.append(part, static_cast<std::size_t>(got));
  }
  return text.find(wanted) != std::string::npos;
}

bool echoes(int terminal) {
  termios state{};
  return tcgetattr(terminal, &state) == 0 && (state.c_lflag & ECHO) != 0;
}

TEST_F(ProgramTest, GivesTheTerminalItsEchoBackWhenItIsInterruptedAtThePassword) {
  makeLibrary();
  int terminal = -1;
  int inner = -1;
  ASSERT_EQ(openpty(&terminal, &inner, nullptr, nullptr, nullptr), 0);
  const pid_t child = fork();
  if (child == 0) {
    login_tty(inner);
    execl(VANTRY_SERVER_PROGRAM, "vantry-server", "--database", database.c_str(), "operator", "password",
          "dana", nullptr);
    _exit(9);
  }
  EXPECT_TRUE(awaitText(terminal, "New password: "));
  for (int wait = 0; wait < 500 && echoes(terminal); ++wait) usleep(10'000);
  EXPECT_FALSE(echoes(terminal));
  EXPECT_EQ(write(terminal, "\x03", 1), 1);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGINT);
  EXPECT_TRUE(echoes(inner));
  close(inner);
  close(terminal);
}

TEST_F(ProgramTest, NamesAMistypedCommand) {
  const struct {
    const char* arguments;
    const char* text;
  } cases[] = {
      {"libary add City --of x", "There is no command \"libary\". Did you mean \"library\"?\n"},
      {"library ad City", "There is no command \"library ad\". Did you mean \"library add\"?\n"},
      {"retention halt", "There is no command \"retention halt\". There are: set show run.\n"},
      {"library", "A subcommand is required\n"},
      {"--databse library.sqlite", "A subcommand is required\n"},
      {"library add City --of x", "The following arguments were not expected: x --of\n"},
      {"location add Main", "--library is required\n"},
  };
  for (const auto& each : cases) {
    const Outcome outcome = run(each.arguments);
    EXPECT_NE(outcome.code, 0);
    EXPECT_THAT(outcome.text, testing::StartsWith(each.text)) << each.arguments;
  }
}

TEST_F(ProgramTest, TakesNoPasswordOnTheCommandLine) {
  makeLibrary();
  EXPECT_NE(run("operator add eve --name E --password secret-secret").code, 0);
  EXPECT_NE(run("operator password dana secret-secret").code, 0);
}

TEST_F(ProgramTest, ServesUntilItIsToldToEndAndIsCopiedMeanwhile) {
  makeLibrary();
  Serving serving(database, folder.file("log"));
  WireClient client(serving.port());
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
  const std::string copy = folder.file("copy.sqlite");
  EXPECT_EQ(run("backup " + copy).code, 0);
  EXPECT_EQ(run("backup " + copy).code, 1) << "a copy is never written over";
  Database restored(copy);
  EXPECT_EQ(valueOf(restored, "select count(*) from sessions"), "1");
  const int status = serving.end(SIGTERM);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace
}  // namespace vantry::server
