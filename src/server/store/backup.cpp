#include "server/store/backup.h"

#include <filesystem>
#include <stdexcept>

#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/server_tools.h"
#include "server/store/store_file.h"
#include "server/store/store_sentence.h"
#include "server/store/whole_file.h"

namespace vantry::server {

namespace {

std::string textFrom(Database& database, const std::string& sql) {
  std::string text;
  database.readOnce([&](Connection& db) {
    Query query(db, sql);
    fetchOne(query, text);
  });
  return text;
}

bool isFile(const std::string& url) {
  return dialectOf(url).kind == Dialect::Kind::Sqlite;
}

void copyFile(const std::string& url, const std::string& copy) {
  Database database(url, {.connections = 1, .keepsMark = true});
  requireLibrary(database);
  database.plain([&](Connection& db) {
    Query query(db, "vacuum into :file");
    query.bind("file", copy).run();
  });
}

/// A database whose library lives in a schema of its own may hold others.
void dump(const std::string& url, const std::string& copy) {
  Database database(url, {.connections = 1});
  requireLibrary(database);
  const std::string schema = textFrom(database, "select current_schema()");
  std::vector<std::string> command{"pg_dump", "--format=custom", "--no-owner", "--file=" + copy};
  if (schema != "public") command.push_back("--schema=" + schema);
  runServerTool(url, command);
}

/// A copy that was broken off opens as an empty database.
void checkCopy(const std::string& file) {
  Database copy(file, {.connections = 1});
  requireLibrary(copy);
  if (textFrom(copy, "pragma integrity_check(1)") != "ok")
    throw StoreError(StoreError::Kind::Failed, "the file is damaged");
}

/// So that it is not taken for the file whose log may lie where it is copied to.
void markAsCopy(const std::string& file) {
  Database copy(file, {.connections = 1, .keepsMark = true});
  copy.plain([](Connection& db) { db.run("pragma user_version = " + std::to_string(versionOfCopies)); });
}

/// The engine takes what lies beside the file for the file's own, and would write it into the restored one.
void refuseLeftLogs(const std::string& url) {
  for (const char* beside : {"-wal", "-shm", "-journal"}) {
    const std::string left = url + beside;
    if (std::filesystem::exists(left))
      throw std::runtime_error("The file " + left +
                               " is left from an earlier database. Move it to where that database is now.");
  }
}

void restoreFile(const std::string& url, const std::string& file) {
  writeWhole(url, [&](const std::string& part) {
    refuseLeftLogs(url);
    tellingPlainly(file, [&] {
      // Into a copy of its own, so that looking at the file leaves nothing beside it.
      copyFile(file, part);
      checkCopy(part);
    });
    for (const char* beside : {"-wal", "-shm"}) std::filesystem::remove(part + beside);
  });
}

void restoreDump(const std::string& url, const std::string& file) {
  std::string name;
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1});
    if (schemaVersion(database) > 0) throw std::runtime_error("The database holds a library already.");
    name = textFrom(database, "select current_database()");
  });
  runServerTool(
      url, {"pg_restore", "--exit-on-error", "--single-transaction", "--no-owner", "--dbname=" + name, file});
}

}  // namespace

void backUp(const std::string& url, const std::string& file) {
  writeWhole(file, [&](const std::string& part) {
    tellingPlainly(url, [&] {
      if (!isFile(url)) return dump(url, part);
      copyFile(url, part);
      markAsCopy(part);
    });
    for (const char* beside : {"-wal", "-shm"}) std::filesystem::remove(part + beside);
  });
}

void restore(const std::string& url, const std::string& file) {
  if (!std::filesystem::exists(file)) throw std::runtime_error("There is no file " + file + ".");
  isFile(url) ? restoreFile(url, file) : restoreDump(url, file);
}

}  // namespace vantry::server
