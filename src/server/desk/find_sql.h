#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "server/desk/find_criteria.h"
#include "server/store/database.h"

namespace vantry::server {

// The words that the SQL of the search's criteria is written with.

/// The name of a criterion's value, by the place of the value and that of the criterion: "a0", "b0", "a1".
[[nodiscard]] std::string placeholder(std::size_t value, std::size_t criterion);
[[nodiscard]] bool hasPlaceholder(std::string_view sql, std::string_view name);

/// The SQL with its words written out for the database, and with placeholders that belong to the criterion at
/// the place.
[[nodiscard]] std::string writtenOut(Connection& db, std::string_view sql, std::size_t criterion = 0);

/// The test and the ways of a status that equipment shows. Statuses that the system sets are in no table:
/// what is out is told by the bookings.
struct StatusSql {
  std::string_view test;
  FindWays ways;            ///< none: by the test
  std::string_view others;  ///< selects what does not pass the test, where that is little; empty otherwise
};
[[nodiscard]] StatusSql sqlOfStatus(std::int64_t status);

}  // namespace vantry::server
