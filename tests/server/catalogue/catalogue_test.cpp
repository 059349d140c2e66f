// A library's export becomes its catalogue, and titles are found in it.

#include "server/catalogue/catalogue_store.h"
#include "server/catalogue/marc_import.h"
#include "server/setup/administration.h"
#include "server/setup/marc_map_file.h"
#include "server/store/migrations.h"
#include "support/server_case.h"
#include "support/server_desk_library.h"
#include "support/server_marc_file.h"

namespace vantry::server {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr Moment now = 1'795'000'000;

const std::vector<MarcLine> bees{{"001", "b1"},
                                 {"100", "1 $aKeeper, Ann,$d1950-"},
                                 {"245", "14$aThe bees :$ba guide /$cAnn Keeper."},
                                 {"246", "3 $aHoneybees at work"},
                                 {"260", "  $aLeeds :$bHive Press,$cc1998."},
                                 {"300", "  $a1 film reel"},
                                 {"520", "  $aHow a hive lives through winter."},
                                 {"650", " 0$aBees$xDiseases$zWales"},
                                 {"852", "0 $bMain Desk$hSF 523$i.K4"},
                                 {"876", "  $pI100$t1"},
                                 {"876", "  $pI101$t2"}};
const std::vector<MarcLine> etudes{
    {"001", "b2"},         {"100", "1 $aDvořák, Élise"},  {"245", "02$aL'été : études"},
    {"650", " 0$aSummer"}, {"852", "1 $bNowhere$h780.9"}, {"876", "  $pI200"}};
const std::vector<MarcLine> holdingsOfEtudes{
    {"001", "h9"}, {"004", "b2"}, {"852", "1 $bBranch$h780.92$zAsk at the desk"}, {"876", "  $pI201"}};

class Catalogue : public OnEachDatabase {
 protected:
  void prepare() override {
    // The small library counts its keys itself; PostgreSQL must be told where to go on.
    if (library().database().dialect().kind != Dialect::Kind::Postgresql) return;
    for (const char* table : {"titles", "holdings", "items"})
      execute(std::string("alter table ") + table + " alter column id restart with 100");
  }
  ImportReport import(const std::string& content, const ImportOptions& options = {}) {
    writeFile(folder_.file("records"), content);
    return importMarc(library().database(), folder_.file("records"), options, now);
  }
  /// Titles found, as the window would show them.
  std::string found(int field, const std::string& text, const std::string& rest = {}) {
    const Got got = send("CATFIND", "SRCHTAG=" + std::to_string(field) + "; SRCHVAL=" + text +
                                        (rest.empty() ? "" : "; " + rest));
    return got.rc != 0 ? "rc " + std::to_string(got.rc) : got.all("TITL");
  }

