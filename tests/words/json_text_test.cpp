#include "words/json_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "words/utf8.h"

namespace vantry {
namespace {

std::string jsonOf(std::string_view text) {
  std::string result;
  appendJsonText(result, text);
  return result;
}

TEST(JsonText, EscapesWhatJsonEscapesAndKeepsTheRest) {
  EXPECT_EQ(jsonOf(""), R"("")");
  EXPECT_EQ(jsonOf("plain"), R"("plain")");
  EXPECT_EQ(jsonOf("say \"hi\" \\ bye"), R"("say \"hi\" \\ bye")");
  EXPECT_EQ(jsonOf("a\r\n\tb\x01"), "\"a\\r\\n\\tb\\u0001\"");
  EXPECT_EQ(jsonOf(std::string_view("\0\x1f\x7f", 3)), "\"\\u0000\\u001f\x7f\"");
  EXPECT_EQ(jsonOf("Ekstr\xC3\xB6m \xE2\x82\xAC \xF0\x9F\x93\x9A"),
            "\"Ekstr\xC3\xB6m \xE2\x82\xAC \xF0\x9F\x93\x9A\"");
}

TEST(JsonText, PutsTheReplacementForBytesThatAreNoText) {
  const std::string mark = "\xEF\xBF\xBD";
  EXPECT_EQ(jsonOf("a\xFF"
                   "b"),
            "\"a" + mark + "b\"");
  EXPECT_EQ(jsonOf("\xC3"), "\"" + mark + "\"") << "cut off";
  EXPECT_EQ(jsonOf("\xC0\xAF"), "\"" + mark + mark + "\"") << "overlong";
  EXPECT_EQ(jsonOf("\xED\xA0\x80"), "\"" + mark + mark + mark + "\"") << "half a surrogate";
  EXPECT_EQ(jsonOf("\xF5\x80\x80\x80"), "\"" + mark + mark + mark + mark + "\"") << "beyond the last letter";
}

TEST(JsonText, WritesAnObjectOfTexts) {
  EXPECT_EQ(jsonObject({}), "{}");
  EXPECT_EQ(jsonObject({{"a", "1"}, {"b", "\""}}), R"({"a":"1","b":"\""})");
}

TEST(Utf8, TakesWhatItAppended) {
  for (const char32_t each : {U'a', U'\u00e9', U'\u20ac', U'\U0001f4da', U'\U0010ffff'}) {
    std::string text;
    appendCharacter(text, each);
    std::string_view rest = text;
    EXPECT_EQ(characterLength(rest), text.size());
    EXPECT_EQ(takeCharacter(rest), each);
    EXPECT_TRUE(rest.empty());
  }
  std::string_view broken = "\xE2\x82x";
  EXPECT_EQ(takeCharacter(broken), noCharacter);
  EXPECT_EQ(broken, "\x82x") << "one byte at a time";
}

}  // namespace
}  // namespace vantry
