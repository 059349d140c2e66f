#include "server/base/search_text.h"

#include <gtest/gtest.h>

namespace vantry::server {
namespace {

TEST(SearchText, QuestionMarkStandsForWhatFollows) {
  EXPECT_EQ(textRange(" P10 ").high, "P10");
  EXPECT_EQ(textRange("P10?").low, "P10");
  EXPECT_LT("P10zzz", textRange("P10?").high);
  EXPECT_GT("P11", textRange("P10?").high);
  using Ranges = std::vector<NumberRange>;
  EXPECT_EQ(numberRanges("0000012", 7), (Ranges{{12, 12}}));
  EXPECT_EQ(numberRanges("12", 7), (Ranges{{12, 12}}));
  EXPECT_EQ(numberRanges("00001?", 7), (Ranges{{100, 199}}));
  EXPECT_EQ(numberRanges("1234567?", 7)[1], (NumberRange{12345670, 12345679}));
  EXPECT_EQ(numberRanges("12?", 1).front(), (NumberRange{12, 12}));
  EXPECT_EQ(numberRanges("x'; drop table bookings", 7), Ranges{});
  EXPECT_EQ(numberRanges("", 7), Ranges{});
}

}  // namespace
}  // namespace vantry::server
