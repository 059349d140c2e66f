#include "support/scripted_server.h"

#include <gtest/gtest-spi.h>

#include "messaging/tagmessage.h"

// The double decides what the windows' tests find, so its own strictness is tested.

namespace vantry::test {
namespace {

DeliveryResult sendTo(ScriptedServer& server, std::string code, std::string_view tags) {
  return server.send({newRequestId(), std::move(code), pairsOf(tags)});
}

/// What the test framework would have been told by a script that is played and ends.
template <class Script>
std::string failuresOf(Script script) {
  testing::TestPartResultArray results;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
    ScriptedServer server;
    script(server);
  }
  std::string messages;
  for (int i = 0; i < results.size(); ++i) messages += results.GetTestPartResult(i).message();
  return messages;
}

TEST(ScriptedServer, FailsForWhatIsNotExpectedAndForWhatNeverCame) {
  EXPECT_EQ(failuresOf([](ScriptedServer& server) { sendTo(server, "DELBK", "BOOKID=7"); }),
            "Failed\ncame:     DELBK BOOKID=7\nexpected: nothing");
  EXPECT_EQ(failuresOf([](ScriptedServer& server) {
              server.expect("DELBK", "BOOKID=8");
              sendTo(server, "DELBK", "BOOKID=7");
            }),
            "Failed\ncame:     DELBK BOOKID=7\nexpected: DELBK BOOKID=8");
  EXPECT_EQ(
      failuresOf([](ScriptedServer& server) {
        server.expect("VALDELBK", "BOOKID=7");
        sendTo(server, "DELBK", "BOOKID=7");
      }),
      "Failed\ncame:     DELBK BOOKID=7\nexpected: VALDELBK BOOKID=7Failed\nnever came: VALDELBK BOOKID=7");
  EXPECT_EQ(failuresOf([](ScriptedServer& server) { (void)server.logon("desk", "secret"); }),
            "Failed\ncame:     log-on of desk with secret\nexpected: nothing");
}

TEST(ScriptedServer, HoldsRequestsAndRepliesAgainstTheTable) {
  EXPECT_THAT(failuresOf([](ScriptedServer& server) {
                server.expect("BOOKDAY", "DATE=2026-11-24");
                sendTo(server, "BOOKDAY", "DATE=2026-11-24");
              }),
              testing::HasSubstr("would refuse BOOKDAY DATE=2026-11-24: HBK is missing"));
  const auto reply = [](std::string_view block) {
    return failuresOf([block](ScriptedServer& server) { server.always("BOOKDAY").replies(block); });
  };
  EXPECT_EQ(reply("BOOKID=7 TITL=Atlas"), "Failed\nthe reply of BOOKDAY does not carry TITL");
  EXPECT_EQ(reply("BOOKID=7 STIME=nine"), "Failed\nthe reply of BOOKDAY would not send STIME=nine");
  EXPECT_EQ(reply("BKRES=0"), "Failed\nthe reply of BOOKDAY has no record without BOOKID");
  EXPECT_EQ(reply("BOOKID=7 STIME=2026-11-24 09:00:00"), "");
  EXPECT_EQ(failuresOf([](ScriptedServer& server) { server.always("BOKDAY"); }),
            "Failed\nthe protocol has no request BOKDAY");
}

TEST(ScriptedServer, TellsARepeatedRequestFromAFreshOne) {
  EXPECT_THAT(failuresOf([](ScriptedServer& server) {
                server.expect("DELBK", "BOOKID=7").losesReply();
                server.expectAgain();
                sendTo(server, "DELBK", "BOOKID=7");
                sendTo(server, "DELBK", "BOOKID=7");
              }),
              testing::HasSubstr("DELBK came again with another id"));
  EXPECT_THAT(failuresOf([](ScriptedServer& server) {
                server.expect("DELBK", "BOOKID=7");
                server.expect("DELBK", "BOOKID=7");
                const Request request{"1", "DELBK", pairsOf("BOOKID=7")};
                (void)server.send(request);
                (void)server.send(request);
              }),
              testing::HasSubstr("DELBK came with the id of another request"));
}

}  // namespace
}  // namespace vantry::test
