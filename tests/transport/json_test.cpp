#include <gtest/gtest.h>

#include "support/scripted_reply.h"
#include "transport/json_reader.h"

namespace vantry::test {
namespace {

std::optional<Reply> read(std::string body) {
  Reply reply;
  return ReplyReader().read(body, reply) ? std::optional(std::move(reply)) : std::nullopt;
}

constexpr std::string_view kSound =
    R"({"rc":0,"head":{"CNUM":"12"},"records":[{"BOOKID":"7","REQ":"M\u00fcller \"Max\""},{"BOOKID":"8"}]})";

TEST(JsonReader, FillsAReply) {
  const auto reply = read(std::string(kSound));
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->rc, 0);
  EXPECT_EQ(reply->value(-1, "CNUM").text, "12");
  ASSERT_EQ(reply->recordCount(), 2);
  EXPECT_EQ(reply->value(0, "REQ").text, "Müller \"Max\"");
  EXPECT_EQ(reply->value(1, "BOOKID").text, "8");
  EXPECT_FALSE(reply->value(1, "REQ").present);
}

TEST(JsonReader, TakesWhatALaterServerMaySay) {
  const auto reply = read(R"( {"note":{"a":[1,{}]},"records":[],"rc":-98,"more":null} )");
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->rc, -98);
  EXPECT_TRUE(read(R"({"rc":106})")) << "neither head nor records need to be there";
}

TEST(JsonReader, NoPartOfAReplyIsAReply) {
  for (std::size_t length = 0; length < kSound.size(); ++length)
    EXPECT_FALSE(read(std::string(kSound.substr(0, length)))) << kSound.substr(0, length);
}

TEST(JsonReader, NonsenseIsNoReply) {
  for (const char* body : {"",
                           " ",
                           "null",
                           "7",
                           "[]",
                           "{}",
                           "\"rc\"",
                           "<html><body>502</body></html>",
                           R"({"rc":"0"})",
                           R"({"rc":1.5})",
                           R"({"rc":99999})",
                           R"({"rc":0} {"rc":0})",
                           R"({"rc":0}x)",
                           R"({"rc":0,"head":[]})",
                           R"({"rc":0,"head":{"CNUM":12}})",
                           R"({"rc":0,"head":{"CNUM":null}})",
                           R"({"rc":0,"records":{}})",
                           R"({"rc":0,"records":["a"]})",
                           R"({"rc":0,"records":[{"BOOKID":7}]})",
                           R"({"rc":0,"records":[{"BOOKID":"7"}],"head":{"CNUM":"1"}})",
                           "{\"rc\":0,\"head\":{\"A\":\"\xFF\"}}",
                           R"({"rc":0,"head":{"A":"\x"}})",
                           R"({"rc":0,"head":{"A":"1",}})"})
    EXPECT_FALSE(read(body)) << body;
  EXPECT_FALSE(read(std::string(100'000, '[')));
  EXPECT_TRUE(read(R"({"rc":0,"more":)" + std::string(5'000, '[') + std::string(5'000, ']') + '}'))
      << "what is passed over may be as deep as it likes";
}

TEST(JsonReader, ReadsSingleValues) {
  std::string body = R"({"name":"vantry","protocol":1,"big":99999999999,"less":-1})";
  EXPECT_EQ(readText(body, "name"), "vantry");
  EXPECT_EQ(readText(body, "protocol"), "");
  EXPECT_EQ(readText(body, "missing"), "");
  EXPECT_EQ(readNumber(body, "protocol"), 1);
  for (const char* key : {"name", "missing", "big", "less"}) EXPECT_EQ(readNumber(body, key), -1) << key;
  std::string nonsense = "<html>";
  EXPECT_EQ(readText(nonsense, "error"), "");
}

}  // namespace
}  // namespace vantry::test
