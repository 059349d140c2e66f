#include "server/store/query_help.h"
#include "server/store/query.h"

#include <algorithm>

namespace vantry::server {

std::vector<NamedRow> namedRows(Query& query) {
  std::vector<NamedRow> rows;
  NamedRow row;
  query.into(row.id, row.name);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::string keyList() {
  std::string keys;
  for (std::size_t place = 0; place < keysAtOnce; ++place) {
    keys += (place > 0 ? ", :id" : ":id") + std::to_string(place);
  }
  return keys;
}

void bindKeys(Query& query, std::span<const std::int64_t> keys) {
  for (std::size_t place = 0; place < keysAtOnce; ++place) {
    bindRow(query, place, "id", keys[std::min(place, keys.size() - 1)]);
  }
}

std::shared_ptr<std::deque<Query>> askByKeys(Connection& db, std::string_view sql,
                                             std::span<const std::int64_t> keys,
                                             const std::function<void(Query&)>& bindRest) {
  auto queries = std::make_shared<std::deque<Query>>();
  for (; !keys.empty(); keys = keys.subspan(std::min(keysAtOnce, keys.size()))) {
    Query& query = queries->emplace_back(db, sql);
    bindKeys(query, keys.first(std::min(keysAtOnce, keys.size())));
    if (bindRest) bindRest(query);
    query.send();
  }
  return queries;
}

static std::string valueSql(const InsertColumn& column, const std::string& row) {
  if (column.value.empty()) return ":" + std::string(column.name) + row;
  std::string sql;
  for (const char each : column.value) each == '#' ? sql += row : sql += each;
  return sql;
}

std::string insertSql(std::string_view table, std::span<const InsertColumn> columns, std::size_t rows) {
  std::string sql = "insert into " + std::string(table) + " (";
  for (const InsertColumn& column : columns)
    sql.append(&column == columns.data() ? "" : ", ").append(column.name);
  sql += ") values ";
  for (std::size_t row = 0; row < rows; ++row) {
    sql += row == 0 ? "(" : ", (";
    for (const InsertColumn& column : columns)
      sql.append(&column == columns.data() ? "" : ", ").append(valueSql(column, std::to_string(row)));
    sql += ')';
  }
  return sql;
}

std::string bytewise(Connection& db, std::string_view column) {
  const bool plain = db.dialect().kind == Dialect::Kind::Sqlite;
  return std::string(column) + (plain ? "" : " collate \"C\"");
}

namespace {

/// How PostgreSQL plans. SQLite knows one way only.
struct Planning {
  const char* cache;
  const char* otherJoins;  ///< than one by one
  const char* reordered;   ///< of joins of up to so many tables every order is tried
};

void setPlanning(Connection& db, const Planning& planning) {
  if (db.dialect().kind == Dialect::Kind::Sqlite) return;
  Query query(db,
              "select set_config('plan_cache_mode', :cache, true), set_config('enable_hashjoin', :others, "
              "true), set_config('enable_mergejoin', :others, true), set_config('join_collapse_limit', "
              ":reordered, true)");
  query.bind("cache", planning.cache).bind("others", planning.otherJoins);
  query.bind("reordered", planning.reordered).later();
}

constexpr const char* usual = "8";

}  // namespace

void planForSearch(Connection& db) {
  setPlanning(db, {.cache = "force_custom_plan", .otherJoins = "off", .reordered = "1"});
}

void planByIndexes(Connection& db) {
  setPlanning(db, {.cache = "force_generic_plan", .otherJoins = "off", .reordered = usual});
}

void planInOrder(Connection& db) {
  setPlanning(db, {.cache = "force_generic_plan", .otherJoins = "off", .reordered = "1"});
}

void planAsUsual(Connection& db) {
  setPlanning(db, {.cache = "force_generic_plan", .otherJoins = "on", .reordered = usual});
}

std::string keysIn(Connection& db, std::string_view name) {
  const std::string value = ":" + std::string(name);
  if (db.dialect().kind == Dialect::Kind::Sqlite) return "select value from json_each(" + value + ")";
  // Of an array the planner knows how long it is.
  return "select value from unnest(cast(translate(" + value + ", '[]', '{}') as bigint[])) value";
}

std::string orderedKeysIn(Connection& db, std::string_view name) {
  const std::string text = ":" + std::string(name);
  if (db.dialect().kind == Dialect::Kind::Sqlite)
    return "select value, key as place from json_each(" + text + ")";
  // Of a text the planner expects a thousand parts.
  return "select cast(part as bigint) as value, place from string_to_table(translate(" + text +
         ", '[]', ''), ',') with ordinality parts(part, place)";
}

std::string amongFew(Connection& db, std::string_view select) {
  const std::string text(select);
  // Of an array the planner expects ten.
  return db.dialect().kind == Dialect::Kind::Sqlite ? "in (" + text + ")" : "= any(array(" + text + "))";
}

std::string keysText(std::span<const std::int64_t> keys) {
  std::string text = "[";
  for (const std::int64_t key : keys) text += (text.size() == 1 ? "" : ",") + std::to_string(key);
  return text + "]";
}

std::string inRange(Connection& db, std::string_view column) {
  return bytewise(db, column) + " >= :low and " + bytewise(db, column) + " <= :high";
}

}  // namespace vantry::server
