#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "server/base/moment.h"

namespace vantry::server {

/// A session that the store does not know.
struct SpareSession {
  std::int64_t operatorId = 0;
  std::int64_t locationId = 0;
  Moment expiresAt = 0;
};

/// Sessions for which the store has no room: while its disk is full, operators log on all the same, and read.
/// They are known to this process alone. For many threads at once.
class SpareSessions {
 public:
  /// Opens one and returns the token for the wire. Nothing soon after a wrong try with that name, which the
  /// store could not count either.
  [[nodiscard]] std::optional<std::string> open(std::int64_t operatorId, std::string_view login, Moment now);
  void noteFailedTry(std::string_view login, Moment now);

  [[nodiscard]] std::optional<SpareSession> find(std::string_view wireToken, Moment now) const;
  void setLocation(std::string_view storedToken, std::int64_t locationId);
  /// False when there is none of this token.
  bool close(std::string_view storedToken);
  /// Closes all of the operator.
  void closeOf(std::int64_t operatorId);

 private:
  void dropOld(Moment now);

  mutable std::mutex mutex_;
  std::map<std::string, SpareSession, std::less<>> sessions_;  ///< by the stored form of the token
  std::map<std::string, Moment, std::less<>> failures_;        ///< by the name: the last one
};

}  // namespace vantry::server
