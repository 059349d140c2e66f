#include "support/server_case.h"

#include <stdlib.h>

#include <stdexcept>

#include <httplib.h>
#include <nlohmann/json.hpp>

#include "server/access/passwords.h"
#include "server/base/moment.h"
#include "server/setup/administration.h"
#include "server/store/migrations.h"
#include "server/store/query.h"

namespace vantry::server::test {

namespace {

using nlohmann::json;

Record readMembers(const json& object) {
  Record record;
  for (const auto& [tag, value] : object.items()) record[tag] = value.get<std::string>();
  return record;
}

WireAnswer readAnswer(const httplib::Result& result) {
  if (!result) throw std::runtime_error("no answer: " + httplib::to_string(result.error()));
  WireAnswer answer;
  answer.status = result->status;
  answer.body = result->body;
  answer.retryAfter = result->get_header_value("Retry-After");
  const json document = json::parse(answer.body, nullptr, false);
  if (!document.is_object()) return answer;
  if (document.contains("error")) answer.error = document["error"].get<std::string>();
  if (!document.contains("rc")) return answer;
  answer.rc = document["rc"].get<int>();
  answer.head = readMembers(document["head"]);
  for (const json& record : document["records"]) answer.records.push_back(readMembers(record));
  return answer;
}

std::vector<std::string> owned(const std::vector<std::string_view>& codes) {
  return {codes.begin(), codes.end()};
}

}  // namespace

TempFolder::TempFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vantry-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for a test");
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;  // a test that ends must not fail for a file that stays behind
  std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> WireAnswer::all(const std::string& tag) const {
  std::vector<std::string> values;
  for (const Record& record : records) {
    const auto found = record.find(tag);
    values.push_back(found == record.end() ? std::string() : found->second);
  }
  return values;
}

class WireClient::Impl {
 public:
  Impl(int port, bool tls)
      : client((tls ? "https" : "http") + std::string("://127.0.0.1:") + std::to_string(port)) {
    client.set_keep_alive(true);
    client.set_tcp_nodelay(true);
    client.set_read_timeout(60);
    client.enable_server_certificate_verification(false);
  }
  httplib::Client client;
};

WireClient::WireClient(int port, bool tls) : impl_(std::make_unique<Impl>(port, tls)) {}

WireClient::~WireClient() = default;

WireAnswer WireClient::get(const std::string& path) {
  return readAnswer(impl_->client.Get(path.c_str()));
}

WireAnswer WireClient::post(const std::string& path, const std::string& body, const Record& headers) {
  const httplib::Headers all(headers.begin(), headers.end());
  return readAnswer(impl_->client.Post(path.c_str(), all, body, "application/json"));
}

WireAnswer WireClient::login(const std::string& name, const std::string& password) {
  WireAnswer answer = post("/v1/login", json{{"operator", name}, {"password", password}}.dump());
  if (answer.status == 200) token = json::parse(answer.body)["session"].get<std::string>();
  return answer;
}

Record WireClient::authorization() const {
  return {{"Authorization", "Bearer " + token}};
}

WireAnswer WireClient::send(const std::string& code, const Tags& tags, const std::string& requestId) {
  json pairs = json::array();
  for (const auto& [tag, value] : tags) pairs.push_back({tag, value});
  Record headers = authorization();
  headers["Request-Id"] = requestId.empty() ? token.substr(0, 8) + std::to_string(++requests_) : requestId;
  return post("/v1/request/" + code, json{{"tags", pairs}}.dump(), headers);
}

void makeSmallLibrary(const std::string& url) {
  Database database(url, {.create = true});
  migrate(database);
  const std::string hash = hashPassword("password-1", HashCost::Quick);
  database.write([&](Connection& db) {
    addLibrary(db, "City Library");
    addLocation(db, "Main", "City Library");
    addLocation(db, "Branch", "City Library");
    addPatronGroup(db, "Students");
    addOperator(db, {.login = "all", .name = "Al Able", .passwordHash = hash}, 0);
    addOperator(db, {.login = "view", .name = "Vi Ewer", .passwordHash = hash}, 0);
    setRights(db, "all", "Main", owned(allRights()), 0);
    setRights(db, "all", "Branch", owned(allRights()), 0);
    setRights(db, "view", "Main", owned(viewRights()), 0);
    db.run(
        "insert into patrons (id, last_name, first_name, middle_name, search_name) "
        "values (1, 'Holm', 'Nora', 'B.', 'holm')");
    db.run(
        "insert into patrons (id, last_name, first_name, search_name, withheld) "
        "values (2, 'Quiet', 'Quentin', 'quiet', 1)");
  });
}

void ServerCase::SetUp() {
  now = *parseMoment("2026-11-24 12:00:00");
  place_ = std::make_unique<TestStore>(kind_);
  database = place_->url();
  makeSmallLibrary(database);
  store_ = std::make_unique<Database>(database);
  start();
}

ServerCase::~ServerCase() {
  stop();
}

void ServerOnEachDatabase::SetUp() {
  if (!TestStore::isOffered(GetParam())) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
  ServerCase::SetUp();
}

Server::Options ServerCase::options() const {
  Server::Options options;
  options.database = database;
  options.threads = 8;
  options.patience = 1;
  options.quickHashes = true;
  options.directory = directory;
  options.clock = [this] { return now; };
  return options;
}

void ServerCase::start() {
  server = std::make_unique<Server>(options());
  server->start();
}

void ServerCase::stop() {
  server.reset();
}

std::unique_ptr<Server> ServerCase::another() const {
  auto second = std::make_unique<Server>(options());
  second->start();
  return second;
}

std::unique_ptr<WireClient> ServerCase::stranger() {
  return std::make_unique<WireClient>(server->port());
}

std::unique_ptr<WireClient> ServerCase::client(const std::string& login, int location) {
  auto made = stranger();
  EXPECT_EQ(made->login(login, "password-1").status, 200);
  EXPECT_EQ(made->send("SLL", {{"LOC", std::to_string(location)}}).rc, 0);
  return made;
}

void ServerCase::sql(const std::string& statement) {
  store_->write([&](Connection& db) { db.run(statement); });
}

std::string ServerCase::value(const std::string& query) {
  return valueOf(*store_, query);
}

std::int64_t ServerCase::addBooking(const std::string& starts, const std::string& ends,
                                    const Record& fields) {
  Record columns{{"location_id", "1"},
                 {"booking_type", "3"},
                 {"patron_id", "1"},
                 {"created_at", "0"},
                 {"updated_at", "0"}};
  columns["starts_at"] = std::to_string(parseMoment(starts).value());
  columns["ends_at"] = std::to_string(parseMoment(ends).value());
  for (const auto& [column, given] : fields) columns[column] = given;
  std::string names;
  std::string values;
  for (const auto& [column, given] : columns) {
    names += (names.empty() ? "" : ", ") + column;
    values += (values.empty() ? "" : ", ") + given;
  }
  sql("insert into bookings (" + names + ") values (" + values + ")");
  return std::stoll(value("select max(id) from bookings"));
}

}  // namespace vantry::server::test
