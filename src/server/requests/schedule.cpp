// What is booked: a day's list, and the counts of a month and of a year.

#include <array>
#include <map>

#include "server/access/rights.h"
#include "server/base/tag_refusal.h"
#include "server/desk/booking_store.h"
#include "server/desk/usage_check.h"
#include "server/requests/booking_list.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

/// The form lets an empty date through, which these requests cannot go without.
Moment dateOf(const Message& message) {
  const std::optional<Moment> date = parseMoment(message.text(tags::DATE));
  if (!date) refuseTag(tags::DATE);
  return *date;
}

/// History is shown when it is asked for by somebody who may see it.
bool showsHistory(Context& context, const Message& message) {
  return message.flag(tags::HBK) && holdsAnyRight(context.db, context.session, "BKVHI");
}

Reply bookingsOfDay(Context& context, const Message& message) {
  Reply reply;
  const Moment date = dateOf(message);
  const bool history = showsHistory(context, message);
  visitBookings(context.db, context.session.locationId, date, date + day, [&](const BookingListRow& row) {
    if (history || !isHistorical(row.status, row.endsAt, context.now)) addBookingRow(reply, row);
  });
  return reply;
}

Reply bookingCounts(Context& context, const Message& message) {
  Reply reply;
  const Moment date = dateOf(message);
  const bool wholeYear = message.flag(tags::YRS);
  const Moment from = wholeYear ? makeMoment(yearOf(date), 1, 1) : startOfMonth(date);
  const Moment until = startOfMonth(from, wholeYear ? 12 : 1);
  const bool history = showsHistory(context, message);
  std::map<Moment, int> counts;
  visitBookingMarks(context.db, context.session.locationId, from, until, [&](const BookingMark& mark) {
    if (history || !isHistorical(mark.status, mark.endsAt, context.now)) ++counts[startOfDay(mark.startsAt)];
  });
  for (const auto& [dayStart, count] : counts) {
    reply.record();
    if (wholeYear) reply.set(tags::MNTHS, monthOf(dayStart));
    reply.set(tags::DAY, dayOfMonth(dayStart)).set(tags::BCNT, count);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"BOOKDAY", bookingsOfDay},
    HandlerRow{"BOOKMTH", bookingCounts},
};

}  // namespace

std::span<const HandlerRow> scheduleHandlers() {
  return rows;
}

}  // namespace vantry::server
