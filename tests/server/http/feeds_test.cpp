// Feeds over the wire, as programs for calendars read them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/setup/feed_administration.h"
#include "server/store/query.h"
#include "server/store/settings.h"
#include "support/server_case.h"
#include "support/server_raw_line.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FeedsTest : public ServerOnEachDatabase {
 protected:
  void SetUp() override {
    ServerOnEachDatabase::SetUp();
    if (IsSkipped()) return;
    sql("insert into libraries (id, name) values (2, 'Other Library')");
    sql("insert into locations (id, library_id, name) values (9, 2, 'Other Desk')");
    sql("insert into room_types (id, name) values (1, 'Hall')");
    sql("insert into rooms (id, location_id, room_type_id, number, name, created_at) values (1, 1, 1, '101', "
        "'Blue Hall', 0)");
    sql("insert into equipment_types (id, name) values (1, 'Television')");
    sql("insert into titles (id, title, search_title) values (1, 'Bees \xF0\x9F\x90\x9D; a film', 'bees')");
    Database(database).write([](Connection& db) { setSetting(db, "time_zone", "Europe/Berlin"); });
  }

  AddedFeed add(const FeedWish& wish) {
    AddedFeed added;
    Database(database).write([&](Connection& db) { added = addFeed(db, wish, now); });
    return added;
  }

  static std::string pathOf(const AddedFeed& feed) { return "/v1/feeds/" + feed.secret + ".ics"; }

  /// The whole answer, head and body.
  std::string get(const std::string& path, const std::string& headers = {},
                  const std::string& method = "GET") {
    return test::exchange(
        server->port(),
        method + " " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n" + headers + "\r\n");
  }
  std::string get(const AddedFeed& feed) { return get(pathOf(feed)); }
};
INSTANTIATE_TEST_SUITE_P(Databases, FeedsTest, eachDatabase, databaseName);

std::string lineOf(const std::string& answer, const std::string& name) {
  const std::size_t at = answer.find("\r\n" + name) + 2;
  return answer.substr(at, answer.find("\r\n", at) - at);
}

std::string uid(std::int64_t booking) {
  return "\r\nUID:" + std::to_string(booking) + "@";
}

TEST_P(FeedsTest, TellsTheBookingsOfADeskWithTheirThings) {
  const auto id = addBooking("2026-11-25 09:00:00", "2026-11-25 10:30:00",
                             {{"item_count", "1"}, {"equipment_count", "1"}, {"pickup_location_id", "2"}});
  sql("insert into booking_items (booking_id, place, title_id) values (" + std::to_string(id) + ", 1, 1)");
  sql("insert into booking_equipment (booking_id, place, equipment_type_id) values (" + std::to_string(id) +
      ", 1, 1)");
  const std::string answer = get(add({.desk = "Main"}));
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200"));
  EXPECT_THAT(answer, HasSubstr("\r\nContent-Type: text/calendar; charset=utf-8\r\n"));
  EXPECT_THAT(answer, HasSubstr("\r\nCache-Control: private, no-cache\r\n"));
  EXPECT_THAT(answer, HasSubstr("\r\nLast-Modified: Mon, 23 Nov 2026 23:00:00 GMT\r\n"));
  EXPECT_THAT(answer, HasSubstr("DTSTART;TZID=Europe/Berlin:20261125T090000\r\n"));
  EXPECT_THAT(answer, HasSubstr("SUMMARY:Pick-Up 000000" + std::to_string(id) + "\r\nLOCATION:Branch\r\n"));
  EXPECT_THAT(answer, HasSubstr("DESCRIPTION:Television\\nBees \xF0\x9F\x90\x9D\\; a film\r\n"));
}

TEST_P(FeedsTest, HasTheBookingsOfItsSubjectThatTookPlaceOrWill) {
  sql("update patrons set withheld = 0");
  const auto mine = addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00", {{"patron_group_id", "1"}});
  const auto hall =
      addBooking("2026-11-25 11:00:00", "2026-11-25 12:00:00", {{"booking_type", "1"}, {"room_id", "1"}});
  const auto branch =
      addBooking("2026-11-26 09:00:00", "2026-11-26 10:00:00",
                 {{"location_id", "2"}, {"patron_group_id", "1"}, {"room_id", "1"}, {"status", "1"}});
  const auto theirs = addBooking("2026-11-27 09:00:00", "2026-11-27 10:00:00",
                                 {{"location_id", "9"}, {"patron_group_id", "1"}, {"room_id", "1"}});
  for (const char* status : {"2", "3", "4"})
    addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00",
               {{"status", status}, {"patron_group_id", "1"}, {"room_id", "1"}});
  addBooking("2026-11-22 23:59:00", "2026-11-24 10:00:00", {{"patron_group_id", "1"}, {"room_id", "1"}});
  addBooking("2026-12-02 00:00:00", "2026-12-02 10:00:00", {{"patron_group_id", "1"}, {"room_id", "1"}});
  struct Case {
    FeedWish wish;
    std::vector<std::int64_t> told;
  };
  const Case cases[] = {
      {{.desk = "Main"}, {mine, hall}},
      {{.room = "Main/101"}, {hall, branch}},
      {{.group = "Students", .library = "City Library"}, {mine, branch}},
      {{.group = "Students", .library = "Other Library"}, {theirs}},
  };
  for (Case each : cases) {
    each.wish.daysBack = 1;
    each.wish.daysAhead = 7;
    const std::string answer = get(add(each.wish));
    std::vector<std::int64_t> told;
    for (std::int64_t id = mine; id < mine + 9; ++id) {
      if (answer.find(uid(id)) != std::string::npos) told.push_back(id);
    }
    EXPECT_EQ(told, each.told) << each.wish.desk << each.wish.room << each.wish.group << each.wish.library;
  }
}

