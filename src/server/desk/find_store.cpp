#include "server/desk/find_store.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>

#include "server/base/tag_refusal.h"
#include "server/desk/find_sql.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct SubjectRow {
  FindSubject subject;
  std::string_view row;    ///< the table with its name in the SQL
  std::string_view key;    ///< its key
  std::string_view order;  ///< what the list is ordered by
  std::string_view whole;  ///< what belongs to the subject at all
};
constexpr std::array subjects{
    SubjectRow{FindSubject::Bookings, "bookings b", "b.id", "b.starts_at", "$LIBRARY"},
    SubjectRow{FindSubject::Equipment, "equipment e", "e.id", "e.number", "e.is_group = 0"},
    SubjectRow{FindSubject::Groups, "equipment e", "e.id", "e.number", "e.is_group = 1"},
    SubjectRow{FindSubject::Rooms, "rooms r", "r.id", "r.number", {}},
    SubjectRow{FindSubject::Maintenance, "maintenance m", "m.id", "m.came_in_on", {}},
    SubjectRow{FindSubject::Patrons, "patrons p", "p.id", "p.search_name", {}},
};

struct ScopeRow {
  FindSubject subject;
  int scope;
  std::string_view test = {};
};
constexpr std::string_view keptInRoom =
    "(select k.storage from rooms q join room_types k on k.id = q.room_type_id "
    "where q.id = e.room_id) = 0";
constexpr std::string_view keptInStorage =
    "(select k.storage from rooms q join room_types k on k.id = q.room_type_id "
    "where q.id = e.room_id) = 1";
constexpr std::string_view inBookings =
    "exists (select 1 from occupancy o join bookings b on b.id = o.booking_id where o.kind = (select 1) and "
    "o.thing = "
    "e.id and "
    "$LIBRARY)";
constexpr std::array scopes{
    ScopeRow{FindSubject::Bookings, 4},
    ScopeRow{FindSubject::Equipment, 1},
    ScopeRow{FindSubject::Equipment, 2, "e.group_id is not null"},
    ScopeRow{FindSubject::Equipment, 3, keptInRoom},
    ScopeRow{FindSubject::Equipment, 6, keptInStorage},
    ScopeRow{FindSubject::Equipment, 4, inBookings},
    ScopeRow{FindSubject::Groups, 1},
    ScopeRow{FindSubject::Groups, 3, keptInRoom},
    ScopeRow{FindSubject::Groups, 6, keptInStorage},
    ScopeRow{FindSubject::Groups, 4, inBookings},
    ScopeRow{FindSubject::Rooms, 1},
    // A booking's window looks for a room by it, so that it means rooms that bookings can have.
    ScopeRow{FindSubject::Rooms, 3, "(select k.storage from room_types k where k.id = r.room_type_id) = 0"},
    ScopeRow{FindSubject::Maintenance, 0},
    ScopeRow{FindSubject::Patrons, 5},
    ScopeRow{FindSubject::Patrons, 4,
             "exists (select 1 from bookings b where b.patron_id = p.id and b.status in (0, 99, 999) and "
             "$LIBRARY)"},
};

const SubjectRow& subjectOf(FindSubject subject) {
  return *std::ranges::find(subjects, subject, &SubjectRow::subject);
}

std::string_view scopeTest(const FindQuestion& question) {
  const auto found = std::ranges::find_if(scopes, [&](const ScopeRow& each) {
    return each.subject == question.subject && each.scope == question.scope;
  });
  if (found == scopes.end()) refuseTag(tags::SRCHLOC);
  return found->test;
}

constexpr int firstDate = 8;
constexpr int lastDate = 9;

/// A criterion with the values that are bound to it.
struct AskedCriterion {
  const FindCriterion* criterion = nullptr;
  std::vector<FindValue> values;
};

bool isStatus(const AskedCriterion& asked) {
  return asked.criterion->form == FindForm::Status;
}

StatusSql statusOf(const AskedCriterion& asked) {
  return sqlOfStatus(std::get<std::int64_t>(asked.values.front()));
}

void requireOnce(const std::vector<FindTerm>& terms) {
  for (auto each = terms.begin(); each != terms.end(); ++each) {
    if (std::find_if(terms.begin(), each,
                     [&](const FindTerm& other) { return other.number == each->number; }) != each)
      refuseTag(tags::SRCHTAG);
  }
}

