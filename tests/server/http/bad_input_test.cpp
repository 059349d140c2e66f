// Whatever comes in gets a clear answer, and the server goes on.

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/access/sessions.h"
#include "server/base/moment.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_files.h"
#include "support/server_messages.h"
#include "support/server_raw_line.h"
#include "words/pattern.h"

namespace vantry::server {
namespace {

using test::exchange;
using test::Record;
using test::ServerOnEachDatabase;
using test::WireAnswer;
using test::WireClient;

class BadInputTest : public ServerOnEachDatabase {
 protected:
  WireAnswer raw(WireClient& client, const std::string& code, const std::string& body) {
    Record headers = client.authorization();
    headers["Request-Id"] = "id-" + std::to_string(++requests_);
    return client.post("/v1/request/" + code, body, headers);
  }

 private:
  int requests_ = 0;
};
INSTANTIATE_TEST_SUITE_P(Databases, BadInputTest, eachDatabase, databaseName);

std::string nested(const std::string& open, int depth, const std::string& close) {
  std::string text;
  for (int each = 0; each < depth; ++each) text += open;
  for (int each = 0; each < depth; ++each) text += close;
  return text;
}

std::string manyTags(int count) {
  std::string body = R"({"tags":[["X","1"])";
  for (int tag = 1; tag < count; ++tag) body += R"(,["X","1"])";
  return body + "]}";
}

struct RawCase {
  const char* what;
  const char* code;
  std::string body;
  int status;
  int rc;
  const char* tag;  ///< in CANTREAD
};

TEST_P(BadInputTest, EachKindOfItHasItsAnswer) {
  const std::string good = R"({"tags":[["DATE","2026-11-24"],["HBK","N"]]})";
  const RawCase cases[] = {
      {"sound", "BOOKDAY", good, 200, 0, ""},
      {"no JSON", "BOOKDAY", "hello", 400, 0, ""},
      {"nothing", "BOOKDAY", "", 400, 0, ""},
      {"cut off", "BOOKDAY", good.substr(0, good.size() - 4), 400, 0, ""},
      {"a number for a text", "BOOKDAY", R"({"tags":[["DATE",20261124],["HBK","N"]]})", 400, 0, ""},
      {"an object for the list", "BOOKDAY", R"({"tags":{"DATE":"2026-11-24"}})", 400, 0, ""},
      {"no UTF-8", "BOOKDAY", "{\"tags\":[[\"DATE\",\"\xFF\"],[\"HBK\",\"N\"]]}", 400, 0, ""},
      {"a NUL", "BOOKDAY", R"({"tags":[["DATE","\u0000"],["HBK","N"]]})", 400, 0, ""},
      {"a tag missing", "BOOKDAY", R"({"tags":[["DATE","2026-11-24"]]})", 200, -98, "HBK"},
      {"all tags missing", "BOOKDAY", R"({"tags":[]})", 200, -98, "DATE"},
      {"a tag of another request", "BOOKDAY", R"({"tags":[["DATE","2026-11-24"],["HBK","N"],["EID","1"]]})",
       200, -98, "EID"},
      {"a tag of nobody", "GETLOCS", R"({"tags":[["WHAT","1"]]})", 200, -98, "WHAT"},
      {"no date", "BOOKDAY", R"({"tags":[["DATE","2026-02-30"],["HBK","N"]]})", 200, -98, "DATE"},
      {"no flag", "BOOKDAY", R"({"tags":[["DATE","2026-11-24"],["HBK","yes"]]})", 200, -98, "HBK"},
      {"no number", "CANBK", R"({"tags":[["BOOKID","one"]]})", 200, -98, "BOOKID"},
      {"SQL for a number", "CANBK", R"({"tags":[["BOOKID","1; delete from bookings"]]})", 200, -98, "BOOKID"},
      {"a number too large", "CANBK", R"({"tags":[["BOOKID","99999999999999999999"]]})", 200, -98, "BOOKID"},
      {"an empty number", "CANBK", R"({"tags":[["BOOKID",""]]})", 200, 2, ""},
      {"an unknown code", "NOSUCH", good, 404, 0, ""},
      {"a code in small letters", "bookday", good, 404, 0, ""},
      {"a code with more path", "BOOKDAY/1", good, 404, 0, ""},
      {"an empty date", "BOOKDAY", R"({"tags":[["DATE",""],["HBK","N"]]})", 200, -98, "DATE"},
      {"an empty month", "BOOKMTH", R"({"tags":[["DATE",""],["HBK","N"],["MNTHS","Y"]]})", 200, -98, "DATE"},
      {"deep in lists", "BOOKDAY", std::string(500'000, '['), 400, 0, ""},
      {"deep in objects", "BOOKDAY", nested(R"({"a":)", 100'000, "}"), 400, 0, ""},
      {"deep within the tags", "BOOKDAY", R"({"tags":)" + nested("[", 200'000, "]") + "}", 400, 0, ""},
      {"too large", "BOOKDAY", std::string(1024 * 1024 + 1, ' '), 413, 0, ""},
      {"very many tags", "GETLOCS", manyTags(2'000), 200, -98, "X"},
      {"too many tags", "GETLOCS", manyTags(2'001), 400, 0, ""},
  };
  auto client = this->client();
  for (const RawCase& each : cases) {
    SCOPED_TRACE(each.what);
    const WireAnswer answer = raw(*client, each.code, each.body);
    EXPECT_EQ(answer.status, each.status);
    EXPECT_EQ(answer.rc, each.rc);
    EXPECT_EQ(answer.error.empty(), each.status == 200) << answer.body;
    const auto tag = answer.head.find("CANTREAD");
    EXPECT_EQ(tag == answer.head.end() ? "" : tag->second, each.tag);
  }
  EXPECT_EQ(client->send("GETLOCS", {}).records.size(), 2U) << "and it goes on";
}

struct HeaderCase {
  const char* what;
  const char* request;  ///< first line and headers
  const char* body;
  const char* status;
};

TEST_P(BadInputTest, BodiesOfNoToldLengthAndPackedOnesAreRefusedUnread) {
  const char* post = "POST /v1/login HTTP/1.1\r\nHost: x\r\n";
  const char* hidden = "GET /v1/health HTTP/1.1\r\nHost: x\r\n\r\n";
  const HeaderCase cases[] = {
      {"in pieces", "Transfer-Encoding: chunked\r\n", "2\r\n{}\r\n0\r\n\r\n", "411"},
      {"in pieces with a length", "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n", "0\r\n\r\n", "400"},
      {"packed", "Content-Length: 2\r\nContent-Encoding: gzip\r\n", "{}", "415"},
      {"packed in another way", "Content-Length: 2\r\nContent-Encoding: br\r\n", "{}", "415"},
      {"without a length", "", "{}", "411"},
      {"a request behind it", "", hidden, "411"},
      {"a length that is none", "Content-Length: two\r\n", "{}", "400"},
      {"a length below nothing", "Content-Length: -1\r\n", "{}", "400"},
      {"two lengths", "Content-Length: 2\r\nContent-Length: 3\r\n", "{} ", "400"},
      {"far too long", "Content-Length: 99999999999\r\n", "", "413"},
  };
  for (const HeaderCase& each : cases) {
    SCOPED_TRACE(each.what);
    const std::string answer =
        exchange(server->port(), std::string(post) + each.request + "\r\n" + each.body);
    EXPECT_THAT(answer, testing::StartsWith("HTTP/1.1 " + std::string(each.status)));
    EXPECT_THAT(answer, testing::ContainsRegex("\r\n\r\n\\{\"error\":\"[^\"]+\"\\}$"))
        << "one answer, and the rest of the body is no request";
  }
  const std::string read =
      exchange(server->port(),
               std::string("GET /v1/health HTTP/1.1\r\nHost: x\r\nContent-Length: 9\r\n\r\n") + hidden);
  EXPECT_THAT(read, testing::StartsWith("HTTP/1.1 400"));
}

TEST_P(BadInputTest, PathsAndBodiesOfTheOtherCallsToo) {
  auto client = stranger();
  EXPECT_THAT(client->get("/v1/health").body,
              testing::StartsWith(R"({"name":"vantry","protocol":1,"key":")"));
  EXPECT_EQ(client->get("/").status, 404);
  EXPECT_EQ(client->get("/v1/request/BOOKDAY").status, 404);
  EXPECT_EQ(client->get("/v1/../../etc/passwd").status, 404);
  for (const char* body : {"", "{}", "[]", R"({"operator":"all"})", R"({"operator":"all","password":1})",
                           R"({"operator":"all","password":"x","more":"y"})"}) {
    EXPECT_EQ(client->post("/v1/login", body).status, 400) << body;
  }
  EXPECT_EQ(client->post("/v1/request/GETLOCS", R"({"tags":[]})", {{"Request-Id", "1"}}).status, 401);
  EXPECT_EQ(client->post("/v1/logout", "").status, 401);
  EXPECT_EQ(client->post("/v1/password", R"({"old":"a","new":"b"})").status, 401);
  auto known = this->client();
  EXPECT_EQ(known->post("/v1/request/GETLOCS", R"({"tags":[]})", known->authorization()).status, 400)
      << "no Request-Id";
}

/// The statement that gives all that the library holds as one text; what is kept of requests is not asked
/// for.
std::string contentsSql(DeskLibrary& library) {
  const bool sqlite = library.database().dialect().kind == Dialect::Kind::Sqlite;
  const std::string kept = " not in ('replies', 'audit', 'sessions', 'login_failures', 'sqlite_sequence')";
  const std::string tables = library.value(
      sqlite ? "select group_concat(name, ' ') from sqlite_master where type = 'table' and name" + kept
             : "select string_agg(tablename, ' ') from pg_tables where schemaname = current_schema() and "
               "tablename" +
                   kept);
  std::string sql = "select ''";
  for (const std::string_view word : wordsOf(tables)) {
    const std::string table(word);
    const std::string row =
        sqlite ? library.value("select group_concat('quote(' || name || ')', '||') from pragma_table_info('" +
                               table + "')")
               : "cast(t as text)";
    sql += " || coalesce((select " + std::string(sqlite ? "group_concat" : "string_agg") + "(" + row +
           ", ';') from " + table + " t), '')";
  }
  return sql;
}

constexpr std::string_view evilTexts[] = {"'; drop table bookings; --",
                                          "1; delete from bookings",
                                          "1' or '1'='1",
                                          "\" or \"\"=\"",
                                          ") union select password --",
                                          "%",
                                          "\\'",
                                          ":id"};

class SqlInText : public OnEachDatabase {};
INSTANTIATE_TEST_SUITE_P(Databases, SqlInText, eachDatabase, databaseName);

TEST_P(SqlInText, OfAnyTagOfAnyRequestIsRefusedOrStaysText) {
  ASSERT_EQ(library().run("NEWBK", messageWith(*findRequest("NEWBK"), tags::SCHCOM)).rc, 0);
  const std::string contents = contentsSql(library());
  std::string before = value(contents);
  EXPECT_THAT(before, testing::HasSubstr("Glaciers"));
  int written = 0;
  for (const SampleMessage& each : sampleMessages()) {
    if (each.tag.empty()) continue;
    ASSERT_FALSE(each.tags.empty()) << each.row->code << " " << each.tag;
    const bool isText = TagPattern(each.row->sent).find(each.tag)->form == TagForm::Name;
    for (const std::string_view evil : evilTexts) {
      SCOPED_TRACE(testing::Message() << each.row->code << " with " << each.tag << " " << evil);
      std::vector<TagValue> message = each.tags;
      std::ranges::find(message, each.tag, &TagValue::tag)->value = evil;
      const Got got = library().run(std::string(each.row->code), message);
      if (!isText) {
        EXPECT_EQ(got.first("CANTREAD"), each.tag);
      }
      if (!each.row->writes) continue;
      // 137: saved, and a wish was met by what the messages before have put into the room.
      const bool saved = got.rc == 0 || got.rc == 137;
      if (saved && each.tag == tags::SCHCOM) {
        ++written;
        EXPECT_EQ(send("GETMSD", "BOOKID=1").first("SCHCOM"), evil);
      }
      const std::string after = value(contents);
      if (isText && got.rc != -98) {
        // Stored, or looked for, as text: what it would have destroyed is there.
        EXPECT_THAT(after, testing::HasSubstr("Glaciers"));
        EXPECT_EQ(value("select count(*) from bookings"), "1");
        before = after;
      }
      EXPECT_EQ(after, before);
    }
  }
  EXPECT_EQ(written, std::ssize(evilTexts)) << "UPDBK keeps it as it came";
  for (const std::string_view evil : evilTexts) {
    EXPECT_TRUE(library().runner().login(evil, evil, evil).token.empty());
  }
  EXPECT_EQ(value(contents), before) << "nor did one that only reads change anything";
}

TEST_P(BadInputTest, ADatabaseHeldByAnotherProcessIsToldSoAndServesAgainAfterwards) {
  addBooking("2026-11-25 08:00:00", "2026-11-25 09:00:00");
  auto client = this->client();
  Database other(database);
  other.write([&](Connection& db) {
    db.run("update patrons set fees = 1");
    const WireAnswer held = client->send("CANBK", {{"BOOKID", "1"}}, "same-id");
    EXPECT_EQ(held.status, 503);
    EXPECT_EQ(held.error, "The database cannot be used now.");
    EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-25"}, {"HBK", "N"}}).records.size(), 1U)
        << "reading goes on";
  });
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}, "same-id").rc, 0) << "the repeated id runs now";
}

TEST_P(BadInputTest, AHeldDatabaseStopsNoReadingThoughTheSessionGrowsOld) {
  auto client = this->client();
  const std::string before = value("select expires_at from sessions");
  now += sessionStaleness + 1;
  Database other(database);
  other.write([&](Connection& db) {
    db.run("update patrons set fees = 1");
    EXPECT_EQ(client->send("GETLOCS", {}).records.size(), 2U);
  });
  EXPECT_EQ(client->send("GETLOCS", {}).records.size(), 2U);
  EXPECT_NE(value("select expires_at from sessions"), before)
      << "the next request prolongs it, if not this one";
}

TEST_P(BadInputTest, ABrokenStoreGivesTheReturnCodeForIt) {
  auto client = this->client();
  sql("alter table calendars rename to elsewhere");
  const WireAnswer answer = client->send("GDELCA", {});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.rc, -97);
  EXPECT_EQ(client->send("GETLOCS", {}).rc, 0);
  EXPECT_EQ(client->get("/v1/ready").status, 200);
  sql("alter table sessions rename to lost");
  EXPECT_EQ(client->get("/v1/ready").status, 503) << "it asks the store";
  EXPECT_EQ(client->get("/v1/health").status, 200) << "it tells that the process lives";
}

/// Only SQLite keeps what does not fit its column.
using DamagedRowTest = test::ServerCase;

TEST_F(DamagedRowTest, GivesASoundReply) {
  addBooking("2026-11-24 08:00:00", "2026-11-24 09:00:00", {{"status", "'x'"}, {"item_count", "'many'"}});
  sql("update patrons set last_name = cast(x'FF41' as text), first_name = x'C3' where id = 1");
  const WireAnswer answer = client()->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}});
  ASSERT_EQ(answer.records.size(), 1U);
  EXPECT_EQ(answer.records[0].at("REQ"),
            "\xEF\xBF\xBD"
            "A, \xEF\xBF\xBD B.");
}

TEST(ReadOnlyFile, IsToldSo) {
  const test::TempFolder folder;
  const std::string file = folder.file("library.sqlite");
  test::makeSmallLibrary(file);
  Server::Options options;
  options.database = file;
  { const Server once(options); }
  test::makeReadOnly(file);
  Server server(options);
  server.start();
  WireClient client(server.port());
  EXPECT_EQ(client.login("all", "password-1").status, 200) << "what is there can be read";
  EXPECT_EQ(client.send("SLL", {{"LOC", "1"}}).rc, 0);
  const WireAnswer answer = client.send("DELBK", {{"BOOKID", "1"}});
  EXPECT_EQ(answer.rc, -97) << "what cannot be written is told";
}

}  // namespace
}  // namespace vantry::server
