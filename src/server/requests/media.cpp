// The catalogue, as far as bookings look things up in it.

#include <array>

#include "server/requests/booking_message.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Reply titlesOfBarcode(Context& context, const Message& message) {
  std::int64_t title = 0;
  std::int64_t holding = 0;
  std::int64_t item = 0;
  std::string name;
  std::int64_t mediaType = 0;
  std::string typeName;
  Query query(context.db,
              "select i.title_id, i.holding_id, i.id, t.title, i.media_type_id, m.name from items i "
              "join titles t on t.id = i.title_id left join media_types m on m.id = i.media_type_id "
              "where i.barcode = :barcode order by i.id");
  query.bind("barcode", message.text(tags::IB)).into(title, holding, item, name, mediaType, typeName);
  Reply reply(rc::notFound);
  while (!message.text(tags::IB).empty() && query.next()) {
    reply.setRc(0);
    reply.record()
        .set(tags::BI, title)
        .set(tags::MI, holding)
        .set(tags::IM, item)
        .set(tags::TITL, name)
        .set(tags::MTID, mediaType)
        .set(tags::MTY, typeName);
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
  std::int64_t id = 0;
  std::string callNumber;
  std::string location;
  Query query(context.db,
              "select h.id, h.call_number, l.name from holdings h join locations l on l.id = h.location_id "
              "where h.title_id = :title_id or h.id = :id order by h.id");
  query.bind("title_id", message.number(tags::BI)).bind("id", message.number(tags::MI));
  query.into(id, callNumber, location);
  Reply reply;
  while (query.next()) reply.record().set(tags::MI, id).set(tags::CN, callNumber).set(tags::LO, location);
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
  std::int64_t holding = 0;
  std::int64_t item = 0;
  std::int64_t mediaType = 0;
  std::int64_t copy = 0;
  std::array<std::string, 7> texts;
  Query query(db,
              "select h.id, i.id, t.title, i.media_type_id, m.name, l.name, h.call_number, i.enumeration, "
              "i.chronology, i.year, i.copy from holdings h join titles t on t.id = h.title_id "
              "join locations l on l.id = h.location_id left join items i on i.holding_id = h.id "
              "left join media_types m on m.id = i.media_type_id where h.title_id = :title_id and "
              "(:any_holding = 0 or h.id = :holding_id) order by h.id, i.copy, i.id");
  query.bind("title_id", ask.title).bind("any_holding", ask.holding).bind("holding_id", ask.holding);
  query.into(holding, item, texts[0], mediaType, texts[1], texts[2], texts[3], texts[4], texts[5], texts[6],
             copy);
  while (query.next()) {
    reply.record().set(tags::BI, ask.title).set(tags::MI, holding);
    if (item != 0) reply.set(tags::IM, item);
    reply.set(tags::TITL, texts[0]);
    if (item != 0) reply.set(tags::MTID, mediaType);
    reply.set(tags::MTY, texts[1]).set(tags::LO, texts[2]).set(tags::CN, texts[3]);
    reply.set(tags::EN, texts[4]).set(tags::CH, texts[5]).set(tags::YR, texts[6]);
    if (item != 0) reply.set(tags::CP, copy);
  }
}

Reply holdingsAndItems(Context& context, const Message& message) {
  Reply reply;
  for (const TitleAsk& ask : titleAsks(message)) addHoldings(reply, context.db, ask);
  return reply;
}

Reply mediaTypes(Context& context, const Message&) {
  std::int64_t id = 0;
  std::string name;
  Query query(context.db, "select id, name from media_types order by name");
  query.into(id, name);
  Reply reply;
  while (query.next()) reply.record().set(tags::MTID, id).set(tags::MTY, name);
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GBBIB", titlesOfBarcode},  HandlerRow{"GMIID", holdingOfItem},
    HandlerRow{"GBBMID", titleOfHoldings}, HandlerRow{"GID", itemDetails},
    HandlerRow{"GMD", holdingDetails},     HandlerRow{"GBHI", holdingsAndItems},
    HandlerRow{"GMTYP", mediaTypes},
};

}  // namespace

std::span<const HandlerRow> mediaRequests() {
  return rows;
}

}  // namespace vantry::server
