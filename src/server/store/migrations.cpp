#include "server/store/migrations.h"
#include "server/store/query.h"

#include <string>

namespace vantry::server {

namespace {

void runStatements(Connection& db, std::string_view sql) {
  std::string rest = translateSchema(db.dialect(), sql);
  for (std::size_t from = 0;;) {
    const std::size_t end = rest.find(";\n", from);
    if (end == std::string::npos) break;
    db.run(rest.substr(from, end - from));
    from = end + 2;
  }
}

int versionOf(Connection& db) {
  int version = 0;
  Query query(db, "select max(number) from schema_steps");
  query.into(version);
  while (query.next()) {
  }
  return version;
}

/// Two processes that start together both come here; the one that finds the step done leaves it.
void runStep(Database& database, const Migration& step) {
  database.write([&](Connection& db) {
    if (versionOf(db) >= step.number) return;
    runStatements(db, step.sql);
    if (step.work != nullptr) step.work(db);
    Query query(db, "insert into schema_steps (number, name) values (:number, :name)");
    query.bind("number", step.number).bind("name", step.name).run();
  });
}

void makeStepTable(Database& database) {
  database.write([](Connection& db) {
    db.run("create table if not exists schema_steps (number integer primary key, name text not null)");
  });
}

bool hasStepTable(Connection& db) {
  const bool sqlite = db.dialect().kind == Dialect::Kind::Sqlite;
  int count = 0;
  Query query(db, sqlite ? "select count(*) from sqlite_master where type = 'table' and name = 'schema_steps'"
                         : "select count(*) from pg_tables where schemaname = current_schema() and "
                           "tablename = 'schema_steps'");
  query.into(count);
  while (query.next()) {
  }
  return count > 0;
}

}  // namespace

static int lastStep() {
  return static_cast<int>(migrations().size());
}

int schemaVersion(Database& database) {
  int version = 0;
  database.read([&](Connection& db) { version = hasStepTable(db) ? versionOf(db) : 0; });
  return version;
}

static void refuseNewer(int step) {
  if (step > lastStep())
    throw StoreError(StoreError::Kind::Newer, "the database was written by a newer version of this program");
}

void migrate(Database& database, int last) {
  const int present = schemaVersion(database);
  refuseNewer(present);
  if (present >= last) return;
  if (present == 0) makeStepTable(database);
  for (const Migration& step : migrations()) {
    if (step.number > present && step.number <= last) runStep(database, step);
  }
}

void migrate(Database& database) {
  migrate(database, lastStep());
}

static int stepOfLibrary(Database& database) {
  const int present = schemaVersion(database);
  if (present == 0) throw StoreError(StoreError::Kind::Empty, "the database holds no library");
  refuseNewer(present);
  return present;
}

void requireSchema(Database& database) {
  if (stepOfLibrary(database) < lastStep())
    throw StoreError(StoreError::Kind::Older, "the database is of an older version of this program");
}

void upgrade(Database& database) {
  if (stepOfLibrary(database) < lastStep()) migrate(database);
}

}  // namespace vantry::server