/// The two dates of a span are one criterion.
std::vector<AskedCriterion> askedFor(const FindQuestion& question) {
  requireOnce(question.terms);
  std::vector<AskedCriterion> asked;
  std::map<int, std::string_view> dates;
  for (const FindTerm& term : question.terms) {
    const bool isDate = term.number == firstDate || term.number == lastDate;
    const FindCriterion* criterion = findCriterion(question.subject, isDate ? firstDate : term.number);
    if (criterion == nullptr) refuseTag(tags::SRCHTAG);
    if (!isDate) {
      asked.push_back({criterion, valuesOf(*criterion, term.value)});
      continue;
    }
    if (term.value.empty()) refuseTag(tags::SRCHVAL);
    if (dates.empty()) asked.push_back({criterion, {}});
    dates[term.number] = term.value;
  }
  for (AskedCriterion& each : asked) {
    if (each.criterion->number == firstDate)
      each.values = valuesOfSpan(*each.criterion, dates[firstDate], dates[lastDate]);
  }
  // The order of the terms makes no other statement.
  std::ranges::sort(asked, {}, [](const AskedCriterion& each) { return each.criterion->number; });
  return asked;
}

constexpr const char* notOver = "b.status in (0, 99, 999)";
constexpr const char* overButNotPast =
    "select x.id as id from bookings x where x.status in (1, 2, 3, 4) and x.ends_at >= :today";

/// From so many keys on, a finder is not worth counting further.
constexpr std::int64_t many = 400;

/// What a finder gives is sorted whole: reading on behind the page tells how much there is sooner than
/// finding it all again to count it.
constexpr std::int64_t pagesOfKeys = 8;

std::string joined(const std::vector<std::string>& conditions, std::string_view word) {
  std::string text;
  for (const std::string& each : conditions) {
    if (each.empty()) continue;
    text += (text.empty() ? std::string() : " " + std::string(word) + " ") + each;
  }
  return text;
}

std::string where(const std::vector<std::string>& conditions) {
  const std::string text = joined(conditions, "and");
  return text.empty() ? text : " where " + text;
}

}  // namespace

class FindSearch::Impl {
 public:
  Impl(Connection& db, const FindQuestion& question)
      : db_(db),
        question_(question),
        subject_(subjectOf(question.subject)),
        whole_(writtenOut(db, subject_.whole, {})),
        scope_(writtenOut(db, scopeTest(question), {})),
        asked_(askedFor(question)),
        limit_(db, question.longest) {
    planForSearch(db);
    hits_ = makeHits();
  }

  /// The rows of so few keys are read in whatever way the database likes best.
  [[nodiscard]] IdSelect page() {
    const std::int64_t limit = question_.most * (hasFinder() ? pagesOfKeys : 1);
    const std::string sql =
        "select hit.id from (" + hits_ + ") hit order by hit.place, hit.id limit " + std::to_string(limit);
    std::vector<std::int64_t> keys;
    std::int64_t found = 0;
    std::int64_t id = 0;
    Query query(db_, sql);
    bind(query, hits_);
    query.into(id);
    while (query.next()) {
      if (++found <= question_.most) keys.push_back(id);
    }
    if (found < limit) count_ = found;
    planAsUsual(db_);
    return {keysIn(db_, "found"), [list = keysText(keys)](Query& rows) { rows.bind("found", list); }};
  }

  [[nodiscard]] std::int64_t count() {
    if (count_) return *count_;
    planForSearch(db_);
    const std::string_view others = othersSql();
    const std::int64_t count =
        others.empty() ? countOf("select count(*) from (" + hits_ + ") hit") : countBut(others);
    planAsUsual(db_);
    return count;
  }

 private:
  [[nodiscard]] bool hidesPast() const {
    return question_.subject == FindSubject::Bookings && !question_.history;
  }

  /// The SQL with its words written out, and with placeholders that belong to the criterion.
  [[nodiscard]] std::string written(std::string_view sql, std::size_t place) const {
    return writtenOut(db_, sql, {.mark = place, .hidesPast = hidesPast()});
  }

  [[nodiscard]] std::string test(std::size_t place) const {
    const AskedCriterion& asked = asked_[place];
    return written(isStatus(asked) ? statusOf(asked).test : asked.criterion->test, place);
  }

  /// Empty where the test itself finds the rows.
  [[nodiscard]] std::string_view finderSql(const AskedCriterion& asked) const {
    if (!hidesPast() && !asked.criterion->past.empty()) return asked.criterion->past;
    return isStatus(asked) ? statusOf(asked).finder : asked.criterion->finder;
  }

  [[nodiscard]] std::string finder(std::size_t place) const {
    const std::string_view sql = finderSql(asked_[place]);
    if (!sql.empty()) return written(sql, place);
    return "select " + std::string(subject_.key) + " as id from " + std::string(subject_.row) +
           where({whole_, hidesPast() ? notOver : "", test(place)});
  }

