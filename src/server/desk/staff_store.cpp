#include "server/desk/staff_store.h"

#include <vector>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

bool isThere(Connection& db, std::string_view sql, std::int64_t id) {
  int found = 0;
  Query query(db, sql);
  query.bind("id", id);
  fetchOne(query, found);
  return found > 0;
}

/// An editor that has one of these bookings open notices the change.
void unassign(Connection& db, std::int64_t patronId, const Stamp& stamp) {
  for (const char* column : {"setup_staff_id", "cleanup_staff_id"}) {
    const std::string name(column);
    Query query(db, "update bookings set " + name +
                        " = null, updated_at = case when updated_at < :at then :at else updated_at + 1 end, "
                        "updated_by = :operator_id, updated_location = :desk_id where " +
                        name + " = :id and status in (0, 99, 999)");
    query.bind("at", stamp.at).bind("operator_id", stamp.operatorId).bind("desk_id", stamp.locationId);
    query.bind("id", patronId).later();
  }
}

}  // namespace

bool hasPatron(Connection& db, std::int64_t id) {
  return isThere(db, "select count(*) from patrons where id = :id", id);
}

bool isActiveStaff(Connection& db, std::int64_t patronId) {
  return isThere(db, "select count(*) from staff where patron_id = :id and active = 1", patronId);
}

void addStaff(Connection& db, std::int64_t patronId, bool active) {
  Query query(
      db,
      "insert into staff (patron_id, active) values (:id, :active) on conflict (patron_id) do update set "
      "active = excluded.active");
  query.bind("id", patronId).bind("active", active).later();
}

bool setStaffActive(Connection& db, std::int64_t patronId, bool active) {
  Query query(db, "update staff set active = :active where patron_id = :id");
  return query.bind("active", active).bind("id", patronId).run() > 0;
}

void removeStaff(Connection& db, std::int64_t patronId, const Stamp& stamp) {
  unassign(db, patronId, stamp);
  Query query(db, "delete from staff where patron_id = :id");
  query.bind("id", patronId).later();
}

std::optional<PatronCounters> countersOf(Connection& db, std::int64_t patronId) {
  PatronCounters counters;
  std::int64_t id = 0;
  Query query(
      db,
      "select p.id, (select count(*) from bookings b where b.patron_id = p.id and b.status in (0, 99, 999)), "
      "p.late_returns, p.historical_bookings, p.cancelled_bookings, p.unclaimed_bookings, o.login, "
      "p.counters_set_at from patrons p left join operators o on o.id = p.counters_set_by where p.id = :id");
  query.bind("id", patronId);
  const bool found = fetchOne(query, id, counters.current, counters.late, counters.historical,
                              counters.cancelled, counters.unclaimed, counters.setBy, counters.setAt);
  return found ? std::optional(counters) : std::nullopt;
}

void setCounters(Connection& db, std::int64_t patronId, const PatronCounters& counters, const Stamp& stamp) {
  Query query(
      db,
      "update patrons set late_returns = :late, historical_bookings = :historical, "
      "cancelled_bookings = :cancelled, unclaimed_bookings = :unclaimed, counters_set_by = :operator_id, "
      "counters_set_at = :at where id = :id");
  query.bind("late", counters.late).bind("historical", counters.historical);
  query.bind("cancelled", counters.cancelled).bind("unclaimed", counters.unclaimed);
  query.bind("operator_id", stamp.operatorId).bind("at", stamp.at).bind("id", patronId).later();
}

}  // namespace vantry::server
