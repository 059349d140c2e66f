#include "server/store/connection_pool.h"

#include <algorithm>
#include <utility>

#include <soci/soci-backend.h>
#include <spdlog/spdlog.h>

#include "server/store/query.h"
#include "server/store/sqlite_engine.h"
#include "server/store/store_failure.h"

namespace vantry::server {

namespace {

constexpr std::string_view sqliteSetUp[] = {
    "pragma journal_mode = wal",  "pragma synchronous = full",        "pragma foreign_keys = on",
    "pragma temp_store = memory", "pragma wal_autocheckpoint = 4000", "pragma cache_size = -32000",
};

// All statements look things up by their indexes, whatever the values, so that planning anew costs only time;
// with the usual price of a page that lies elsewhere, it would read whole tables. Compiling a statement, or
// starting helpers for it, takes longer than any of them.
constexpr std::string_view postgresqlSetUp =
    "set client_min_messages = warning; set plan_cache_mode = force_generic_plan; set random_page_cost = "
    "1.1; set jit = off; set max_parallel_workers_per_gather = 0";

/// A server that answers says so by itself before its connection is given up. One that stops in the middle of
/// a transaction holds up all others.
std::string limitsFor(std::chrono::milliseconds silence) {
  return "; set statement_timeout = " + std::to_string(silence.count() * 3 / 4) +
         "; set idle_in_transaction_session_timeout = " + std::to_string(silence.count() / 4);
}

/// How long a connection that was idle may take to show that it is well. A request has more time than that.
constexpr std::chrono::milliseconds proofOfLife{1000};

void bringLogIn(Connection& db) {
  try {
    db.run("pragma wal_checkpoint(truncate)");
  } catch (const soci::soci_error& error) {
    spdlog::error("Its log could not be brought into it and has to be moved with it: {}",
                  error.get_error_message());
  }
}

bool isMarkedAsCopy(Connection& db) {
  std::int64_t version = 0;
  Query query(db, "pragma user_version");
  query.into(version);
  while (query.next()) {
  }
  return version == versionOfCopies;
}

}  // namespace

ConnectionPool::ConnectionPool(const std::string& url, StoreOptions options)
    : dialect_(dialectOf(url)),
      options_(std::move(options)),
      file_(dialect_.kind == Dialect::Kind::Sqlite ? url : std::string()),
      connectText_(connectText(dialect_, url, options_.create)),
      limit_(static_cast<std::size_t>(std::max(options_.connections, 1))),
      limitOfReaders_(std::max<std::size_t>(limit_ - 1, 1)) {
  if (dialect_.kind == Dialect::Kind::Sqlite) {
    startSqlite();
    if (!options_.create && !file_.exists() && file_.folderExists())
      throw StoreError(StoreError::Kind::Missing, "there is no file " + url);
    file_.refuseForeignLog();
    file_.remember();
  } else if (options_.silence.count() > 0) {
    watcher_ = std::thread([this] { watch(); });
  }
}

ConnectionPool::~ConnectionPool() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  end_.notify_all();
  if (watcher_.joinable()) watcher_.join();
}

/// The driver waits for an answer without end; only the end of the connection wakes it.
void ConnectionPool::watch() {
  std::unique_lock lock(mutex_);
  while (!end_.wait_for(lock, options_.silence / 4, [&] { return ending_; })) {
    for (Connection* each : all_) {
      if (each->waitsLongerThan(options_.silence)) each->breakOff();
    }
  }
}

/// Nothing when a new one has to be opened.
std::unique_ptr<Connection> ConnectionPool::takeIdle(Use use, Deadline until) {
  std::unique_lock lock(mutex_);
  const auto isFree = [&] {
    return leased_ < limit_ && (use == Use::Write || leasedToReaders_ < limitOfReaders_);
  };
  if (!returned_.wait_until(lock, until, isFree))
    throw StoreError(StoreError::Kind::Busy, "no connection became free in time");
  ++leased_;
  if (use == Use::Read) ++leasedToReaders_;
  if (idle_.empty()) return nullptr;
  std::unique_ptr<Connection> connection = std::move(idle_.back());
  idle_.pop_back();
  return connection;
}

