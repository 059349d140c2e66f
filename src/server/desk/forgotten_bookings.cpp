#include "server/desk/forgotten_bookings.h"

#include <string>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr const char* theirs =
    " (patron_id = :patron or pickup_patron_id = :patron or setup_staff_id = :patron or "
    "cleanup_staff_id = :patron)";

}  // namespace

std::int64_t forgetBookings(Connection& db, Moment before, Moment now, int most) {
  Query mails(
      db,
      "update outbox set patron_id = 0 where state <> 0 and booking_id in (select id from bookings where "
      "status in (1, 2, 3, 4) and forgotten_at is null and ends_at < :before and (returned_at is null or "
      "returned_at < :before) order by ends_at limit :most)");
  mails.bind("before", before).bind("most", most).run();
  Query query(
      db,
      "update bookings set patron_id = null, pickup_patron_id = null, setup_staff_id = null, "
      "cleanup_staff_id = null, note = '', forgotten_at = :now where id in (select id from bookings where "
      "status in (1, 2, 3, 4) and forgotten_at is null and ends_at < :before and (returned_at is null or "
      "returned_at < :before) order by ends_at limit :most)");
  return query.bind("now", now).bind("before", before).bind("most", most).run();
}

std::vector<std::int64_t> forgetPatronInBookings(Connection& db, std::int64_t patronId, Moment now) {
  std::vector<std::int64_t> ids;
  std::int64_t id = 0;
  Query query(db,
              std::string("update bookings set forgotten_at = case when patron_id = :patron then :now else "
                          "forgotten_at end, note = '', patron_id = nullif(patron_id, :patron), "
                          "pickup_patron_id = nullif(pickup_patron_id, :patron), "
                          "setup_staff_id = nullif(setup_staff_id, :patron), "
                          "cleanup_staff_id = nullif(cleanup_staff_id, :patron) where") +
                  theirs + " returning id");
  query.bind("patron", patronId).bind("now", now).into(id);
  while (query.next()) ids.push_back(id);
  return ids;
}

std::int64_t countBookingsNotOver(Connection& db, std::int64_t patronId) {
  std::int64_t count = 0;
  Query query(db, std::string("select count(*) from bookings where status in (0, 99, 999) and") + theirs);
  query.bind("patron", patronId);
  fetchOne(query, count);
  return count;
}

}  // namespace vantry::server
