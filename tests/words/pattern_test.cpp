#include "words/pattern.h"

#include <stdexcept>

#include "words/messages.h"

namespace vantry {
namespace {

struct PatternCase {
  std::string_view pattern;
  std::string_view message;
  std::string_view verdict;
};

const PatternCase kPatterns[] = {
    {"", "", "sound"},
    {"", "A", "Unexpected A"},
    {"A B", "A B", "sound"},
    {"A B", "", "Missing A"},
    {"A B", "A", "Missing B"},
    {"A B", "B", "Missing A"},
    {"A B", "B A", "Unexpected B"},
    {"A B", "A B A", "Unexpected A"},
    {"A B", "A A B", "Unexpected A"},
    {"A B", "A X", "Unexpected X"},
    {"A B", "X A B", "Unexpected X"},

    {"A? B", "B", "sound"},
    {"A? B", "A B", "sound"},
    {"A? B", "A A B", "Unexpected A"},
    {"A? B", "A", "Missing B"},
    {"A B?", "A", "sound"},
    {"A B? C? D", "A C", "Missing D"},
    {"A B? C? D", "A C B D", "Unexpected B"},

    {"A* B", "A A A B", "sound"},
    {"A* B", "B", "sound"},
    {"A* B", "A A", "Missing B"},
    {"A+ B", "B", "Missing A"},
    {"A+ B", "A A B", "sound"},
    {"A+ B", "A B A", "Unexpected A"},
    {"A* A", "A A A", "sound"},
    {"A* A", "", "Missing A"},

    {"(A B)*", "", "sound"},
    {"(A B)*", "A B A B", "sound"},
    {"(A B)*", "A B A", "Missing B"},
    {"(A B)+ C", "A A B B C", "Unexpected A"},
    {"(A B?)* (C D)*", "A A B C D C D", "sound"},
    {"(A B?)* (C D)*", "A C D A", "Unexpected A"},
    {"(A B?)* (C D)*", "B", "Unexpected B"},

    {"(A | B)", "A", "sound"},
    {"(A | B)", "B", "sound"},
    {"(A | B)", "", "Missing A"},
    {"(A | B)", "A B", "Unexpected B"},
    {"A (B | C D | E)? F", "A F", "sound"},
    {"A (B | C D | E)? F", "A C D F", "sound"},
    {"A (B | C D | E)? F", "A E F", "sound"},
    {"A (B | C D | E)? F", "A C F", "Missing D"},
    {"A (B | C D | E)? F", "A B E F", "Unexpected E"},
    {"(A | A B) C", "A B C", "sound"},
    {"(A | A B) C", "A C", "sound"},
    {"(A | B (C | D)? | E)* F", "B D A E B F", "sound"},
    {"(A | B (C | D)? | E)* F", "C F", "Unexpected C"},
    {"((A?)* B?)*", "A B B A A", "sound"},
};

TEST(TagPattern, TellsSoundMessagesFromFaults) {
  for (const PatternCase& row : kPatterns) {
    RequestRow request{};
    request.sent = row.pattern;
    EXPECT_EQ(wordsFor(checkMessage(request, messageOf(row.message))), row.verdict)
        << "pattern " << row.pattern << ", message " << row.message;
  }
}

TEST(TagPattern, RefusesTextThatIsNoPattern) {
  for (const auto* text :
       {"(A", "A)", "(A | B", "A | B", "a", "?A", "A ?", "A**", "A:", "A:Nothing", "A,B"}) {
    EXPECT_THROW(TagPattern{text}, std::invalid_argument) << text;
  }
}

TEST(TagPattern, TakesTheFormOfATagFromTheDictionaryUnlessItNamesOne) {
  const TagPattern pattern("HBK:Flag MNTHS DATE");
  EXPECT_EQ(pattern.find("HBK")->form, TagForm::Flag);
  EXPECT_EQ(pattern.find("MNTHS")->form, TagForm::Count);
  EXPECT_EQ(pattern.find("DATE")->form, TagForm::Date);
  EXPECT_EQ(pattern.find("QD"), nullptr);
}

TEST(TagPattern, NeedsTimeInProportionToTheMessageHoweverTheRepetitionsNest) {
  const auto stepsPerTag = [](std::string_view pattern, std::string_view group, std::size_t times) {
    std::vector<TagValue> message;
    for (std::size_t i = 0; i < times; ++i) {
      for (const auto tag : wordsOf(group)) message.push_back({std::string(tag), ""});
    }
    const auto match = TagPattern(pattern).match(message);
    EXPECT_EQ(match.reached, message.size()) << pattern;
    return static_cast<double>(match.steps) / static_cast<double>(message.size());
  };
  for (const auto& [pattern, group] :
       {std::pair{"A* B?", "A"}, std::pair{"(A B? | A B C)*", "A B"}, std::pair{"((A*)* (A*)*)* X", "A"},
        std::pair{"(A | (A | (A | A)+)+)+ X", "A"}}) {
    const double steps = stepsPerTag(pattern, group, 20'000);
    EXPECT_LT(steps, 60) << pattern;
    EXPECT_LT(steps, 1.1 * stepsPerTag(pattern, group, 200)) << pattern;
  }
}

}  // namespace
}  // namespace vantry
