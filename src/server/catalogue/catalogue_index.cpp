// What titles are found by: keys made of their records and holdings.

#include <algorithm>
#include <array>
#include <set>

#include "server/base/catalogue_text.h"
#include "server/catalogue/catalogue_store.h"
#include "server/catalogue/title_identity.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

using Keys = std::set<CatalogueKey>;

/// Which subfields of a field are a key of which kind; a tag may be the beginning of several.
struct KeySource {
  std::string_view tag;
  KeyKind kind;
  std::string_view codes;
};
constexpr std::array keySources{
    KeySource{"130", KeyKind::Title, "anp"},  KeySource{"240", KeyKind::Title, "anp"},
    KeySource{"245", KeyKind::Title, "abnp"}, KeySource{"245", KeyKind::Title, "a"},
    KeySource{"246", KeyKind::Title, "abnp"}, KeySource{"440", KeyKind::Title, "anp"},
    KeySource{"490", KeyKind::Title, "a"},    KeySource{"730", KeyKind::Title, "anp"},
    KeySource{"740", KeyKind::Title, "anp"},  KeySource{"830", KeyKind::Title, "anp"},
    KeySource{"100", KeyKind::Author, "abq"}, KeySource{"110", KeyKind::Author, "ab"},
    KeySource{"111", KeyKind::Author, "a"},   KeySource{"700", KeyKind::Author, "abq"},
    KeySource{"710", KeyKind::Author, "ab"},  KeySource{"711", KeyKind::Author, "a"},
    KeySource{"6", KeyKind::Subject, "a"},    KeySource{"6", KeyKind::Subject, "abcdqtvxyz"},
};

/// Fields whose words a keyword finds: headings, descriptions and notes, but no numbers, links and holdings.
bool hasWords(std::string_view tag) {
  return (tag >= "100" && tag < "336") || (tag >= "400" && tag < "590") || (tag >= "600" && tag < "760") ||
         (tag >= "800" && tag < "840");
}

constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";

/// How many characters of a title are an article that is not sorted by: its tag's second or first indicator.
std::size_t unsorted(const MarcField& field) {
  if (field.indicators.size() != 2) return 0;
  const bool second = field.tag == "245" || field.tag == "240" || field.tag == "440" || field.tag == "830";
  const bool first = field.tag == "130" || field.tag == "730" || field.tag == "740";
  const char figure = second ? field.indicators[1] : first ? field.indicators[0] : '0';
  return figure >= '1' && figure <= '9' ? static_cast<std::size_t>(figure - '0') : 0;
}

void addKey(Keys& keys, KeyKind kind, std::string_view text) {
  std::string key = catalogueKey(text);
  if (!key.empty()) keys.emplace(kind, std::move(key));
}

void addWords(Keys& keys, KeyKind kind, std::string_view text) {
  while (!text.empty()) {
    // Long notes are taken piece by piece, since a key is cut.
    const std::string_view piece = cutText(text, 200);
    const std::size_t blank = piece.size() < text.size() ? piece.rfind(' ') : std::string_view::npos;
    const std::string_view part =
        blank == std::string_view::npos || blank == 0 ? piece : piece.substr(0, blank);
    for (std::string& word : catalogueWords(catalogueKey(part))) keys.emplace(kind, std::move(word));
    text.remove_prefix(part.size());
  }
}

/// A title is found with its article and without it.
void addHeading(Keys& keys, const KeySource& source, const MarcField& field) {
  const std::string text = subfields(field, source.codes);
  addKey(keys, source.kind, text);
  const std::size_t article = source.kind == KeyKind::Title ? unsorted(field) : 0;
  if (article > 0 && article < text.size()) addKey(keys, source.kind, std::string_view(text).substr(article));
}

/// Titles that are told without counting their article begin with one of these, in the language of most.
constexpr std::array articles{"the ", "a ", "an "};

void addUncountedArticle(Keys& keys) {
  Keys more;
  for (const auto& [kind, key] : keys) {
    if (kind != KeyKind::Title) continue;
    for (const std::string_view article : articles) {
      if (key.starts_with(article)) more.emplace(kind, key.substr(article.size()));
    }
  }
  keys.merge(more);
}

