#include "server/requests/monitor_message.h"

#include "server/base/tag_refusal.h"
#include "server/requests/booking_list.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr std::int64_t mostHours = 366 * 24;

}  // namespace

Desks watchedDesks(Context& context, const Message& message) {
  return watchedDesks(context.db, message.numbers(tags::LOC), context.session.locationId);
}

Moment horizon(Context& context, const Message& message, std::string_view hours) {
  const std::int64_t ahead = message.number(hours);
  if (ahead < 0 || ahead > mostHours) refuseTag(hours);
  return context.now + ahead * hour;
}

std::string_view requesterOf(const MonitorBooking& row) {
  return requesterText({row.administrative, row.withheld, row.watched.status, row.requester});
}

std::string_view pickupPatronOf(const MonitorBooking& row) {
  return isWithheld(row.pickupWithheld, row.watched.status) ? std::string_view()
                                                            : std::string_view(row.pickupPatron);
}

}  // namespace vantry::server
