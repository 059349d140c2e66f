// What the requests answer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/base/moment.h"
#include "support/server_case.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::WireAnswer;
using testing::ElementsAre;

class RequestsTest : public ServerOnEachDatabase {
 protected:
  WireAnswer bookingsOf(const std::string& date, const std::string& history = "N") {
    return client()->send("BOOKDAY", {{"DATE", date}, {"HBK", history}});
  }
};
INSTANTIATE_TEST_SUITE_P(Databases, RequestsTest, eachDatabase, databaseName);

TEST_P(RequestsTest, RllTellsTheOperatorsOwnLocations) {
  auto client = this->client();
  const WireAnswer answer = client->send("RLL", {{"OI", "all"}});
  EXPECT_EQ(answer.text(), "0||LNA=Branch LOC=2 OLN=City Library|LNA=Main LOC=1 OLN=City Library");
  EXPECT_EQ(client->send("RLL", {{"OI", "ALL"}}).records.size(), 2U);
}

TEST_P(RequestsTest, SllTellsEveryRightAsYesOrNo) {
  const WireAnswer answer = client("view")->send("SLL", {{"LOC", "1"}});
  EXPECT_EQ(answer.head.size(), 37U) << "38 places, of which two are one right";
  EXPECT_EQ(answer.head.at("BKV"), "Y");
  EXPECT_EQ(answer.head.at("BKCAN"), "N");
  EXPECT_EQ(answer.head.at("EBM"), "N");
}

TEST_P(RequestsTest, GetopsCountsTheBookingsThatAreAssignedAndNotOver) {
  sql("insert into staff (patron_id, active) values (1, 1), (2, 0)");
  addBooking("2026-11-24 13:00:00", "2026-11-24 14:00:00",
             {{"setup_staff_id", "1"}, {"cleanup_staff_id", "1"}});
  addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00", {{"cleanup_staff_id", "1"}, {"status", "99"}});
  addBooking("2026-11-23 09:00:00", "2026-11-23 10:00:00", {{"setup_staff_id", "1"}, {"status", "1"}});
  EXPECT_EQ(client()->send("GETOPS", {}).text(),
            "0||BCNT=2 PATNM=Holm, Nora B. PID=1 PSTS=Y|BCNT=0 PATNM=Quiet, Quentin PID=2 PSTS=N");
}

TEST_P(RequestsTest, CategoriesCountWhatStandsUnderThem) {
  sql("insert into room_types (id, name, storage) values (1, 'Hall', 0), (2, 'Store', 1)");
  sql("insert into rooms (id, location_id, room_type_id, number, name, created_at) values (1, 1, 1, '1', "
      "'Hall 1', 0)");
  sql("insert into equipment_types (id, name, of_groups) values (1, 'TV', 0), (2, 'Sets', 1), (3, 'Kits', "
      "1)");
  sql("insert into equipment (equipment_type_id, number, location_id, created_at, is_group, room_id) values "
      "(1, 'TV1', 1, 0, 0, null), (1, 'TV2', 1, 0, 0, 1), (2, 'S1', 1, 0, 1, 1), (3, 'K1', 1, 0, 1, null)");
  auto client = this->client();
  EXPECT_EQ(client->send("GETECAT", {}).text(), "0||ETI=1 ETY=TV MIC=2");
  EXPECT_THAT(client->send("GETGCAT", {}).all("ETY"), ElementsAre("Kits", "Sets"));
  EXPECT_THAT(client->send("GETGCAT", {{"RID", "1"}}).all("ETY"), ElementsAre("Kits"));
  EXPECT_EQ(client->send("GETRCAT", {}).text(), "0||MIC=1 RST=N RTI=1 RTY=Hall|MIC=0 RST=Y RTI=2 RTY=Store");
}

TEST_P(RequestsTest, BookdayGivesTheRowsOfOneDayOfTheSessionsDesk) {
  sql("insert into room_types (id, name) values (1, 'Hall')");
  sql("insert into rooms (id, location_id, room_type_id, number, name, created_at) values (5, 1, 1, '5', "
      "'Hall 5', 0)");
  addBooking("2026-11-24 14:00:00", "2026-11-26 10:00:00",
             {{"booking_type", "2"}, {"room_id", "5"}, {"item_count", "2"}, {"equipment_count", "3"}});
  addBooking("2026-11-24 00:00:00", "2026-11-24 13:00:00",
             {{"pickup_location_id", "1"}, {"administrative", "1"}, {"patron_id", "null"}, {"status", "99"}});
  addBooking("2026-11-23 23:59:59", "2026-11-24 10:00:00");
  addBooking("2026-11-25 00:00:00", "2026-11-25 10:00:00");
  addBooking("2026-11-24 09:00:00", "2026-11-24 10:00:00", {{"location_id", "2"}});
  EXPECT_EQ(bookingsOf("2026-11-24").text(),
            "0||BKRES=99 BOOKID=2 BTYP=Pick-Up CNUM=0000002 DPL=Main ECNT=0 ETIME=2026-11-24 13:00:00 ICNT=0 "
            "STIME=2026-11-24 00:00:00|BKRES=0 BOOKID=1 BTYP=Delivery CNUM=0000001 DPL=Hall 5 ECNT=3 "
            "ETIME=2026-11-26 10:00:00 ICNT=2 REQ=Holm, Nora B. STIME=2026-11-24 14:00:00");
  EXPECT_EQ(client("all", 2)->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).records.size(), 1U);
}