void addRecord(Keys& keys, const MarcRecord& record) {
  for (const MarcField& field : record.fields) {
    for (const KeySource& source : keySources) {
      if (field.tag.starts_with(source.tag)) addHeading(keys, source, field);
    }
    if (hasWords(field.tag)) addWords(keys, KeyKind::Word, subfields(field, letters));
  }
  addUncountedArticle(keys);
}

void addHoldings(Keys& keys, Connection& db, std::int64_t titleId) {
  std::string callNumber;
  std::string location;
  Query query(db,
              "select h.call_number, l.name from holdings h join locations l on l.id = h.location_id "
              "where h.title_id = :id");
  query.bind("id", titleId).into(callNumber, location);
  while (query.next()) {
    addKey(keys, KeyKind::CallNumber, callNumber);
    addWords(keys, KeyKind::HoldingsWord, callNumber);
    addWords(keys, KeyKind::HoldingsWord, location);
  }
}

void addItems(Keys& keys, Connection& db, std::int64_t titleId) {
  std::array<std::string, 4> texts;
  Query query(db, "select barcode, enumeration, chronology, description from items where title_id = :id");
  query.bind("id", titleId).into(texts[0], texts[1], texts[2], texts[3]);
  while (query.next()) {
    for (const std::string& text : texts) addWords(keys, KeyKind::HoldingsWord, text);
  }
}

/// Notes in records of holdings.
void addHoldingsNotes(Keys& keys, Connection& db, std::int64_t titleId) {
  std::string text;
  Query query(db, "select record from marc_records where title_id = :id and holding_id is not null");
  query.bind("id", titleId).into(text);
  while (query.next()) {
    for (const MarcField& field : fromStoredForm(text).fields) {
      if (field.tag == "852") addWords(keys, KeyKind::HoldingsWord, subfields(field, "z"));
      if (field.tag >= "866" && field.tag <= "868")
        addWords(keys, KeyKind::HoldingsWord, subfields(field, "az"));
    }
  }
}

void writeKeys(Connection& db, std::int64_t titleId, const Keys& keys, const std::string& fingerprint) {
  Query old(db, "delete from catalogue_keys where title_id = :id");
  old.bind("id", titleId).later();
  for (const auto& [kind, key] : keys) {
    Query query(db, "insert into catalogue_keys (kind, word, title_id) values (:kind, :word, :title_id)");
    query.bind("kind", static_cast<int>(kind)).bind("word", key).bind("title_id", titleId).later();
  }
  Query done(db, "update titles set is_indexed = 1, fingerprint = :fingerprint where id = :id");
  done.bind("fingerprint", fingerprint).bind("id", titleId).later();
}

}  // namespace

std::vector<CatalogueKey> keysOf(const MarcRecord& record) {
  Keys keys;
  addRecord(keys, record);
  return {keys.begin(), keys.end()};
}

void indexTitle(Connection& db, std::int64_t id) {
  Keys keys;
  std::string fingerprint;
  if (const std::optional<MarcRecord> record = recordOfTitle(db, id)) {
    addRecord(keys, *record);
    fingerprint = fingerprintOf(titleFacts(*record));
  }
  addHoldings(keys, db, id);
  addItems(keys, db, id);
  addHoldingsNotes(keys, db, id);
  writeKeys(db, id, keys, fingerprint);
}

bool indexSomeTitles(Connection& db) {
  std::vector<std::int64_t> ids;
  std::int64_t id = 0;
  Query query(db, "select id from titles where is_indexed = 0 and id > 0 order by id limit 500");
  query.into(id);
  while (query.next()) ids.push_back(id);
  for (const std::int64_t each : ids) indexTitle(db, each);
  return !ids.empty();
}

void indexCatalogue(Database& database) {
  bool more = false;
  database.read([&](Connection& db) {
    std::int64_t id = 0;
    Query query(db, "select id from titles where is_indexed = 0 and id > 0 limit 1");
    more = fetchOne(query, id);
  });
  // A portion at a time, so that other servers on the database are not kept waiting.
  while (more) database.writeApart("catalogue", [&](Connection& db) { more = indexSomeTitles(db); });
}

}  // namespace vantry::server
