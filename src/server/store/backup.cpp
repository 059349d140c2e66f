#include "server/store/backup.h"

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "server/store/database.h"
#include "server/store/query.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

/// PostgreSQL has its own program for this, which knows all about its formats.
void dumpPostgresql(const std::string& url, const std::string& file) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("The program pg_dump cannot be started.");
  if (child == 0) {
    execlp("pg_dump", "pg_dump", "--format=custom", ("--file=" + file).c_str(), url.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
    throw std::runtime_error("The program pg_dump is not installed.");
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("The program pg_dump failed.");
}

}  // namespace

void backUp(const std::string& url, const std::string& file) {
  if (std::filesystem::exists(file)) throw std::runtime_error("The file " + file + " exists already.");
  if (dialectOf(url).kind == Dialect::Kind::Postgresql) return dumpPostgresql(url, file);
  if (!std::filesystem::exists(url)) throw std::runtime_error("There is no database " + url + ".");
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1, .patience = 10});
    database.plain([&](Connection& db) {
      Query query(db, "vacuum into :file");
      query.bind("file", file).run();
    });
  });
}

}  // namespace vantry::server
