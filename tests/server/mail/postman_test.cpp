// Mail servers that fail, and several servers on one outbox.

#include <fstream>
#include <future>
#include <set>

#include <gtest/gtest.h>

#include "server/base/user_error.h"
#include "server/mail/mail_case.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

class PostmanTest : public MailCase {
 protected:
  std::string faults() { return value("select coalesce(max(fault), '') from outbox where state <> 1"); }
};
INSTANTIATE_TEST_SUITE_P(Databases, PostmanTest, eachDatabase, databaseName);

TEST(Delays, Grow) {
  std::vector<Moment> delays;
  for (int tries = 1; tries <= 6; ++tries) delays.push_back(delayAfter(tries) / minute);
  EXPECT_THAT(delays, testing::ElementsAre(1, 4, 16, 64, 240, 240));
  EXPECT_EQ(delayAfter(1'000'000), 4 * hour);
}

TEST(Settings, ThatMakeNoSenseAreToldInASentence) {
  const struct {
    const char* through;
    const char* user;
    const char* passwordFile;
    const char* authority;
  } cases[] = {{"smtp://host", "me", "", ""},
               {"smtp://host", "me", "/nowhere", ""},
               {"smtps://host", "", "", "/nowhere"},
               {"http://host", "", "", ""},
               {"/nowhere/sendmail", "", "", ""}};
  for (const auto& each : cases) {
    MailSettings settings;
    settings.through = each.through;
    settings.user = each.user;
    settings.passwordFile = each.passwordFile;
    settings.authority = each.authority;
    EXPECT_THROW((void)makeCarrier(settings), UserError) << each.through;
  }
}

TEST_P(PostmanTest, GivesUpWhatARecipientsServerRefuses) {
  mailbox.answer("RCPT TO:<ada@example.org>", "550 no such user");
  book(3, "10:00", "11:00");
  send("NEWBK", forHal(booking(times(4, "10:00", "11:00"), "LOC=1", 3, "")));
  EXPECT_EQ(sent(), "hal@example.org: Your booking 0000002\n") << "the next one is sent all the same";
  EXPECT_EQ(outbox(), "confirmed 1 given up");
  EXPECT_NE(faults().find("550"), std::string::npos) << faults();
}

TEST_P(PostmanTest, PutsOffWhatARecipientsServerDoesNotTakeYetAndSendsTheRest) {
  mailbox.answer("RCPT TO:<ada@example.org>", "451 greylisted");
  book(3, "10:00", "11:00");
  send("NEWBK", forHal(booking(times(4, "10:00", "11:00"), "LOC=1", 3, "")));
  EXPECT_EQ(sent(), "hal@example.org: Your booking 0000002\n");
  EXPECT_EQ(outbox(), "confirmed 1");
}

TEST_P(PostmanTest, GivesNothingUpToAServerThatTakesNobody) {
  for (const char* greeting : {"554 no service for you", "421 busy"}) {
    mailbox.answer("", greeting);
    book(3, "10:00", "11:00");
    later();
    EXPECT_FALSE(postman()->sendDue()) << greeting;
  }
  EXPECT_EQ(outbox(), "confirmed 1, confirmed 2");
}

TEST_P(PostmanTest, LooksAgainForWhatItsSettingsName) {
  MailSettings missing = settings();
  const test::TempFolder folder;
  missing.authority = folder.file("authority.pem");
  Postman keeper(library().database(), library().clock(), missing);
  book(3, "10:00", "11:00");
  later();
  EXPECT_THROW(keeper.sendDue(), MailUnavailable);
  EXPECT_EQ(keeper.figures().queued, 1);
  std::ofstream(missing.authority) << "";
  EXPECT_TRUE(keeper.sendDue());
}

