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
    db.flush();
  } catch (...) {
    each.failure = std::current_exception();
    db.backTo("writer");
  }
}

/// The first statement of its transaction.
void lockKey(Connection& db, std::string_view key) {
  Query query(db, "select 1 from pg_advisory_xact_lock(hashtext(current_schema()), hashtext(:key))");
  query.bind("key", key).later();
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

/// A pooled connection may have died since its last use. As long as nothing was heard of it, and for work
/// that only reads, the work may be tried on another.
void Database::runOn(Lease& lease, Deadline until, Use use, const Work& work) {
  std::int64_t before = (*lease).roundTrips();
  try {
    (*lease).waitAtMost(waitUntil(until));
    before = (*lease).roundTrips();
    work(*lease);
  } catch (...) {
    const bool mayTryAnother = use == Use::Reading || (*lease).roundTrips() == before;
    const bool onServer = (*lease).dialect().kind == Dialect::Kind::Postgresql;
    if (undo(lease) || !(onServer || mayTryAnother)) throw;
    throw StoreError(mayTryAnother ? StoreError::Kind::Contested : StoreError::Kind::Busy,
                     "the connection was lost");
  }
}

/// The step of the schema is asked for where this program holds to one.
void Database::beginWrite(Connection& db, std::string_view statement) const {
  db.later(statement);
  if (step_ == 0) return;
  db.later(stepQuery, [this](std::int64_t step) {
    if (step > step_)
      throw StoreError(StoreError::Kind::Newer,
                       "a newer version of this program has taken the database over");
  });
}

/// Whether a commit without an answer was done is not known.
void Database::commit(Lease& lease) {
  try {
    (*lease).commit();
  } catch (...) {
    if (!undo(lease) && dialect().kind == Dialect::Kind::Postgresql)
      throw StoreError(StoreError::Kind::Busy, "the connection was lost");
    throw;
  }
}

void Database::runWriter(const Work& work, std::string_view beginning, Deadline until) {
  Lease lease(pool_, ConnectionPool::Use::Write, until);
  runOn(lease, until, Use::Writing, [&](Connection& db) {
    const std::int64_t before = db.roundTrips();
    beginWrite(db, beginning);
    work(db);
    // It may be lost since its last use, which is harmless as long as no commit was sent.
    if (db.roundTrips() == before) db.flush();
  });
  commit(lease);
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

void Database::readOn(Lease& lease, Deadline until, std::string_view exported, const Work& work) {
  runOn(lease, until, Use::Reading, [&](Connection& db) {
    db.later(db.dialect().beginRead);
    if (!exported.empty()) db.later("set transaction snapshot '" + std::string(exported) + "'");
    work(db);
    db.endReading();
  });
}

void Database::read(const Work& work) {
  const Deadline until = deadlineFor(Wait::Full);
  runRepeated(until, [&] {
    Lease lease(pool_, ConnectionPool::Use::Read, until);
    readOn(lease, until, {}, work);
  });
}

bool Database::readIfFree(const Work& work, std::string_view exported) {
  const Deadline now = steady_clock::now();
  try {
    runRepeated(now, [&] {
      Lease lease(pool_, ConnectionPool::Use::Read, now);
      readOn(lease, deadlineFor(Wait::Full), exported, work);
    });
    return true;
  } catch (const StoreError& error) {
    if (error.kind() != StoreError::Kind::Busy && error.kind() != StoreError::Kind::Contested) throw;
    return false;
  }
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

/// Throws the exception that is being handled, as the store's where it is the database library's.
[[noreturn]] static void rethrowPlain() {
  try {
    throw;
  } catch (const soci::soci_error&) {
    rethrowAsStoreError();
  }
}

/// Throws what kept the transaction from beginning.
void Database::runGroupOnce(WriteQueue::Group& group) {
  const Deadline until = (*std::ranges::min_element(group, {}, &WriteQueue::Waiting::until))->until;
  bool begun = false;
  const Work work = [&](Connection& db) {
    const bool alone = group.size() == 1;
    if (!alone) db.flush();  // what keeps it from beginning is nobody's failure by itself
    begun = true;
    if (alone) return (*group.front()->work)(db);
    for (WriteQueue::Waiting* each : group) runWithin(db, *each);
  };
  try {
    runWriter(work, dialect().beginWrite, until);
  } catch (...) {
    if (!begun) rethrowPlain();
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
    runOn(lease, until, Use::Reading, work);
  });
}

void Database::plain(const Work& work) {
  try {
    const Deadline until = deadlineFor(Wait::Full);
    Lease lease(pool_, ConnectionPool::Use::Write, until);
    runOn(lease, until, Use::Writing, [&](Connection& db) {
      work(db);
      db.flush();
    });
  } catch (const soci::soci_error&) {
    rethrowAsStoreError();
  }
}

}  // namespace vantry::server
