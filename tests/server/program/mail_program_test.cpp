// Mail, retention and what a patron may ask for, on the command line of the real program.

#include <fstream>

#include <gmock/gmock.h>

#include "server/program/program_case.h"
#include "support/server_mailbox.h"

namespace vantry::server::test {
namespace {

using testing::HasSubstr;

class MailProgram : public ProgramTest {
 protected:
  void SetUp() override { makeLibrary(); }

  /// A program that is called as sendmail is, and keeps what it gets.
  std::string sendmail(const std::string& rest = {}) {
    const std::string program = folder.file(rest.empty() ? "sendmail" : "failing-sendmail");
    std::ofstream(program) << "#!/bin/sh\n[ \"$*\" = '-t -oi' ] || exit 64\ncat > " << folder.file("mail")
                           << "\n"
                           << rest << "\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
  }

  void patron(const std::string& sql) {
    Database(database).write([&](Connection& db) { db.run(sql); });
  }

  const std::string from = " --mail-from 'The Desk <desk@library.example>'";
};

TEST_F(MailProgram, ChecksItsSettingsAndSendsATrial) {
  const std::string texts = folder.file("texts");
  EXPECT_THAT(run("mail texts " + texts).text, HasSubstr("confirmed.txt was written."));
  EXPECT_THAT(run("mail texts " + texts).text, HasSubstr("confirmed.txt is there already"));
  const std::string settings = "mail check --mail-kinds due,overdue --mail-texts " + texts + from;
  const std::string sound =
      run(settings + " --mail-through " + sendmail() + " --to ada@example.org").endedWith(0);
  EXPECT_THAT(sound, HasSubstr("Switched on: due overdue."));
  EXPECT_THAT(contentOf(folder.file("mail")), HasSubstr("To: ada@example.org\n"));

  Mailbox mailbox;
  EXPECT_EQ(run(settings + " --mail-through " + mailbox.address() + " --to ada@example.org").code, 0);
  EXPECT_EQ(mailbox.subjects(), "ada@example.org: A trial of the booking desk's mail\n");

  const struct {
    std::string arguments;
    std::string sentence;
  } refused[] = {
      {settings + " --mail-through " + sendmail("exit 75") + " --to ada@example.org",
       "sendmail ended with 75."},
      {settings + " --mail-through ftp://host", "and not through \"ftp://host\"."},
      {"mail check --mail-from desk --mail-through " + sendmail(), "\"desk\" is no address"},
      {settings + " --mail-through " + sendmail() + " --to 'ada@example.org,bob@example.org'",
       "The address is none"},
      {"mail check --mail-kinds late", "--mail-kinds"},
      {"serve --mail-kinds due --port 0", "is no address that mail can be sent from"},
  };
  for (const auto& each : refused) {
    const Outcome outcome = run(each.arguments);
    EXPECT_NE(outcome.code, 0) << each.arguments;
    EXPECT_THAT(outcome.text, HasSubstr(each.sentence));
  }
  std::ofstream(texts + "/due.txt") << "Subject: {nmae}\n\nDear\n";
  const std::string faulty = run(settings + " --mail-through " + sendmail()).endedWith(1);
  EXPECT_THAT(faulty, HasSubstr("due.txt: line 1: there is no placeholder {nmae}."));
}

TEST_F(MailProgram, SendsWhatADeskChangesAndTellsItsFigures) {
  Mailbox mailbox;
  const std::string config = folder.file("server.conf");
  std::ofstream(config)
      << "mail-kinds=\"confirmed,cancelled\"\nmail-from=\"desk@library.example\"\nmail-through=\""
      << mailbox.address() << "\"\n";
  patron("insert into patron_groups (id, name) values (1, 'Students')");
  patron(
      "insert into patrons (id, last_name, search_name, email) values (1, 'Bell', 'bell', "
      "'ada@example.org')");
  patron(
      "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) values (1, 1, 'P1', 1)");
  Serving serving(database, folder.file("log"), {"--config", config});
  WireClient desk(serving.port());
  ASSERT_EQ(desk.login("dana", "a-good-password").status, 200);
  ASSERT_EQ(desk.send("SLL", {{"LOC", "1"}}).rc, 0);
  const Moment starts = startOfDay(wallClock()) + 2 * day + 10 * hour;
  ASSERT_EQ(desk.send("NEWBK", NewBooking{.from = starts, .until = starts + hour, .patron = "1"}.tags()).rc,
            0);
  EXPECT_THAT(run("mail list").text, HasSubstr("1\tconfirmed\t0000001\twaits until"));
  EXPECT_EQ(run("mail retry").text, "1 mail will be sent as soon as a server runs.\n");
  for (int wait = 0; wait < 3000 && desk.get("/metrics").body.find("result=\"sent\"} 1") == std::string::npos;
       ++wait)
    usleep(10'000);
  EXPECT_EQ(mailbox.subjects(), "ada@example.org: Your booking 0000001\n");
  EXPECT_EQ(run("mail list").text, "No mail waits, and none was given up.\n");
  ASSERT_EQ(desk.send("CANBK", {{"BOOKID", "1"}}).rc, 0);
  EXPECT_EQ(run("mail drop 7").code, 1);
  EXPECT_EQ(run("mail drop").text, "1 mail dropped.\n");
}

TEST_F(MailProgram, DesksAreServedWithoutAWayToSendMail) {
  const std::vector<std::string> mail{
      "--mail-kinds", "due", "--mail-from", "desk@library.example", "--mail-through", "/nowhere/sendmail"};
  Serving serving(database, folder.file("log"), mail);
  EXPECT_EQ(WireClient(serving.port()).get("/v1/ready").status, 200);
  const Outcome doctor =
      run("doctor --mail-kinds due --mail-from desk@library.example --mail-through " + mail.back());
  EXPECT_THAT(doctor.text, HasSubstr("There is no program /nowhere/sendmail to send mail."));
}

TEST_F(MailProgram, RetentionEndsAfterAStepWhenItIsInterrupted) {
  ASSERT_EQ(run("retention set --bookings 12").code, 0);
  const pid_t child = fork();
  if (child == 0) {
    // The signal has arrived before the program begins.
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, nullptr);
    raise(SIGINT);
    if (freopen(folder.file("told").c_str(), "w", stderr) == nullptr) _exit(9);
    execl(VANTRY_SERVER_PROGRAM, "vantry-server", "--database", database.c_str(), "retention", "run",
          nullptr);
    _exit(9);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(
      contentOf(folder.file("told")),
      "vantry-server: Stopped. What is left is done by the server, or when the command is given again.\n");
  EXPECT_EQ(value("select count(*) from audit where action = 'retention run'"), "1");
}

TEST_F(MailProgram, KeepsAndErasesAsItIsTold) {
  EXPECT_EQ(run("retention show").text,
            "Bookings that are over are kept with their names for ever, the audit for ever.\n");
  EXPECT_EQ(run("retention set").code, 1);
  EXPECT_EQ(run("retention set --bookings 12").code, 0);
  EXPECT_EQ(run("retention set --audit 24").text,
            "Bookings that are over are kept with their names for 12 months, the audit for 24 months.\n");
  EXPECT_EQ(
      run("retention run").text,
      "Made anonymous: 0 bookings, 0 rows of the audit about bookings. Deleted: 0 rows of the audit.\n");
  patron("insert into patron_groups (id, name) values (1, 'Students')");
  patron("insert into patrons (id, last_name, search_name) values (1, 'Bell', 'bell')");
  patron(
      "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) values (1, 1, 'P1', 1)");
  EXPECT_THAT(run("patron tell P1").text, HasSubstr("\"last name\": \"Bell\""));
  EXPECT_EQ(run("patron erase P2").text, "vantry-server: There is no card \"P2\".\n");
  EXPECT_EQ(run("patron erase P1").code, 0);
  EXPECT_EQ(run("patron erase P1").code, 1);
  EXPECT_EQ(value("select count(*) from audit where action = 'patron erased' and subject = '1'"), "1");
}

}  // namespace
}  // namespace vantry::server::test