TEST_P(PostmanTest, GivesUpAnAddressThatWouldBeAHeader) {
  book(3, "10:00", "11:00");
  execute("update patrons set email = 'ada@example.org\nBcc: all@example.org' where id = 1");
  EXPECT_EQ(sent(), "");
  EXPECT_EQ(outbox(), "confirmed 1 given up");
}

TEST_P(PostmanTest, TriesAgainLaterAndGivesUpAfterTwoDays) {
  mailbox.answer("MAIL FROM:<desk@library.example>", "451 come back later");
  book(10, "10:00", "11:00");
  book(11, "10:00", "11:00");
  const auto keeper = postman();
  library().setNow(2, 9, 5);
  EXPECT_FALSE(keeper->sendDue());
  EXPECT_EQ(value("select sum(tries) from outbox"), "1") << "the others wait for a server that works";
  EXPECT_FALSE(keeper->sendDue());
  EXPECT_TRUE(keeper->sendDue()) << "both wait now";
  library().setNow(2, 9, 6);
  EXPECT_FALSE(keeper->sendDue());
  EXPECT_EQ(value("select max(tries) from outbox"), "2");
  library().setNow(4, 9, 1);
  EXPECT_FALSE(keeper->sendDue());
  EXPECT_FALSE(keeper->sendDue());
  EXPECT_EQ(outbox(), "confirmed 1 given up, confirmed 2 given up");
  EXPECT_EQ(keeper->figures().failed, 2);
  mailbox.answer("MAIL FROM:<desk@library.example>", "250 well");
  library().database().write([&](Connection& db) { EXPECT_EQ(retryMail(db, 0, library().clock()()), 2); });
  EXPECT_TRUE(keeper->sendDue());
  EXPECT_EQ(keeper->figures().sent, 2);
  EXPECT_EQ(keeper->figures().queued, 0);
}

TEST_P(PostmanTest, SendsTheSameMailAfterACrashBeforeTheMark) {
  book(3, "10:00", "11:00");
  sent();
  execute("update outbox set state = 0, leased_until = queued_at + 300, sent_at = null, told = ''");
  EXPECT_TRUE(postman()->sendDue());
  ASSERT_EQ(mailbox.mails().size(), 1U) << "the lease of the one that crashed runs";
  library().setNow(2, 9, 10);
  EXPECT_TRUE(postman()->sendDue());
  ASSERT_EQ(mailbox.mails().size(), 2U);
  EXPECT_EQ(mailbox.mails()[0].header("Message-Id"), mailbox.mails()[1].header("Message-Id"));
  EXPECT_NE(mailbox.mails()[0].header("Message-Id"), "");
}

TEST_P(PostmanTest, IsOneOfSeveralThatSendEachMailOnce) {
  constexpr int count = 40;
  for (int each = 0; each < count; ++each) book(3, "10:00", "11:00");
  later();
  Database second(library().url());
  Postman other(second, library().clock(), settings());
  const auto here = postman();
  auto there = std::async(std::launch::async, [&] { return other.sendDue(); });
  EXPECT_TRUE(here->sendDue());
  EXPECT_TRUE(there.get());
  std::set<std::string> ids;
  for (const auto& mail : mailbox.mails()) ids.insert(mail.header("Message-Id"));
  EXPECT_EQ(ids.size(), std::size_t{count});
  EXPECT_EQ(mailbox.mails().size(), std::size_t{count});
  EXPECT_EQ(here->figures().sent + other.figures().sent, count);
}

TEST_P(PostmanTest, KeepsNoDeskWaitingForAMailServerThatIsSilent) {
  mailbox.fallSilent();
  book(3, "10:00", "11:00");
  later();
  const auto keeper = postman();
  keeper->start();
  while (value("select count(*) from outbox where leased_until > 0") == "0") std::this_thread::yield();
  EXPECT_EQ(book(4, "10:00", "11:00").rc, 0);
  keeper->stop();
  EXPECT_EQ(outbox(), "confirmed 1, confirmed 2");
}

}  // namespace
}  // namespace vantry::server
