// The catalogue, as far as bookings look things up in it.

#include <array>

#include "server/base/number_text.h"
#include "server/desk/list_store.h"
#include "server/desk/media_store.h"
#include "server/desk/thing_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply titlesOfBarcode(Context& context, const Message& message) {
  Reply reply(rc::notFound);
  for (const ItemRow& row : itemsOfBarcode(context.db, message.text(tags::IB))) {
    reply.setRc(0);
    reply.record()
        .set(tags::BI, row.titleId)
        .set(tags::MI, row.holdingId)
        .set(tags::IM, row.id)
        .set(tags::TITL, row.title)
        .set(tags::MTID, row.mediaTypeId)
        .set(tags::MTY, row.mediaTypeName);
  }
  return reply;
}

Reply holdingOfItem(Context& context, const Message& message) {
  const std::optional<MediaItem> item = findItem(context.db, message.number(tags::IM));
  if (!item) return Reply(rc::notFound);
  Reply reply;
  return reply.head(tags::MI, item->holdingId)
      .head(tags::MTID, item->mediaTypeId)
      .head(tags::MTY, item->mediaTypeName);
}

Reply titleOfHoldings(Context& context, const Message& message) {
  const std::int64_t title = titleOfHolding(context.db, message.number(tags::MI));
  if (title == 0) return Reply(rc::notFound);
  Reply reply;
  reply.record().set(tags::BI, title).set(tags::TITL, titleOf(context.db, title));
  return reply;
}

Reply itemDetails(Context& context, const Message& message) {
  const std::optional<MediaItem> item = findItem(context.db, message.number(tags::IM));
  if (!item) return Reply(rc::notFound);
  Reply reply;
  return reply.head(tags::LO, item->location)
      .head(tags::EN, item->enumeration)
      .head(tags::CH, item->chronology)
      .head(tags::YR, item->year)
      .head(tags::CP, item->copy)
      .head(tags::MTYP, item->itemType)
      .head(tags::MDSC, item->description)
      .head(tags::MTID, item->mediaTypeId)
      .head(tags::MTY, item->mediaTypeName);
}

Reply holdingDetails(Context& context, const Message& message) {
  Reply reply;
  for (const HoldingRow& row : holdingsOf(context.db, message.number(tags::BI), message.number(tags::MI)))
    reply.record().set(tags::MI, row.id).set(tags::CN, row.callNumber).set(tags::LO, row.location);
  return reply;
}

struct TitleAsk {
  std::int64_t title = 0;
  std::int64_t holding = 0;
};

std::vector<TitleAsk> titleAsks(const Message& message) {
  std::vector<TitleAsk> asks;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::BI) asks.push_back({numberOf(pair.value), 0});
    if (pair.tag == tags::MI && !asks.empty()) asks.back().holding = numberOf(pair.value);
  }
  return asks;
}

/// One record per item, and one for holdings that have none.
void addHoldings(Reply& reply, Connection& db, const TitleAsk& ask) {
  for (const ItemRow& row : itemsOfTitle(db, ask.title, ask.holding)) {
    const bool isItem = row.id != 0;
    reply.record().set(tags::BI, row.titleId).set(tags::MI, row.holdingId);
    if (isItem) reply.set(tags::IM, row.id);
    reply.set(tags::TITL, row.title);
    if (isItem) reply.set(tags::MTID, row.mediaTypeId);
    reply.set(tags::MTY, row.mediaTypeName).set(tags::LO, row.location).set(tags::CN, row.callNumber);
    reply.set(tags::EN, row.enumeration).set(tags::CH, row.chronology).set(tags::YR, row.year);
    if (isItem) reply.set(tags::CP, row.copy);
  }
}

Reply holdingsAndItems(Context& context, const Message& message) {
  Reply reply;
  for (const TitleAsk& ask : titleAsks(message)) addHoldings(reply, context.db, ask);
  return reply;
}

Reply mediaTypeList(Context& context, const Message&) {
  Reply reply;
  for (const NamedRow& row : mediaTypes(context.db))
    reply.record().set(tags::MTID, row.id).set(tags::MTY, row.name);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GBBIB", titlesOfBarcode},  HandlerRow{"GMIID", holdingOfItem},
    HandlerRow{"GBBMID", titleOfHoldings}, HandlerRow{"GID", itemDetails},
    HandlerRow{"GMD", holdingDetails},     HandlerRow{"GBHI", holdingsAndItems},
    HandlerRow{"GMTYP", mediaTypeList},
};

}  // namespace

std::span<const HandlerRow> mediaHandlers() {
  return rows;
}

}  // namespace vantry::server
