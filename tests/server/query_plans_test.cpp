// No request walks through a table that grows with the library.

#include <set>

#include "server/catalogue_store.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

/// How SQLite would run the statement, line by line.
std::vector<std::string> planOf(Connection& db, const std::string& sql) {
  std::vector<std::string> lines;
  std::string id;
  std::string parent;
  std::string unused;
  std::string detail;
  const std::string explain = "explain query plan " + sql;
  Query query(db, explain);
  query.into(id, parent, unused, detail);
  while (query.next()) lines.push_back(detail);
  return lines;
}

/// The statement with each of its values written as `value`.
std::string withValues(std::string sql, const std::string& value) {
  for (std::size_t at = sql.find(':'); at != std::string::npos; at = sql.find(':', at + value.size())) {
    std::size_t end = at + 1;
    while (end < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[end])) != 0 || sql[end] == '_'))
      ++end;
    sql.replace(at, end - at, value);
  }
  return sql;
}

/// Tables and their short names in the statements, of which each grows.
bool walksThrough(const std::string& line, const std::set<std::string>& names) {
  constexpr std::string_view mark = "SCAN ";
  if (!line.starts_with(mark)) return false;
  const std::string table = line.substr(mark.size(), line.find(' ', mark.size()) - mark.size());
  return names.contains(table);
}

const std::set<std::string> growing{"bookings",
                                    "b",
                                    "booking_items",
                                    "booking_equipment",
                                    "l",
                                    "occupancy",
                                    "o",
                                    "equipment",
                                    "e",
                                    "m",
                                    "items",
                                    "i",
                                    "titles",
                                    "holdings",
                                    "h",
                                    "patrons",
                                    "p",
                                    "patron_barcodes",
                                    "c",
                                    "equipment_barcodes",
                                    "catalogue_keys",
                                    "k",
                                    "marc_records",
                                    "t",
                                    "replies",
                                    "audit"};

/// Every request that looks something up by time or by thing.
void sendAll(DeskLibrary& library) {
  const std::string ten = times(2, "09:30", "11:00");
  const std::string things = "EID=1; EID=5; ETI=2; IFL=N; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=0; IM=0";
  library.send("NEWBK", booking(ten, "LOC=1", 3, things));
  library.send("NEWBK", booking(ten, "RID=1", 1, ""));
  library.send("NEWBK", booking(ten, "RCOP=0; RCA=30; LOC=1; RTI=1", 1, ""));
  for (const char* code : {"GETMSD", "GETSRM", "GETSITM", "GETSEQ", "GSCIT"}) library.send(code, "BOOKID=1");
  library.send("VALEAVL", "BOOKID=0; LOC=1; PGID=1; " + ten + "; EID=1; EID=5; ETI=2; IFL=N");
  library.send("VALIAVL",
               "BOOKID=0; LOC=1; PGID=1; " + ten + "; MTID=1; BI=1; MI=1; IM=1; MTID=1; BI=1; MI=0; IM=0");
  library.send("VALRMAVL", "BOOKID=0; " + ten + "; RID=1; PGID=1");
  library.send("VALRP", "PID=1; PGID=1; PUP=N");
  library.send("GETREQP", "RID=1; BRTY=1");
  for (const char* id : {"1", "2", "3"}) library.send("CBK", std::string("BOOKID=") + id);
  for (const char* search : {"BNO=P100", "BNO=P1?", "PPBAR=P100", "CNUM=1", "PLN=Bell"}) {
    library.send("SSC", search);
    library.send("SSD", search);
  }
  for (const char* search : {"MEDBAR=M1", "IM=1", "EQBAR=E1", "ENO=TV1", "CN=qe?; CNTY=MLC#"})
    library.send("SSD", search);
  for (const char* code : {"BND", "GIREFD"}) library.send(code, "BOOKID=1");
  library.send("DBK", "BOOKID=1; IM=1; EID=1");
  library.send("GBBIB", "IB=M1");
  library.send("GETIBYB", "EPT=3; BARORNO=0; BNO=E1");
  library.send("GETIBYB", "EPT=3; BARORNO=1; ENO=TV1");
  library.send("FIND", "SRCHTAG=17; SRCHVAL=P1?; SRCHFOR=6; SRCHLOC=5; SRCHOP=");
  indexCatalogue(library.database());
  for (const char* field : {"1", "2", "3", "4"})
    library.send("CATFIND", std::string("SRCHTAG=") + field + "; SRCHVAL=vol?");
  library.send("CATFIND", "SRCHTAG=5; SRCHVAL=vol? qe; KWHO=Y");
  library.send("CATREC", "BI=1");
  library.send("CATREC", "MI=1");
  library.send("GBHI", "BI=1; MI=0");
  library.send("BOOKDAY", "DATE=2026-03-02; HBK=N");
  library.send("BOOKMTH", "DATE=2026-03-01; HBK=N; YRS=Y");
  library.runner().keepHouse();
}

/// The statements of all these requests that find rows.
std::vector<std::string> statementsOf(Connection& db) {
  std::vector<std::string> found;
  for (const std::string& sql : db.statements()) {
    if (sql.starts_with("select") || sql.starts_with("update") || sql.starts_with("delete"))
      found.push_back(sql);
  }
  return found;
}

TEST(QueryPlans, ReachGrowingTablesByTheirIndexes) {
  DeskLibrary library("sqlite");
  sendAll(library);
  library.database().plain([&](Connection& db) {
    const std::vector<std::string> statements = statementsOf(db);
    EXPECT_GT(statements.size(), 50U) << "the requests above ran on this connection";
    for (const std::string& sql : statements) {
      for (const std::string& line : planOf(db, withValues(sql, "1"))) {
        EXPECT_FALSE(walksThrough(line, growing)) << line << "\n  in " << sql;
      }
    }
  });
}

/// The table that a line of PostgreSQL's plan reads from its beginning to its end; empty for none.
std::string walkedTable(const std::string& line) {
  constexpr std::string_view mark = "Seq Scan on ";
  const std::size_t at = line.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t from = at + mark.size();
  return line.substr(from, line.find(' ', from) - from);
}

/// With so few rows PostgreSQL would walk through all tables; told not to, it only does where no index helps.
TEST(QueryPlans, HaveAnIndexToGoByOnPostgresqlToo) {
  if (!TestStore::isOffered("postgresql")) GTEST_SKIP() << "no PostgreSQL is offered";
  DeskLibrary library("postgresql");
  sendAll(library);
  library.database().plain([&](Connection& db) {
    const std::vector<std::string> statements = statementsOf(db);
    EXPECT_GT(statements.size(), 50U);
    db.run("set enable_seqscan = off");
    for (const std::string& sql : statements) {
      std::string line;
      const std::string explain = "explain " + withValues(sql, "'1'");
      Query query(db, explain);
      query.into(line);
      while (query.next()) EXPECT_FALSE(growing.contains(walkedTable(line))) << line << "\n  in " << sql;
    }
  });
}

}  // namespace
}  // namespace vantry::server
