#include "messaging/tagmessage.h"

#include <gtest/gtest.h>

#include "messaging/return_codes.h"
#include "platform/desktop.h"
#include "support/scripted_server.h"

namespace vantry::test {
namespace {

struct TagMessageTest : testing::Test {
  ScriptedServer server;
  TagMessage message{server};

  /// A reply as it stands, without the protocol's table.
  void receive(std::string_view block, int rc = 0) {
    server.expect("GETLOCS").replies(replyOf(block, rc));
    EXPECT_EQ(message.Send("GETLOCS"), rc);
  }
  std::string walk(std::string_view walked, std::string_view read) {
    std::string found;
    while (message.NextRecord(walked)) found += '[' + message.Get(read) + ']';
    return found;
  }
};

TEST_F(TagMessageTest, GetReadsTheHeadBeforeTheFirstRecordOutsideAWalk) {
  receive("head: BOOKID=7 RNM=Hall | RNM=Attic EID=1 | EID=2 ENO=TV2");
  EXPECT_EQ(message.Get("BOOKID"), "7");
  EXPECT_EQ(message.Get("RNM"), "Hall");
  EXPECT_EQ(message.Get("ENO"), "TV2") << "the first record that carries it";
  EXPECT_EQ(message.Get("CNUM"), "");
}

TEST_F(TagMessageTest, GetReadsOnlyTheCurrentRecordWithinAWalk) {
  receive("head: RNM=Hall | EID=1 RNM=Attic | EID=2");
  ASSERT_TRUE(message.NextRecord("EID"));
  EXPECT_EQ(message.Get("RNM"), "Attic");
  ASSERT_TRUE(message.NextRecord("EID"));
  EXPECT_EQ(message.Get("RNM"), "") << "neither the head's value nor that of the record before";
  ASSERT_FALSE(message.NextRecord("EID"));
  EXPECT_EQ(message.Get("RNM"), "Hall") << "after its end the head counts again";
  EXPECT_FALSE(message.NextRecord("EID")) << "an ended walk stays ended";
}

TEST_F(TagMessageTest, EachTagWalksItsOwnRecords) {
  receive("EID=1 ENO=TV1 | IM=5 TITL=Atlas | EID=2 ENO=TV2 | IM=6 TITL=Globe");
  EXPECT_EQ(message.Count("EID"), 2);
  EXPECT_EQ(message.Count("IM"), 2);
  ASSERT_TRUE(message.NextRecord("EID"));
  EXPECT_EQ(walk("IM", "TITL"), "[Atlas][Globe]");
  EXPECT_EQ(walk("EID", "ENO"), "[TV2]") << "the first walk goes on where it stood";
}

TEST_F(TagMessageTest, TheNextSendStartsAllWalksAnew) {
  receive("EID=1 | EID=2");
  EXPECT_TRUE(message.NextRecord("EID"));
  receive("EID=3 | EID=4");
  EXPECT_EQ(walk("EID", "EID"), "[3][4]");
}

TEST_F(TagMessageTest, RecordsMayCarryTheirTagsInAnyOrderAndTwice) {
  receive("EID=1 ENO=A ETY=x | ENO=B EID=2 | ETY=y ENO=C EID=3 | EID=4 ENO=D ENO=E");
  EXPECT_EQ(walk("EID", "ENO"), "[A][B][C][D]");
  EXPECT_EQ(walk("ETY", "EID"), "[1][3]");
}

TEST_F(TagMessageTest, AnInnerRequestLeavesTheWalkAroundItAsItWas) {
  receive("head: CNUM=9 | EID=1 | EID=2");
  ASSERT_TRUE(message.NextRecord("EID"));
  message.Add("LOC", "3");
  {
    const TagMessage::Inner inner(message);
    EXPECT_EQ(message.Get("EID"), "");
    server.expect("GETMYER").replies(replyOf("EID=7 | EID=8 | EID=9"));
    EXPECT_EQ(message.Send("GETMYER"), 0);
    EXPECT_TRUE(message.NextRecord("EID"));
    EXPECT_EQ(message.Get("EID"), "7");
  }
  EXPECT_EQ(message.Get("EID"), "1");
  EXPECT_EQ(walk("EID", "EID"), "[2]");
  EXPECT_EQ(message.Get("CNUM"), "9");
  server.expect("SLL", "LOC=3");
  EXPECT_EQ(message.Send("SLL"), 0) << "what was added before is still there";
}

struct LostConnection : TagMessageTest {
  std::vector<std::string> reasons;
  int retries = 0;

