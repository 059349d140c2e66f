#include "server/store/store_failure.h"

#include <string>
#include <string_view>

#include <soci/postgresql/soci-postgresql.h>
#include <soci/sqlite3/soci-sqlite3.h>

namespace vantry::server {

namespace {

// The result codes of SQLite that need telling apart; its own header must not stand beside the library's.
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteInterrupted = 9;
constexpr int sqliteCannotOpen = 14;
constexpr int sqliteNoDatabase = 26;

constexpr std::string_view lockTimeout = "55P03";
constexpr std::string_view idleInTransaction = "25P03";
constexpr std::string_view diskFull = "53100";

StoreError::Kind kindOf(const soci::sqlite3_soci_error& error) {
  switch (error.result() & 0xff) {
    case sqliteBusy:
    case sqliteLocked:
      return StoreError::Kind::Busy;
    case sqliteCannotOpen:
      return StoreError::Kind::Absent;
    case sqliteNoDatabase:
      return StoreError::Kind::Foreign;
    case sqliteInterrupted:
      return StoreError::Kind::TooLong;
    case sqliteReadOnly:
      return StoreError::Kind::ReadOnly;
    default:
      return StoreError::Kind::Failed;
  }
}

StoreError::Kind kindOf(const soci::postgresql_soci_error& error) {
  const std::string state = error.sqlstate();
  if (state == "40001" || state == "40P01") return StoreError::Kind::Contested;
  if (state == "23P01") return StoreError::Kind::Overlap;
  if (state == "57014") return StoreError::Kind::TooLong;
  if (state == "25006") return StoreError::Kind::ReadOnly;
  if (state == diskFull) return StoreError::Kind::Failed;
  if (state == lockTimeout || state == idleInTransaction) return StoreError::Kind::Busy;
  if (state.starts_with("08") || state.starts_with("57") || state.starts_with("53"))
    return StoreError::Kind::Busy;
  return StoreError::Kind::Failed;
}

}  // namespace

void rethrowAsStoreError() {
  try {
    throw;
  } catch (const soci::sqlite3_soci_error& error) {
    throw StoreError(kindOf(error), error.get_error_message());
  } catch (const soci::postgresql_soci_error& error) {
    throw StoreError(kindOf(error), error.get_error_message());
  } catch (const soci::soci_error& error) {
    throw StoreError(StoreError::Kind::Failed, error.get_error_message());
  }
}

void rethrowAsUnreachable(const Dialect& dialect) {
  if (dialect.kind == Dialect::Kind::Sqlite) throw;
  try {
    throw;
  } catch (const soci::soci_error& error) {
    throw StoreError(StoreError::Kind::Unreachable, error.get_error_message());
  }
}

}  // namespace vantry::server
