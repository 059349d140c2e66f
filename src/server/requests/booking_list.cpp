#include "server/requests/booking_list.h"

#include "words/tags.h"

namespace vantry::server {

std::string_view requesterText(const ListedRequester& requester) {
  if (requester.administrative) return {};
  return isWithheld(requester.withheld, requester.status) ? std::string_view("-1") : requester.name;
}

void addBookingRow(Reply& reply, const BookingListRow& row) {
  reply.record()
      .set(tags::BOOKID, row.id)
      .set(tags::BKRES, static_cast<int>(row.status))
      .set(tags::STIME, momentText(row.startsAt))
      .set(tags::ETIME_, momentText(row.endsAt))
      .set(tags::REQ, requesterText({row.administrative, row.withheld, row.status, row.requester}))
      .set(tags::CNUM, confirmationNumber(row.id))
      .set(tags::BTYP, bookingTypeName(row.type))
      .set(tags::DPL, row.place)
      .set(tags::ECNT, row.equipmentCount)
      .set(tags::ICNT, row.itemCount);
}

}  // namespace vantry::server
