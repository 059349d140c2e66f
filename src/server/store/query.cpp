#include "server/store/query.h"

#include <algorithm>

#include <soci/postgresql/soci-postgresql.h>
#include <soci/sqlite3/soci-sqlite3.h>

namespace vantry::server {

namespace {

const soci::backend_factory& factoryOf(const Dialect& dialect) {
  if (dialect.kind == Dialect::Kind::Postgresql) return *soci::factory_postgresql();
  return *soci::factory_sqlite3();
}

PGconn* serverOf(soci::session& session) {
  return static_cast<soci::postgresql_session_backend*>(session.get_backend())->conn_;
}

/// What matters arrives as an error as well; the standard error is for people.
void dropNotice(void*, const char*) {}

/// More than all requests have in common use.
constexpr std::size_t mostStatements = 800;

}  // namespace

/// Marks the time in which the database is to answer.
class Connection::Asking {
 public:
  explicit Asking(Connection& db) : db_(db) {
    ++db_.roundTrips_;
    if (isServer()) db_.askedAt_ = std::chrono::steady_clock::now().time_since_epoch().count();
  }
  ~Asking() {
    if (isServer()) db_.askedAt_ = 0;
  }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

 private:
  [[nodiscard]] bool isServer() const { return db_.dialect_.kind == Dialect::Kind::Postgresql; }
  Connection& db_;
};

Connection::Connection(const Dialect& dialect, const std::string& connectText)
    : dialect_(dialect), session_(factoryOf(dialect), connectText) {
  if (dialect.kind != Dialect::Kind::Postgresql) return;
  PQsetNoticeProcessor(serverOf(session_), dropNotice, nullptr);
  socket_.copy(PQsocket(serverOf(session_)));
}

void Connection::run(const std::string& sql) {
  const Asking asking(*this);
  soci::statement statement(session_);
  statement.alloc();
  // Prepared for one use: another server would be asked three times otherwise.
  statement.prepare(sql, soci::details::st_one_time_query);
  statement.define_and_bind();
  statement.execute(true);
}

std::int64_t Connection::runForNumber(const std::string& sql) {
  const Asking asking(*this);
  long long number = 0;
  soci::indicator state = soci::i_ok;
  soci::statement statement(session_);
  statement.exchange(soci::into(number, state));
  statement.alloc();
  statement.prepare(sql, soci::details::st_one_time_query);
  statement.define_and_bind();
  statement.execute(true);
  return state == soci::i_ok ? number : 0;
}

void Connection::waitAtMost(std::chrono::milliseconds longest) {
  longest = std::max(longest, std::chrono::milliseconds(1));  // 0 is without end for some
  if (longest == longestWait_) return;
  run(std::string(dialect_.waitingTime) + std::to_string(longest.count()));
  longestWait_ = longest;
}

namespace {

/// How many steps a statement takes between two looks at the clock.
constexpr int stepsBetweenLooks = 20'000;

sqlite_api::sqlite3* handleOf(soci::session& session) {
  return static_cast<soci::sqlite3_session_backend*>(session.get_backend())->conn_;
}

int isPast(void* deadline) {
  const auto& until = *static_cast<std::chrono::steady_clock::time_point*>(deadline);
  return std::chrono::steady_clock::now() >= until ? 1 : 0;
}

}  // namespace

void Connection::limitTime(std::chrono::milliseconds longest) {
  if (dialect_.kind == Dialect::Kind::Postgresql)
    return run("set local statement_timeout = " + std::to_string(longest.count()));
  deadline_ = std::chrono::steady_clock::now() + longest;
  sqlite_api::sqlite3_progress_handler(handleOf(session_), stepsBetweenLooks, isPast, &deadline_);
}

/// A transaction of PostgreSQL takes its limit along when it ends.
void Connection::unlimitTime() {
  if (dialect_.kind == Dialect::Kind::Sqlite)
    sqlite_api::sqlite3_progress_handler(handleOf(session_), 0, nullptr, nullptr);
}

bool Connection::waitsLongerThan(std::chrono::milliseconds longest) const {
  using Steady = std::chrono::steady_clock;
  const Steady::rep since = askedAt_;
  return since != 0 && Steady::now() - Steady::time_point(Steady::duration(since)) > longest;
}

void Connection::breakOff() {
  socket_.shutDown();
}

bool Connection::isLost() {
  return dialect_.kind == Dialect::Kind::Postgresql && PQstatus(serverOf(session_)) == CONNECTION_BAD;
}

/// A statement that was ended between taking the turn and passing it on to its transaction leaves it with the
/// connection. A file's engine undoes some transactions by itself.
void Connection::rollBack() {
  if (dialect_.kind == Dialect::Kind::Postgresql) return run("rollback; select pg_advisory_unlock_all()");
  if (sqlite_api::sqlite3_get_autocommit(handleOf(session_)) == 0) run("rollback");
}

std::vector<std::string> Connection::statements() const {
  std::vector<std::string> texts;
  for (const auto& [text, statement] : statements_) texts.push_back(text);
  return texts;
}

Connection::Statements::node_type Connection::take(std::string_view sql) {
  if (const auto found = statements_.find(sql); found != statements_.end()) return statements_.extract(found);
  const Asking asking(*this);
  soci::statement statement(session_);
  statement.alloc();
  statement.prepare(std::string(sql));
  return statements_.extract(statements_.emplace(std::string(sql), statement).first);
}

void Connection::give(Statements::node_type prepared) {
  // Searches are put together from many parts: what is kept of them has an end.
  if (statements_.size() < mostStatements) statements_.insert(std::move(prepared));
}

Query::Query(Connection& connection, std::string_view sql)
    : connection_(connection), prepared_(connection.take(sql)), statement_(prepared_.mapped()) {}

Query::~Query() {
  // A statement that failed, or that was left before its last row, is dropped: kept, it would hold its locks.
  if (failed_ || (started_ && !ended_)) return;
  statement_.bind_clean_up();
  connection_.give(std::move(prepared_));
}

Query& Query::bind(const char* name, std::int64_t value) {
  Value& kept = values_.emplace_back();
  kept.number = value;
  statement_.exchange(soci::use(kept.number, name));
  return *this;
}

Query& Query::bind(const char* name, std::string_view value) {
  Value& kept = values_.emplace_back();
  kept.text = value;
  statement_.exchange(soci::use(kept.text, name));
  return *this;
}

Query& Query::bind(const char* name, std::optional<std::int64_t> value) {
  Value& kept = values_.emplace_back();
  kept.number = value.value_or(0);
  kept.state = value ? soci::i_ok : soci::i_null;
  statement_.exchange(soci::use(kept.number, kept.state, name));
  return *this;
}

void Query::define(std::int64_t& target) {
  Target& kept = targets_.emplace_back();
  kept.wide = &target;
  statement_.exchange(soci::into(kept.number, kept.state));
}

void Query::define(int& target) {
  Target& kept = targets_.emplace_back();
  kept.narrow = &target;
  statement_.exchange(soci::into(kept.number, kept.state));
}

void Query::define(bool& target) {
  Target& kept = targets_.emplace_back();
  kept.flag = &target;
  statement_.exchange(soci::into(kept.number, kept.state));
}

void Query::define(std::string& target) {
  Target& kept = targets_.emplace_back();
  kept.text = &target;
  statement_.exchange(soci::into(target, kept.state));
}

void Query::clearNulls() {
  for (Target& target : targets_) {
    if (target.state == soci::i_null) {
      target.number = 0;
      if (target.text != nullptr) target.text->clear();
    }
    if (target.wide != nullptr) *target.wide = target.number;
    if (target.narrow != nullptr) *target.narrow = static_cast<int>(target.number);
    if (target.flag != nullptr) *target.flag = target.number != 0;
  }
}

bool Query::next() {
  if (ended_) return false;
  try {
    if (!started_) {
      started_ = true;
      const Connection::Asking asking(connection_);
      statement_.define_and_bind();
      statement_.execute(false);
    }
    ended_ = !statement_.fetch();
  } catch (...) {
    failed_ = true;
    throw;
  }
  if (!ended_) clearNulls();
  return !ended_;
}

std::int64_t Query::run() {
  try {
    started_ = true;
    const Connection::Asking asking(connection_);
    statement_.define_and_bind();
    statement_.execute(true);
    ended_ = true;
    return statement_.get_affected_rows();
  } catch (...) {
    failed_ = true;
    throw;
  }
}

}  // namespace vantry::server