TEST_P(RequestsTest, BookdayNamesAPatronWhoAskedForPrivacyOnlyWhileTheBookingRuns) {
  addBooking("2026-11-24 08:00:00", "2026-11-24 09:00:00", {{"patron_id", "2"}, {"status", "99"}});
  addBooking("2026-11-24 09:00:00", "2026-11-24 10:00:00", {{"patron_id", "2"}, {"status", "1"}});
  EXPECT_THAT(bookingsOf("2026-11-24").all("REQ"), ElementsAre("Quiet, Quentin", "-1"));
}

TEST_P(RequestsTest, HistoryComesWhenAskedForAndAllowed) {
  addBooking("2026-11-20 08:00:00", "2026-11-20 09:00:00", {{"status", "1"}});
  addBooking("2026-11-20 09:00:00", "2026-11-20 10:00:00", {{"status", "999"}});
  addBooking("2026-11-20 10:00:00", "2026-11-24 08:00:00", {{"status", "1"}});
  EXPECT_THAT(bookingsOf("2026-11-20", "N").all("BOOKID"), ElementsAre("2", "3"));
  EXPECT_THAT(bookingsOf("2026-11-20", "Y").all("BOOKID"), ElementsAre("1", "2", "3"));
  sql("delete from operator_rights where code = 'BKVHI'");
  EXPECT_THAT(bookingsOf("2026-11-20", "Y").all("BOOKID"), ElementsAre("2", "3"));
}

TEST_P(RequestsTest, BookmthCountsTheDaysOfAMonthAndOfAYear) {
  addBooking("2026-11-01 08:00:00", "2026-11-01 09:00:00", {{"status", "999"}});
  addBooking("2026-11-30 23:00:00", "2026-12-01 09:00:00");
  addBooking("2026-11-30 08:00:00", "2026-11-30 09:00:00");
  addBooking("2026-12-01 08:00:00", "2026-12-01 09:00:00");
  addBooking("2026-11-02 08:00:00", "2026-11-02 09:00:00", {{"status", "4"}});
  addBooking("2027-01-01 00:00:00", "2027-01-02 09:00:00");
  auto client = this->client();
  EXPECT_EQ(client->send("BOOKMTH", {{"DATE", "2026-11-01"}, {"HBK", "N"}, {"MNTHS", "Y"}}).text(),
            "0||BCNT=1 DAY=1|BCNT=2 DAY=30");
  EXPECT_THAT(client->send("BOOKMTH", {{"DATE", "2026-11-01"}, {"HBK", "Y"}, {"MNTHS", "Y"}}).all("DAY"),
              ElementsAre("1", "2", "30"));
  EXPECT_EQ(client->send("BOOKMTH", {{"DATE", "2026-06-01"}, {"HBK", "N"}, {"YRS", "Y"}}).text(),
            "0||BCNT=1 DAY=1 MNTHS=11|BCNT=2 DAY=30 MNTHS=11|BCNT=1 DAY=1 MNTHS=12");
}

TEST_P(RequestsTest, ACancelFreesTheThingsCountsForThePatronAndStampsTheBooking) {
  const std::int64_t id =
      addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00", {{"updated_at", std::to_string(now + 5)}});
  sql("insert into occupancy (kind, thing, starts_at, ends_at, booking_id) values (1, 1, 1, 2, 1)");
  auto client = this->client();
  EXPECT_EQ(client->send("VERCAN", {{"BOOKID", std::to_string(id)}}).rc, 0);
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", std::to_string(id)}}).rc, 0);
  EXPECT_EQ(value("select status from bookings"), "4");
  EXPECT_EQ(value("select updated_at from bookings"), std::to_string(now + 6))
      << "never back, even if the clock went";
  EXPECT_EQ(value("select updated_by from bookings"), "1");
  EXPECT_EQ(value("select count(*) from occupancy"), "0");
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1");
  EXPECT_EQ(value("select subject from audit where action = 'booking canceled'"), "0000001");
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", std::to_string(id)}}).rc, 7) << "once is enough";
  EXPECT_EQ(value("select cancelled_bookings from patrons where id = 1"), "1");
}

