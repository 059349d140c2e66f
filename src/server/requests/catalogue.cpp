// The catalogue search, and the records that stand behind its titles.

#include <algorithm>
#include <array>

#include "server/base/tag_refusal.h"
#include "server/catalogue/catalogue_search.h"
#include "server/catalogue/catalogue_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

std::vector<FoundTitle> search(Context& context, const Message& message) {
  const auto kind = static_cast<KeyKind>(message.number(tags::SRCHTAG));
  const std::string_view text = message.text(tags::SRCHVAL);
  switch (kind) {
    case KeyKind::Title:
    case KeyKind::Author:
    case KeyKind::Subject:
    case KeyKind::CallNumber:
      return titlesByKey(context.db, kind, text);
    case KeyKind::Word:
      return titlesByWords(context.db, text, message.flag(tags::KWHO));
    case KeyKind::HoldingsWord:
      break;
  }
  refuseTag(tags::SRCHTAG);
}

Reply findInCatalogue(Context& context, const Message& message) {
  const std::vector<FoundTitle> titles = search(context, message);
  Reply reply;
  reply.head(tags::SRCHCNT, static_cast<std::int64_t>(titles.size()));
  for (std::size_t at = 0; at < std::min(titles.size(), mostTitles); ++at) {
    reply.record()
        .set(tags::BI, titles[at].id)
        .set(tags::TITL, titles[at].title)
        .set(tags::AUTH, titles[at].author)
        .set(tags::YR, titles[at].published);
  }
  return reply;
}

Reply catalogueRecord(Context& context, const Message& message) {
  const bool title = message.has(tags::BI);
  const std::optional<MarcRecord> record = title ? recordOfTitle(context.db, message.number(tags::BI))
                                                 : recordOfHolding(context.db, message.number(tags::MI));
  if (!record) return Reply(rc::notFound);
  Reply reply;
  if (!record->leader.empty()) reply.record().set(tags::FLDT, "LDR").set(tags::FLDV, record->leader);
  for (const MarcField& field : record->fields) {
    reply.record().set(tags::FLDT, field.tag).set(tags::FLDI, field.indicators).set(tags::FLDV, field.text);
  }
  return reply;
}

constexpr std::array rows{HandlerRow{"CATFIND", findInCatalogue}, HandlerRow{"CATREC", catalogueRecord}};

}  // namespace

std::span<const HandlerRow> catalogueHandlers() {
  return rows;
}

}  // namespace vantry::server
