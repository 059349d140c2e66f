#include <stdexcept>

#include "server/demo/world.h"
#include "server/migrations.h"

namespace vantry {

using namespace server;

namespace {

bool holdsLibrary(Connection& db) {
  int count = 0;
  Query query(db, "select count(*) from libraries");
  query.into(count);
  while (query.next()) {
  }
  return count > 0;
}

Moment dayOf(const DemoOptions& options) {
  if (options.date.empty()) return startOfDay(wallClock());
  const std::optional<Moment> date = parseMoment(options.date);
  if (!date) throw std::runtime_error("\"" + options.date + "\" is no date.");
  return startOfDay(*date);
}

void fill(Connection& db, const DemoOptions& options, Moment today) {
  Dice dice(options.seed);
  World world;
  world.today = today;
  makePlaces(db, world);
  makeOperators(db, world);
  makeInventory(db, world, dice);
  makeMaintenance(db, world, dice);
  makePeople(db, world, dice);
  makeCatalogue(db, world, dice);
  makePolicies(db, world, dice);
  makeBookings(db, world, dice, options);
}

/// Looking each key up again costs a third of the time, and the makers know what they write.
void checkKeys(Database& database, bool check) {
  if (database.dialect().kind != Dialect::Kind::Sqlite) return;
  database.plain(
      [&](Connection& db) { db.run(check ? "pragma foreign_keys = on" : "pragma foreign_keys = off"); });
}

/// The makers count their keys up themselves; PostgreSQL must be told where to go on.
void moveCountersOn(Connection& db) {
  if (db.dialect().kind != Dialect::Kind::Postgresql) return;
  db.run(
      "do $$ declare t record; begin for t in select table_name from information_schema.columns "
      "where table_schema = current_schema() and column_name = 'id' and is_identity = 'YES' loop "
      "execute format('select setval(pg_get_serial_sequence(%L, ''id''), (select coalesce(max(id), 0) + 100 "
      "from %I))', t.table_name, t.table_name); end loop; end $$");
}

}  // namespace

bool createDemoDatabase(const std::string& url, const DemoOptions& options) {
  const Moment today = dayOf(options);
  Database database(url, {.connections = 1, .patience = 10});
  migrate(database);
  checkKeys(database, false);
  bool made = false;
  database.write([&](Connection& db) {
    made = !holdsLibrary(db);
    if (!made) return;
    fill(db, options, today);
    moveCountersOn(db);
  });
  return made;
}

}  // namespace vantry
