#include "platform/printer.h"

#include <gmock/gmock.h>

namespace vantry {
namespace {

using testing::ElementsAre;

TEST(TableText, CellsKeepTheSignsThatSeparateCells) {
  const std::string row = tableCell("War; Peace") + '|' + tableCell("a|b\\") + '|' + tableCell("") + ';';
  EXPECT_THAT(tableRows(row), ElementsAre(ElementsAre("War; Peace", "a|b\\", "")));
  EXPECT_THAT(tableRows("1500|2000;3|;"), ElementsAre(ElementsAre("1500", "2000"), ElementsAre("3", "")));
  EXPECT_THAT(tableRows(";"), ElementsAre(ElementsAre("")));
  EXPECT_TRUE(tableRows("").empty());
}

}  // namespace
}  // namespace vantry
