#include "support/server_desk_library.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

#include <nlohmann/json.hpp>

#include "server/access/passwords.h"
#include "server/setup/administration.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/schema_search.h"

namespace vantry::server {

namespace {

constexpr std::string_view content = R"(
insert into libraries (id, name) values (1, 'Town Library');
insert into locations (id, library_id, name) values (1, 1, 'Main Desk'), (2, 1, 'Branch'), (3, 1, 'Museum');
insert into patron_groups (id, name) values (1, 'Students'), (2, 'Teachers');
insert into patrons (id, last_name, first_name, search_name, expires_at, hold_mail, fees, late_returns) values
  (1, 'Bell', 'Ada', 'bell', 1798761600, 0, 0, 0), (2, 'Dent', 'Cy', 'dent', null, 1, 0, 0),
  (3, 'Eden', 'Flo', 'eden', 1767225600, 0, 0, 0), (4, 'Gray', 'Hal', 'gray', null, 0, 2550, 0),
  (5, 'Ivey', 'Jo', 'ivey', null, 0, 0, 0), (6, 'Kent', 'Lou', 'kent', null, 0, 0, 4);
insert into patron_barcodes (id, patron_id, patron_group_id, barcode, status_id) values
  (1, 1, 1, 'P100', 1), (2, 2, 1, 'P200', 1), (3, 3, 1, 'P300', 1), (4, 4, 1, 'P400', 1), (5, 5, 1, 'P500', 3),
  (6, 6, 1, 'P600', 1), (7, 1, 2, 'P101', 1);
insert into room_types (id, name, storage) values (1, 'Classroom', 0), (2, 'Storage', 1);
insert into rooms (id, location_id, room_type_id, number, name, capacity, created_at) values
  (1, 1, 1, '101', 'Classroom A', 20, 0), (2, 1, 1, '102', 'Classroom B', 40, 0), (3, 1, 2, '001', 'Store', 0, 0),
  (4, 3, 1, '301', 'Museum Room', 10, 0), (5, 3, 2, '300', 'Museum Store', 0, 0), (6, 2, 2, '200', 'Branch Store', 0, 0);
insert into equipment_types (id, name, of_groups, setup_minutes, cleanup_minutes) values
  (1, 'Television', 0, 10, 5), (2, 'Projector', 0, 15, 0), (3, 'Video Set', 1, 20, 20), (4, 'Camera', 0, 0, 0);
insert into equipment (id, is_group, equipment_type_id, group_id, number, location_id, room_id, created_at) values
  (1, 0, 1, null, 'TV1', 1, 3, 0), (2, 0, 1, null, 'TV2', 1, 3, 0), (3, 0, 2, null, 'PRJ1', 1, 3, 0),
  (4, 0, 2, null, 'PRJ2', 1, 1, 0), (5, 1, 3, null, 'SET1', 1, 3, 0), (6, 0, 1, 5, 'TV3', 1, 3, 0),
  (7, 0, 2, 5, 'PRJ3', 1, 3, 0), (8, 0, 1, null, 'MTV', 3, 5, 0), (9, 0, 4, null, 'CAM1', 1, 3, 0),
  (10, 0, 2, null, 'BPRJ', 2, 6, 0);
insert into equipment_barcodes (equipment_id, barcode, status_id) values
  (1, 'E1', 1), (1, 'E1OLD', 2), (2, 'E2', 1), (3, 'E3', 1), (6, 'E6', 1);
insert into equipment_statuses (equipment_id, status_id, applied_at, note) values
  (9, 1, 1772000000, 'gone'), (2, 3, 1772000000, 'scratched'), (2, 7, 1772000000, '');
insert into room_statuses (room_id, status_id, applied_at, note) values (2, 13, 1772000000, 'flickers');
insert into equipment_notes (equipment_id, note_type_id, content, updated_at) values
  (1, 2, 'Ask for the remote.', 0), (1, 3, 'Hand out the remote.', 0), (1, 4, 'Count the cables.', 0);
insert into room_notes (room_id, note_type_id, content, updated_at) values (1, 13, 'Take the key.', 0), (1, 14, 'Key back?', 0);
insert into media_types (id, name) values (1, 'Film'), (2, 'Slides');
insert into media_type_equipment (media_type_id, equipment_type_id) values (1, 1), (1, 4), (2, 2);
insert into titles (id, title, search_title) values (1, 'Volcanoes', 'volcanoes'), (2, 'Glaciers', 'glaciers');
insert into holdings (id, title_id, location_id, call_number, search_call_number, call_number_kind) values
  (1, 1, 1, 'QE 521', 'qe 521', 'MLC#'), (2, 1, 2, 'QE 522', 'qe 522', 'MLC#'), (3, 2, 1, '551.3', '551.3', 'MDEW');
insert into items (id, holding_id, title_id, location_id, media_type_id, barcode, copy, status) values
  (1, 1, 1, 1, 1, 'M1', 1, ''), (2, 1, 1, 1, 1, 'M2', 2, ''), (3, 2, 1, 2, 1, 'M3', 1, ''),
  (4, 3, 2, 1, 2, 'M4', 1, ''), (5, 3, 2, 1, 2, 'M5', 2, 'Lost');
insert into policies (id, location_id, patron_group_id, most_bookings, most_items, most_equipment, most_late_returns,
  most_fees, warning_minutes, early_charge_minutes) values
  (1, 1, 1, 3, 2, 3, 3, 1000, 30, 60), (2, 1, null, -1, -1, -1, -1, -1, 0, 60);
insert into policy_locations (policy_id, location_id, security) values (1, 1, 1), (1, 2, 0), (2, 1, 1);
insert into policy_equipment_types (policy_id, equipment_type_id, may_book, may_deliver, may_pick_up, longest,
  longest_unit) values (1, 1, 1, 1, 1, 8, 'H'), (1, 2, 1, 0, 1, 0, 'U'), (1, 4, 0, 1, 1, 0, 'U');
insert into policy_media_types (policy_id, media_type_id, may_book, may_deliver, may_pick_up, longest, longest_unit)
  values (1, 1, 1, 1, 1, 2, 'D'), (1, 2, 0, 1, 0, 0, 'U');
insert into policy_room_types (policy_id, room_type_id, may_deliver, may_schedule, longest, longest_unit) values
  (1, 1, 1, 1, 4, 'H');
)";

constexpr std::string_view exceptions = R"(
insert into calendar_exceptions (calendar_id, on_date, is_open, opens_at, closes_at) values
  (1, 1773705600, 0, 0, 0), (1, 1773792000, 1, 600, 720);
)";