  LostConnection() {
    message.OnLost = [this](const std::string& reason) {
      reasons.push_back(reason);
      return retries-- > 0;
    };
  }
};

TEST_F(LostConnection, RetrySendsTheSameRequestUntilItIsAnswered) {
  retries = 2;
  server.expect("CANBK", "BOOKID=7").losesRequest("No line.");
  server.expectAgain().losesReply("No reply in time.");
  server.expectAgain().replies("");
  message.Add("BOOKID", "7");
  EXPECT_EQ(message.Send("CANBK"), 0);
  EXPECT_THAT(reasons, testing::ElementsAre("No line.", "No reply in time."));
}

/// Whoever sends, whatever it does with the return code: nothing after the lost request runs.
TEST_F(LostConnection, GivingUpEndsTheProgramInTheMiddleOfTheCommand) {
  int ends = 0;
  message.OnGivenUp = [&ends] { ++ends; };
  receive("EID=1");
  server.expect("CANBK", "BOOKID=7").losesReply();
  message.Add("BOOKID", "7");
  EXPECT_THROW((void)message.Send("CANBK"), ProgramEnd);
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(message.Get("EID"), "");
  server.expect("GETLOCS");
  EXPECT_EQ(message.Send("GETLOCS"), 0) << "nothing of the lost request is left";

  server.expect("GETLOCS").fails(codes::Lost);
  EXPECT_THROW((void)message.Send("GETLOCS"), ProgramEnd) << "the server may say so as well";
  EXPECT_EQ(ends, 2);
}

TEST_F(LostConnection, WithoutAnyoneToAskItIsGivenUp) {
  message.OnLost = nullptr;
  server.expect("GETLOCS").losesRequest();
  EXPECT_THROW((void)message.Send("GETLOCS"), ProgramEnd);
  server.expect("GETLOCS").endsSession();
  EXPECT_THROW((void)message.Send("GETLOCS"), ProgramEnd);
}

TEST_F(LostConnection, AnEndedSessionGoesOnAfterANewLogon) {
  int asked = 0;
  message.OnSessionEnded = [&] { return ++asked == 1; };
  server.expect("CANBK", "BOOKID=7").endsSession();
  server.expectAgain().replies("");
  message.Add("BOOKID", "7");
  EXPECT_EQ(message.Send("CANBK"), 0);

  server.expect("GETLOCS").endsSession();
  EXPECT_THROW((void)message.Send("GETLOCS"), ProgramEnd) << "the second time nobody logs on";
  EXPECT_TRUE(reasons.empty()) << "the line was never lost";
}

TEST_F(LostConnection, TheNewSessionIsToldItsLocationBeforeTheRequestComesAgain) {
  message.OnSessionEnded = [] { return true; };
  server.expect("SLL", "LOC=3");
  message.Add("LOC", "3");
  EXPECT_EQ(message.Send("SLL"), 0);

  server.expect("CANBK", "BOOKID=7").endsSession();
  server.expect("SLL", "LOC=3").replies("BKCAN=Y");
  server.expectAgain("CANBK").fails(2);
  message.Add("BOOKID", "7");
  EXPECT_EQ(message.Send("CANBK"), 2);
  EXPECT_EQ(message.Get("BKCAN"), "") << "the reply is that of the request";

  message.forgetSession();
  server.expect("GETLOCS").endsSession();
  server.expectAgain();
  EXPECT_EQ(message.Send("GETLOCS"), 0) << "another operator has no location yet";
}

TEST_F(LostConnection, ARequestThatIsNeverTakenSaysWhy) {
  server.expect("GETLOCS").rejects("Not found.");
  EXPECT_EQ(message.Send("GETLOCS"), codes::NotTaken);
  EXPECT_EQ(message.Refusal(), "Not found.");
  EXPECT_TRUE(reasons.empty());
  server.expect("GETLOCS");
  EXPECT_EQ(message.Send("GETLOCS"), 0);
  EXPECT_EQ(message.Refusal(), "");
}

TEST_F(LostConnection, ATimerThatSendsWhileTheQuestionStandsIsTurnedAway) {
  int inner = 0;
  message.OnLost = [&](const std::string&) {
    message.Add("DATE", "2026-11-24");
    inner = message.Send("BOOKDAY");
    return true;
  };
  server.expect("CANBK", "BOOKID=7").losesReply();
  server.expectAgain().replies("");
  message.Add("BOOKID", "7");
  EXPECT_EQ(message.Send("CANBK"), 0);
  EXPECT_EQ(inner, -99);
  server.expect("GETLOCS");
  EXPECT_EQ(message.Send("GETLOCS"), 0) << "the timer's tags went nowhere";
}

TEST(RequestId, IsAVersion4UuidAndNeverTheSame) {
  const std::string id = newRequestId();
  EXPECT_THAT(id,
              testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
  EXPECT_NE(newRequestId(), id);
}

}  // namespace
}  // namespace vantry::test
