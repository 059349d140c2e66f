#include "server/access/spare_sessions.h"

#include "server/access/operators.h"
#include "server/access/passwords.h"

namespace vantry::server {

namespace {

/// Nobody is told from elsewhere when one of these has to end, so that it is short.
constexpr Moment spareLife = 2 * hour;
constexpr Moment afterFailure = 5;

}  // namespace

void SpareSessions::dropOld(Moment now) {
  std::erase_if(sessions_, [&](const auto& each) { return each.second.expiresAt <= now; });
  std::erase_if(failures_, [&](const auto& each) { return each.second + afterFailure <= now; });
}

std::optional<std::string> SpareSessions::open(std::int64_t operatorId, std::string_view login, Moment now) {
  const std::lock_guard lock(mutex_);
  dropOld(now);
  if (failures_.contains(loginKey(login))) return std::nullopt;
  std::string token = makeToken();
  sessions_[hashToken(token)] = {.operatorId = operatorId, .locationId = 0, .expiresAt = now + spareLife};
  return token;
}

void SpareSessions::noteFailedTry(std::string_view login, Moment now) {
  const std::lock_guard lock(mutex_);
  dropOld(now);
  failures_[loginKey(login)] = now;
}

std::optional<SpareSession> SpareSessions::find(std::string_view wireToken, Moment now) const {
  const std::lock_guard lock(mutex_);
  if (sessions_.empty()) return std::nullopt;
  const auto found = sessions_.find(hashToken(wireToken));
  if (found == sessions_.end() || found->second.expiresAt <= now) return std::nullopt;
  return found->second;
}

void SpareSessions::setLocation(std::string_view storedToken, std::int64_t locationId) {
  const std::lock_guard lock(mutex_);
  if (const auto found = sessions_.find(storedToken); found != sessions_.end())
    found->second.locationId = locationId;
}

bool SpareSessions::close(std::string_view storedToken) {
  const std::lock_guard lock(mutex_);
  const auto found = sessions_.find(storedToken);
  if (found == sessions_.end()) return false;
  sessions_.erase(found);
  return true;
}

void SpareSessions::closeOf(std::int64_t operatorId) {
  const std::lock_guard lock(mutex_);
  std::erase_if(sessions_, [&](const auto& each) { return each.second.operatorId == operatorId; });
}

}  // namespace vantry::server
