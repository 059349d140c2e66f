#include "server/store/database.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

#include <soci/postgresql/soci-postgresql.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

// The result codes of SQLite that need telling apart; its own header must not stand beside the library's.
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteInterrupted = 9;
constexpr int sqliteCannotOpen = 14;
constexpr int sqliteNoDatabase = 26;

constexpr std::string_view lockTimeout = "55P03";

constexpr int mostRetries = 30;
constexpr std::chrono::milliseconds shortWait{500};

StoreError::Kind kindOf(const soci::sqlite3_soci_error& error) {
  switch (error.result() & 0xff) {
    case sqliteBusy:
    case sqliteLocked:
      return StoreError::Kind::Busy;
    case sqliteCannotOpen:
      return StoreError::Kind::Absent;
    case sqliteNoDatabase:
      return StoreError::Kind::Foreign;
    case sqliteInterrupted:
      return StoreError::Kind::TooLong;
    case sqliteReadOnly:
      return StoreError::Kind::ReadOnly;
    default:
      return StoreError::Kind::Failed;
  }
}

StoreError::Kind kindOf(const soci::postgresql_soci_error& error) {
  const std::string state = error.sqlstate();
  if (state == "40001" || state == "40P01") return StoreError::Kind::Contested;
  if (state == "23P01") return StoreError::Kind::Overlap;
  if (state == "57014") return StoreError::Kind::TooLong;
  if (state == "25006") return StoreError::Kind::ReadOnly;
  if (state.starts_with("08") || state.starts_with("57") || state.starts_with("53"))
    return StoreError::Kind::Busy;
  return StoreError::Kind::Failed;
}

/// Turns what the database library throws into the one kind of error that the server knows. Called while
/// handling. The long form of its messages holds the values of the statement, which belong in no log.
[[noreturn]] void rethrowAsStoreError() {
  try {
    throw;
  } catch (const soci::sqlite3_soci_error& error) {
    throw StoreError(kindOf(error), error.get_error_message());
  } catch (const soci::postgresql_soci_error& error) {
    throw StoreError(kindOf(error), error.get_error_message());
  } catch (const soci::soci_error& error) {
    throw StoreError(StoreError::Kind::Failed, error.get_error_message());
  }
}

/// Whatever a server says to a stranger, there is no connection. Called while handling.
[[noreturn]] void rethrowAsUnreachable(const Dialect& dialect) {
  if (dialect.kind == Dialect::Kind::Sqlite) throw;
  try {
    throw;
  } catch (const soci::soci_error& error) {
    throw StoreError(StoreError::Kind::Unreachable, error.get_error_message());
  }
}

void backOff(int attempt) {
  thread_local std::minstd_rand random{std::random_device{}()};
  const int longest = std::min(1 << std::min(attempt, 6), 50);
  std::this_thread::sleep_for(std::chrono::microseconds(random() % static_cast<unsigned>(longest * 1000)));
}

}  // namespace

/// A connection out of the pool for as long as it is needed. One that failed is closed and not given back.
class Database::Lease {
 public:
  explicit Lease(Database& database) : database_(database) {
    std::unique_lock lock(database_.mutex_);
    database_.returned_.wait(lock,
                             [&] { return !database_.idle_.empty() || database_.open_ < database_.limit_; });
    if (!database_.idle_.empty()) {
      connection_ = std::move(database_.idle_.back());
      database_.idle_.pop_back();
      return;
    }
    ++database_.open_;
    lock.unlock();
    try {
      connection_ = std::make_unique<Connection>(database_.dialect_, database_.connectText_);
      database_.setPatience(*connection_, std::chrono::seconds(database_.patience_));
    } catch (...) {
      lock.lock();
      --database_.open_;
      database_.returned_.notify_one();
      lock.unlock();
      rethrowAsUnreachable(database_.dialect_);
    }
  }

  ~Lease() {
    const std::lock_guard lock(database_.mutex_);
    if (connection_) {
      database_.idle_.push_back(std::move(connection_));
    } else {
      --database_.open_;
    }
    database_.returned_.notify_one();
  }

  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

  Connection& operator*() { return *connection_; }
  void close() { connection_.reset(); }
  [[nodiscard]] bool isOpen() const { return connection_ != nullptr; }

 private:
  Database& database_;
  std::unique_ptr<Connection> connection_;
};

Database::Database(const std::string& url, const Options& options)
    : dialect_(dialectOf(url)),
      connectText_(connectText(dialect_, url, options.patience)),
      patience_(options.patience),
      limit_(static_cast<std::size_t>(std::max(options.connections, 1))) {
  plain([](Connection&) {});
}

Database::~Database() = default;

