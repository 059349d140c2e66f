#include "server/occupancy.h"

namespace vantry::server {

void addOccupancy(Connection& db, const Thing& thing, const Occupation& occupation) {
  Query query(db,
              "insert into occupancy (kind, thing, family, starts_at, ends_at, booking_id, line_id) "
              "values (:kind, :thing, :family, :starts_at, :ends_at, :booking_id, :line_id)");
  query.bind("kind", static_cast<int>(thing.kind)).bind("thing", thing.thing).bind("family", thing.family);
  query.bind("starts_at", occupation.startsAt).bind("ends_at", occupation.endsAt);
  query.bind("booking_id", occupation.bookingId).bind("line_id", occupation.lineId).run();
}

void freeThingsOf(Connection& db, std::int64_t bookingId) {
  Query query(db, "delete from occupancy where booking_id = :booking_id");
  query.bind("booking_id", bookingId).run();
}

}  // namespace vantry::server
