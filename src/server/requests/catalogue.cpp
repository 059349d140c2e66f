// The catalogue search, and the records that stand behind its titles.

#include <algorithm>
#include <array>
#include <set>

#include "server/catalogue/catalogue_store.h"
#include "server/catalogue/catalogue_text.h"
#include "server/desk/usage_check.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr std::size_t mostTitles = 500;
constexpr std::size_t mostWords = 8;

struct FoundTitle {
  std::int64_t id = 0;
  std::string title;
  std::string author;
  std::string published;
};

/// The titles that the query gives, each once and in its order; one more than are told at most.
std::vector<FoundTitle> titlesOf(Query& query) {
  std::vector<FoundTitle> titles;
  std::set<std::int64_t> seen;
  FoundTitle each;
  query.into(each.id, each.title, each.author, each.published);
  while (titles.size() <= mostTitles && query.next()) {
    if (seen.insert(each.id).second) titles.push_back(each);
  }
  return titles;
}

std::vector<FoundTitle> titlesByKey(Connection& db, KeyKind kind, std::string_view text) {
  const TextRange range = catalogueRange(text);
  if (range.high.empty()) return {};
  // A title has few keys of one kind, so that so many rows hold titles enough.
  Query query(db,
              "select k.title_id, t.title, t.author, t.published from catalogue_keys k "
              "join titles t on t.id = k.title_id where k.kind = :kind and k.word >= :low and "
              "k.word <= :high order by k.word, k.title_id limit 4000");
  query.bind("kind", static_cast<int>(kind)).bind("low", range.low).bind("high", range.high);
  return titlesOf(query);
}

/// How many keys the word has, as far as it matters.
std::int64_t weightOf(Connection& db, const TextRange& word, const std::string& kinds) {
  std::int64_t count = 0;
  const std::string sql = "select count(*) from (select 1 as one from catalogue_keys where kind in " + kinds +
                          " and word >= :low and word <= :high limit 5000) as few";
  Query query(db, sql);
  query.bind("low", word.low).bind("high", word.high).into(count);
  while (query.next()) {
  }
  return count;
}

/// Walks the keys of the first word, and looks the others up for each title.
std::string wordsSql(std::size_t words, const std::string& kinds) {
  std::string sql =
      "select k.title_id, t.title, t.author, t.published from catalogue_keys k join titles t on t.id = "
      "k.title_id where k.kind in " +
      kinds + " and k.word >= :low0 and k.word <= :high0";
  for (std::size_t at = 1; at < words; ++at) {
    const std::string number = std::to_string(at);
    sql += " and exists (select 1 from catalogue_keys o where o.title_id = k.title_id and o.kind in " +
           kinds + " and o.word >= :low" + number + " and o.word <= :high" + number + ")";
  }
  return sql + " limit 4000";
}

std::vector<FoundTitle> titlesByWords(Connection& db, std::string_view text, bool holdings) {
  const std::string kinds = holdings ? "(5, 6)" : "(5)";
  std::vector<TextRange> words = wordRanges(text);
  if (words.empty()) return {};
  if (words.size() > mostWords) words.resize(mostWords);
  const auto rarest =
      std::ranges::min_element(words, {}, [&](const TextRange& word) { return weightOf(db, word, kinds); });
  std::iter_swap(words.begin(), rarest);
  const std::string sql = wordsSql(words.size(), kinds);
  Query query(db, sql);
  for (std::size_t at = 0; at < words.size(); ++at) {
    const std::string number = std::to_string(at);
    query.bind(("low" + number).c_str(), words[at].low).bind(("high" + number).c_str(), words[at].high);
  }
  std::vector<FoundTitle> titles = titlesOf(query);
  std::ranges::stable_sort(titles, {}, [](const FoundTitle& each) { return catalogueKey(each.title); });
  return titles;
}

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

std::span<const HandlerRow> catalogueRequests() {
  return rows;
}

}  // namespace vantry::server
