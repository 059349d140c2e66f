#include "server/store/database.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <random>
#include <thread>

#include <soci/soci-backend.h>

#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/store_failure.h"

namespace vantry::server {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int mostRetries = 30;
constexpr milliseconds shortWait{500};

void backOff(int attempt) {
  thread_local std::minstd_rand random{std::random_device{}()};
  const int longest = std::min(1 << std::min(attempt, 6), 50);
  std::this_thread::sleep_for(std::chrono::microseconds(random() % static_cast<unsigned>(longest * 1000)));
}

/// Runs the work so that its failure leaves nothing of it behind in the transaction. Throws when the
/// transaction itself is lost. The commit ends the savepoints, which are inside each other: to end each by
/// itself would be one more round trip.
void runWithin(Connection& db, WriteQueue::Waiting& each) {
  db.run("savepoint writer");
  try {
    (*each.work)(db);
  } catch (...) {
    each.failure = std::current_exception();
    db.run("rollback to savepoint writer");
  }
}

/// The first statement of its transaction.
void lockKey(Connection& db, std::string_view key) {
  int locked = 0;
  Query query(db, "select 1 from pg_advisory_xact_lock(hashtext(current_schema()), hashtext(:key))");
  query.bind("key", key);
  fetchOne(query, locked);
}

constexpr std::string_view stepQuery = "select max(number) from schema_steps";

/// Whole seconds where there are some, so that a wait is not set anew for each writer.
milliseconds waitUntil(steady_clock::time_point until) {
  const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
  return left < std::chrono::seconds(1) ? left : std::chrono::ceil<std::chrono::seconds>(left);
}

/// Undoes what is open. False when that could not be done: what state the connection is in is not known any
/// more, and it is closed.
bool undo(ConnectionPool::Lease& lease) {
  try {
    (*lease).rollBack();
    return true;
  } catch (const soci::soci_error&) {
    lease.close();
    return false;
  }
}

void failAll(const WriteQueue::Group& group) {
  for (WriteQueue::Waiting* each : group) each->failure = std::current_exception();
}

/// Takes out those that have waited as long as they may, and leaves them the failure. It is the first's in
/// any case, so that the wait has an end.
void failLate(WriteQueue::Group& group) {
  const auto earliest = std::ranges::min_element(group, {}, &WriteQueue::Waiting::until);
  const auto past = std::max((*earliest)->until, steady_clock::now());
  const auto late = std::ranges::partition(group, [&](const auto* each) { return each->until > past; });
  for (WriteQueue::Waiting* each : late) each->failure = std::current_exception();
  group.erase(late.begin(), late.end());
}

}  // namespace

Database::Database(const std::string& url, const Options& options) : pool_(url, options) {
  plain([](Connection&) {});
}

Database::Deadline Database::deadlineFor(Wait wait) const {
  return steady_clock::now() + (wait == Wait::Short ? shortWait : pool_.patience());
}

/// A pooled connection may have died since its last use: the transaction may be tried on another.
void Database::begin(Lease& lease, Deadline until, const Work& beginning) {
  try {
    (*lease).waitAtMost(waitUntil(until));
    beginning(*lease);
  } catch (const soci::soci_error& error) {
    if (!undo(lease)) throw StoreError(StoreError::Kind::Contested, error.get_error_message());
    rethrowAsStoreError();
  }
}

/// The step of the schema, where this program holds to one; a database server tells it in the same round
/// trip.
int Database::beginWrite(Connection& db, std::string_view statement) const {
  std::string text(statement);
  if (step_ == 0) {
    db.run(text);
    return 0;
  }
  if (dialect().kind == Dialect::Kind::Postgresql)
    return static_cast<int>(db.runForNumber(text.append("; ").append(stepQuery)));
  db.run(text);
  int step = 0;
  Query query(db, stepQuery);
  fetchOne(query, step);
  return step;
}

void Database::finish(Lease& lease, const Work& work) {
  try {
    work(*lease);
    (*lease).run("commit");
  } catch (...) {
    if (!undo(lease) && dialect().kind == Dialect::Kind::Postgresql)
      throw StoreError(StoreError::Kind::Busy, "the connection was lost");
    throw;
  }
}

