#pragma once

#include <span>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// One step of the schema. Steps are numbered from 1 without gaps and never change once they are released.
struct Migration {
  int number;
  std::string_view name;
  std::string_view sql;                 ///< statements, each ended by a semicolon at the end of a line
  void (*work)(Connection&) = nullptr;  ///< what no statement can do, after them
};

/// All steps, oldest first.
[[nodiscard]] std::span<const Migration> migrations();

/// The last step that the database has; 0 for an empty one.
[[nodiscard]] int schemaVersion(Database& database);

/// Runs the steps that are missing, up to `last`, each in one transaction with its number. Throws StoreError,
/// also for a database that a newer program has written.
void migrate(Database& database, int last);
void migrate(Database& database);

/// Throws StoreError unless the database holds a library at the step of this program: Empty, Older or Newer.
void requireSchema(Database& database);
/// Brings an older library up to date; one that is empty stays so, and is refused like that.
void upgrade(Database& database);

}  // namespace vantry::server