void ConnectionPool::giveBack(std::unique_ptr<Connection> connection, Use use) {
  {
    const std::lock_guard lock(mutex_);
    if (connection) idle_.push_back(std::move(connection));
    --leased_;
    if (use == Use::Read) --leasedToReaders_;
  }
  returned_.notify_all();
}

void ConnectionPool::forget(const Connection& connection) {
  const std::lock_guard lock(mutex_);
  std::erase(all_, &connection);
}

void ConnectionPool::dropIdle() {
  std::vector<std::unique_ptr<Connection>> dropped;
  {
    const std::lock_guard lock(mutex_);
    dropped.swap(idle_);
    for (const auto& each : dropped) std::erase(all_, each.get());
  }
  for (const auto& each : dropped) each->breakOff();
}

void ConnectionPool::setUp(Connection& db) const {
  if (dialect_.kind == Dialect::Kind::Postgresql) {
    const bool limited = options_.silence.count() > 0;
    db.run(std::string(postgresqlSetUp) + (limited ? limitsFor(options_.silence) : ""));
  }
  db.waitAtMost(patience());
  if (dialect_.kind != Dialect::Kind::Sqlite) return;
  for (const std::string_view each : sqliteSetUp) db.run(std::string(each));
  if (!options_.keepsMark && isMarkedAsCopy(db)) db.run("pragma user_version = 0");
}

std::unique_ptr<Connection> ConnectionPool::open() {
  try {
    auto connection = std::make_unique<Connection>(dialect_, connectText_);
    {
      const std::lock_guard lock(mutex_);
      all_.push_back(connection.get());
      // Made just now, where it was missing.
      if (!file_.path().empty() && options_.create) file_.remember();
    }
    try {
      setUp(*connection);
    } catch (...) {
      forget(*connection);
      throw;
    }
    return connection;
  } catch (const soci::soci_error&) {
    rethrowAsUnreachable(dialect_);
  }
}

/// Whoever serves from a file that is no longer the library's loses what it writes. What the log of the
/// moved file holds is brought into it, unless another file has taken the name and perhaps the log.
void ConnectionPool::checkPlace(Connection* open) {
  if (file_.isInPlace()) return;
  bool first = false;
  {
    const std::lock_guard lock(mutex_);
    first = !std::exchange(moved_, true);
  }
  if (first) {
    spdlog::critical(
        "The file {} was moved or replaced while it was in use. Nothing more is read or written.",
        file_.path());
    if (open != nullptr && !file_.exists()) bringLogIn(*open);
    if (options_.onMoved) options_.onMoved();
  }
  throw StoreError(StoreError::Kind::Moved, "the file was moved or replaced");
}

/// A host that vanished while nothing was asked of it would use up the patience of a request.
bool ConnectionPool::isUsable(Connection& connection) const {
  return connection.silentFor() < options_.trustIdle || connection.answersWithin(proofOfLife);
}

ConnectionPool::Lease::Lease(ConnectionPool& pool, Use use, Deadline until)
    : pool_(pool), use_(use), connection_(pool.takeIdle(use, until)) {
  try {
    pool_.checkPlace(connection_.get());
    if (connection_ && !pool_.isUsable(*connection_)) giveUp();
    if (connection_) return;
    connection_ = pool_.open();
    pool_.checkPlace(connection_.get());
  } catch (...) {
    pool_.giveBack(std::move(connection_), use_);
    throw;
  }
}

ConnectionPool::Lease::~Lease() {
  pool_.giveBack(std::move(connection_), use_);
}

void ConnectionPool::Lease::close() {
  if (!connection_) return;
  if (connection_->isLost()) return giveUp();
  pool_.forget(*connection_);
  connection_.reset();
}

void ConnectionPool::Lease::giveUp() {
  // Closing one that its server does not answer any more would wait for it.
  connection_->breakOff();
  pool_.forget(*connection_);
  connection_.reset();
  pool_.dropIdle();
}

}  // namespace vantry::server
