#include "server/store/query.h"

#include <algorithm>
#include <charconv>
#include <utility>

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
constexpr std::size_t mostOfOneText = 16;

/// A database server that is busy answering reads no further: what waits for it has an end.
constexpr std::size_t mostWaiting = 64;

std::int64_t numberIn(std::string_view text) {
  std::int64_t number = text == "t" ? 1 : 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

/// Marks the time in which the database is to answer.
class Connection::Asking {
 public:
  explicit Asking(Connection& db) : db_(db) {
    if (db_.pipeline_) db_.askedAt_ = std::chrono::steady_clock::now().time_since_epoch().count();
  }
  ~Asking() { db_.askedAt_ = 0; }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

  void noteAnswer() {
    ++db_.roundTrips_;
    if (db_.pipeline_) db_.answeredAt_ = std::chrono::steady_clock::now();
  }

 private:
  Connection& db_;
};

Connection::Connection(const Dialect& dialect, const std::string& connectText)
    : dialect_(dialect),
      session_(factoryOf(dialect), connectText),
      answeredAt_(std::chrono::steady_clock::now()) {
  if (dialect.kind != Dialect::Kind::Postgresql) return;
  PQsetNoticeProcessor(serverOf(session_), dropNotice, nullptr);
  socket_.copy(PQsocket(serverOf(session_)));
  pipeline_ = std::make_unique<Pipeline>(serverOf(session_));
}

void Connection::run(const std::string& sql) {
  flush();
  Asking asking(*this);
  soci::statement statement(session_);
  statement.alloc();
  // Prepared for one use: another server would be asked three times otherwise.
  statement.prepare(sql, soci::details::st_one_time_query);
  statement.define_and_bind();
  statement.execute(true);
  asking.noteAnswer();
}

void Connection::add(std::shared_ptr<Asked> asked) {
  if (pipeline_->waiting() >= mostWaiting) flush();
  pipeline_->add(std::move(asked));
}

void Connection::later(std::string_view sql, const Judge& judge) {
  if (!pipeline_) {
    if (!judge) return run(std::string(sql));
    std::int64_t number = 0;
    Query query(*this, sql);
    query.into(number);
    while (query.next()) {
    }
    return judge(number);
  }
  std::shared_ptr<Asked> last;
  while (!sql.empty()) {
    const std::size_t end = std::min(sql.find("; "), sql.size());
    last = std::make_shared<Asked>();
    last->statement = std::make_shared<ServerStatement>();
    last->statement->text = sql.substr(0, end);
    add(last);
    sql.remove_prefix(std::min(end + 2, sql.size()));
  }
  if (judge && last)
    last->judge = [judge](const Asked& asked) {
      judge(asked.rows() == 0 ? 0 : numberIn(asked.value(0, 0).value_or("0")));
    };
}

/// What was sent off before is read as well: the connection is free for any use afterwards.
void Connection::flush() {
  if (!pipeline_) return;
  const bool waits = pipeline_->waiting() > 0;
  Asking asking(*this);
  pipeline_->flush();
  if (waits) asking.noteAnswer();
}

void Connection::commit() {
  later("commit");
  flush();
}

void Connection::endReading() {
  if (!pipeline_) return run("commit");
  later("commit");
  pipeline_->sendOff();
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
  if (pipeline_) return later("set local statement_timeout = " + std::to_string(longest.count()));
  deadline_ = std::chrono::steady_clock::now() + longest;
  sqlite_api::sqlite3_progress_handler(handleOf(session_), stepsBetweenLooks, isPast, &deadline_);
}

/// A transaction of PostgreSQL takes its limit along when it ends.
void Connection::unlimitTime() {
  if (!pipeline_) sqlite_api::sqlite3_progress_handler(handleOf(session_), 0, nullptr, nullptr);
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
  return pipeline_ && PQstatus(serverOf(session_)) == CONNECTION_BAD;
}

bool Connection::answersWithin(std::chrono::milliseconds longest) {
  return !pipeline_ || pipeline_->answersWithin(longest);
}

/// A statement that was ended between taking the turn and passing it on to its transaction leaves it with the
/// connection. A file's engine undoes some transactions by itself.
void Connection::rollBack() {
  if (pipeline_) {
    pipeline_->drop();
    return run("rollback; select pg_advisory_unlock_all()");
  }
  if (sqlite_api::sqlite3_get_autocommit(handleOf(session_)) == 0) run("rollback");
}

void Connection::backTo(const std::string& savepoint) {
  if (pipeline_) pipeline_->drop();
  run("rollback to savepoint " + savepoint);
}

std::vector<std::string> Connection::statements() const {
  if (pipeline_) return pipeline_->statements();
  std::vector<std::string> texts;
  for (const auto& [text, statement] : statements_) texts.push_back(text);
  return texts;
}

Connection::Statements::node_type Connection::take(std::string_view sql) {
  if (const auto found = statements_.find(sql); found != statements_.end()) return statements_.extract(found);
  Asking asking(*this);
  soci::statement statement(session_);
  statement.alloc();
  statement.prepare(std::string(sql));
  asking.noteAnswer();
  return statements_.extract(statements_.emplace(std::string(sql), statement));
}

void Connection::give(Statements::node_type prepared) {
  // Searches are put together from many parts, and some ask one thing many times together: what is kept of
  // them has an end.
  if (statements_.size() < mostStatements && statements_.count(prepared.key()) < mostOfOneText)
    statements_.insert(std::move(prepared));
}

Query::Query(Connection& connection, std::string_view sql) : connection_(connection) {
  if (!connection.pipeline_) {
    prepared_ = connection.take(sql);
    return;
  }
  asked_ = std::make_shared<Asked>();
  asked_->statement = connection.pipeline_->statement(sql);
}

Query::~Query() {
  // A statement that failed, or that was left before its last row, is dropped: kept, it would hold its locks.
  if (asked_ || failed_ || (started_ && !ended_)) return;
  prepared_.mapped().bind_clean_up();
  connection_.give(std::move(prepared_));
}

Query::Value& Query::addValue(const char* name) {
  Value& kept = values_.emplace_back();
  kept.name = name;
  return kept;
}

Query& Query::bind(const char* name, std::int64_t value) {
  addValue(name).number = value;
  return *this;
}

Query& Query::bind(const char* name, std::string_view value) {
  Value& kept = addValue(name);
  kept.text = value;
  kept.isText = true;
  return *this;
}

Query& Query::bind(const char* name, std::optional<std::int64_t> value) {
  Value& kept = addValue(name);
  kept.number = value.value_or(0);
  kept.state = value ? soci::i_ok : soci::i_null;
  return *this;
}

void Query::define(std::int64_t& target) {
  targets_.emplace_back().wide = &target;
}

void Query::define(int& target) {
  targets_.emplace_back().narrow = &target;
}

void Query::define(bool& target) {
  targets_.emplace_back().flag = &target;
}

void Query::define(std::string& target) {
  targets_.emplace_back().text = &target;
}

/// A row is in the target; a NULL sets it to nothing.
void Query::fill(Target& target) {
  if (target.state == soci::i_null) {
    target.number = 0;
    if (target.text != nullptr) target.text->clear();
  }
  if (target.wide != nullptr) *target.wide = target.number;
  if (target.narrow != nullptr) *target.narrow = static_cast<int>(target.number);
  if (target.flag != nullptr) *target.flag = target.number != 0;
}

std::optional<std::string> Query::valueOf(const std::string& name) const {
  const auto found = std::ranges::find(values_, name, &Value::name);
  if (found == values_.end()) throw soci::soci_error("there is no value for " + name);
  if (found->state == soci::i_null) return std::nullopt;
  return found->isText ? found->text : std::to_string(found->number);
}

Query& Query::send() {
  if (!asked_ || sent_) return *this;
  for (const std::string& name : asked_->statement->values) asked_->values.push_back(valueOf(name));
  connection_.add(asked_);
  sent_ = true;
  return *this;
}

void Query::awaitAnswer() {
  send();
  if (!asked_->isAnswered()) connection_.flush();
  if (!asked_->isAnswered()) throw soci::soci_error("the statement did not run");
}

/// All of it when it gives no rows.
void Query::runOnFile(bool all) {
  soci::statement& statement = prepared_.mapped();
  for (Value& each : values_) {
    if (each.isText) {
      statement.exchange(soci::use(each.text, each.name));
    } else {
      statement.exchange(soci::use(each.number, each.state, each.name));
    }
  }
  for (Target& each : targets_) {
    if (each.text != nullptr) {
      statement.exchange(soci::into(*each.text, each.state));
    } else {
      statement.exchange(soci::into(each.number, each.state));
    }
  }
  Connection::Asking asking(connection_);
  statement.define_and_bind();
  statement.execute(all);
  asking.noteAnswer();
}

bool Query::fetch() {
  if (!asked_) return prepared_.mapped().fetch();
  if (row_ >= asked_->rows()) return false;
  int column = 0;
  for (Target& target : targets_) {
    const std::optional<std::string_view> value = asked_->value(row_, column++);
    target.state = value ? soci::i_ok : soci::i_null;
    if (value && target.text != nullptr) *target.text = *value;
    if (value && target.text == nullptr) target.number = numberIn(*value);
  }
  ++row_;
  return true;
}

bool Query::next() {
  if (ended_) return false;
  try {
    if (!started_) {
      started_ = true;
      asked_ ? awaitAnswer() : runOnFile(false);
    }
    ended_ = !fetch();
  } catch (...) {
    failed_ = true;
    throw;
  }
  if (!ended_) std::ranges::for_each(targets_, fill);
  return !ended_;
}

std::int64_t Query::run() {
  try {
    started_ = true;
    if (asked_) {
      awaitAnswer();
      return asked_->changedRows();
    }
    runOnFile(true);
    ended_ = true;
    return prepared_.mapped().get_affected_rows();
  } catch (...) {
    failed_ = true;
    throw;
  }
}

void Query::later() {
  if (asked_) {
    send();
  } else {
    run();
  }
}

}  // namespace vantry::server
