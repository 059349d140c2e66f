#pragma once

#include <string>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// What is wrong with the library's set-up, or will be soon: calendars that end, desks without a policy,
/// titles that nobody can book, operators who cannot work, housekeeping that rests. A sentence each, in an
/// order that suits whoever mends it.
[[nodiscard]] std::vector<std::string> examineLibrary(Connection& db, Moment now);

/// What a server needs of its machine. Moments are in seconds since 1970-01-01 UTC.
struct MachineState {
  std::int64_t now = 0;
  std::string certificate = {};  ///< its file; empty where the server speaks no TLS
  std::int64_t certificateEnd = 0;
  std::int64_t freeBytes = -1;  ///< on the disk of a SQLite file; -1 where the database is elsewhere
  std::int64_t databaseBytes = 0;
  std::int64_t clockSkew = 0;  ///< by how many seconds this clock is ahead of the database server's
};
/// What is wrong with it, or will be soon, in sentences.
[[nodiscard]] std::vector<std::string> examineMachine(const MachineState& state);

struct LibrarySizes {
  std::int64_t bytes = 0;
  std::int64_t auditRows = 0;
  Moment auditSince = 0;
};
[[nodiscard]] LibrarySizes librarySizes(Connection& db);
[[nodiscard]] std::string sizesText(const LibrarySizes& sizes);

}  // namespace vantry::server
