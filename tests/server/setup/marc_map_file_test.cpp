// The file that tells where the records of a catalogue have their items.

#include "server/setup/marc_map_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantry::server {
namespace {

using testing::ElementsAre;

constexpr const char* whole = R"({
  "practices": [{"items": ["952"], "barcode": "p", "location": "cb", "status": "01"},
                {"items": ["876"], "holdings": "852", "holdings_barcode": "p", "barcode": "p"}],
  "locations": [{"code": "BR", "location": "Branch"}],
  "media_types": [{"code": "FI", "media_type": "Film"}],
  "withdrawn": ["1"],
  "records": [{"field": "LDR", "test": "contains", "text": "g", "place": 6},
              {"field": "998", "subfields": "a", "test": "has not"}]
})";

TEST(MarcMapFile, IsReadAsItIsWritten) {
  FileFaults faults;
  const MarcMap map = readMarcMap(whole, faults);
  EXPECT_EQ(faults.count(), 0U);
  ASSERT_EQ(map.practices.size(), 2U);
  EXPECT_EQ(map.practices[0].status, "01");
  EXPECT_EQ(map.records[1].kind, RecordTest::Kind::HasNot);
  for (const MarcMap& each : {map, usualMarcMap()}) EXPECT_EQ(readMarcMap(marcMapText(each), faults), each);
  EXPECT_EQ(readMarcMap("{}", faults), usualMarcMap()) << "what it does not tell is as ever";
  EXPECT_EQ(faults.count(), 0U);
}

TEST(MarcMapFile, FaultsAreToldByTheirPlace) {
  FileFaults faults;
  (void)readMarcMap(
      R"({"practices": [{"items": ["95"], "holdings_barcode": "p"}, {"items": [], "barcode": "$p"}],
                  "locations": [{"code": "A", "location": "x"}, {"code": "a", "location": "y"}],
                  "records": [{"field": "998", "test": "contains"}, {"field": "998", "test": "is"}],
                  "colour": 1})",
      faults);
  EXPECT_THAT(
      faults.told(),
      ElementsAre("colour: there is no such member here, but \"practices\", \"locations\", \"media_types\", "
                  "\"withdrawn\", \"records\".",
                  "practices[0].items[0]: must be a tag of three characters, as \"852\".",
                  "practices[0].barcode: is missing.",
                  "practices[0].holdings_barcode: has no \"holdings\" that it could be in.",
                  "practices[1].barcode: must be codes of subfields in a row, as \"p\" or \"bca\".",
                  "practices[1].items: must name a field.", "locations[1].code: was named before.",
                  "records[0].text: is missing.",
                  "records[1].test: must be one of \"has\", \"has not\", \"contains\"."));
}

}  // namespace
}  // namespace vantry::server
