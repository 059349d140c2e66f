#include "server/http/wire.h"

#include <gtest/gtest.h>

#include "server/requests/reply.h"

namespace vantry::server {
namespace {

TEST(Reply, LeavesOutWhatIsEmptyAndKeepsTheOrder) {
  EXPECT_EQ(Reply().json(), R"({"rc":0,"head":{},"records":[]})");
  Reply reply(128);
  reply.head("A", "1").head("B", "").head("C", std::int64_t{3});
  reply.record().set("X", "").set("Y", "2").set("Z", "3");
  reply.record();
  reply.record().set("X", "4");
  EXPECT_EQ(reply.json(),
            R"({"rc":128,"head":{"A":"1","C":"3"},"records":[{"Y":"2","Z":"3"},{},{"X":"4"}]})");
}

TEST(Wire, ReadsPairsInOrderAndRepeated) {
  const auto tags = readMessage(R"({"tags":[["LOC","1"],["LOC","2"],["HRS",""]]})");
  ASSERT_TRUE(tags);
  EXPECT_EQ(*tags, (std::vector<TagValue>{{"LOC", "1"}, {"LOC", "2"}, {"HRS", ""}}));
  EXPECT_EQ(readMessage(R"({"tags":[]})").value().size(), 0U);
}

TEST(Wire, RefusesEveryOtherShape) {
  for (const char* text :
       {"", "x", "null", "[]", "{}", R"({"tags":null})", R"({"tags":{}})", R"({"tags":["A"]})",
        R"({"tags":[["A"]]})", R"({"tags":[["A",1]]})", R"({"tags":[["A","1","2"]]})",
        R"({"tags":[["","1"]]})", R"({"tags":[],"more":1})", R"({"tags":[["A","1"]])",
        R"({"tags":[["A","\u0000"]]})", "{\"tags\":[[\"A\",\"\xFF\"]]}",
        R"({"tags":[["AVERYLONGTAGTHATNOBODYKNOWS","1"]]})"}) {
    EXPECT_EQ(readMessage(text), std::nullopt) << text;
  }
  EXPECT_EQ(readMessage(std::string(500'000, '[')), std::nullopt) << "deep nesting";
}

}  // namespace
}  // namespace vantry::server
