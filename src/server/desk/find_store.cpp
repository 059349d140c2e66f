#include "server/desk/find_store.h"

#include <algorithm>
#include <array>
#include <deque>
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
  std::string_view row;          ///< the table with its name in the SQL
  std::string_view key;          ///< its key
  std::string_view order;        ///< what the list is ordered by
  std::string_view whole;        ///< what belongs to the subject at all
  std::string_view within = {};  ///< what those with the same place in that order are ordered by
};
constexpr std::array subjects{
    SubjectRow{FindSubject::Bookings, "bookings b", "b.id", "b.starts_at", "$LIBRARY"},
    SubjectRow{FindSubject::Equipment, "equipment e", "e.id", "e.number", "e.is_group = 0"},
    SubjectRow{FindSubject::Groups, "equipment e", "e.id", "e.number", "e.is_group = 1"},
    SubjectRow{FindSubject::Rooms, "rooms r", "r.id", "r.number", {}},
    SubjectRow{FindSubject::Maintenance, "maintenance m", "m.id", "m.came_in_on", {}},
    SubjectRow{FindSubject::Patrons, "patrons p", "p.id", "p.search_name", {}, "p.search_first"},
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
// PostgreSQL begins with a selection that has a limit. Without one it begins elsewhere, though there are few.
constexpr const char* overButNotPast =
    "(select x.id from bookings x where x.status in (1, 2, 3, 4) and x.ends_at >= :today limit 1000000000) "
    "late cross join bookings b where b.id = late.id";

/// From so many rows on, ways are not worth counting further.
constexpr std::int64_t many = 400;

/// What ways lead to is sorted whole: reading on behind the page tells how much there is sooner than
/// finding it all again to count it.
constexpr std::int64_t pagesOfKeys = 8;

/// Ways to rows, each written out.
using Ways = std::vector<std::string>;

bool hasWays(const FindWays& ways) {
  return !ways.front().empty();
}

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
        whole_(writtenOut(db, subject_.whole)),
        scope_(writtenOut(db, scopeTest(question))),
        asked_(askedFor(question)),
        limit_(db, question.longest) {
    plan();
    hits_ = makeHits();
  }

  [[nodiscard]] std::vector<std::int64_t> page() {
    const std::int64_t limit = question_.most * (isByWays() ? pagesOfKeys : 1);
    const std::string sql = "select hit.id from (" + hits_ + ") hit order by " + placesOf("hit") +
                            ", hit.id limit " + std::to_string(limit);
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
    return keys;
  }

  [[nodiscard]] bool isCounted() const { return count_.has_value(); }

  [[nodiscard]] std::int64_t count() {
    if (count_) return *count_;
    plan();
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

  /// Ways say by themselves in which order and by which index; what finds rows otherwise depends on the
  /// values.
  void plan() const { isByWays() ? planInOrder(db_) : planForSearch(db_); }

  [[nodiscard]] std::string test(std::size_t place) const {
    const AskedCriterion& asked = asked_[place];
    return writtenOut(db_, isStatus(asked) ? statusOf(asked).test : asked.criterion->test, place);
  }

  [[nodiscard]] FindWays waysFor(const AskedCriterion& asked) const {
    if (!hidesPast() && hasWays(asked.criterion->past)) return asked.criterion->past;
    return isStatus(asked) ? statusOf(asked).ways : asked.criterion->ways;
  }

  [[nodiscard]] Ways waysOf(std::size_t place) const {
    Ways ways;
    for (const std::string_view each : waysFor(asked_[place])) {
      if (!each.empty()) ways.push_back(writtenOut(db_, each, place));
    }
    if (ways.empty()) ways.push_back(std::string(subject_.row) + where({whole_, test(place)}));
    return ways;
  }

  [[nodiscard]] std::string tests() const {
    std::vector<std::string> all;
    for (std::size_t place = 0; place < asked_.size(); ++place) all.push_back(test(place));
    const std::string text = joined(all, question_.any ? "or" : "and");
    return question_.any && all.size() > 1 ? "(" + text + ")" : text;
  }

  /// What exact ways lead to needs none: it would cost a selection for each row.
  [[nodiscard]] std::string testBehindWays(std::size_t place) const {
    return asked_[place].criterion->exact ? std::string() : test(place);
  }

  /// Those that lead to the fewest rows, as far as it is worth to count them. Of those that lead to as few
  /// the one with the fewest ways, since each way repeats the tests of all criteria.
  [[nodiscard]] Ways bestWays() const {
    if (asked_.size() == 1) return waysOf(0);
    std::vector<Ways> candidates;
    std::deque<Query> counts;
    for (std::size_t place = 0; place < asked_.size(); ++place) {
      candidates.push_back(waysOf(place));
      const std::string sql = "select count(*) from (" +
                              alongAll(candidates.back(), "1", {hidesPast() ? notOver : ""}) + " limit " +
                              std::to_string(many) + ") k";
      bind(counts.emplace_back(db_, sql), sql);
      counts.back().send();
    }
    std::size_t best = 0;
    std::int64_t fewest = many + 1;
    for (std::size_t place = 0; place < counts.size() && fewest > 0; ++place) {
      std::int64_t count = 0;
      fetchOne(counts[place], count);
      const bool hasFewerWays = candidates[place].size() < candidates[best].size();
      if (count < fewest || (count == fewest && hasFewerWays)) best = place;
      fewest = std::min(fewest, count);
    }
    return candidates[best];
  }

  /// What the ways of one criterion lead to is judged by that criterion: the others have ways of their own.
  [[nodiscard]] Ways allWays() const {
    Ways all;
    for (std::size_t place = 0; place < asked_.size(); ++place) {
      for (const std::string& each : waysOf(place))
        all.push_back(joined({each, testBehindWays(place)}, "and"));
    }
    return all;
  }

  /// Selects those rows at the ends of the ways that fulfil the conditions.
  [[nodiscard]] static std::string alongAll(const Ways& ways, const std::string& columns,
                                            const std::vector<std::string>& conditions) {
    const std::string also = joined(conditions, "and");
    std::string sql;
    for (const std::string& each : ways) {
      sql += (sql.empty() ? "select " : " union all select ") + columns + " from " + each;
      if (!also.empty()) sql += " and " + also;
    }
    return sql;
  }

  [[nodiscard]] std::string columns() const {
    const std::string key =
        std::string(subject_.key) + " as id, " + std::string(subject_.order) + " as place";
    return subject_.within.empty() ? key : key + ", " + std::string(subject_.within) + " as place2";
  }

  [[nodiscard]] std::string placesOf(const std::string& row) const {
    return row + ".place" + (subject_.within.empty() ? "" : ", " + row + ".place2");
  }

  /// Rows with key and place, found by all conditions together.
  [[nodiscard]] std::string rows() const {
    return "select " + columns() + " from " + std::string(subject_.row) +
           where({whole_, hidesPast() ? notOver : "", scope_, tests()});
  }

  /// The same at the ends of the ways, for which the whole is no way of its own.
  [[nodiscard]] std::string rowsAlong(const Ways& ways, const std::string& also) const {
    const std::string judged = whole_.empty() ? "" : "(" + whole_ + ") = true";
    return alongAll(ways, columns(), {judged, scope_, also});
  }

  [[nodiscard]] std::string rowsByWays(const Ways& ways) const {
    const std::string open = hidesPast() ? notOver : "";
    const std::string judged = asked_.size() == 1 ? testBehindWays(0) : tests();
    return rowsAlong(ways, question_.any ? open : joined({open, judged}, "and"));
  }

  /// Several ways lead to the same row, and one way does by each of several things.
  [[nodiscard]] bool mayRepeat(const Ways& ways) const {
    return ways.size() > 1 || !ways.front().starts_with(std::string(subject_.row) + " where");
  }

  /// A single criterion without ways is one condition on the rows.
  [[nodiscard]] bool isByWays() const {
    return asked_.size() > 1 || (asked_.size() == 1 && hasWays(waysFor(asked_.front())));
  }

  [[nodiscard]] std::string makeHits() const {
    const Ways ways = !isByWays() ? Ways() : question_.any ? allWays() : bestWays();
    std::string all = ways.empty() ? rows() : rowsByWays(ways);
    if (hidesPast()) all += " union all " + rowsAlong({overButNotPast}, tests());
    if (ways.empty() || !mayRepeat(ways)) return all;
    return "select distinct found.id, " + placesOf("found") + " from (" + all + ") found";
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
           countOf(rowsThat(std::string(subject_.key) + " in (" + writtenOut(db_, found) + ")"));
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

std::vector<std::int64_t> FindSearch::page() {
  return impl_->page();
}

bool FindSearch::isCounted() const {
  return impl_->isCounted();
}

std::int64_t FindSearch::count() {
  return impl_->count();
}

}  // namespace vantry::server
