#include <algorithm>
#include <set>

#include "words/pattern.h"
#include "words/requests.h"
#include "words/tags.h"

namespace vantry {
namespace {

using ::testing::IsEmpty;

using Words = std::set<std::string_view>;

Words setOf(std::string_view list) {
  Words tags;
  for (const auto word : wordsOf(list)) tags.insert(tagOf(word));
  return tags;
}

Words sentBy(const RequestRow& row) {
  Words sent;
  const TagPattern pattern(row.sent);
  for (const auto& use : pattern.uses()) sent.insert(use.tag);
  return sent;
}

/// What is wrong with the tags of a request, one line each.
std::vector<std::string> faultsOf(const RequestRow& row) {
  std::vector<std::string> faults;
  const auto unless = [&](bool good, std::string_view what, std::string_view tag) {
    if (!good) faults.push_back(std::string(row.code) + " " + std::string(what) + " " + std::string(tag));
  };
  for (const auto tag : sentBy(row)) unless(findTag(tag), "sends unknown", tag);
  for (const auto list : {row.head, row.records, row.walk}) {
    for (const auto tag : setOf(list)) unless(findTag(tag), "replies unknown", tag);
    unless(setOf(list).size() == wordsOf(list).size(), "repeats in", list);
  }
  for (const auto tag : wordsOf(row.walk))
    unless(setOf(row.records).contains(tag), "walks by no tag of a record:", tag);
  unless(row.records.empty() == row.walk.empty(), "has records or a walk, not both:", row.records);
  return faults;
}

TEST(RequestTable, UsesOnlyTagsOfTheDictionaryAndWalksOnlyByWhatRecordsCarry) {
  for (const auto& row : requestTable()) EXPECT_THAT(faultsOf(row), IsEmpty());
}

TEST(RequestTable, HoldsEachCodeOnceAndFindsIt) {
  for (const auto& row : requestTable()) {
    EXPECT_EQ(findRequest(row.code), &row) << row.code;
    EXPECT_TRUE(std::ranges::all_of(row.code, [](char c) { return c >= 'A' && c <= 'Z'; })) << row.code;
    EXPECT_FALSE(row.meaning.empty()) << row.code;
  }
  EXPECT_EQ(findRequest("NOSUCH"), nullptr);
  EXPECT_EQ(findRequest("bookday"), nullptr);
  EXPECT_EQ(findRequest(""), nullptr);
}

TEST(RequestTable, AsksOnlyForRightsThatLogOnHandsOut) {
  const Words known = setOf(findRequest("SLL")->head);
  EXPECT_EQ(known.size(), 37U);
  for (const auto& row : requestTable()) {
    for (const auto right : wordsOf(row.rights))
      EXPECT_TRUE(known.contains(right)) << row.code << " " << right;
  }
}

TEST(RequestTable, LetsNobodyWriteWithoutARight) {
  const Words viewing{"EQV", "EQMV", "RMV", "BKV", "PAV"};
  // A supervisor's login is checked by the request itself; a question that ADDREQP can be and the assignments
  // that GECN makes by the way are for those who only see, too.
  const Words excepted{"OPOV", "ADDREQP", "GECN"};
  for (const auto& row : requestTable()) {
    if (!row.writes || excepted.contains(row.code)) continue;
    EXPECT_FALSE(row.rights.empty()) << row.code;
    for (const auto right : wordsOf(row.rights))
      EXPECT_FALSE(viewing.contains(right)) << row.code << " " << right;
  }
}

TEST(RequestTable, WritesWhereTheCodeSaysSo) {
  const auto startsLike = [](std::string_view code, std::initializer_list<std::string_view> starts) {
    return std::ranges::any_of(starts, [&](std::string_view start) { return code.starts_with(start); });
  };
  for (const auto& row : requestTable()) {
    const bool changes =
        startsLike(row.code, {"NEW", "UPD", "REM", "ADD", "DEL", "AU"}) && row.code != "DELD";
    EXPECT_TRUE(row.writes || !changes) << row.code;
    EXPECT_FALSE(row.writes && startsLike(row.code, {"GET", "VAL", "VER"})) << row.code;
  }
}

TEST(TagTable, HoldsEachTagOnceAndFindsIt) {
  for (const auto& row : tagTable()) {
    EXPECT_EQ(findTag(row.tag), &row) << row.tag;
    EXPECT_FALSE(row.meaning.empty()) << row.tag;
  }
  EXPECT_EQ(findTag("NOSUCH"), nullptr);
  EXPECT_EQ(findTag("bookid"), nullptr);
}

TEST(TagTable, HoldsNoTagThatNoRequestUses) {
  // The name of a fault stands in any reply; the 24-hour times are words of the search window.
  Words used{"CANTREAD", "STIME2", "ETIME2"};
  for (const auto& row : requestTable()) {
    used.merge(sentBy(row));
    for (const auto list : {row.head, row.records}) used.merge(setOf(list));
  }
  for (const auto& row : tagTable()) EXPECT_TRUE(used.contains(row.tag)) << row.tag;
}

}  // namespace
}  // namespace vantry