/// A half year for each kind of calendar of the first desk, Monday to Friday from eight to eight.
void addCalendars(Connection& db) {
  for (int kind = 0; kind < 3; ++kind) {
    Query query(db,
                "insert into calendars (id, location_id, kind, description, starts_on, ends_on) values "
                "(:id, 1, :kind, 'Spring', :starts_on, :ends_on)");
    query.bind("id", kind + 1).bind("kind", kind);
    query.bind("starts_on", makeMoment(2026, 1, 1)).bind("ends_on", makeMoment(2026, 6, 30)).run();
    for (int weekday = 1; weekday <= 5; ++weekday) {
      Query day(db,
                "insert into calendar_days (calendar_id, weekday, is_open, opens_at, closes_at) values "
                "(:id, :weekday, 1, 480, 1200)");
      day.bind("id", kind + 1).bind("weekday", weekday).run();
    }
  }
}

void runAll(Connection& db, std::string_view sql) {
  while (!sql.empty()) {
    const std::size_t end = sql.find(";\n");
    if (end == std::string_view::npos) return;
    db.run(std::string(sql.substr(0, end)));
    sql.remove_prefix(end + 2);
  }
}

/// The content gives its keys itself, which PostgreSQL does not count.
void moveCountersOn(Connection& db) {
  if (db.dialect().kind != Dialect::Kind::Postgresql) return;
  db.run(
      "do $$ declare t record; begin for t in select table_name from information_schema.columns where "
      "table_schema = current_schema() and column_name = 'id' and is_identity = 'YES' loop "
      "execute format('select setval(pg_get_serial_sequence(%L, ''id''), max(id)) from %I having max(id) > "
      "0', "
      "t.table_name, t.table_name); end loop; end $$");
}

