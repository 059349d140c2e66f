// Rights are checked for every request, by the request's own row.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

#include "server/requests/handlers.h"
#include "server/setup/administration.h"
#include "support/server_case.h"
#include "words/requests.h"

namespace vantry::server {
namespace {

using test::ServerOnEachDatabase;
using test::Tags;

class RightsTest : public ServerOnEachDatabase {
 protected:
  void setRightsOfView(const std::vector<std::string>& codes) {
    if (!store_) store_ = std::make_unique<Database>(database);
    store_->write([&](Connection& db) { setRights(db, "view", "Main", codes, now); });
  }

  int refusals(std::string_view code) {
    return std::stoi(value("select count(*) from audit where action = 'right missing' and subject = '" +
                           std::string(code) + "'"));
  }

 private:
  std::unique_ptr<Database> store_;
};
INSTANTIATE_TEST_SUITE_P(Databases, RightsTest, eachDatabase, databaseName);

/// What changes something or names patrons, and the rights that let an operator send it: the server goes by
/// its table, in which a wrong right would not be noticed.
struct CodesAndRights {
  std::string_view codes;
  std::string_view rights;
};
constexpr CodesAndRights guardedCodes[] = {
    {"GETMSD GPBAR PATPRIV BOOKDAY DELD GECN", "BKV BKADD BKUPD BKCAN BKCHA BKDIS"},
    {"VALRP", "BKADD BKUPD"},
    {"GPAI", "PACOU PAV PAADD PAUPD PADEL BKV BKADD BKUPD BKCAN BKCHA BKDIS"},
    {"NEWBK", "BKADD"},
    {"UPDBK", "BKUPD"},
    {"CANBK DELBK", "BKCAN"},
    {"CBK", "BKCHA"},
    {"DBK", "BKDIS"},
    {"NEWEQIPD NEWGRPD", "EQADD"},
    {"UPDEQIPD UPDGRPD REMGITM AETGB AUEGNOTE REMEGN", "EQUPD"},
    {"REMEQIP REMGRP", "EQDEL"},
    {"NEWGITM", "EQADD EQUPD"},
    {"NEWEGSTS REMEGSTS", "EQUPD EQMADD EQMUPD"},
    {"NEWEGBAR REMEGBAR", "EQUPD EQMUPD"},
    {"DLTEBFR", "EBM"},
    {"NEWROOMD", "RMADD"},
    {"UPDROOMD AURNOTE REMRN NEWRMSTS REMRMSTS", "RMUPD"},
    {"REMROOM", "RMDEL"},
    {"NEWEMAINTD", "EQMADD"},
    {"UPDEMAINTD", "EQMUPD"},
    {"REMMAINT", "EQMDEL"},
    {"ADDOP UPDOPS DELOPS", "PAUPD BKUPD"},
    {"UPAI", "PACOU"},
};

/// A supervisor logs on by themselves; the other two are questions as well as changes.
bool isAlsoAsked(std::string_view code) {
  return code == "OPOV" || code == "ADDREQP" || code == "GECN";
}

std::vector<std::string_view> rightsFor(const RequestRow& row) {
  for (const CodesAndRights& each : guardedCodes) {
    const std::vector<std::string_view> codes = wordsOf(each.codes);
    if (std::find(codes.begin(), codes.end(), row.code) != codes.end()) return wordsOf(each.rights);
  }
  if (!row.writes || isAlsoAsked(row.code)) return wordsOf(row.rights);
  ADD_FAILURE() << row.code << " changes something: name its rights here";
  return {};
}

/// Empty messages do: the right is looked at before the message, and most of them then lack a tag.
TEST_P(RightsTest, EachRequestWithItsRightsOffIsRefusedAndWithAnyOneOfThemServed) {
  auto client = this->client("view");
  int guarded = 0;
  for (const RequestRow& row : requestTable()) {
    const std::vector<std::string_view> needed = rightsFor(row);
    if (needed.empty()) continue;
    ++guarded;
    SCOPED_TRACE(row.code);
    const std::string code(row.code);
    std::vector<std::string> others;
    for (const std::string_view right : allRights()) {
      if (std::find(needed.begin(), needed.end(), right) == needed.end()) others.emplace_back(right);
    }
    setRightsOfView(others);
    const test::WireAnswer refused = client->send(code, {});
    EXPECT_EQ(refused.status, 200);
    EXPECT_EQ(refused.rc, -96);
    EXPECT_EQ(refusals(code), 1);
    for (const std::string_view right : needed) {
      setRightsOfView({std::string(right)});
      const test::WireAnswer served = client->send(code, {});
      EXPECT_EQ(served.status, 200) << right;
      EXPECT_NE(served.rc, -96) << right;
    }
    EXPECT_EQ(refusals(code), 1);
  }
  EXPECT_GT(guarded, 20);
}

TEST_P(RightsTest, WhoMayOnlyLookChangesNothing) {
  addBooking("2026-11-24 15:00:00", "2026-11-24 16:00:00");
  auto client = this->client("view");
  for (const RequestRow& row : requestTable()) {
    if (!row.writes || isAlsoAsked(row.code)) continue;
    EXPECT_EQ(client->send(std::string(row.code), {{"BOOKID", "1"}}).rc, -96) << row.code;
  }
  EXPECT_EQ(value("select status from bookings where id = 1"), "0");
  EXPECT_EQ(this->client("all")->send("CANBK", {{"BOOKID", "1"}}).rc, 0) << "it could have been canceled";
}

TEST_P(RightsTest, AskingForTheLocationsOfSomebodyElseIsRefusedAndWritten) {
  auto client = this->client("view");
  EXPECT_EQ(client->send("RLL", {{"OI", "all"}}).rc, -96);
  EXPECT_EQ(refusals("RLL"), 1);
  EXPECT_EQ(client->send("RLL", {{"OI", "VIEW"}}).records.size(), 1U);
  EXPECT_EQ(refusals("RLL"), 1);
}

TEST_P(RightsTest, ThereAreNoneBeforeALocationIsChosen) {
  auto client = stranger();
  client->login("all", "password-1");
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, -96);
}

TEST_P(RightsTest, TheyHoldAtTheirLocationOnly) {
  Database store(database);
  store.write([&](Connection& db) { setRights(db, "view", "Branch", {"BKCAN"}, now); });
  auto client = this->client("view", 1);
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}).rc, -96);
  EXPECT_EQ(client->send("SLL", {{"LOC", "2"}}).head.at("BKCAN"), "Y");
  EXPECT_EQ(client->send("CANBK", {{"BOOKID", "1"}}).rc, 2) << "no such booking, but the right is there";
}

TEST_P(RightsTest, AForeignLocationIsRefusedAndTheOldOneStays) {
  auto client = this->client("view", 1);
  EXPECT_EQ(client->send("SLL", {{"LOC", "2"}}).rc, -96);
  EXPECT_EQ(client->send("SLL", {{"LOC", "99"}}).rc, -96);
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, 0);
  EXPECT_EQ(value("select count(*) from audit where action = 'location refused'"), "2");
}

TEST_P(RightsTest, AChangeHoldsForTheNextRequest) {
  auto client = this->client("view");
  setRightsOfView({"EQV"});
  EXPECT_EQ(client->send("BOOKDAY", {{"DATE", "2026-11-24"}, {"HBK", "N"}}).rc, -96);
  setRightsOfView({});
  EXPECT_EQ(client->send("RLL", {{"OI", "view"}}).records.size(), 0U);
}

}  // namespace
}  // namespace vantry::server
