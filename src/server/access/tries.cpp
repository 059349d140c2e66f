#include "server/access/tries.h"

#include <algorithm>

#include "server/access/operators.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

struct Tries {
  int count = 0;
  Moment oldest = 0;
};

/// Those of the last while. What lies ahead was written before the clock was set back, and counts no more:
/// it would lock people out until the clock has come there again.
Tries countTries(Connection& db, const char* sql, std::string_view who, Moment now) {
  Tries tries;
  Query query(db, sql);
  query.bind("who", who).bind("since", now - tryWindow).bind("now", now).into(tries.count, tries.oldest);
  while (query.next()) {
  }
  return tries;
}

Moment waitFor(const Tries& tries, int most, Moment now) {
  return tries.count < most ? 0 : std::max<Moment>(tries.oldest + tryWindow - now, 1);
}

}  // namespace

std::optional<Moment> bookLoginTry(Connection& db, std::string_view login, std::string_view address,
                                   Moment now) {
  const Tries byLogin = countTries(
      db, "select count(*), min(at) from login_failures where login = :who and at > :since and at <= :now",
      loginKey(login), now);
  const Tries byAddress = countTries(
      db, "select count(*), min(at) from login_failures where address = :who and at > :since and at <= :now",
      address, now);
  const Moment wait =
      std::max(waitFor(byLogin, mostTriesPerLogin, now), waitFor(byAddress, mostTriesPerAddress, now));
  if (wait > 0) return wait;
  Query query(db, "insert into login_failures (login, address, at) values (:login, :address, :at)");
  query.bind("login", loginKey(login)).bind("address", address).bind("at", now).run();
  return std::nullopt;
}

void forgetLoginTries(Connection& db, std::string_view login) {
  Query query(db, "delete from login_failures where login = :login");
  query.bind("login", loginKey(login)).run();
}

void dropOldTries(Connection& db, Moment now) {
  Query query(db, "delete from login_failures where at <= :before or at > :now");
  query.bind("before", now - tryWindow).bind("now", now).run();
}

}  // namespace vantry::server
