#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// A logged-on operator, as the store knows it. The location is told by the client after the login and is 0
/// until then; rights hold at a location, so that an operator without one has none.
struct Session {
  std::string token;  ///< the stored form, not the one on the wire
  std::int64_t operatorId = 0;
  std::string login;
  std::string operatorName;
  std::int64_t locationId = 0;
  std::string locationName;
  Moment expiresAt = 0;
};

/// How long a session lives after its last use, and how stale the stored time may get before it is written
/// anew.
inline constexpr Moment sessionLife = 12 * hour;
inline constexpr Moment sessionStaleness = 5 * minute;

/// Tries allowed for one operator name, and from one address, within the window.
inline constexpr int mostTriesPerLogin = 5;
inline constexpr int mostTriesPerAddress = 30;
inline constexpr Moment tryWindow = 5 * minute;

/// Operator names are compared without regard to case.
[[nodiscard]] std::string loginKey(std::string_view login);

struct OperatorAccount {
  std::int64_t id = 0;
  std::string login;
  std::string name;
  std::string password;  ///< the hash
  bool active = false;
};
[[nodiscard]] std::optional<OperatorAccount> findOperator(Connection& db, std::string_view login);

/// Books one try in; the seconds to wait when there were too many already, and then nothing is booked.
[[nodiscard]] std::optional<Moment> bookLoginTry(Connection& db, std::string_view login,
                                                 std::string_view address, Moment now);
void forgetLoginTries(Connection& db, std::string_view login);

/// Opens a session; gives the token for the wire.
[[nodiscard]] std::string openSession(Connection& db, std::int64_t operatorId, Moment now);
[[nodiscard]] std::optional<Session> findSession(Connection& db, std::string_view wireToken, Moment now);
void prolongSession(Connection& db, const Session& session, Moment now);
void closeSession(Connection& db, const Session& session);
/// Closes every other session of the operator; all of them when `except` is empty.
void closeSessionsOf(Connection& db, std::int64_t operatorId, std::string_view except);
void setSessionLocation(Connection& db, const Session& session, std::int64_t locationId);

void setPassword(Connection& db, std::int64_t operatorId, std::string_view hash);

/// Whether the session's operator holds one of the rights, parted by blanks, at its location. None asked:
/// always.
[[nodiscard]] bool holdsAnyRight(Connection& db, const Session& session, std::string_view rights);
[[nodiscard]] std::vector<std::string> rightsAt(Connection& db, std::int64_t operatorId,
                                                std::int64_t locationId);
[[nodiscard]] bool mayWorkAt(Connection& db, std::int64_t operatorId, std::int64_t locationId);

/// Writes a row of the audit. `session` may be missing for a login that failed.
void audit(Connection& db, const Session* session, Moment now, std::string_view action,
           std::string_view subject, std::string_view detail);

/// Drops what time has made worthless: sessions, tries and stored replies. After the clock was set back it
/// shortens sessions to their life, and drops the tries that lie ahead.
void dropExpired(Connection& db, Moment now);

}  // namespace vantry::server
