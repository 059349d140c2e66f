// Feeds and statistics by the commands of the real program.

#include <gmock/gmock.h>

#include "server/program/program_case.h"
#include "support/server_raw_line.h"

namespace vantry::server {
namespace {

using test::contentOf;
using test::Outcome;
using test::ProgramTest;
using test::Serving;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

class FeedProgram : public ProgramTest {
 protected:
  void SetUp() override {
    makeLibrary();
    ASSERT_EQ(run("group add Students").code, 0);
  }
};

TEST_F(FeedProgram, MakesAFeedWhoseAddressIsReadUntilItIsRevoked) {
  const Outcome added =
      run("feed add --desk Main --names --days-back 2 --days-ahead 9 --server https://b.example.org");
  EXPECT_EQ(added.code, 0);
  const std::string path = added.text.substr(added.text.find("/v1/feeds/"));
  EXPECT_THAT(added.text,
              AllOf(StartsWith("Feed 1 is ready."), HasSubstr("\nhttps://b.example.org/v1/feeds/")));
  EXPECT_THAT(run("feed list").text,
              MatchesRegex("1\tdesk\tMain\tCity Library\twith names\t2 days back, 9 ahead\t....-..-..\n"));
  Serving serving(database, folder.file("log"), {"--log", "debug"});
  const auto answer = [&] {
    return test::exchange(serving.port(), "GET " + path.substr(0, path.size() - 1) +
                                              " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
  };
  EXPECT_THAT(answer(), AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("BEGIN:VCALENDAR")));
  EXPECT_EQ(run("feed revoke 1").text, "Feed 1 is revoked: nobody can read it any more.\n");
  EXPECT_THAT(answer(), StartsWith("HTTP/1.1 404"));
  EXPECT_EQ(run("feed list").text, "");
  serving.end(SIGTERM);
  EXPECT_THAT(contentOf(folder.file("log")),
              AllOf(HasSubstr("feeds: 404"), testing::Not(HasSubstr(path.substr(10, 64)))));
  EXPECT_EQ(value("select action || ' ' || subject || ' ' || detail from audit where action = 'feed added'"),
            "feed added feed 1 Main, with names");
}

TEST_F(FeedProgram, TellsWhatIsWrong) {
  ASSERT_EQ(run("library add 'Other Library'").code, 0);
  struct Case {
    const char* arguments;
    const char* text;
  };
  const Case cases[] = {
      {"feed add --desk Moon", "There is no location \"Moon\"."},
      {"feed add --room Main/7", "There is no room \"Main/7\"."},
      {"feed add --group Alumni", "There is no patron group \"Alumni\"."},
      {"feed add --group Students", "Say with --library whose bookings of the group are meant."},
      {"feed add --group Students --library Moon", "There is no library \"Moon\"."},
      {"feed revoke 9", "There is no feed 9."},
      {"statistics --month November", "\"November\" is no month: write 2026-11."},
      {"statistics --month 2026-13", "\"2026-13\" is no month: write 2026-11."},
      {"statistics --month 2026-11 --location Moon", "There is no location named \"Moon\"."},
      {"statistics --month 2026-11 --csv /none/file", "\"/none/file\" cannot be written."},
  };
  for (const Case& each : cases) {
    EXPECT_THAT(run(each.arguments).endedWith(1), HasSubstr(each.text)) << each.arguments;
  }
  for (const char* arguments : {"feed add", "feed add --desk Main --group Students", "statistics",
                                "feed add --desk Main --days-back -1", "feed add --desk Main --library Moon"})
    EXPECT_NE(run(arguments).code, 0) << arguments;
  EXPECT_EQ(run("feed list").text, "");
}

TEST_F(FeedProgram, WritesTheStatisticsOfAMonth) {
  EXPECT_EQ(run("statistics --month 2026-11").text,
            "by,name,bookings,hours_out,late,unclaimed,cancelled,refused\r\n\"All\",\"\",0,0.0,0,0,0,\r\n"
            "\"Desk\",\"Main\",0,0.0,0,0,0,\r\n");
  const std::string written =
      run("statistics --month 2026-11 --csv " + folder.file("a.csv") + " --html " + folder.file("a.html"))
          .endedWith(0);
  EXPECT_THAT(contentOf(folder.file("a.csv")), StartsWith("by,name,"));
  EXPECT_THAT(contentOf(folder.file("a.html")),
              AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("Statistics of November 2026")));
}

}  // namespace
}  // namespace vantry::server
