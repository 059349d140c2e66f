// Files of records, sound and broken.

#include "server/catalogue/marc_reader.h"

#include "server/base/catalogue_text.h"
#include "server/catalogue/marc_facts.h"
#include "support/server_case.h"
#include "support/server_marc_file.h"

namespace vantry::server {
namespace {

using test::TempFolder;
using testing::ElementsAre;

const std::vector<MarcLine> bees{{"001", "b1"},
                                 {"100", "1 $aKeeper, Ann,$d1950-"},
                                 {"245", "14$aThe bees & flowers :$ba guide /$cAnn Keeper."},
                                 {"260", "  $aLeeds :$bHive Press,$cc1998."}};
const std::vector<MarcLine> wind{{"001", "b2"}, {"245", "00$aWind."}};

class MarcFiles : public testing::Test {
 protected:
  /// Each record as "title", each bad one as "!fault", each field that is left out as "-loss".
  std::vector<std::string> read(const std::string& content, const std::string& encoding = {}) {
    const std::string path = folder.file("records");
    writeFile(path, content);
    MarcReader reader(path, encoding);
    std::vector<std::string> lines;
    MarcReading reading;
    while (reader.next(reading)) {
      lines.push_back(reading.fault.empty() ? titleFacts(reading.record).title : "!" + reading.fault);
      for (const std::string& loss : reading.losses) lines.push_back("-" + loss);
      if (reading.coding != MarcCoding::AsSaid)
        lines.emplace_back(reading.coding == MarcCoding::NotUtf8 ? "not UTF-8" : "is UTF-8");
    }
    return lines;
  }
  TempFolder folder;
};

TEST_F(MarcFiles, BothFormsGiveTheSameRecords) {
  const std::vector<std::string> titles{"The bees & flowers : a guide", "Wind."};
  EXPECT_EQ(read(exchanged(bees) + exchanged(wind)), titles);
  EXPECT_EQ(read("\xef\xbb\xbf" + marcXmlFile({marcXml(bees), marcXml(wind)})), titles);
  EXPECT_EQ(read(exchanged(bees) + "\r\n" + exchanged(wind) + "\n"), titles) << "some put lines between them";
}

TEST_F(MarcFiles, FieldsArriveWhole) {
  writeFile(folder.file("records"), exchanged(bees));
  MarcReader reader(folder.file("records"));
  MarcReading reading;
  ASSERT_TRUE(reader.next(reading));
  ASSERT_EQ(reading.fault, "");
  const MarcRecord& record = reading.record;
  ASSERT_EQ(record.fields.size(), bees.size());
  EXPECT_EQ(record.fields[0], (MarcField{"001", "", "b1"}));
  EXPECT_EQ(record.fields[1], (MarcField{"100", "1 ", marked("$aKeeper, Ann,$d1950-")}));
  EXPECT_EQ(fromStoredForm(storedForm(record)), record);
}

TEST_F(MarcFiles, OldCharactersBecomeUnicode) {
  const std::vector<MarcLine> cafe{{"245",
                                    "00$aCaf\xe2"
                                    "e \xb2l"}};
  ASSERT_THAT(read(exchanged(cafe, 'g', ' ')), testing::SizeIs(1));
  EXPECT_EQ(catalogueKey(read(exchanged(cafe, 'g', ' '))[0]), "cafe ol");
}

TEST_F(MarcFiles, BrokenRecordsAreToldAndTheOthersCome) {
  const std::string good = exchanged(wind);
  EXPECT_THAT(read(exchanged(bees).substr(0, 50) + "\x1d" + good),
              ElementsAre("!its leader tells another length", "Wind."));
  EXPECT_THAT(read(good + exchanged(bees).substr(0, 60)), ElementsAre("Wind.", "!it is cut off"));
  EXPECT_THAT(read(std::string("00020n\x1d") + good), ElementsAre("!it is shorter than a leader", "Wind."));
  EXPECT_THAT(read(good + std::string(3, '\0') + good), ElementsAre("Wind.", "Wind."));
}

TEST_F(MarcFiles, WhatIsWrongWithAFieldLosesThatFieldOnly) {
  const std::vector<MarcLine> lines{
      {"001", "b1"}, {"245", "00$aBees"}, {"500", "  $aNote"}, {"650", " 0$aHives"}};
  const std::string sound = exchanged(lines);
  const auto changed = [&](const std::string& what, char by, std::size_t behind = 0) {
    std::string bad = sound;
    bad.at(bad.find(what) + behind) = by;
    return bad;
  };
  struct Case {
    std::string file;
    std::vector<std::string> read;
  };
  const std::string note = "-its field 500 is left out, since it ";
  const std::vector<Case> cases{
      {changed("ote", '\xff'), {"Bees", note + "holds characters that are none", "not UTF-8"}},
      {changed("ote", '\0'), {"Bees", note + "holds control characters"}},
      {changed("ote", '\x1d'), {"Bees", note + "holds control characters"}},
      {changed("ote", '\x1e'), {"Bees", note + "is not where the directory says"}},
      {changed("5000009", '!'), {"Bees", "-a field whose tag is none is left out, since it cannot be named"}},
      {changed("5000009", '6', 6), {"Bees"}},
      {changed("\x1e", '!'), {"Bees"}},
      {"9" + sound.substr(1), {"Bees"}},
      {exchanged({{"245", "00$aBees"}, {"500", "Note"}}), {"Bees", note + "has no subfields"}},
      {marcXmlFile({marcXml({{"245", "00$aBees"}, {"500", "  $aN\xff"}})}),
       {"Bees", note + "holds characters that are none", "not UTF-8"}},
      {marcXmlFile({marcXml({{"245", "00$aB\xc3\xa9"}, {"500", "  $aN\x02"}})}),
       {"B\xc3\xa9", note + "holds characters that are none"}}};
  for (const Case& each : cases) EXPECT_EQ(read(each.file), each.read) << each.file;
}

TEST_F(MarcFiles, AnotherCodePageIsNoticedOrNamed) {
  const std::vector<MarcLine> latin{{"245", "00$aCaf\xe9"}};
  EXPECT_EQ(read(exchanged(latin)).back(), "not UTF-8");
  EXPECT_THAT(read(exchanged(latin), "ISO-8859-1"), ElementsAre("Caf\xc3\xa9"));
  EXPECT_THAT(read(exchanged({{"245", "00$aCaf\xc3\xa9"}}, 'g', ' ')),
              ElementsAre("Caf\xc3\xa9", "is UTF-8"));
  EXPECT_THAT(read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + marcXml(latin)),
              ElementsAre("Caf\xc3\xa9"));
  EXPECT_THROW(read(exchanged(latin), "KLINGON"), std::runtime_error);
}

TEST_F(MarcFiles, BrokenXmlIsReadAsFarAsItGoes) {
  const std::string file =
      marcXmlFile({marcXml(wind), "<record><leader>short</leader></record>", marcXml(bees)});
  EXPECT_THAT(read(file),
              ElementsAre("Wind.", "!its leader has not 24 characters", testing::StartsWith("The bees")));
  const std::vector<std::string> torn = read(file.substr(0, file.size() - 40));
  ASSERT_EQ(torn.size(), 3U);
  EXPECT_THAT(torn[2], testing::StartsWith("!the file is no sound XML"));
}

TEST_F(MarcFiles, AnyBytesEndInAFaultAndNeverInACrash) {
  const std::string whole = exchanged(bees) + exchanged(wind);
  for (std::size_t at = 1; at < whole.size(); ++at) {
    std::string torn = whole;
    torn[at] = static_cast<char>(torn[at] ^ 0x15);
    EXPECT_GE(read(torn).size(), 1U) << at;
    EXPECT_GE(read(whole.substr(0, at)).size(), 1U) << at;
  }
}

TEST_F(MarcFiles, OtherFilesAreRefused) {
  EXPECT_THROW(MarcReader(folder.file("missing")), std::runtime_error);
  EXPECT_THROW(read("Dear library,"), std::runtime_error);
  EXPECT_THROW(read(""), std::runtime_error);
}

TEST(MarcFacts, AreTakenFromTheFieldsThatHoldThem) {
  const MarcRecord record{"01234ngm a2200000 i 4500",
                          {{"001", "", " 77 "},
                           {"008", "", "980203s1997    xxk"},
                           {"245", "10", marked("$aStorms /$cby nobody.")},
                           {"700", "1 ", marked("$aGale, Hugh,")},
                           {"300", "  ", marked("$a1 DVD (50 min.) :$bsd., col.")}}};
  const TitleFacts facts = titleFacts(record);
  EXPECT_EQ(facts.controlNumber, "77");
  EXPECT_EQ(facts.title, "Storms");
  EXPECT_EQ(facts.author, "Gale, Hugh");
  EXPECT_EQ(facts.published, "1997");
  EXPECT_EQ(facts.description, "1 DVD (50 min.) : sd., col.");
}

TEST(MarcFacts, ItemsGoToThePlaceThatTheirLinkNamesElseToTheOneBefore) {
  const MarcRecord record{"01234ngm a2200000 i 4500",
                          {{"852", "0 ", marked("$81$bMain$hQE 5$i.B2")},
                           {"852", "1 ", marked("$82$bBranch$h595.7$pX9")},
                           {"863", "  ", marked("$81.1$av.2$i2004")},
                           {"876", "  ", marked("$81.1$pA1$t2$jLost in 2020")},
                           {"876", "  ", marked("$pB1$jCharged")}}};
  const std::vector<HoldingFacts> holdings = holdingsIn(record, usualMarcMap());
  ASSERT_EQ(holdings.size(), 2U);
  EXPECT_EQ(holdings[0].callNumber, "QE 5 .B2");
  EXPECT_EQ(holdings[0].callNumberKind, "MLC#");
  EXPECT_EQ(holdings[1].callNumberKind, "MDEW");
  ASSERT_EQ(holdings[0].items.size(), 1U);
  const ItemFacts& first = holdings[0].items[0];
  EXPECT_EQ(first.barcode, "A1");
  EXPECT_EQ(first.copy, 2);
  EXPECT_EQ(first.enumeration, "v.2");
  EXPECT_EQ(first.chronology, "2004");
  EXPECT_EQ(first.status, "Lost in 2020");
  ASSERT_EQ(holdings[1].items.size(), 1U) << "an 852 with items of its own needs no barcode";
  EXPECT_EQ(holdings[1].items[0].barcode, "B1");
  EXPECT_EQ(holdings[1].items[0].status, "");
}

}  // namespace
}  // namespace vantry::server
