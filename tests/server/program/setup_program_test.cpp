// The real program sets a library up, by questions, options and files.

#include <sys/stat.h>

#include <filesystem>

#include <gmock/gmock.h>

#include "server/program/program_case.h"

namespace vantry::server {
namespace {

using test::contentOf;
using test::Outcome;
using test::ProgramTest;
using test::Serving;
using test::WireClient;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class SetupProgram : public ProgramTest {
 protected:
  Outcome setUp(const std::string& arguments, const std::string& answers = {}) {
    return runBare("--config " + config + " setup " + arguments, answers);
  }
  Outcome command(const std::string& words) { return runBare("--config " + config + " " + words); }

  /// Nothing that a set-up makes.
  void expectNothingMade() {
    EXPECT_FALSE(std::filesystem::exists(config));
    EXPECT_FALSE(std::filesystem::exists(config + ".new"));
    EXPECT_FALSE(std::filesystem::exists(database));
  }

  std::string config = folder.file("server.conf");
  const std::string byOptions =
      "--yes --database " + database +
      " --time-zone Europe/Berlin --library 'City Library' --desk Main --desk 'Film Room' "
      "--group Students --login dana --name 'Dana D.' --port 8751";
};

TEST_F(SetupProgram, MakesALibraryWhoseDeskWorksAtOnce) {
  EXPECT_THAT(setUp(byOptions, "a-good-password\n").endedWith(0),
              AllOf(HasSubstr("The library \"City Library\" is added.\n"),
                    HasSubstr("The booking desk \"Film Room\" is added.\n"),
                    HasSubstr("The operator \"dana\" is added, with all rights at all desks.\n"),
                    HasSubstr("The settings are written to " + config + ".\n"),
                    HasSubstr("Start the server with: vantry-server --config " + config + " serve\n")));
  EXPECT_THAT(contentOf(config), HasSubstr("database = \"" + database + "\"\n\n[serve]\n"));
  EXPECT_THAT(contentOf(config), Not(HasSubstr("a-good-password")));
  struct stat state {};
  ASSERT_EQ(stat(config.c_str(), &state), 0);
  EXPECT_EQ(state.st_mode & 0777U, 0640U);

  const Outcome doctor = command("doctor");
  EXPECT_THAT(doctor.text,
              testing::StartsWith(
                  "There are no patrons yet: take them in with \"import patrons\".\nThe database has "))
      << "and nothing else is missing";
  EXPECT_EQ(command("operator list").text, "dana\tDana D.\tactive\tFilm Room: all\tMain: all\n");
  Serving serving(database, folder.file("log"));
  WireClient client(serving.port());
  EXPECT_EQ(client.login("dana", "a-good-password").status, 200);
}

/// A piece and a time within the calendars are all that is added to what was set up.
TEST_F(SetupProgram, ItsRulesLetADeskBookInOpeningHours) {
  ASSERT_EQ(setUp(byOptions, "a-good-password\n").code, 0);
  Moment monday = std::stoll(value("select max(starts_on) from calendars")) + 150 * day;
  while (weekdayOf(monday) != 1) monday += day;
  Database(database).write([](Connection& db) {
    db.run(
        "insert into rooms (id, location_id, room_type_id, number, name, created_at) select 1, 1, id, '1', "
        "'Store', 0 "
        "from room_types where storage = 1");
    db.run(
        "insert into equipment (id, equipment_type_id, number, location_id, room_id, created_at) select 1, "
        "min(id), "
        "'CAM1', 1, 1, 0 from equipment_types");
  });
  test::DanasDesk dana(database, monday);
  dana.ask("SLL", "LOC=1");
  const std::string date = dateText(monday);
  const auto fetch = [&](const std::string& clock) {
    return dana.ask("CPUPTM", "PGID=1; ADBK=N; STIME=" + date + " 10:00:00; SDOW=2; ETIME=" + date + " " +
                                  clock + "; EDOW=2");
  };
  EXPECT_EQ(fetch("12:00:00").rc, 0);
  EXPECT_EQ(fetch("18:30:00").all("VUF"), "170") << "it closes at six";
  for (const std::string desk : {"LOC=1", "LOC=2"}) {
    dana.ask("SLL", desk);
    EXPECT_EQ(dana.ask("VEQUSG", "BOOKID=0; EID=1; PGID=1; " + desk + "; STIME=" + date +
                                     " 10:00:00; ETIME=" + date + " 12:00:00")
                  .rc,
              0)
        << "each desk books the things of both";
  }
}

TEST_F(SetupProgram, AsksAndAsksAgainUntilAnAnswerIsGood) {
  const std::string elsewhere = folder.file("nowhere/library.sqlite");
  const std::string made =
      setUp("",
            elsewhere + "\n" + database +
                "\nMars/Base\nUTC\n\nMain, Film Room ,\nStudents\ndana\n\nshort\na-good-password\n"
                "nobody\nproxy\nlocalhost\n\n80\n8752\nproxy.example\n::1\nldap:/host\nnone\nperhaps\nyes\n")
          .endedWith(0);
  for (const char* fault :
       {"cannot be opened: its folder is missing", "There is no time zone \"Mars/Base\" on this machine.",
        "A password needs at least 8 characters.", "The answer is this-machine, proxy or certificate.",
        "\"localhost\" is no address", "A port is a number from 1024 to 65535.",
        "\"proxy.example\" is no address or network of a proxy.", "and not \"ldap:/host\".",
        "The answer is yes or no."}) {
    EXPECT_THAT(made, HasSubstr(fault));
  }
  EXPECT_EQ(command("location list").text, "2\tFilm Room\tLibrary\n1\tMain\tLibrary\n");
  EXPECT_THAT(contentOf(config),
              HasSubstr("[serve]\naddress = \"127.0.0.1\"\nport = 8752\nbehind-proxy = true\n"
                        "trusted-proxy = \"::1\"\n"));
}

TEST_F(SetupProgram, TakesAnswersFromAFileBehindTheOptions) {
  const std::string answers = folder.file("answers");
  std::ofstream(folder.file("password")) << "a-good-password\r\n";
  std::ofstream(answers)
      << "# of the city\nyes = true\nlibrary = \"City Library\"\ndesk = [\"Main\", \"Film Room\"]\n"
      << "database = \"" << database << "\"\npassword-file = \"" << folder.file("password") << "\"\n";
  EXPECT_EQ(setUp("--library Town --answers " + answers).code, 0);
  EXPECT_EQ(command("location list").text, "2\tFilm Room\tTown\n1\tMain\tTown\n");
  std::ofstream(answers) << "password = secret\n";
  EXPECT_EQ(setUp("--answers " + answers).text,
            "vantry-server: " + answers + ": there is no setting \"password\".\n");
}

TEST_F(SetupProgram, ASecondTimeItChangesWhatIsAnsweredAnew) {
  ASSERT_EQ(setUp(byOptions, "a-good-password\n").code, 0);
  std::ofstream(config, std::ios::app) << "threads = 4\n# a note\n";
  const std::string before = contentOf(config);
  EXPECT_THAT(setUp("--yes").text, testing::StartsWith("Everything is as it was.\n"));
  EXPECT_THAT(setUp("", std::string(20, '\n')).text, HasSubstr("Name of the library [City Library]: "));
  EXPECT_EQ(contentOf(config), before);
  EXPECT_EQ(value("select count(*) from audit where action = 'library set up'"), "1");

  const std::string policies = value("select count(*) from policies");
  command("rules take " + [&] {
    std::ofstream(folder.file("rules.json"))
        << R"({"policies": [{"location": "Main", "group": "Students", "limits": {"bookings": 3}, "locations": []}]})";
    return folder.file("rules.json");
  }());
  EXPECT_THAT(setUp("--yes --library Town --desk Main --desk Annex --group Guests --port 8760").endedWith(0),
              AllOf(HasSubstr("The library \"City Library\" is now named \"Town\".\n"),
                    HasSubstr("The booking desk \"Annex\" is added.\n"), Not(HasSubstr("desk \"Main\" is")),
                    HasSubstr("The operator \"dana\" has all rights at the new desks.\n")));
  EXPECT_EQ(policies, "4");
  EXPECT_EQ(value("select count(*) from policies"), "9") << "three for the new desk, two for the new group";
  EXPECT_EQ(value("select max(most_bookings) from policies"), "3") << "what was set stays";
  EXPECT_EQ(command("library list").text, "1\tTown\n");
  EXPECT_THAT(contentOf(config), AllOf(HasSubstr("port = 8760\n"), HasSubstr("threads = 4\n# a note\n")));
}

TEST_F(SetupProgram, ABrokenOffOneLeavesNothing) {
  std::string answers;
  for (const std::string& line :
       {database, std::string("UTC"), std::string("City"), std::string("Main"), std::string("Students"),
        std::string("dana"), std::string("Dana"), std::string("a-good-password"), std::string("this-machine"),
        std::string("8750"), std::string("none"), std::string("no")}) {
    EXPECT_THAT(setUp("", answers).endedWith(1),
                HasSubstr("The set-up was broken off before its last answer. Nothing was changed."));
    expectNothingMade();
    answers += line + '\n';
  }
  EXPECT_THAT(setUp("", answers).text, testing::EndsWith("vantry-server: Nothing was changed.\n"));
  expectNothingMade();
}

TEST_F(SetupProgram, AWrongAnswerThatWasGivenIsToldAndLeavesNothing) {
  makeCertificate(folder, "mine");
  makeCertificate(folder, "yours");
  struct Case {
    std::string arguments;
    std::string text;
  };
  const Case cases[] = {
      {"--database " + folder.file("nowhere/a.sqlite"), "its folder is missing"},
      {"--time-zone Mars/Base", "There is no time zone \"Mars/Base\" on this machine."},
      {"--library ' '", "A name is needed."},
      {"--desk Main --desk ''", "A name is needed."},
      {"--port 80", "A port is a number from 1024 to 65535."},
      {"--reach everybody", "The answer is this-machine, proxy or certificate."},
      {"--reach proxy --proxy here", "is no address or network of a proxy."},
      {"--reach certificate --certificate " + folder.file("none.pem"), "cannot be read."},
      {"--reach certificate --certificate " + folder.file("mine.pem") + " --key " + folder.file("yours.key"),
       "does not fit the certificate"},
      {"--password-file " + folder.file("none"), "with the password cannot be read."},
      {"--directory ldap://host --directory-name uid=dana,dc=example", "is none of names such as"},
      {"--directory ldap://host --directory-base dc=example --directory-account x",
       "\"x\" is no name of an entry"},
  };
  for (const Case& each : cases) {
    const bool isDatabase = each.arguments.starts_with("--database");
    EXPECT_THAT(
        setUp("--yes " + (isDatabase ? std::string() : "--database " + database + " ") + each.arguments,
              "a-good-password\n")
            .endedWith(1),
        HasSubstr(each.text))
        << each.arguments;
    expectNothingMade();
  }
  EXPECT_THAT(runBare("--config " + folder.file("nowhere/server.conf") + " setup").text,
              HasSubstr("this user may not write it, or its folder is missing."));
}

TEST_F(SetupProgram, WhatFailsInTheMiddleIsUndone) {
  ASSERT_EQ(setUp(byOptions, "a-good-password\n").code, 0);
  ASSERT_EQ(command("library add Other").code, 0);
  EXPECT_THAT(setUp("--yes --time-zone UTC --group Guests --desk Annex --port 9999").endedWith(1),
              HasSubstr("The database holds several libraries"));
  EXPECT_EQ(command("group list").text, "1\tStudents\n");
  EXPECT_EQ(value("select value from settings where name = 'time_zone'"), "Europe/Berlin");
  EXPECT_THAT(contentOf(config), HasSubstr("port = 8751"));
}

/// A file that may not grow is a full disk.
TEST_F(SetupProgram, AFullDiskLeavesNothing) {
  const std::string command = "ulimit -f 200; echo a-good-password | " VANTRY_SERVER_PROGRAM " --config " +
                              config + " setup " + byOptions + " > " + folder.file("output") + " 2>&1";
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
  EXPECT_THAT(contentOf(folder.file("output")),
              HasSubstr("The database \"" + database + "\" cannot be used."));
  expectNothingMade();
}

class SetupOnEach : public SetupProgram, public testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(Databases, SetupOnEach, eachDatabase, databaseName);

TEST_P(SetupOnEach, TheSameIsMadeOnBothDatabases) {
  if (!TestStore::isOffered(GetParam())) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
  const TestStore store(GetParam());
  const std::string options =
      "--yes --database '" + store.url() + "' --time-zone UTC --desk Main --login dana";
  const std::string made = setUp(options, "a-good-password\n").endedWith(0);
  EXPECT_THAT(command("doctor").text, testing::StartsWith("There are no patrons yet"));
  EXPECT_THAT(setUp("--yes --desk Annex").text, HasSubstr("The booking desk \"Annex\" is added.\n"));
  EXPECT_EQ(command("operator list").text, "dana\tdana\tactive\tAnnex: all\tMain: all\n");
}

}  // namespace
}  // namespace vantry::server
