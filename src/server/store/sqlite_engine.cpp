#include "server/store/sqlite_engine.h"

#include <sqlite3.h>

#include <filesystem>

#include "server/store/store_error.h"

namespace vantry::server {

void startSqlite() {
  static const bool started = sqlite3_config(SQLITE_CONFIG_MULTITHREAD) == SQLITE_OK &&
                              sqlite3_config(SQLITE_CONFIG_URI, 1) == SQLITE_OK;
  if (!started) throw StoreError(StoreError::Kind::Failed, "SQLite runs already, with other settings");
}

std::string sqliteAddress(std::string_view path, bool create) {
  constexpr std::string_view marked = "%?#\"";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string address = "file:";
  for (const char c : std::filesystem::absolute(path).lexically_normal().string()) {
    if (marked.find(c) == std::string_view::npos) {
      address += c;
      continue;
    }
    const auto code = static_cast<unsigned char>(c);
    address += {'%', digits[code / 16U], digits[code % 16U]};
  }
  return address + (create ? "?mode=rwc" : "?mode=rw");
}

}  // namespace vantry::server