namespace {

/// Runs a statement whose rows tell nothing.
void runAsQuery(Connection& db, std::string_view sql) {
  int row = 0;
  Query query(db, sql);
  fetchOne(query, row);
}

/// Runs the work so that its failure leaves nothing of it behind in the transaction. Throws when the
/// transaction itself is lost.
void runWithin(Connection& db, WriteQueue::Waiting& each) {
  db.run("savepoint writer");
  try {
    (*each.work)(db);
  } catch (...) {
    each.failure = std::current_exception();
    db.run("rollback to savepoint writer");
  }
  db.run("release savepoint writer");
}

}  // namespace

/// A pooled connection may have died since its last use; it is closed, and the transaction may be tried on
/// another. The turn that it may have goes with it.
void Database::begin(Lease& lease, const Work& beginning) {
  try {
    beginning(*lease);
  } catch (const soci::postgresql_soci_error& error) {
    lease.close();
    const bool waited = error.sqlstate() == lockTimeout;
    throw StoreError(waited ? StoreError::Kind::Busy : StoreError::Kind::Contested,
                     error.get_error_message());
  } catch (const soci::soci_error&) {
    lease.close();
    throw;
  }
}

void Database::setPatience(Connection& db, std::chrono::milliseconds longest) const {
  db.run(std::string(dialect_.waitingTime) + std::to_string(longest.count()));
}

/// The turn comes first, so that the transaction sees what the one before it has left.
void Database::beginWrite(Connection& db, Wait wait) const {
  const bool takesTurn = !dialect_.takeTurn.empty();
  const auto endShortWait = [&] {
    if (wait == Wait::Short) setPatience(db, std::chrono::seconds(patience_));
  };
  if (wait == Wait::Short) setPatience(db, shortWait);
  if (takesTurn) runAsQuery(db, dialect_.takeTurn);
  // Not within the transaction, which would take it along when it is undone.
  if (takesTurn) endShortWait();
  db.run(std::string(dialect_.beginWrite));
  if (!takesTurn) endShortWait();
}

void Database::finish(Lease& lease, const Work& work) {
  try {
    work(*lease);
    (*lease).run("commit");
  } catch (...) {
    try {
      (*lease).run("rollback");
    } catch (const soci::soci_error&) {
      lease.close();  // what state it is in is not known any more
    }
    throw;
  }
}

void Database::giveTurn(Lease& lease) const {
  if (dialect_.giveTurn.empty() || !lease.isOpen()) return;
  try {
    runAsQuery(*lease, dialect_.giveTurn);
  } catch (const soci::soci_error&) {
    lease.close();  // and the turn with it; what was written is written
  }
}

void Database::runWriter(const Work& work, Wait wait) {
  Lease lease(*this);
  begin(lease, [&](Connection& db) { beginWrite(db, wait); });
  try {
    finish(lease, work);
  } catch (...) {
    giveTurn(lease);
    throw;
  }
  giveTurn(lease);
}

/// Runs the transaction until it is through; only one that met another is tried again.
void Database::runRepeated(const std::function<void()>& once) {
  for (int attempt = 0;; ++attempt) {
    try {
      try {
        return once();
      } catch (const soci::soci_error&) {
        rethrowAsStoreError();
      }
    } catch (const StoreError& error) {
      // What the net caught was free when the work looked: on the next run it sees what came between.
      const bool met =
          error.kind() == StoreError::Kind::Contested || error.kind() == StoreError::Kind::Overlap;
      if (!met || attempt >= mostRetries) throw;
    }
    backOff(attempt);
  }
}

void Database::read(const Work& work) {
  runRepeated([&] {
    Lease lease(*this);
    begin(lease, [&](Connection& db) { db.run(std::string(dialect_.beginRead)); });
    finish(lease, work);
  });
}

void Database::runTogether(const WriteQueue::Group& group) {
  if (group.size() == 1) return runApart(group);
  bool begun = false;
  const Work all = [&](Connection& db) {
    begun = true;
    for (WriteQueue::Waiting* each : group) runWithin(db, *each);
  };
  try {
    runWriter(all, Wait::Full);
  } catch (...) {
    // A full disk undoes the whole transaction: each is told what becomes of it by itself.
    if (begun) return runApart(group);
    for (WriteQueue::Waiting* each : group) each->failure = std::current_exception();
  }
}

void Database::runApart(const WriteQueue::Group& group) {
  for (WriteQueue::Waiting* each : group) {
    each->failure = {};
    try {
      runWriter(*each->work, Wait::Full);
    } catch (...) {
      each->failure = std::current_exception();
    }
  }
}

void Database::writeOnce(const Work& work, Wait wait) {
  if (wait == Wait::Full) return writers_.write(work, [&](const auto& group) { runTogether(group); });
  if (!writers_.writeAlone(shortWait, [&] { runWriter(work, wait); }))
    throw StoreError(StoreError::Kind::Busy, "others of this program are writing");
}

void Database::write(const Work& work, Wait wait) {
  runRepeated([&] { writeOnce(work, wait); });
}

void Database::plain(const Work& work) {
  try {
    Lease lease(*this);
    work(*lease);
  } catch (const soci::soci_error&) {
    rethrowAsStoreError();
  }
}

}  // namespace vantry::server
