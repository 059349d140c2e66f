// What is to be fetched from shelves and storage rooms.

#include <array>

#include "server/base/tag_refusal.h"
#include "server/desk/booking_store.h"
#include "server/desk/pick_store.h"
#include "server/requests/monitor_message.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Period spanOf(const Message& message) {
  const auto from = parseMoment(message.text(tags::STIME));
  const auto until = parseMoment(message.text(tags::ETIME_));
  if (!from) refuseTag(tags::STIME);
  if (!until || *until < *from) refuseTag(tags::ETIME_);
  return {*from, *until};
}

/// The desk has to find whoever comes, so that no name is withheld.
Reply& addHead(Reply& reply, const PickRow& row) {
  return reply.record()
      .set(tags::BOOKID, row.bookingId)
      .set(tags::CNUM, confirmationNumber(row.bookingId))
      .set(tags::PFN, row.first)
      .set(tags::PLN, row.last)
      .set(tags::UTIME, momentText(row.staffStartsAt))
      .set(tags::BTYP, bookingTypeName(row.bookingType))
      .set(tags::LNA, row.location)
      .set(tags::ETY, row.type);
}

Reply equipmentPickList(Context& context, const Message& message) {
  Reply reply;
  for (const PickedPiece& row : piecesToFetch(context.db, watchedDesks(context, message), spanOf(message))) {
    addHead(reply, row).set(tags::ENO, row.number).set(tags::EQBAR, row.barcode).set(tags::EQIR, row.room);
  }
  return reply;
}

void setKey(Reply& reply, std::string_view tag, std::int64_t key) {
  if (key != 0) reply.set(tag, key);
}

Reply itemPickList(Context& context, const Message& message) {
  Reply reply;
  for (const PickedItem& row : itemsToFetch(context.db, watchedDesks(context, message), spanOf(message))) {
    addHead(reply, row)
        .set(tags::NTTL, row.searchTitle)
        .set(tags::MBIBT, row.title)
        .set(tags::NCN, row.searchCallNumber)
        .set(tags::CN, row.callNumber)
        .set(tags::EN, row.enumeration)
        .set(tags::CH, row.chronology)
        .set(tags::BNO, row.barcode)
        .set(tags::MDSC, row.itemType.empty() ? row.type : row.itemType);
    setKey(reply, tags::BI, row.titleId);
    setKey(reply, tags::MI, row.holdingId);
    setKey(reply, tags::IM, row.itemId);
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GEPL", equipmentPickList},
    HandlerRow{"GIPL", itemPickList},
};

}  // namespace

std::span<const HandlerRow> pickListHandlers() {
  return rows;
}

}  // namespace vantry::server
