#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// A logged-on operator, as the store knows it. The client tells the location after the login; until then it
/// is 0. Rights hold at a location, so an operator without one has none.
struct Session {
  std::string token;  ///< the stored form, not the one on the wire
  std::int64_t operatorId = 0;
  std::string login;
  std::string operatorName;
  std::int64_t locationId = 0;
  std::string locationName;
  Moment expiresAt = 0;
  bool isSpare = false;  ///< this process knows it, and the store does not
};

/// How long a session lives after its last use, and how old the stored time may be before it is
/// updated.
inline constexpr Moment sessionLife = 12 * hour;
inline constexpr Moment sessionStaleness = 5 * minute;

/// Opens a session and returns the token for the wire.
[[nodiscard]] std::string openSession(Connection& db, std::int64_t operatorId, Moment now);
/// Nothing for a token that opens no session, for one that has expired, and for a disabled operator.
[[nodiscard]] std::optional<Session> findSession(Connection& db, std::string_view wireToken, Moment now);
void prolongSession(Connection& db, const Session& session, Moment now);
void closeSession(Connection& db, const Session& session);
/// Closes all sessions of the operator but the one whose stored token is `except`.
void closeSessionsOf(Connection& db, std::int64_t operatorId, std::string_view except);
void setSessionLocation(Connection& db, const Session& session, std::int64_t locationId);

/// Drops the sessions that have expired. After the clock was set back it shortens the others to their life.
void dropExpiredSessions(Connection& db, Moment now);

}  // namespace vantry::server
