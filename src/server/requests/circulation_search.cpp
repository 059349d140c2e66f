// Finding what is to be charged or discharged.

#include <algorithm>
#include <array>

#include "server/base/search_text.h"
#include "server/desk/circulation_search.h"
#include "server/requests/booking_list.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct SearchTag {
  std::string_view tag;
  SearchBy by;
};
constexpr std::array personTags{
    SearchTag{tags::BNO, SearchBy::RequesterBarcode},
    SearchTag{tags::PPBAR, SearchBy::PickupBarcode},
    SearchTag{tags::CNUM, SearchBy::Confirmation},
    SearchTag{tags::PLN, SearchBy::LastName},
};
constexpr std::array thingTags{
    SearchTag{tags::MEDBAR, SearchBy::ItemBarcode},     SearchTag{tags::IM, SearchBy::ItemId},
    SearchTag{tags::EQBAR, SearchBy::EquipmentBarcode}, SearchTag{tags::ENO, SearchBy::EquipmentNumber},
    SearchTag{tags::CN, SearchBy::CallNumber},
};

const SearchTag* tagOf(std::span<const SearchTag> known, const Message& message) {
  const auto found =
      std::find_if(known.begin(), known.end(), [&](const SearchTag& each) { return message.has(each.tag); });
  return found == known.end() ? nullptr : &*found;
}

void addRows(Reply& reply, Context& context, const std::vector<std::int64_t>& ids) {
  visitBookingsAmong(context.db, ids, [&](const BookingListRow& row) { addBookingRow(reply, row); });
}

/// Those made at this desk, and those to be fetched here.
bool isOfDesk(const Context& context, const FoundBooking& booking) {
  const std::int64_t desk = context.session.locationId;
  return booking.locationId == desk || booking.pickupLocationId == desk;
}

std::vector<FoundBooking> foundBookings(Context& context, const SearchTag& search, const Message& message) {
  return findCurrentBookings(context.db, search.by, message.text(search.tag), context.session.locationId);
}

Reply searchToCharge(Context& context, const Message& message) {
  const SearchTag* search = tagOf(personTags, message);
  Reply reply;
  if (search == nullptr) return reply;
  std::vector<std::int64_t> ids;
  bool charged = false;
  for (const FoundBooking& found : foundBookings(context, *search, message)) {
    if (!isOfDesk(context, found)) continue;
    charged = charged || isOut(found.status);
    if (found.status == BookingStatus::Live) ids.push_back(found.id);
  }
  addRows(reply, context, ids);
  const bool byNumber = search->by == SearchBy::Confirmation;
  if (byNumber && charged && reply.recordCount() == 0) reply.setRc(rc::alreadyCharged);
  return reply;
}

Reply lineReply(const std::vector<OpenLine>& lines) {
  Reply reply;
  if (lines.empty()) return reply;
  const OpenLine& line = lines.front();
  reply.head(tags::BOOKID, line.bookingId);
  if (line.itemId != 0) reply.head(tags::IM, line.itemId);
  if (line.pieceId != 0) reply.head(tags::EID, line.pieceId);
  return reply.head(tags::RID, line.roomId);
}

Reply bookingsOfLines(Context& context, const std::vector<OpenLine>& lines) {
  Reply reply;
  std::vector<std::int64_t> told;
  for (const OpenLine& line : lines) {
    if (std::find(told.begin(), told.end(), line.bookingId) != told.end()) continue;
    told.push_back(line.bookingId);
  }
  addRows(reply, context, told);
  return reply;
}

/// Things come back to whichever desk of the library is nearest.
Reply searchToDischarge(Context& context, const Message& message) {
  if (const SearchTag* search = tagOf(thingTags, message)) {
    const std::string_view text = message.text(search->tag);
    const std::int64_t desk = context.session.locationId;
    const bool isScan = message.flag(tags::QD) && search->by != SearchBy::CallNumber;
    if (isScan) return lineReply(findScannedLines(context.db, search->by, text, desk));
    const std::vector<OpenLine> lines =
        findOpenLines(context.db, search->by, text, desk, message.text(tags::CNTY));
    return message.flag(tags::QD) ? lineReply(lines) : bookingsOfLines(context, lines);
  }
  Reply reply;
  const SearchTag* search = tagOf(personTags, message);
  if (search == nullptr) return reply;
  std::vector<std::int64_t> ids;
  for (const FoundBooking& found : foundBookings(context, *search, message)) {
    if (isOut(found.status)) ids.push_back(found.id);
  }
  addRows(reply, context, ids);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"SSC", searchToCharge},
    HandlerRow{"SSD", searchToDischarge},
};

}  // namespace

std::span<const HandlerRow> circulationSearchHandlers() {
  return rows;
}

}  // namespace vantry::server
