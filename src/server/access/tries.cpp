#include "server/access/tries.h"

#include <algorithm>
#include <string>

#include "server/access/operators.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

struct Failures {
  int count = 0;
  Moment oldest = 0;
  Moment latest = 0;
};

/// Those of the last while. What lies ahead was written before the clock was set back, and counts no more:
/// it would lock people out until the clock has come there again.
Failures failuresOf(Connection& db, std::string_view login, std::string_view address, Moment now) {
  const std::string name = loginKey(login);
  std::string sql = "select count(*), min(at), max(at) from login_failures where at > :since and at <= :now";
  if (!login.empty()) sql += " and login = :login";
  if (!address.empty()) sql += " and address = :address";
  Failures failures;
  Query query(db, sql);
  query.bind("since", now - tryWindow).bind("now", now);
  if (!login.empty()) query.bind("login", name);
  if (!address.empty()) query.bind("address", address);
  query.into(failures.count, failures.oldest, failures.latest);
  while (query.next()) {
  }
  return failures;
}

/// What guesses from the address are counted under.
std::string guesserAt(std::string_view address) {
  return "guess " + std::string(address);
}

Moment delayOf(const Failures& failures, int free, Moment longest, Moment now) {
  if (failures.count < free) return 0;
  const int doublings = std::min(failures.count - free, 10);
  return failures.latest + std::min(Moment{1} << doublings, longest) - now;
}

}  // namespace

std::optional<Moment> waitBeforeTry(Connection& db, std::string_view login, std::string_view address,
                                    Moment now) {
  const Failures both = failuresOf(db, login, address, now);
  const Moment stopped = both.count < mostFailures ? 0 : std::max<Moment>(both.oldest + tryWindow - now, 1);
  const Moment ofAddress =
      delayOf(failuresOf(db, {}, address, now), freeFailuresPerAddress, longestDelay, now);
  const Moment ofName =
      both.count == 0 ? 0
                      : delayOf(failuresOf(db, login, {}, now), freeFailuresPerName, longestDelayOfName, now);
  const Moment wait = std::max({stopped, ofAddress, ofName});
  return wait > 0 ? std::optional(wait) : std::nullopt;
}

void noteFailedTry(Connection& db, std::string_view login, std::string_view address, Moment now) {
  Query query(db, "insert into login_failures (login, address, at) values (:login, :address, :at)");
  query.bind("login", loginKey(login)).bind("address", address).bind("at", now).later();
}

std::optional<Moment> waitBeforeGuess(Connection& db, std::string_view address, Moment now) {
  const Moment wait =
      delayOf(failuresOf(db, {}, guesserAt(address), now), freeFailuresPerAddress, longestDelay, now);
  return wait > 0 ? std::optional(wait) : std::nullopt;
}

void noteWrongGuess(Connection& db, std::string_view address, Moment now) {
  noteFailedTry(db, {}, guesserAt(address), now);
}

void forgetFailures(Connection& db, std::string_view login, std::string_view address) {
  Query query(db, "delete from login_failures where login = :login and address = :address");
  query.bind("login", loginKey(login)).bind("address", address).later();
}

void forgetFailures(Connection& db, std::string_view login) {
  Query query(db, "delete from login_failures where login = :login");
  query.bind("login", loginKey(login)).later();
}

void dropOldTries(Connection& db, Moment now) {
  Query query(db, "delete from login_failures where at <= :before or at > :now");
  query.bind("before", now - tryWindow).bind("now", now).later();
}

}  // namespace vantry::server
