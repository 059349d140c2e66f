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
  /// Each record as "title", each bad one as "!fault".
  std::vector<std::string> read(const std::string& content) {
    const std::string path = folder.file("records");
    writeFile(path, content);
    MarcReader reader(path);
    std::vector<std::string> lines;
    MarcRecord record;
    std::string fault;
    while (reader.next(record, fault))
      lines.push_back(fault.empty() ? titleFacts(record).title : "!" + fault);
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
  MarcRecord record;
  std::string fault;
  ASSERT_TRUE(reader.next(record, fault));
  ASSERT_EQ(fault, "");
  ASSERT_EQ(record.fields.size(), bees.size());
  EXPECT_EQ(record.fields[0], (MarcField{"001", "", "b1"}));
  EXPECT_EQ(record.fields[1], (MarcField{"100", "1 ",
                                         "\x1f"
                                         "aKeeper, Ann,\x1f"
                                         "d1950-"}));
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
  std::string wrongLength = exchanged(bees);
  wrongLength[4] = wrongLength[4] == '9' ? '1' : '9';
  EXPECT_THAT(read(wrongLength + good), ElementsAre("!its leader tells another length", "Wind."));
  EXPECT_THAT(read(good + exchanged(bees).substr(0, 60)), ElementsAre("Wind.", "!it is cut off"));
  EXPECT_THAT(read(std::string("00020n\x1d") + good), ElementsAre("!it is shorter than a leader", "Wind."));
  const std::vector<MarcLine> badBytes{{"245", "00$a\xff\xfe"}};
  EXPECT_THAT(read(exchanged(badBytes) + good),
              ElementsAre(testing::StartsWith("!it cannot be taken apart"), "Wind."));
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
  MarcRecord record{"01234ngm a2200000 i 4500",
                    {{"001", "", " 77 "},
                     {"008", "", "980203s1997    xxk"},
                     {"245", "10",
                      "\x1f"
                      "aStorms /\x1f"
                      "cby nobody."},
                     {"700", "1 ",
                      "\x1f"
                      "aGale, Hugh,"},
                     {"300", "  ",
                      "\x1f"
                      "a1 DVD (50 min.) :\x1f"
                      "bsd., col."}}};
  const TitleFacts facts = titleFacts(record);
  EXPECT_EQ(facts.controlNumber, "77");
  EXPECT_EQ(facts.title, "Storms");
  EXPECT_EQ(facts.author, "Gale, Hugh");
  EXPECT_EQ(facts.published, "1997");
  EXPECT_EQ(facts.description, "1 DVD (50 min.) : sd., col.");
}

TEST(MarcFacts, ItemsGoToThePlaceThatTheirLinkNamesElseToTheOneBefore) {
  MarcRecord record{"01234ngm a2200000 i 4500",
                    {{"852", "0 ",
                      "\x1f"
                      "81\x1f"
                      "bMain\x1f"
                      "hQE 5\x1f"
                      "i.B2"},
                     {"852", "1 ",
                      "\x1f"
                      "82\x1f"
                      "bBranch\x1f"
                      "h595.7\x1f"
                      "pX9"},
                     {"863", "  ",
                      "\x1f"
                      "81.1\x1f"
                      "av.2\x1f"
                      "i2004"},
                     {"876", "  ",
                      "\x1f"
                      "81.1\x1f"
                      "pA1\x1f"
                      "t2\x1f"
                      "jLost in 2020"},
                     {"876", "  ",
                      "\x1f"
                      "pB1\x1f"
                      "jCharged"}}};
  const std::vector<HoldingFacts> holdings = holdingsIn(record);
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
