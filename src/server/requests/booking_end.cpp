// Cancelling and deleting bookings.

#include <array>

#include "server/desk/booking_store.h"
#include "server/desk/occupancy.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Stamp stampOf(const Context& context, const BookingState& state) {
  return {.at = nextStamp(state.updatedAt, context.now),
          .operatorId = context.session.operatorId,
          .locationId = context.session.locationId};
}

Reply mayCancel(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  if (!state) return Reply(rc::notFound);
  return Reply(refusalToCancel(state->status, state->out).value_or(0));
}

/// Decides again, since something may have been charged since the question.
Reply cancel(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  if (!state) return Reply(rc::notFound);
  if (const auto refusal = refusalToCancel(state->status, state->out)) return Reply(*refusal);
  setBookingStatus(context.db, state->id, BookingStatus::OperatorCanceled, stampOf(context, *state));
  freeThingsOf(context.db, state->id);
  if (state->patronId != 0) countCancelled(context.db, state->patronId);
  return Reply();
}

/// What another desk has deleted already is gone, as it was asked for.
Reply mayDelete(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  if (!state) return Reply();
  return Reply(refusalToDelete(state->status, state->out).value_or(0));
}

Reply remove(Context& context, const Message& message) {
  const std::optional<BookingState> state = findBookingState(context.db, message.number(tags::BOOKID));
  if (!state) return Reply();
  if (const auto refusal = refusalToDelete(state->status, state->out)) return Reply(*refusal);
  deleteBooking(context.db, state->id);
  return Reply();
}

constexpr std::array rows{
    HandlerRow{"VERCAN", mayCancel},
    HandlerRow{"CANBK", cancel},
    HandlerRow{"VALDELBK", mayDelete},
    HandlerRow{"DELBK", remove},
};

}  // namespace

std::span<const HandlerRow> bookingEndHandlers() {
  return rows;
}

}  // namespace vantry::server
