// What is put into the outbox, and what of it is sent.

#include <stdexcept>

#include <gtest/gtest.h>

#include "server/jobs/housekeeping.h"
#include "server/mail/mail_case.h"

namespace vantry::server {
namespace {

class Outbox : public MailCase {};
INSTANTIATE_TEST_SUITE_P(Databases, Outbox, eachDatabase, databaseName);

std::string change(const std::string& newTimes, const std::string& rest = "UTIME=0; CTIME=0") {
  return "BOOKID=1; " + booking(newTimes, "LOC=1", 3, "", rest);
}

TEST_P(Outbox, IsFilledByTheRequestThatChangesABooking) {
  EXPECT_EQ(book(3, "10:00", "11:00").rc, 0);
  EXPECT_EQ(outbox(), "confirmed 1");
  EXPECT_EQ(send("UPDBK", change(times(3, "12:00", "13:00"))).rc, 0);
  EXPECT_EQ(outbox(), "confirmed 1") << "one mail tells both";
  EXPECT_EQ(send("CANBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(outbox(), "cancelled 1");
  EXPECT_EQ(send("CANBK", "BOOKID=1").rc, 7);
  EXPECT_EQ(sent(), "ada@example.org: Your booking 0000001 is canceled\n");
  EXPECT_EQ(outbox(), "");
}

TEST_P(Outbox, HasNothingForWhoMustNotBeWrittenTo) {
  const struct {
    const char* sql;
    int dayOfMarch;
  } cases[] = {{"update patrons set email = '' where id = 1", 3},
               {"update patrons set email = 'ada@example.org', withheld = 1 where id = 1", 3},
               {"update patrons set withheld = 0 where id = 1", 1}};
  for (const auto& each : cases) {
    execute(each.sql);
    EXPECT_EQ(book(each.dayOfMarch, "10:00", "11:00").rc, 0);
    EXPECT_EQ(outbox(), "") << each.sql;
  }
  RequestRunner silent(library().database(), library().clock(), HashCost::Quick);
  EXPECT_EQ(library().sendTo(silent, "NEWBK", booking(times(3, "10:00", "11:00"), "LOC=1", 3, "")).rc, 0);
  EXPECT_EQ(outbox(), "") << "nothing is switched on";
}

TEST_P(Outbox, LosesWhatIsUndone) {
  EXPECT_EQ(book(3, "10:00", "11:00", "EID=1").rc, 0);
  EXPECT_NE(book(3, "10:00", "11:00", "EID=1").rc, 0);
  EXPECT_EQ(outbox(), "confirmed 1");
  const std::vector<std::int64_t> one{1};
  EXPECT_THROW(library().database().write([&](Connection& db) {
    queueNews(db, MailKind::Cancelled, one, library().clock()());
    throw std::runtime_error("the power fails");
  }),
               std::runtime_error);
  EXPECT_EQ(outbox(), "confirmed 1");
}

TEST_P(Outbox, IsAskedAgainAtTheTimeOfSending) {
  book(3, "10:00", "11:00");
  book(4, "10:00", "11:00");
  book(5, "10:00", "11:00");
  execute("update bookings set status = 3 where id = 1");
  library().setNow(4, 12);
  EXPECT_EQ(sent(), "ada@example.org: Your booking 0000003\n") << "canceled by hand, over, and to come";
  EXPECT_EQ(outbox(), "");
  book(6, "10:00", "11:00");
  execute("update patrons set withheld = 1 where id = 1");
  EXPECT_EQ(sent(), "ada@example.org: Your booking 0000003\n");
}

TEST_P(Outbox, WaitsAMomentForFurtherChanges) {
  book(3, "10:00", "11:00");
  EXPECT_TRUE(postman()->sendDue());
  EXPECT_EQ(mailbox.subjects(), "");
  library().setNow(2, 9, 1);
  EXPECT_TRUE(postman()->sendDue());
  EXPECT_EQ(mailbox.subjects(), "ada@example.org: Your booking 0000001\n");
}

TEST_P(Outbox, TellsOnlyWhatThePatronCanSee) {
  book(3, "10:00", "11:00", "EID=1");
  const std::string confirmed = sent();
  EXPECT_NE(mailbox.mails().front().text.find(
                "\nDear Ada Bell,\n\nyour booking 0000001 is made.\n\n"
                "From: 2026-03-03 10:00\nUntil: 2026-03-03 11:00\nWhere: Main Desk\n\n"
                "- Television\n\nTown Library, Main Desk\n"),
            std::string::npos)
      << mailbox.mails().front().text;
  const std::string same = "BOOKID=1; " + booking(times(3, "10:00", "11:00"), "LOC=1", 3, "EID=1");
  EXPECT_EQ(send("UPDBK", same).rc, 0);
  EXPECT_EQ(outbox(), "changed 1");
  EXPECT_EQ(sent(), confirmed) << "a note of the desk, for example";
  EXPECT_EQ(send("UPDBK", change(times(3, "12:00", "13:00"))).rc, 0);
  EXPECT_EQ(sent(), confirmed + "ada@example.org: Your booking 0000001 has changed\n");
}

TEST_P(Outbox, TellsWhatChangedWhileAMailWasUnderWay) {
  book(3, "10:00", "11:00");
  later();
  std::vector<TakenMail> taken;
  const auto write = [&](const Database::Work& work) { library().database().write(work); };
  write([&](Connection& db) { taken = takeMails(db, library().clock()()); });
  ASSERT_EQ(taken.size(), 1U);
  send("UPDBK", change(times(3, "12:00", "13:00")));
  write([&](Connection& db) { markSent(db, taken.front(), "what it was", library().clock()()); });
  EXPECT_EQ(outbox(), "changed 1");
  EXPECT_EQ(sent(), "ada@example.org: Your booking 0000001 has changed\n");
}

TEST_P(Outbox, TellsOfABookingThatIsDeletedOrSomebodyElses) {
  book(3, "10:00", "11:00");
  const std::string confirmed = sent();
  EXPECT_EQ(send("UPDBK", forHal(change(times(3, "10:00", "11:00")))).rc, 0);
  const std::string moved = confirmed +
                            "ada@example.org: Your booking 0000001 is canceled\n"
                            "hal@example.org: Your booking 0000001\n";
  EXPECT_EQ(sent(), moved);
  EXPECT_EQ(send("DELBK", "BOOKID=1").rc, 0);
  EXPECT_EQ(sent(), moved + "hal@example.org: Your booking 0000001 is canceled\n");
  EXPECT_NE(mailbox.mails().back().text.find("from 2026-03-03 10:00 to 2026-03-03 11:00 is canceled"),
            std::string::npos);
  book(3, "10:00", "11:00");
  send("CANBK", "BOOKID=2");
  send("DELBK", "BOOKID=2");
  EXPECT_EQ(sent(), moved +
                        "hal@example.org: Your booking 0000001 is canceled\n"
                        "ada@example.org: Your booking 0000002 is canceled\n");
  EXPECT_EQ(value("select count(*) from outbox where kept <> ''"), "0");
}

TEST_P(Outbox, RemindsOnceOfEachEnd) {
  book(2, "10:00", "11:00");
  execute("delete from outbox");
  execute("update bookings set status = 99, ends_at = ends_at + 2 * 86400");
  const auto keep = [&](int dayOfMarch, int hours) {
    library().setNow(dayOfMarch, hours);
    for (int twice = 0; twice < 2; ++twice) keepHouse(library().database(), library().clock()(), all);
    return sent();
  };
  EXPECT_EQ(keep(2, 12), "");
  const std::string due = "ada@example.org: Please return tomorrow: booking 0000001\n";
  EXPECT_EQ(keep(3, 0), due);
  EXPECT_EQ(keep(3, 12), due);
  const std::string overdue = due + "ada@example.org: Overdue: booking 0000001\n";
  EXPECT_EQ(keep(4, 12), overdue);
  EXPECT_EQ(keep(5, 12), overdue);
  execute("update bookings set status = 99, ends_at = ends_at + 2 * 86400");
  EXPECT_EQ(keep(5, 13), overdue + due) << "another end";
}

TEST_P(Outbox, TellsTheBookingsOfOneSaveInOneLetter) {
  const std::string dates = times(3, "10:00", "11:00") + "; " + times(4, "10:00", "11:00") + "; " +
                            times(5, "10:00", "11:00") + "; " + times(6, "10:00", "11:00") + "; " +
                            times(7, "10:00", "11:00");
  ASSERT_EQ(send("NEWBK", booking(dates, "LOC=1", 3, "EID=1")).rc, 0);
  book(10, "10:00", "11:00");
  send("CANBK", "BOOKID=2");
  execute("update bookings set status = 3 where id = 4");
  execute("delete from booking_equipment where booking_id = 5");
  mailbox.answer("DATA", "451 come back later");
  EXPECT_EQ(sent(), "");
  EXPECT_EQ(outbox(), "confirmed 1, cancelled 2, confirmed 3, confirmed 5, confirmed 6")
      << "4 was canceled by hand";
  mailbox.answer("DATA", "354 go on");
  EXPECT_EQ(sent(),
            "ada@example.org: Your 2 bookings\nada@example.org: Your booking 0000002 is canceled\n"
            "ada@example.org: Your booking 0000005\nada@example.org: Your booking 0000006\n")
      << "5 has other things by now";
  EXPECT_NE(mailbox.mails().front().text.find("\nDear Ada Bell,\n\n2 bookings are made for you:\n\n"
                                              "- 0000001: 2026-03-03 10:00 to 2026-03-03 11:00\n"
                                              "- 0000003: 2026-03-05 10:00 to 2026-03-05 11:00\n\n"
                                              "Where: Main Desk\n\n- Television\n"),
            std::string::npos)
      << mailbox.mails().front().text;
  EXPECT_EQ(outbox(), "");
}

TEST_P(Outbox, ForgetsWhatWasSentLongAgo) {
  book(3, "10:00", "11:00");
  sent();
  keepHouse(library().database(), library().clock()() + 59 * day);
  EXPECT_EQ(value("select count(*) from outbox"), "1");
  keepHouse(library().database(), library().clock()() + 61 * day);
  EXPECT_EQ(value("select count(*) from outbox"), "0");
}

}  // namespace
}  // namespace vantry::server