 private:
  test::TempFolder folder_;
};

TEST_P(Catalogue, AnExportBecomesTitlesHoldingsAndItems) {
  const ImportReport report = import(exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x'));
  EXPECT_EQ(report.newTitles, 2);
  EXPECT_EQ(report.newHoldings, 2);
  EXPECT_EQ(report.newItems, 3);
  EXPECT_EQ(report.leftOut, 1);
  EXPECT_THAT(report.faults, ElementsAre(HasSubstr("Record 2, 001 b2: its holdings are at \"Nowhere\"")));
  EXPECT_EQ(report.bad, 0);
  const Got item = send("GBBIB", "IB=I101");
  EXPECT_EQ(item.first("TITL"), "The bees : a guide");
  EXPECT_EQ(item.first("MTY"), "Film") << "the record says what it is on";
  EXPECT_EQ(send("GMD", "MI=" + item.first("MI") + "; BI=" + item.first("BI")).first("CN"), "SF 523 .K4");
  EXPECT_EQ(value("select name from locations l join items i on i.location_id = l.id where barcode = 'I201'"),
            "Branch");
  EXPECT_EQ(value("select published from titles where control_number = 'b1'"), "1998");
}

TEST_P(Catalogue, TheSameFileAgainChangesNothing) {
  const std::string file = exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x');
  import(file, {.location = "Museum", .mediaType = "Slides"});
  const std::string counts =
      "select (select count(*) from titles) * 1000000 + (select count(*) from holdings) * 10000 + (select "
      "count(*) from items) * 100 + (select count(*) from marc_records)";
  const std::string before = value(counts);
  const std::string keys = value("select count(*) from catalogue_keys");
  const ImportReport again = import(file, {.location = "Museum", .mediaType = "Slides"});
  EXPECT_EQ(again.newTitles + again.newHoldings + again.newItems + again.changedTitles + again.changedItems,
            0);
  EXPECT_EQ(again.sameTitles, 2);
  EXPECT_EQ(again.sameItems, 4);
  EXPECT_EQ(value(counts), before);
  EXPECT_EQ(value("select count(*) from catalogue_keys"), keys);
}

TEST_P(Catalogue, AChangedRecordBringsItsTitleUpToDate) {
  import(exchanged(bees));
  std::vector<MarcLine> later = bees;
  later[2].second = "10$aWasps";
  later[8].second = "0 $bBranch$hSF 999";
  import(exchanged(later));
  EXPECT_EQ(found(1, "wasps"), "Wasps");
  EXPECT_EQ(found(1, "the bees?"), "");
  EXPECT_EQ(found(4, "sf 999"), "Wasps");
  EXPECT_EQ(value("select count(*) from items where barcode like 'I10%'"), "2") << "the items moved";
}

TEST_P(Catalogue, ANumberCountsTogetherWithWhoseItIs) {
  const std::vector<MarcLine> ours{{"001", "5"}, {"003", "DE-1"}, {"245", "00$aBees"}};
  const std::vector<MarcLine> theirs{{"001", "5"}, {"003", "FR-2"}, {"245", "00$aWasps"}};
  import(exchanged({{"001", "5"}, { "245", "00$aBees" }}));
  EXPECT_EQ(import(exchanged(ours)).changedTitles, 1) << "one of old without a source may be of any";
  EXPECT_EQ(import(exchanged(theirs)).newTitles, 1);
  EXPECT_EQ(import(exchanged(ours) + exchanged(theirs)).sameTitles, 2);
}

TEST_P(Catalogue, ATitleWithoutANumberIsKnownAgain) {
  const std::vector<MarcLine> first{{"100", "1 $aKeeper, Ann"}, {"245", "00$aBees"}, {"260", "  $c1998"}};
  std::vector<MarcLine> second = first;
  second.insert(second.begin() + 2, {"250", "  $a2nd ed."});
  EXPECT_EQ(import(exchanged(first) + exchanged(second)).newTitles, 2) << "editions differ";
  EXPECT_EQ(import(exchanged(first) + exchanged(second)).sameTitles, 2);
  execute("update titles set fingerprint = '', is_indexed = 0 where title = 'Bees'");
  EXPECT_EQ(import(exchanged(first)).sameTitles, 1) << "so it is with those of an older program";
}

TEST_P(Catalogue, ANumberThatWasGivenToQuiteAnotherTitleIsRefused) {
  import(exchanged(bees));
  const std::vector<MarcLine> other{{"001", "b1"}, {"100", "1 $aSmith, Bo"}, {"245", "00$aSteam engines"}};
  const ImportReport refused = import(exchanged(other));
  EXPECT_EQ(refused.bad, 1);
  EXPECT_FALSE(tookAnything(refused));
  EXPECT_THAT(refused.faults, ElementsAre(HasSubstr("001 b1: the library has quite another title")));
  EXPECT_EQ(found(1, "bees?"), "The bees : a guide");
  EXPECT_EQ(import(exchanged(other), {.replaceTitles = true}).changedTitles, 1);
  EXPECT_EQ(found(1, "steam engines"), "Steam engines");
}

TEST_P(Catalogue, ACheckTellsWhatAnImportDoesAndWritesNothing) {
  const std::string file =
      exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x') + exchanged(bees);
  const std::string rows =
      "select (select count(*) from titles) || '/' || (select count(*) from holdings) || '/' || "
      "(select count(*) from items) || '/' || (select count(*) from audit)";
  const auto counts = [](const ImportReport& report) {
    return std::vector<int>{report.newTitles, report.changedTitles, report.sameTitles, report.newHoldings,
                            report.newItems,  report.changedItems,  report.bad,        report.leftOut};
  };
  const std::string before = value(rows);
  const ImportReport checked = import(file, {.checkOnly = true});
  EXPECT_EQ(value(rows), before);
  EXPECT_THAT(checked.told[0],
              HasSubstr("Record 1, 001 b1: \"The bees : a guide\", a new title, 1 new place, 2 new items."));
  const ImportReport taken = import(file);
  EXPECT_EQ(counts(checked), counts(taken));
  EXPECT_EQ(taken.newTitles, 2);
  EXPECT_NE(value(rows), before);
  const ImportReport again = import(file, {.checkOnly = true});
  EXPECT_THAT(again.told, testing::IsEmpty());
}

TEST_P(Catalogue, ItemsThatTheFileLacksAreWithdrawnOnlyWhenAskedFor) {
  const std::string withdrawn = "select count(*) from items where status = 'withdrawn'";
  std::vector<MarcLine> fewer = bees;
  fewer.pop_back();
  import(exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x'));
  import(exchanged(fewer));
  EXPECT_EQ(value(withdrawn), "0");
  EXPECT_EQ(import(exchanged(fewer) + "00050", {.retireMissing = true}).retiredItems, 0)
      << "nobody knows what stood in the part that is cut off";
  EXPECT_EQ(import(exchanged(fewer), {.checkOnly = true, .retireMissing = true}).retiredItems, 2);
  EXPECT_EQ(value(withdrawn), "0");
  execute(
      "insert into bookings (id, location_id, booking_type, patron_id, starts_at, ends_at, created_at, "
      "updated_at) "
      "values (9001, 1, 3, 1, 100, 200, 0, 0)");
  execute(
      "insert into booking_items (booking_id, place, title_id, item_id) select 9001, 1, title_id, id from "
      "items where "
      "barcode = 'I101'");
  const ImportReport report = import(exchanged(fewer), {.retireMissing = true});
  EXPECT_EQ(report.retiredItems, 2);
  EXPECT_THAT(report.hints,
              ElementsAre("The item I101 of \"The bees : a guide\" is missing from the file, and it is "
                          "booked."));
  EXPECT_EQ(value("select count(*) from items where status = 'withdrawn' and barcode in ('I101', 'I201')"),
            "2");
  EXPECT_EQ(import(exchanged(bees)).changedItems, 1) << "what is back can be used again";
}

TEST_P(Catalogue, AMapTellsWhereItemsAreAndWhichRecordsAreWanted) {
  ImportOptions options;
  FileFaults faults;
  options.map = readMarcMap(R"({
    "practices": [{"items": ["949"], "barcode": "x"},
                  {"items": ["952"], "barcode": "p", "location": "cb", "call_number": "o", "copy": "t",
                   "status": "01", "media_type": "y"}],
    "locations": [{"code": "BR", "location": "Branch"}],
    "media_types": [{"code": "FI", "media_type": "Film"}],
    "withdrawn": ["1"],
    "records": [{"field": "LDR", "test": "contains", "text": "g", "place": 6},
                {"field": "998", "subfields": "a", "test": "has not"}]})",
                            faults);
  ASSERT_THAT(faults.told(), testing::IsEmpty());
  const std::vector<MarcLine> film{{"001", "f1"},
                                   {"245", "00$aStorms"},
                                   {"949", "  $aX"},
                                   {"952", "  $pS1$cbr$oQC 9$t2$yFI$00"},
                                   {"952", "  $pS2$bMain Desk$yFI$11"}};
  const ImportReport report =
      import(exchanged(film) + exchanged(bees, 'a') +
                 exchanged({{"001", "f2"}, {"245", "00$aNo"}, {"998", "  $a-"}}) +
                 exchanged({{"001", "h1"}, {"004", "f2"}, {"852", "0 $bBranch"}}, 'x'),
             options);
  EXPECT_EQ(report.newTitles, 1);
  EXPECT_EQ(report.passedOver, 3);
  EXPECT_EQ(
      value(
          "select barcode || l.name || m.name || copy || i.status || call_number from items i join locations "
          "l on l.id = i.location_id join media_types m on m.id = media_type_id join holdings h on "
          "h.id = holding_id where barcode = 'S1'"),
      "S1BranchFilm2QC 9");
  EXPECT_EQ(value("select status from items where barcode = 'S2'"), "1");
}

TEST_P(Catalogue, AFileWithoutItemsTellsWhichFieldsLookLikeThem) {
  std::string file;
  for (int number = 0; number < 3; ++number) {
    const std::string key = std::to_string(number);
    file += exchanged({{"001", key},
                       {"020", "  $a9783161484100"},
                       {"245", "00$aFilm " + key},
                       {"773", "0 $w12345678"},
                       {"952", "  $p3900123" + key + "$aA"},
                       {"952", "  $p4900123" + key}});
  }
  const ImportReport report = import(file);
  EXPECT_THAT(report.hints, ElementsAre(HasSubstr("The titles bring no items."),
                                        "  952 $p: 6 in 3 records, such as 39001230"));
}

TEST_P(Catalogue, WhatCannotBeTakenIsCountedAndTold) {
  std::vector<MarcLine> untitled{{"001", "b7"}, {"100", "1 $aNobody"}};
  std::vector<MarcLine> thief{
      {"001", "b8"}, {"245", "00$aThief"}, {"852", "0 $bBranch"}, {"876", "  $pI100"}};
  std::vector<MarcLine> borrower{
      {"001", "b9"}, {"245", "00$aBorrower"}, {"852", "0 $bBranch"}, {"876", "  $pE1"}, {"876", "  $pE1OLD"}};
  const std::string file = exchanged(bees) + exchanged(untitled) + exchanged(bees).substr(0, 50) + "\x1d" +
                           exchanged({{"001", "h1"}, {"004", "gone"}, {"852", "0 $bBranch"}}, 'x') +
                           exchanged(thief) + exchanged(borrower) +
                           exchanged({{"001", "a1"}, {"100", "1 $aHeading"}}, 'z');
  const ImportReport report = import(file);
  EXPECT_EQ(report.newTitles, 3);
  EXPECT_EQ(report.newItems, 3) << "an inactive barcode of a piece is free";
  EXPECT_EQ(report.bad, 4);
  EXPECT_EQ(report.leftOut, 2);
  EXPECT_THAT(report.faults,
              ElementsAre(HasSubstr("Record 3: its leader tells another length"),
                          HasSubstr("Record 2, 001 b7: it has no title"),
                          HasSubstr("Record 4, 001 h1: it describes holdings of a title \"gone\""),
                          HasSubstr("Record 5, 001 b8: the barcode I100 belongs"),
                          HasSubstr("Record 6, 001 b9: the barcode E1 belongs to equipment"),
                          HasSubstr("Record 7, 001 a1: it describes a heading")));
  EXPECT_THROW(import(file, {.location = "Moon"}), UserError);
}

TEST_P(Catalogue, TitlesAreFoundByAllThatTheyAreKnownBy) {
  import(exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x'));
  const std::string beesTitle = "The bees : a guide";
  const std::string etudesTitle = "L'été : études";
  EXPECT_EQ(found(1, "the bees a guide"), beesTitle);
  EXPECT_EQ(found(1, "BEES?"), beesTitle) << "the article may be left out";
  EXPECT_EQ(found(1, "bees"), beesTitle) << "and what follows the colon";
  EXPECT_EQ(found(1, "bee"), "") << "a text stands for itself without its mark";
  EXPECT_EQ(found(1, "honeybees?"), beesTitle);
  EXPECT_EQ(found(1, "l'ete etudes"), etudesTitle);
  EXPECT_EQ(found(1, "été?"), etudesTitle);
  EXPECT_EQ(found(2, "dvorak?"), etudesTitle);
  EXPECT_EQ(found(2, "keeper, ann"), beesTitle);
  EXPECT_EQ(found(3, "bees"), beesTitle);
  EXPECT_EQ(found(3, "bees diseases w?"), beesTitle);
  EXPECT_EQ(found(4, "sf 523?"), beesTitle);
  EXPECT_EQ(found(5, "winter hive"), beesTitle);
  EXPECT_EQ(found(5, "win? keep?"), beesTitle);
  EXPECT_EQ(found(5, "winter summer"), "") << "all words must be there";
  EXPECT_EQ(found(5, "desk etudes", "KWHO=Y"), etudesTitle);
  EXPECT_EQ(found(5, "desk etudes", "KWHO=N"), "") << "that word stands in the holdings only";
  EXPECT_EQ(found(5, "?"), "");
  EXPECT_EQ(found(9, "bees"), "rc -98");
  EXPECT_EQ(found(6, "bees"), "rc -98");
  EXPECT_EQ(found(1, "'; drop table titles; --"), "");
}

TEST_P(Catalogue, NoMoreAreToldThanAWindowCanShow) {
  std::string file;
  for (int number = 0; number < 600; ++number)
    file += exchanged(
        {{"001", "n" + std::to_string(number)}, {"245", "00$aSeries " + std::to_string(1000 + number)}});
  import(file);
  const Got byTitle = send("CATFIND", "SRCHTAG=1; SRCHVAL=series?");
  EXPECT_EQ(byTitle.head.at("SRCHCNT"), "501");
  EXPECT_EQ(byTitle.records.size(), 500U);
  EXPECT_EQ(byTitle.first("TITL"), "Series 1000");
  EXPECT_EQ(send("CATFIND", "SRCHTAG=5; SRCHVAL=series").head.at("SRCHCNT"), "501");
  EXPECT_EQ(send("CATFIND", "SRCHTAG=5; SRCHVAL=series 1599").all("TITL"), "Series 1599");
}

TEST_P(Catalogue, RecordsAreShownAsTheyCameOrMadeFromWhatIsKept) {
  import(exchanged(bees) + exchanged(etudes) + exchanged(holdingsOfEtudes, 'x'));
  const std::string beesId = value("select id from titles where control_number = 'b1'");
  const Got record = send("CATREC", "BI=" + beesId);
  EXPECT_EQ(record.rc, 0);
  EXPECT_EQ(record.all("FLDT"), "LDR,001,100,245,246,260,300,520,650,852,876,876");
  EXPECT_EQ(record.records[3].at("FLDI"), "14");
  EXPECT_EQ(record.records[3].at("FLDV"), marked("$aThe bees :$ba guide /$cAnn Keeper."));
  const std::string holdings = value("select id from holdings where control_number = 'h9'");
  EXPECT_EQ(send("CATREC", "MI=" + holdings).all("FLDT"), "LDR,001,004,852,876");
  const Got made = send("CATREC", "BI=1");
  EXPECT_EQ(made.records.back().at("FLDV"), marked("$aVolcanoes"));
  EXPECT_EQ(send("CATREC", "MI=1").all("FLDT"), "001,004,852,876,876");
  EXPECT_EQ(send("CATREC", "BI=999").rc, 2);
  EXPECT_EQ(send("CATREC", "MI=999").rc, 2);
}

TEST_P(Catalogue, TitlesFromBeforeTheSearchAreIndexedWhenTheServerStarts) {
  EXPECT_EQ(found(1, "volcanoes"), "");
  indexCatalogue(library().database());
  EXPECT_EQ(found(1, "volcanoes"), "Volcanoes");
  EXPECT_EQ(found(4, "qe 52?"), "Volcanoes") << "two holdings, one title";
  EXPECT_EQ(found(5, "m4", "KWHO=Y"), "Glaciers");
  execute("delete from titles where id = 2 and not exists (select 1 from booking_items where title_id = 2)");
  EXPECT_EQ(found(1, "glaciers"), "");
}

INSTANTIATE_TEST_SUITE_P(Databases, Catalogue, eachDatabase, databaseName);

}  // namespace
}  // namespace vantry::server
