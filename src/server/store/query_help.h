#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/named_row.h"
#include "server/store/query.h"

namespace vantry::server {

/// Runs the query to its end and leaves the last row in the targets; false when it gave none.
template <class... Targets>
bool fetchOne(Query& query, Targets&... targets) {
  query.into(targets...);
  bool found = false;
  while (query.next()) found = true;
  return found;
}

/// The rows of a query for an id and a name.
[[nodiscard]] std::vector<NamedRow> namedRows(Query& query);

/// Several keys in one statement, ":id0, :id1, ...": always as many, so that one text does for any number of
/// them. What is wanting repeats the last.
inline constexpr std::size_t keysAtOnce = 8;
[[nodiscard]] std::string keyList();
void bindKeys(Query& query, std::span<const std::int64_t> keys);
/// Sends the statement, with `keyList` in it, as often as all of the keys need it. `bindRest` binds its other
/// values.
[[nodiscard]] std::shared_ptr<std::deque<Query>> askByKeys(Connection& db, std::string_view sql,
                                                           std::span<const std::int64_t> keys,
                                                           const std::function<void(Query&)>& bindRest = {});

/// Several rows are inserted at once: each would be a round trip to the database server otherwise. "insert
/// into TABLE (a, b) values (:a0, :b0), (:a1, :b1)"; `bindRow` binds a value of the row with that number. A
/// column may be set to an expression instead, in which "#" is the number of the row.
inline constexpr std::size_t rowsAtOnce = 8;
struct InsertColumn {
  std::string_view name;
  std::string_view value = {};
};
[[nodiscard]] std::string insertSql(std::string_view table, std::span<const InsertColumn> columns,
                                    std::size_t rows);
template <class Value>
void bindRow(Query& query, std::size_t row, std::string_view column, const Value& value) {
  query.bind((std::string(column) + std::to_string(row)).c_str(), value);
}

/// A text column as it compares byte by byte, which PostgreSQL does only when it is told to; and the
/// condition that it lies from `:low` to `:high`.
[[nodiscard]] std::string bytewise(Connection& db, std::string_view column);
[[nodiscard]] std::string inRange(Connection& db, std::string_view column);

/// Lets the statements of this transaction be planned for their values, which decide how much a search finds,
/// and reach joined rows one by one by their indexes. Tables are joined in the order in which the statement
/// names them: to try every order of ten tables takes longer than to read what is found.
void planForSearch(Connection& db);
/// Lets them be planned once, in the order that is best for any values, and reach joined rows one by one by
/// their indexes.
void planByIndexes(Connection& db);
/// The same with tables joined in the order of the statement.
void planInOrder(Connection& db);
/// Statements are planned once, and joins made as ever, again.
void planAsUsual(Connection& db);

/// The keys of a text of the form "[1,2,3]", bound under that name, as a selection of one column "value".
[[nodiscard]] std::string keysIn(Connection& db, std::string_view name);
/// The same with the "place" of each, for many: the planner expects so many that it keeps what it looked up
/// in small tables.
[[nodiscard]] std::string orderedKeysIn(Connection& db, std::string_view name);
/// The text of that form.
[[nodiscard]] std::string keysText(std::span<const std::int64_t> keys);

/// The condition that the column before it is among the keys that the SQL selects, of which there are few
/// though the planner may think otherwise.
[[nodiscard]] std::string amongFew(Connection& db, std::string_view select);

/// An id as it is stored: 0 points nowhere.
inline std::optional<std::int64_t> orNothing(std::int64_t id) {
  return id == 0 ? std::nullopt : std::optional(id);
}

}  // namespace vantry::server