Got readReply(const std::string& json) {
  const nlohmann::json read = nlohmann::json::parse(json);
  Got got;
  got.rc = read.at("rc").get<int>();
  got.head = read.at("head").get<std::map<std::string, std::string>>();
  for (const auto& record : read.at("records")) {
    got.records.push_back(record.get<std::map<std::string, std::string>>());
  }
  return got;
}

std::string pairsText(const std::map<std::string, std::string>& pairs) {
  std::string text;
  for (const auto& [tag, value] : pairs) text += (text.empty() ? "" : " ") + tag + "=" + value;
  return text;
}

std::string nextId() {
  static std::atomic<int> count = 0;
  return "request " + std::to_string(++count);
}

std::string nextName() {
  static std::atomic<int> count = 0;
  return "vantry_" + std::to_string(getpid()) + "_" + std::to_string(++count);
}

std::string postgresqlBase() {
  const char* url = std::getenv("VANTRY_TEST_POSTGRESQL");
  return url == nullptr ? std::string() : std::string(url);
}

}  // namespace

std::string Got::first(const std::string& tag) const {
  if (const auto found = head.find(tag); found != head.end()) return found->second;
  for (const auto& record : records) {
    if (const auto found = record.find(tag); found != record.end()) return found->second;
  }
  return {};
}

std::string Got::all(const std::string& tag) const {
  std::string text;
  for (const auto& record : records) {
    const auto found = record.find(tag);
    if (found != record.end()) text += (text.empty() ? "" : ",") + found->second;
  }
  return text;
}

std::string Got::text() const {
  std::string text = std::to_string(rc) + "|" + pairsText(head);
  for (const auto& record : records) text += "|" + pairsText(record);
  return text;
}

std::vector<TagValue> readTags(const std::string& text) {
  std::vector<TagValue> tags;
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t end = rest.find("; ");
    const std::string_view pair = rest.substr(0, end);
    const std::size_t mark = pair.find('=');
    if (mark != std::string_view::npos) {
      tags.push_back({std::string(pair.substr(0, mark)), std::string(pair.substr(mark + 1))});
    }
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 2);
  }
  return tags;
}

Got answerTo(RequestRunner& runner, const RequestRunner::Incoming& incoming) {
  const auto answer = runner.run(incoming);
  if (answer.kind != RequestRunner::Answer::Kind::Done)
    throw std::runtime_error("no answer to " + std::string(incoming.code));
  return readReply(answer.json);
}

bool TestStore::isOffered(const std::string& kind) {
  return kind == "sqlite" || !postgresqlBase().empty();
}

TestStore::TestStore(const std::string& kind) {
  const std::string name = nextName();
  if (kind == "sqlite") {
    folder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder_);
    url_ = (folder_ / "a library.sqlite").string();
    std::ofstream{url_};  // an empty file is an empty database
    return;
  }
  base_ = postgresqlBase();
  schema_ = name;
  Database(base_).plain([&](Connection& db) { db.run("create schema " + schema_); });
  url_ = base_ + (base_.find('?') == std::string::npos ? "?" : "&") + "options=-csearch_path%3D" + schema_ +
         ",public";
}

TestStore::~TestStore() {
  if (schema_.empty()) {
    std::error_code ignored;  // a folder that stays behind is no failure of a test
    std::filesystem::remove_all(folder_, ignored);
    return;
  }
  try {
    Database(base_).plain([&](Connection& db) { db.run("drop schema " + schema_ + " cascade"); });
  } catch (const StoreError& error) {
    ADD_FAILURE() << error.what();
  }
}

DeskLibrary::DeskLibrary(const std::string& kind)
    : store_(kind),
      now_(std::make_shared<Moment>(makeMoment(2026, 3, 2, 9))),
      database_(std::make_unique<Database>(store_.url())) {
  migrate(*database_);
  database_->write([&](Connection& db) {
    runAll(db, content);
    addCalendars(db);
    runAll(db, exceptions);
    vantry::server::foldForSearch(db);
    moveCountersOn(db);
    const std::string hash = hashPassword("secret of the desk", HashCost::Quick);
    for (const char* login : {"desk", "chief", "clerk"}) {
      addOperator(db, {.login = login, .name = std::string("Operator ") + login, .passwordHash = hash},
                  *now_);
    }
    const std::vector<std::string_view> all = allRights();
    std::vector<std::string> rights(all.begin(), all.end());
    std::erase(rights, "OVPAT");
    setRights(db, "desk", "Main Desk", rights, *now_);
    setRights(db, "chief", "Main Desk", {"OVPAT", "BKV"}, *now_);
    setRights(db, "clerk", "Main Desk", {"BKV"}, *now_);
  });
  runner_ = std::make_unique<RequestRunner>(*database_, clock(), HashCost::Quick);
  for (const char* login : {"desk", "chief", "clerk"}) tokens_[login] = logOn(login);
}