void Database::runWriter(const Work& work, std::string_view beginning, Deadline until) {
  Lease lease(pool_, ConnectionPool::Use::Write, until);
  int step = 0;
  begin(lease, until, [&](Connection& db) { step = beginWrite(db, beginning); });
  finish(lease, [&](Connection& db) {
    if (step > step_)
      throw StoreError(StoreError::Kind::Newer,
                       "a newer version of this program has taken the database over");
    work(db);
  });
}

/// Runs the transaction until it is through or its time is over; only one that met another is tried again.
void Database::runRepeated(Deadline until, const std::function<void()>& once) {
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
      if (!met || attempt >= mostRetries || steady_clock::now() >= until) throw;
    }
    backOff(attempt);
  }
}

void Database::read(const Work& work) {
  const Deadline until = deadlineFor(Wait::Full);
  runRepeated(until, [&] {
    Lease lease(pool_, ConnectionPool::Use::Read, until);
    begin(lease, until, [&](Connection& db) { db.run(std::string(dialect().beginRead)); });
    finish(lease, work);
  });
}

/// One that has to end does not take the others along: they wait on without it.
void Database::runTogether(const WriteQueue::Group& all) {
  WriteQueue::Group group = all;
  while (!group.empty()) {
    try {
      return runGroupOnce(group);
    } catch (const StoreError& error) {
      if (error.kind() != StoreError::Kind::Busy) return failAll(group);
      failLate(group);
    } catch (...) {
      return failAll(group);
    }
  }
}

/// Throws what kept the transaction from beginning.
void Database::runGroupOnce(WriteQueue::Group& group) {
  const Deadline until = (*std::ranges::min_element(group, {}, &WriteQueue::Waiting::until))->until;
  bool begun = false;
  const Work work = [&](Connection& db) {
    begun = true;
    if (group.size() == 1) return (*group.front()->work)(db);
    for (WriteQueue::Waiting* each : group) runWithin(db, *each);
  };
  try {
    runWriter(work, dialect().beginWrite, until);
  } catch (...) {
    if (!begun) throw;
    if (group.size() == 1) return failAll(group);
    // A full disk undoes the whole transaction: each is told what becomes of it by itself.
    runApart(group);
  }
}

void Database::runApart(const WriteQueue::Group& group) {
  for (WriteQueue::Waiting* each : group) {
    each->failure = {};
    try {
      if (steady_clock::now() >= each->until)
        throw StoreError(StoreError::Kind::Busy, "the time was over before it could run by itself");
      runWriter(*each->work, dialect().beginWrite, each->until);
    } catch (...) {
      each->failure = std::current_exception();
    }
  }
}

void Database::writeInTurn(const Work& work, Deadline until) {
  if (!writers_.write(work, until, [&](const auto& group) { runTogether(group); }))
    throw StoreError(StoreError::Kind::Busy, "others of this program are writing");
}

void Database::write(const Work& work, Wait wait) {
  const Deadline until = deadlineFor(wait);
  runRepeated(until, [&] { writeInTurn(work, until); });
}

void Database::writeApart(std::string_view key, const Work& work, Wait wait) {
  if (dialect().kind == Dialect::Kind::Sqlite) return write(work, wait);
  const Deadline until = deadlineFor(wait);
  runRepeated(until, [&] {
    runWriter(
        [&](Connection& db) {
          if (!key.empty()) lockKey(db, key);
          work(db);
        },
        dialect().beginApart, until);
  });
}

void Database::readOnce(const Work& work) {
  const Deadline until = deadlineFor(Wait::Full);
  runRepeated(until, [&] {
    Lease lease(pool_, ConnectionPool::Use::Read, until);
    begin(lease, until, work);
  });
}

void Database::plain(const Work& work) {
  try {
    Lease lease(pool_, ConnectionPool::Use::Write, deadlineFor(Wait::Full));
    (*lease).waitAtMost(pool_.patience());
    work(*lease);
  } catch (const soci::soci_error&) {
    rethrowAsStoreError();
  }
}

}  // namespace vantry::server