TEST_P(FeedsTest, NamesNobodyWhoIsNotToBeNamed) {
  addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00");
  addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00", {{"patron_id", "2"}});
  addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00", {{"administrative", "1"}});
  EXPECT_THAT(get(add({.desk = "Main"})), Not(HasSubstr("Holm")));
  const std::string named = get(add({.desk = "Main", .showsNames = true}));
  EXPECT_THAT(named, HasSubstr("SUMMARY:Pick-Up 0000001: Holm\\, Nora B.\r\n"));
  EXPECT_THAT(named,
              AllOf(HasSubstr("SUMMARY:Pick-Up 0000002\r\n"), HasSubstr("SUMMARY:Pick-Up 0000003\r\n")))
      << "a withheld patron, also while the booking is live, and a booking of nobody";
}

TEST_P(FeedsTest, IsSentAgainOnlyWhenItHasChanged) {
  const auto id = addBooking("2026-11-25 09:00:00", "2026-11-25 10:00:00");
  const AddedFeed feed = add({.desk = "Main"});
  const std::string first = get(feed);
  const std::string version = lineOf(first, "ETag: ").substr(6);
  EXPECT_THAT(lineOf(first, "SEQUENCE"), "SEQUENCE:0");
  const std::string headOnly = get(pathOf(feed), {}, "HEAD");
  EXPECT_THAT(headOnly, AllOf(StartsWith("HTTP/1.1 200"), HasSubstr(version), Not(HasSubstr("VCALENDAR"))));
  for (const std::string& known : {version, "W/" + version, "\"x\", " + version, std::string("*")}) {
    const std::string same = get(pathOf(feed), "If-None-Match: " + known + "\r\n");
    EXPECT_THAT(same,
                AllOf(StartsWith("HTTP/1.1 304"), HasSubstr(version), Not(HasSubstr("Content-Length"))));
    EXPECT_THAT(same, testing::EndsWith("\r\n\r\n"));
  }
  sql("update bookings set ends_at = ends_at + 60, updated_at = 7 where id = " + std::to_string(id));
  const std::string changed = get(pathOf(feed), "If-None-Match: " + version + "\r\n");
  EXPECT_THAT(changed, StartsWith("HTTP/1.1 200"));
  EXPECT_EQ(lineOf(changed, "SEQUENCE"), "SEQUENCE:7");
  EXPECT_EQ(lineOf(changed, "UID"), lineOf(first, "UID"));
  EXPECT_NE(lineOf(changed, "ETag"), lineOf(first, "ETag"));
}

TEST_P(FeedsTest, IsWorthNothingOnceItIsRevokedAndGuessesAreSlowedDown) {
  const AddedFeed kept = add({.desk = "Main"});
  const AddedFeed revoked = add({.desk = "Branch"});
  EXPECT_EQ(value("select count(*) from feeds where secret = '" + kept.secret + "'"), "0") << "only a hash";
  Database(database).write([&](Connection& db) { revokeFeed(db, revoked.id, now); });
  EXPECT_THAT(get(revoked), StartsWith("HTTP/1.1 404"));
  EXPECT_EQ(value("select detail from audit where action = 'feed revoked'"), "Branch");
  EXPECT_EQ(value("select detail from audit where action = 'feed refused'"), "127.0.0.1");
  EXPECT_THAT(get("/v1/feeds/" + kept.secret + ".txt"), StartsWith("HTTP/1.1 404"));
  EXPECT_THAT(get("/v1/feeds/" + kept.secret.substr(1) + ".ics"), StartsWith("HTTP/1.1 404"));
  EXPECT_EQ(value("select count(*) from login_failures"), "1") << "what is no address is no guess";
  EXPECT_THAT(get(pathOf(kept), {}, "POST"), Not(StartsWith("HTTP/1.1 200")));
  for (int guess = 1; guess < 60; ++guess) get(revoked);
  EXPECT_THAT(get(revoked), AllOf(StartsWith("HTTP/1.1 429"), HasSubstr("\r\nRetry-After: ")));
  EXPECT_THAT(get(kept), StartsWith("HTTP/1.1 200")) << "who knows an address waits for nobody who guesses";
  EXPECT_EQ(stranger()->login("all", "password-1").status, 200) << "the desk behind that address logs on";
  now += 5 * minute;
  EXPECT_THAT(get(revoked), StartsWith("HTTP/1.1 404"));
  const std::string figures = stranger()->get("/metrics").body;
  EXPECT_THAT(figures, AllOf(HasSubstr("code=\"feeds\""), Not(HasSubstr(kept.secret))));
}

}  // namespace
}  // namespace vantry::server
