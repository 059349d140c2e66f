#include "server/setup/demo/demo.h"

#include <stdexcept>
#include <vector>

#include "server/access/operators.h"
#include "server/access/passwords.h"
#include "server/setup/demo/world.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/store_sentence.h"

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
  makeExampleInventory(db, world);
  makeExamplePatrons(db, world);
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

/// Asked without a lock, so that a library in use, or one that may only be read, is told as what it is.
bool holdsLibraryAlready(Database& database) {
  if (schemaVersion(database) == 0) return false;
  bool holds = false;
  database.read([&](Connection& db) { holds = holdsLibrary(db); });
  return holds;
}

/// False when another process came first.
bool fillIfEmpty(Database& database, const DemoOptions& options, Moment today) {
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

}  // namespace

bool hasDemoPasswords(const std::string& url) {
  bool known = false;
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1});
    std::vector<std::string> hashes;
    database.read([&](Connection& db) {
      for (const DemoOperator& each : demoOperators) {
        const auto account = findOperator(db, each.login);
        hashes.push_back(account && account->active ? account->password : std::string());
      }
    });
    for (std::size_t each = 0; each < demoOperators.size(); ++each) {
      known = known || (!hashes[each].empty() && matchesPassword(hashes[each], demoOperators[each].password));
    }
  });
  return known;
}

bool createDemoDatabase(const std::string& url, const DemoOptions& options) {
  const Moment today = dayOf(options);
  bool made = false;
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1, .patience = 10, .create = true});
    made = !holdsLibraryAlready(database) && fillIfEmpty(database, options, today);
  });
  return made;
}

}  // namespace vantry
