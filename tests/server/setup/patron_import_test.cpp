// Patrons out of CSV files: what is taken, what is known again, what is refused.
#include "server/setup/patron_import.h"

#include <gmock/gmock.h>

#include <fstream>
#include <thread>

#include "server/base/user_error.h"
#include "server/setup/patron_data.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Moment now = 1'772'442'000;

class PatronImport : public OnEachDatabase {
 protected:
  void prepare() override {
    library().database().write([](Connection& db) {
      db.run("insert into patron_groups (id, name) values (7101, 'Readers'), (7102, 'Pupils')");
    });
  }

  PatronReport take(std::string_view content, const ImportUse& use = {}) {
    std::ofstream(folder.file("patrons.csv"), std::ios::binary) << content;
    return importPatrons(library().database(), folder.file("patrons.csv"), use, now);
  }

  /// "card last first email group status" of the cards that begin with "N".
  std::vector<std::string> cards() {
    std::vector<std::string> rows;
    library().database().read([&](Connection& db) {
      std::string barcode, last, first, email, group, status;
      Query query(
          db,
          "select c.barcode, p.last_name, p.first_name, p.email, g.name, s.name from patron_barcodes c join "
          "patrons p on p.id = c.patron_id join patron_groups g on g.id = c.patron_group_id join "
          "barcode_statuses s on s.id = c.status_id where c.barcode like 'N%' order by c.barcode");
      query.into(barcode, last, first, email, group, status);
      while (query.next())
        rows.push_back(barcode + ' ' + last + ' ' + first + ' ' + email + ' ' + group + ' ' + status);
    });
    return rows;
  }

  TempFolder folder;
};
INSTANTIATE_TEST_SUITE_P(Databases, PatronImport, eachDatabase, databaseName);

TEST_P(PatronImport, TakesAFileAndKnowsItAgain) {
  const std::string file =
      "\xEF\xBB\xBF"
      "Group;Card;Last name;First name;E-mail;Expires;Remembered;Shoe size\r\n"
      "Readers;N1;Müller;\"Ann \"\"A\"\"\";ann@example.org;2027-06-30;no;38\r\n"
      "\r\n"
      "Pupils;N2;Ink;;;30.06.2027;;\r\n";
  PatronReport report = take(file);
  EXPECT_THAT(report.faults.told(), IsEmpty());
  EXPECT_THAT(report.unknown, ElementsAre("Shoe size"));
  EXPECT_EQ(report.newPatrons, 2);
  EXPECT_THAT(cards(),
              ElementsAre("N1 Müller Ann \"A\" ann@example.org Readers Active", "N2 Ink   Pupils Active"));

  report = take(file);
  EXPECT_EQ(report.sameRows, 2) << "a second run changes nothing";
  EXPECT_EQ(report.newPatrons + report.changedPatrons + report.changedCards, 0);

  report = take("card,group,surname\nN1,Pupils,Miller\n", {.retireMissing = true});
  EXPECT_EQ(report.changedPatrons, 1);
  EXPECT_EQ(report.changedCards, 1);
  EXPECT_THAT(cards(),
              ElementsAre("N1 Miller Ann \"A\" ann@example.org Pupils Active", "N2 Ink   Pupils Inactive"))
      << "what the file has no column for stays";
}

TEST_P(PatronImport, TakesTheNumbersByWhichPatronsAreFound) {
  take("card,group,last name,SSN,institution id\nN1,Readers,Ink,900-12-0077,U1\n");
  for (const char* number : {"19; SRCHVAL=900-12-00?", "20; SRCHVAL=u1"}) {
    const auto found = send("FIND", std::string("SRCHTAG=") + number + "; SRCHFOR=6; SRCHLOC=5; SRCHOP=");
    EXPECT_EQ(found.all("PLN") + found.all("PSSN") + found.all("PIID"), "Ink900-12-0077U1") << found.text();
  }
}

TEST_P(PatronImport, OnePatronMayHaveSeveralCards) {
  const PatronReport report =
      take("card,group,last name,institution id\nN1,Readers,Ink,U1\nN2,Pupils,Ink,U1\nN3,Readers,Ash,\n");
  EXPECT_THAT(report.faults.told(), IsEmpty());
  EXPECT_EQ(report.newPatrons, 2);
  EXPECT_EQ(take("card,group,last name,institution id\nN9,Readers,Ink,U1\n").newPatrons, 0)
      << "known by the id";
  const std::string twice = "card,group,last name\nN1,Readers,Ink\nN2,Pupils,";
  EXPECT_THAT(take(twice + "Ash\n").faults.told(),
              ElementsAre(HasSubstr("The patron of line 2 is the same and has other data.")));
  EXPECT_THAT(take(twice + "Ink\n").faults.told(), IsEmpty());
}

