// Who books: privileges, refusals and look-ups of patrons.

#include <array>

#include "server/base/money_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/booking_store.h"
#include "server/desk/patron_store.h"
#include "server/desk/policy_store.h"
#include "server/desk/staff_store.h"
#include "server/requests/booking_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int feesKind = 5;

PatronState requirePatron(Context& context, std::int64_t patronId, std::int64_t groupId) {
  const std::optional<PatronState> state = loadPatronState(context.db, patronId, groupId);
  if (!state) refuseTag(tags::PID);
  return *state;
}

Reply privileges(Context& context, const Message& message) {
  const std::int64_t group = message.number(tags::PGID);
  const PatronState state = requirePatron(context, message.number(tags::PID), group);
  if (hasExpired(state, context.now)) return Reply(rc::patronExpired);
  const PatronLimits limits = loadPolicy(context.db, context.session.locationId, group).limits;
  Reply reply;
  reply.head(tags::ICNT, limits.items).head(tags::ECNT, limits.equipment);
  if (state.expiresAt) reply.head(tags::PVALD, momentText(*state.expiresAt));
  reply.head(tags::BKM, limits.bookings).head(tags::BCNT, state.bookings);
  return reply;
}

Reply refusalReply(const std::optional<PatronRefusal>& refused) {
  if (!refused) return Reply();
  Reply reply(refused->code);
  if (refused->code != rc::overLimit) return reply;
  const auto text = [&](std::int64_t figure) {
    return refused->limitKind == feesKind ? moneyText(figure) : std::to_string(figure);
  };
  return reply.head(tags::VUF, refused->limitKind)
      .head(tags::VD1, text(refused->limit))
      .head(tags::VD2, text(refused->count));
}

Reply validatePatron(Context& context, const Message& message) {
  const bool fetches = message.flag(tags::PUP);
  const std::int64_t group = fetches ? 0 : message.number(tags::PGID);
  const PatronState state = requirePatron(context, message.number(tags::PID), group);
  if (fetches) return refusalReply(refusalToFetch(state, context.now));
  const PatronLimits limits = loadPolicy(context.db, context.session.locationId, group).limits;
  return refusalReply(refusalToRequest(state, limits, context.now));
}

Reply patronBarcodes(Context& context, const Message& message) {
  const std::int64_t patron = message.number(tags::PID);
  if (!hasPatron(context.db, patron)) return Reply(rc::notFound);
  Reply reply;
  for (const PatronCard& card : cardsOf(context.db, patron)) {
    reply.record()
        .set(tags::BNO, card.barcode)
        .set(tags::BST, card.status)
        .set(tags::PGNM, card.group)
        .set(tags::PGID, card.groupId);
  }
  return reply;
}

Reply patronAddress(Context& context, const Message& message) {
  const std::int64_t bookingId = message.number(tags::BOOKID);
  const PatronAddress lines = addressOn(context.db, bookingId, message.number(tags::PID));
  constexpr std::array<std::string_view, 9> names{tags::A1, tags::A2, tags::A3, tags::A4, tags::A5,
                                                  tags::CY, tags::SP, tags::ZP, tags::PH};
  Reply reply;
  for (std::size_t line = 0; line < lines.size(); ++line) reply.head(names[line], lines[line]);
  if (const auto booking = findBookingState(context.db, bookingId))
    reply.head(tags::UDT, momentText(booking->updatedAt));
  return reply;
}

constexpr std::array rows{
    HandlerRow{"PATPRIV", privileges},
    HandlerRow{"VALRP", validatePatron},
    HandlerRow{"GPBAR", patronBarcodes},
    HandlerRow{"PRDTLS", patronAddress},
};

}  // namespace

std::span<const HandlerRow> patronHandlers() {
  return rows;
}

}  // namespace vantry::server
