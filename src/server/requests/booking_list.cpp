#include "server/requests/booking_list.h"

#include "words/tags.h"

namespace vantry::server {

namespace {

/// The requester of a list row: a name; nothing for an administrative booking; "-1" where the name is
/// withheld.
std::string_view requesterOf(const BookingListRow& row) {
  if (row.administrative) return {};
  return isWithheld(row.withheld, row.status) ? std::string_view("-1") : std::string_view(row.requester);
}

}  // namespace

void addBookingRow(Reply& reply, const BookingListRow& row) {
  reply.record()
      .set(tags::BOOKID, row.id)
      .set(tags::BKRES, static_cast<int>(row.status))
      .set(tags::STIME, momentText(row.startsAt))
      .set(tags::ETIME_, momentText(row.endsAt))
      .set(tags::REQ, requesterOf(row))
      .set(tags::CNUM, confirmationNumber(row.id))
      .set(tags::BTYP, bookingTypeName(row.type))
      .set(tags::DPL, row.place)
      .set(tags::ECNT, row.equipmentCount)
      .set(tags::ICNT, row.itemCount);
}

}  // namespace vantry::server
