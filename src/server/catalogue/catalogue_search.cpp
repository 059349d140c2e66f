#include "server/catalogue/catalogue_search.h"

#include <algorithm>
#include <set>

#include "server/base/catalogue_text.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

constexpr std::size_t mostWords = 8;

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

}  // namespace

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

}  // namespace vantry::server
