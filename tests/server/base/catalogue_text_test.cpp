#include "server/base/catalogue_text.h"

#include <gtest/gtest.h>

namespace vantry::server {
namespace {

struct KeyRow {
  std::string_view text;
  std::string_view key;
};

TEST(CatalogueText, ComparesWithoutCaseAccentsAndPunctuation) {
  const KeyRow rows[] = {
      {"The  World--of: Beekeeping!", "the world of beekeeping"},
      {"L'Été d'Agnès", "lete dagnes"},
      {"Ærø, Straße & œuvre", "aero strasse oeuvre"},
      {"Łódź Ďábel Ő Žižek ſ", "lodz dabel o zizek s"},
      {"Cafe\u0301 \u2018now\u2019", "cafe now"},
      {"ΑΘΉΝΑ Москва Ёж", "αθηνα москва еж"},
      {"Nguyễn Đặng, Þór", "nguyen dang thor"},
      {"ﬁlm № Ⅳ ｶﾞ", "film no iv ガ"},
      {"שׁלום ✂ 📺1", "שׁלום ✂ 📺1"},
      {std::string_view("a\0b%_c", 6), "a b c"},
      {" \xff\xc3", ""},
      {"日本", "日本"},
  };
  for (const KeyRow& row : rows) EXPECT_EQ(catalogueKey(row.text), row.key) << row.text;
  EXPECT_LE(catalogueKey(std::string(5000, 'x')).size(), 240U);
  std::string umlauts;
  for (int i = 0; i < 400; ++i) umlauts += "日";
  EXPECT_EQ(catalogueKey(umlauts).size() % 3, 0U) << "no character is cut";
}

TEST(CatalogueText, AQuestionMarkStandsForAllThatBeginsSo) {
  EXPECT_EQ(catalogueRange("Bees?").low, "bees");
  EXPECT_GT(catalogueRange("Bees?").high, "bees and flowers");
  EXPECT_LT(catalogueRange("Bees?").high, "beet");
  EXPECT_EQ(catalogueRange("Bees ").high, "bees");
  EXPECT_EQ(catalogueRange("?!").high, "");
  const std::vector<TextRange> words = wordRanges("wind-power gener?  --");
  ASSERT_EQ(words.size(), 3U);
  EXPECT_EQ(words[0].high, "power");
  EXPECT_EQ(words[2].low, "gener");
  EXPECT_GT(words[2].high, "generators");
}

}  // namespace
}  // namespace vantry::server