  [[nodiscard]] std::string tests() const {
    std::vector<std::string> all;
    for (std::size_t place = 0; place < asked_.size(); ++place) all.push_back(test(place));
    const std::string text = joined(all, question_.any ? "or" : "and");
    return question_.any && all.size() > 1 ? "(" + text + ")" : text;
  }

  /// The finder that gives the fewest keys, as far as it is worth to count them.
  [[nodiscard]] std::string bestFinder() const {
    std::string best;
    std::int64_t fewest = many + 1;
    for (std::size_t place = 0; place < asked_.size(); ++place) {
      const std::string candidate = finder(place);
      if (asked_.size() == 1) return candidate;
      const std::int64_t count = countOf("select count(*) from (select 1 from (" + candidate + ") f limit " +
                                         std::to_string(many) + ") k");
      if (count < fewest) best = candidate;
      fewest = std::min(fewest, count);
      if (fewest == 0) break;
    }
    return best;
  }

  [[nodiscard]] std::string allFinders() const {
    std::string all;
    for (std::size_t place = 0; place < asked_.size(); ++place)
      all += (place == 0 ? "select f.id from (" : " union all select f.id from (") + finder(place) + ") f";
    return all;
  }

  /// Rows of the subject with key and place, among the keys of the finder where there is one.
  [[nodiscard]] std::string rows(const std::string& finder, const char* condition) const {
    const std::string key(subject_.key);
    std::string sql = "select " + key + " as id, " + std::string(subject_.order) + " as place from ";
    // The order of the join is told: who has found the keys has found the rows.
    if (!finder.empty()) sql += "(select distinct f.id from (" + finder + ") f) d cross join ";
    return sql + std::string(subject_.row) +
           where({finder.empty() ? "" : key + " = d.id", whole_, condition, scope_, tests()});
  }

  /// A single criterion without a finder of its own is one condition on the rows.
  [[nodiscard]] bool hasFinder() const {
    return asked_.size() > 1 || (asked_.size() == 1 && !finderSql(asked_.front()).empty());
  }

  [[nodiscard]] std::string makeHits() const {
    std::string finder;
    if (hasFinder()) finder = question_.any ? allFinders() : bestFinder();
    if (!hidesPast()) return rows(finder, "");
    return rows(finder, notOver) + " union all " + rows(overButNotPast, "");
  }

  [[nodiscard]] std::int64_t countOf(const std::string& sql) const {
    std::int64_t count = 0;
    Query query(db_, sql);
    bind(query, sql);
    fetchOne(query, count);
    return count;
  }

  /// What finds the rows that do not pass, where they are the only ones and few.
  [[nodiscard]] std::string_view othersSql() const {
    const bool single = asked_.size() == 1 && isStatus(asked_.front());
    return single ? statusOf(asked_.front()).others : std::string_view();
  }

  /// How many rows there are but those that are found: sooner than looking at each whether it passes.
  [[nodiscard]] std::int64_t countBut(std::string_view found) const {
    const auto rowsThat = [&](const std::string& condition) {
      return "select count(*) from " + std::string(subject_.row) + where({whole_, scope_, condition});
    };
    return countOf(rowsThat({})) -
           countOf(rowsThat(std::string(subject_.key) + " in (" + written(found, 0) + ")"));
  }

  /// Binds what is in the SQL.
  void bind(Query& query, const std::string& sql) const {
    const auto bindNamed = [&](const std::string& name, const auto& value) {
      if (hasPlaceholder(sql, name)) query.bind(name.c_str(), value);
    };
    bindNamed("desk", question_.deskId);
    bindNamed("now", question_.now);
    bindNamed("today", startOfDay(question_.now));
    for (std::size_t place = 0; place < asked_.size(); ++place) {
      for (std::size_t each = 0; each < asked_[place].values.size(); ++each) {
        const std::string name = placeholder(each, place);
        std::visit([&](const auto& value) { bindNamed(name, value); }, asked_[place].values[each]);
      }
    }
  }

  Connection& db_;
  const FindQuestion& question_;
  const SubjectRow& subject_;
  std::string whole_;
  std::string scope_;
  std::vector<AskedCriterion> asked_;
  TimeLimit limit_;
  std::string hits_;
  std::optional<std::int64_t> count_ = {};  ///< once the page has told it
};

FindSearch::FindSearch(Connection& db, const FindQuestion& question)
    : impl_(std::make_unique<Impl>(db, question)) {}

FindSearch::~FindSearch() = default;

IdSelect FindSearch::page() {
  return impl_->page();
}

std::int64_t FindSearch::count() {
  return impl_->count();
}

}  // namespace vantry::server
