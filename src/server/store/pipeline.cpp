#include "server/store/pipeline.h"

#include <poll.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <utility>

#include <soci/postgresql/soci-postgresql.h>

namespace vantry::server {

namespace {

/// More than all requests have in common use. Searches are put together from many parts: what is kept of them
/// has an end.
constexpr std::size_t mostStatements = 800;

constexpr std::string_view connectionFailure = "08006";

[[noreturn]] void fail(const std::string& what, std::string_view state) {
  throw soci::postgresql_soci_error(what, std::string(state).c_str());
}

bool isOfName(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Numbers the values; "::" is a cast, and what is in quotes is text.
ServerStatement numbered(std::string_view sql) {
  ServerStatement statement;
  bool quoted = false;
  for (std::size_t at = 0; at < sql.size(); ++at) {
    if (sql[at] == '\'') quoted = !quoted;
    const bool marks = !quoted && sql[at] == ':' && at + 1 < sql.size();
    if (marks && sql[at + 1] == ':') {
      statement.text += "::";
      ++at;
    } else if (marks && isOfName(sql[at + 1])) {
      const auto* const end = std::find_if_not(sql.begin() + at + 1, sql.end(), isOfName);
      statement.values.emplace_back(sql.begin() + at + 1, end);
      statement.text += '$' + std::to_string(statement.values.size());
      at = static_cast<std::size_t>(end - sql.begin()) - 1;
    } else {
      statement.text += sql[at];
    }
  }
  return statement;
}

}  // namespace

void Asked::Clear::operator()(pg_result* result) const {
  PQclear(result);
}

int Asked::rows() const {
  return PQntuples(answer.get());
}

std::int64_t Asked::changedRows() const {
  const std::string_view text = PQcmdTuples(answer.get());
  std::int64_t count = 0;
  std::from_chars(text.data(), text.data() + text.size(), count);
  return count;
}

std::optional<std::string_view> Asked::value(int row, int column) const {
  if (PQgetisnull(answer.get(), row, column) != 0) return std::nullopt;
  return std::string_view(PQgetvalue(answer.get(), row, column),
                          static_cast<std::size_t>(PQgetlength(answer.get(), row, column)));
}

/// The first one of a batch.
struct Pipeline::Failure {
  std::string what;
  std::string state;

  void note(const pg_result* result) {
    if (!state.empty()) return;
    const char* code = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    state = code == nullptr ? connectionFailure : std::string_view(code);
    what = PQresultErrorMessage(result);
  }
};

std::shared_ptr<ServerStatement> Pipeline::statement(std::string_view sql) {
  std::string key(sql);
  if (const auto found = statements_.find(key); found != statements_.end()) return found->second;
  auto fresh = std::make_shared<ServerStatement>(numbered(sql));
  if (statements_.size() >= mostStatements) return fresh;
  fresh->name = "s" + std::to_string(statements_.size());
  statements_.emplace(std::move(key), fresh);
  return fresh;
}

std::vector<std::string> Pipeline::statements() const {
  std::vector<std::string> texts;
  for (const auto& [text, statement] : statements_) texts.push_back(text);
  return texts;
}

void Pipeline::require(bool done) const {
  if (!done) fail(PQerrorMessage(server_), connectionFailure);
}

void Pipeline::sendOne(Sent& each) {
  ServerStatement& statement = *each.asked->statement;
  std::vector<const char*> values;
  for (const auto& value : each.asked->values) values.push_back(value ? value->c_str() : nullptr);
  const int count = static_cast<int>(values.size());
  if (statement.name.empty())
    return require(PQsendQueryParams(server_, statement.text.c_str(), count, nullptr, values.data(), nullptr,
                                     nullptr, 0) == 1);
  const bool isUnderWay = std::ranges::any_of(sent_, [&](const Sent& earlier) {
    return &earlier != &each && earlier.prepares && earlier.asked->statement == each.asked->statement;
  });
  each.prepares = !statement.isKept && !isUnderWay;
  if (each.prepares)
    require(PQsendPrepare(server_, statement.name.c_str(), statement.text.c_str(), 0, nullptr) == 1);
  require(PQsendQueryPrepared(server_, statement.name.c_str(), count, values.data(), nullptr, nullptr, 0) ==
          1);
}

void Pipeline::sync() {
  require(PQpipelineSync(server_) == 1);
}

void Pipeline::send() {
  settle();
  require(PQenterPipelineMode(server_) == 1);
  isOpen_ = true;
  sent_.reserve(waiting_.size());
  for (std::shared_ptr<Asked>& each : std::exchange(waiting_, {})) {
    sent_.push_back({.asked = std::move(each)});
    sendOne(sent_.back());
  }
  sync();
}

/// Ends the waiting when the time is over.
void Pipeline::awaitData() const {
  while (until_ && PQisBusy(server_) == 1) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*until_ - std::chrono::steady_clock::now());
    pollfd socket{.fd = PQsocket(server_), .events = POLLIN, .revents = 0};
    if (left.count() <= 0 || poll(&socket, 1, static_cast<int>(left.count())) == 0)
      fail("the database server does not answer", connectionFailure);
    require(PQconsumeInput(server_) == 1);
  }
}

/// The result of the next statement. Without one the connection is lost.
Pipeline::Result Pipeline::next() {
  awaitData();
  Result result(PQgetResult(server_));
  require(result != nullptr);
  if (PQresultStatus(result.get()) == PGRES_PIPELINE_SYNC) return result;
  while (const Result end{PQgetResult(server_)}) {
  }
  return result;
}

/// Reads the answers, and notes the first failure. Whatever was behind it did not run.
void Pipeline::collect(std::vector<Sent>& sent, Failure& failure) {
  const auto isDone = [&](const Result& result) {
    const ExecStatusType status = PQresultStatus(result.get());
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) return true;
    if (status != PGRES_PIPELINE_ABORTED) failure.note(result.get());
    return false;
  };
  for (Sent& each : sent) {
    if (each.prepares) each.asked->statement->isKept = isDone(next());
    Result result = next();
    if (isDone(result)) each.asked->answer = std::move(result);
  }
  endBatch();
}

void Pipeline::endBatch() {
  require(PQresultStatus(next().get()) == PGRES_PIPELINE_SYNC);
  require(PQexitPipelineMode(server_) == 1);
  isOpen_ = false;
}

void Pipeline::flush() {
  if (waiting_.empty()) return settle();
  send();
  std::vector<Sent> sent = std::exchange(sent_, {});
  Failure failure;
  collect(sent, failure);
  if (!failure.state.empty()) fail(failure.what, failure.state);
  for (const Sent& each : sent) {
    if (each.asked->judge) each.asked->judge(*each.asked);
  }
}

void Pipeline::sendOff() {
  if (!waiting_.empty()) send();
}

/// Whoever sent them off does not care what became of them, only that the connection is well.
void Pipeline::settle() {
  if (!isOpen_) return;
  std::vector<Sent> sent = std::exchange(sent_, {});
  Failure ignored;
  collect(sent, ignored);
  // The one who gets the connection next must not find it in a transaction that failed.
  if (!ignored.state.empty()) require(Result(PQexec(server_, "rollback")) != nullptr);
}

bool Pipeline::answersWithin(std::chrono::milliseconds longest) {
  until_ = std::chrono::steady_clock::now() + longest;
  try {
    send();
    settle();
    until_.reset();
    return true;
  } catch (const soci::soci_error&) {
    return false;
  }
}

}  // namespace vantry::server
