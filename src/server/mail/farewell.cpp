#include "server/mail/farewell.h"

#include "server/mail/mail_facts.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

std::optional<Farewell> farewellToDeleted(Connection& db, std::int64_t bookingId) {
  const std::optional<BookingFacts> facts = findBookingFacts(db, bookingId);
  if (!facts || facts->patronId == 0) return std::nullopt;
  return Farewell{.bookingId = bookingId,
                  .patronId = facts->patronId,
                  .endsAt = facts->endsAt,
                  .values = keptValues(facts->values),
                  .ifWaiting = facts->status != BookingStatus::Live};
}

std::optional<Farewell> farewellToPresent(Connection& db, std::int64_t bookingId) {
  Farewell farewell{.bookingId = bookingId};
  Moment startsAt = 0;
  Query query(db,
              "select patron_id, starts_at, ends_at from bookings where id = :id and patron_id is not null");
  query.bind("id", bookingId);
  if (!fetchOne(query, farewell.patronId, startsAt, farewell.endsAt)) return std::nullopt;
  farewell.endsAt = pastAt(startsAt, farewell.endsAt);
  return farewell;
}

}  // namespace vantry::server