std::string DeskLibrary::logOn(const std::string& login) {
  tokens_[login] = runner_->login(login, "secret of the desk", "127.0.0.1").token;
  send("SLL", "LOC=1", login);
  return tokens_[login];
}

Clock DeskLibrary::clock() const {
  return [now = now_] { return *now; };
}

Got DeskLibrary::send(const std::string& code, const std::string& tags, const std::string& login) {
  return sendTo(*runner_, code, tags, login);
}

Got DeskLibrary::sendTo(RequestRunner& runner, const std::string& code, const std::string& tags,
                        const std::string& login) {
  return sendWithId(runner, nextId(), code, tags, login);
}

Got DeskLibrary::sendWithId(RequestRunner& runner, const std::string& id, const std::string& code,
                            const std::string& tags, const std::string& login) {
  const std::vector<TagValue> read = readTags(tags);
  return answerTo(runner, {.token = tokens_.at(login), .code = code, .requestId = id, .tags = read});
}

Got DeskLibrary::run(const std::string& code, std::span<const TagValue> tags, const std::string& login) {
  const std::string id = nextId();
  return answerTo(*runner_, {.token = tokens_.at(login), .code = code, .requestId = id, .tags = tags});
}

void DeskLibrary::setNow(int dayOfMarch, int hours, int minutes) {
  *now_ = makeMoment(2026, 3, dayOfMarch, hours, minutes);
  for (const auto& [login, token] : tokens_) logOn(login);  // sessions do not last for days
}

void DeskLibrary::execute(const std::string& sql) {
  database_->write([&](Connection& db) { db.run(sql); });
}

void DeskLibrary::foldForSearch() {
  database_->write([](Connection& db) { vantry::server::foldForSearch(db); });
}

std::string DeskLibrary::value(const std::string& sql) {
  return valueOf(*database_, sql);
}

std::string valueOf(Database& database, const std::string& sql) {
  std::string text;
  database.read([&](Connection& db) {
    Query query(db, sql);
    query.into(text);
    while (query.next()) {
    }
  });
  return text;
}

void StoreOnEach::SetUp() {
  if (!TestStore::isOffered(GetParam())) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
  store = std::make_unique<TestStore>(GetParam());
  prepare();
}

void OnEachDatabase::SetUp() {
  if (!TestStore::isOffered(GetParam())) GTEST_SKIP() << "VANTRY_TEST_POSTGRESQL is not set";
  library_ = std::make_unique<DeskLibrary>(GetParam());
  prepare();
}

Got OnEachDatabase::newBooking(const std::string& when, const std::string& things, const std::string& place,
                               int type) {
  return send("NEWBK", booking(when, place, type, things));
}

std::string databaseName(const testing::TestParamInfo<std::string>& kind) {
  return kind.param;
}

std::string times(int dayOfMarch, const std::string& from, const std::string& until) {
  const std::string date = dateText(makeMoment(2026, 3, dayOfMarch));
  return "STIME=" + date + " " + from + ":00; ETIME=" + date + " " + until + ":00";
}

std::string booking(const std::string& times, const std::string& place, int type, const std::string& things,
                    const std::string& rest) {
  return times + "; PID=1; PGID=1; PPID=0; ADBK=N; " + place + "; BTID=" + std::to_string(type) + "; " +
         (things.empty() ? "" : things + "; ") + "SCHCOM=; ODE=0; OPU=0; WIZ=N; " + rest;
}

std::optional<StoreError::Kind> errorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const StoreError& error) {
    return error.kind();
  }
  return std::nullopt;
}

}  // namespace vantry::server