/// The plan is made while others may write.
TEST(PatronImportBesideAnother, SeesWhatThatHasWrittenMeanwhile) {
  DeskLibrary library("sqlite");
  const TempFolder folder;
  std::ofstream(folder.file("patrons.csv")) << "card,group,last name\nN1,Students,Ink\n";
  PatronReport report;
  std::thread taking;
  library.database().write([&](Connection& db) {
    taking =
        std::thread([&] { report = importPatrons(library.database(), folder.file("patrons.csv"), {}, now); });
    while (library.database().waitingWriters() == 0) std::this_thread::yield();
    notePatronWrite(db);
    db.run("insert into patrons (id, last_name, search_name) values (71, 'Ash', 'ash')");
    db.run(
        "insert into patron_barcodes (patron_id, patron_group_id, barcode, status_id) select 71, id, 'N1', 1 "
        "from patron_groups where name = 'Students'");
  });
  taking.join();
  EXPECT_EQ(report.newPatrons, 0);
  EXPECT_EQ(library.value("select last_name from patrons where id = 71"), "Ink");
}

TEST_P(PatronImport, ReadsFilesOfTheWesternCodePage) {
  EXPECT_EQ(take("card\tgroup\tlast name\nN1\tReaders\tM\xFCller\n").newPatrons, 1);
  EXPECT_THAT(cards(), ElementsAre("N1 Müller   Readers Active"));
}

TEST_P(PatronImport, ACheckWritesNothingAndTellsEachRow) {
  const PatronReport report = take("card,group,last name\nN1,Readers,Ink\n", {.checkOnly = true});
  EXPECT_THAT(report.told, ElementsAre("line 2: card N1, a new patron."));
  EXPECT_THAT(take("card,group,last name\n", {.checkOnly = true, .retireMissing = true}).told,
              testing::Contains("Card P100 is not in the file and becomes inactive."));
  EXPECT_THAT(cards(), IsEmpty());
}

TEST_P(PatronImport, OneFaultKeepsTheWholeFileOut) {
  struct Case {
    std::string rows;
    std::string fault;
  };
  const Case cases[] = {
      {"N1,Nobody,Ink,,\n", "line 3: There is no patron group \"Nobody\"."},
      {"N1,Readers,,,\n", "line 3, column Last name: A patron needs a last name."},
      {",Readers,Ink,,\n", "line 3, column Card: A patron needs a card."},
      {"N0,Readers,Ink,,\n", "line 3: The card \"N0\" is in line 2 already."},
      {"N1,Readers,Ink,31.02.2027,\n",
       "line 3, column Expires: \"31.02.2027\" is no date. Write 2027-06-30 or 30.06.2027."},
      {"N1,Readers,Ink,,\"a@b.org\nBcc: c@d.org\"\n",
       "line 3, column Mail: The text has a line break or another sign that cannot be shown."},
      {"N1,Readers,Ink,,nowhere\n", "line 3, column Mail: \"nowhere\" is no e-mail address."},
      {"N1,Readers\n", "line 3: The row has 2 cells, the headings have 5."},
      {"N1,Readers," + std::string(101, 'x') + ",,\n",
       "line 3, column Last name: The text is longer than 100 bytes."},
      {std::string(1'000'000, ',') + '\n', "line 3: The row has too many columns."},
      {"N1,Readers,\"Ink,,\n", "line 3: The quotes do not fit. Nothing behind them can be read."},
  };
  for (const Case& each : cases) {
    const PatronReport report = take("Card,Group,Last name,Expires,Mail\nN0,Readers,Ash,,\n" + each.rows);
    EXPECT_THAT(report.faults.told(), ElementsAre(each.fault));
    EXPECT_THAT(cards(), IsEmpty()) << each.fault;
  }
  EXPECT_THAT(take("Card,Group\nN1,Readers\n").faults.told(),
              ElementsAre("headings: There is no column \"last name\"."));
  EXPECT_THROW(static_cast<void>(take("")), UserError);
  EXPECT_THROW(static_cast<void>(take(std::string("Card\0", 5))), UserError);
}

TEST_P(PatronImport, AFormulaComesBackAsTheTextThatItIs) {
  EXPECT_EQ(take("card,group,last name,first name\nN1,Readers,=HYPERLINK(1),'@x\nN2,Readers,O'Neill,''-1\n")
                .newPatrons,
            2);
  const std::vector<std::string> taken = cards();
  EXPECT_THAT(taken, ElementsAre("N1 =HYPERLINK(1) @x  Readers Active", "N2 O'Neill '-1  Readers Active"));
  std::string table;
  library().database().read([&](Connection& db) { table = patronTable(db); });
  EXPECT_THAT(table, HasSubstr("'=HYPERLINK(1),'@x"));
  EXPECT_THAT(table, HasSubstr("O'Neill,''-1"));
  const PatronReport report = take(table);
  EXPECT_THAT(report.faults.told(), IsEmpty());
  EXPECT_EQ(report.sameRows, 9) << report.summary;
  EXPECT_THAT(cards(), taken);
}

}  // namespace
}  // namespace vantry::server