TEST_P(RequestsTest, WhatIsOutStopsCancelAndDeletionAlsoWithoutTheQuestionBefore) {
  addBooking("2026-11-24 08:00:00", "2026-11-24 19:00:00", {{"status", "99"}});
  addBooking("2026-11-24 08:00:00", "2026-11-24 19:00:00", {{"status", "99"}});
  sql("insert into equipment_types (id, name) values (1, 'TV')");
  sql("insert into titles (id, title, search_title) values (1, 'T', 't')");
  sql("insert into booking_equipment (booking_id, place, equipment_type_id, charged_at, returned_at) values "
      "(1, 1, 1, 5, null), (2, 1, 1, 5, 6)");
  sql("insert into booking_items (booking_id, place, title_id, charged_at) values (2, 1, 1, 5)");
  auto client = this->client();
  for (const char* code : {"VERCAN", "CANBK"}) {
    EXPECT_EQ(client->send(code, {{"BOOKID", "1"}}).rc, 114) << code;
    EXPECT_EQ(client->send(code, {{"BOOKID", "2"}}).rc, 115) << code;
  }
  for (const char* code : {"VALDELBK", "DELBK"}) {
    EXPECT_EQ(client->send(code, {{"BOOKID", "1"}}).rc, 106) << code;
    EXPECT_EQ(client->send(code, {{"BOOKID", "99"}}).rc, 0) << code << ": gone, as it was asked for";
  }
  EXPECT_EQ(value("select count(*) from bookings where status = 99"), "2");
}

TEST_P(RequestsTest, ADeletionTakesTheLinesAlongAndTheNumberNeverComesAgain) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  sql("insert into titles (id, title, search_title) values (1, 'T', 't')");
  sql("insert into booking_items (booking_id, place, title_id) values (1, 1, 1)");
  EXPECT_EQ(client()->send("DELBK", {{"BOOKID", "1"}}).rc, 0);
  EXPECT_EQ(value("select count(*) from bookings"), "0");
  EXPECT_EQ(value("select count(*) from booking_items"), "0");
  EXPECT_EQ(value("select subject from audit where action = 'booking deleted'"), "0000001");
  EXPECT_EQ(addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00"), 2);
}

TEST_P(RequestsTest, CalendarsTellTheirWeekAndTheirExceptions) {
  const std::string first = std::to_string(parseMoment("2026-01-01").value());
  const std::string last = std::to_string(parseMoment("2026-12-31").value());
  sql("insert into calendars (id, location_id, kind, description, starts_on, ends_on) values (1, 1, 0, "
      "'Old', 0, 86400), "
      "(2, 1, 0, 'New', " +
      first + ", " + last + "), (3, 2, 0, 'Elsewhere', 0, 1), (4, 1, 2, 'Pick', 0, 1)");
  sql("insert into calendar_days values (2, 0, 0, 0, 0), (2, 1, 1, 480, 1260), (2, 6, 1, 545, 1440)");
  sql("insert into calendar_exceptions values (2, " + last + ", 0, 0, 0), (2, " + first + ", 1, 600, 720)");
  auto client = this->client();
  EXPECT_EQ(client->send("GDELCA", {}).text(), "0||MCCAL=N MCDESC=Old MCID=1|MCCAL=Y MCDESC=New MCID=2");
  EXPECT_EQ(client->send("GROMCA", {}).records.size(), 0U);
  EXPECT_THAT(client->send("GPICCA", {}).all("MCDESC"), ElementsAre("Pick"));
  EXPECT_EQ(
      client->send("GCDTL", {{"MCID", "2"}}).text(),
      "0|ETIME=2026-12-31 00:00:00 FOP=N MCID=2 MHBE=0800 MHEE=2100 MOP=Y SAHBE=0905 SAHEE=2400 SASOP=Y "
      "SOP=N STIME=2026-01-01 00:00:00 THOP=N TOP=N WOP=N");
  EXPECT_NE(client->send("GCDTL", {{"MCID", "9"}}).rc, 0);
  EXPECT_EQ(client->send("GCALEX", {{"MCID", "2"}}).text(),
            "0||EXCLH=1200 EXDT=2026-01-01 EXOP=Y EXOPH=1000|EXDT=2026-12-31 EXOP=N");
}

}  // namespace
}  // namespace vantry::server
