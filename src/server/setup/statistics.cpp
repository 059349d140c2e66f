#include "server/setup/statistics.h"

#include <algorithm>
#include <map>

#include "server/base/named_row.h"
#include "server/base/user_error.h"
#include "server/desk/refusal_counts.h"
#include "server/setup/refusal_words.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// One way to divide what was booked: the name of each row, when it went out and came back, and the joins
/// that bring them. The rows are bookings `b`, or lines of theirs.
struct Division {
  const char* by;
  const char* name;
  const char* chargedAt;
  const char* returnedAt;
  const char* joins;
  const char* which;  ///< a further condition, behind "and"
};

constexpr Division divisions[] = {
    {"Patron group", "coalesce(g.name, '(administrative)')", "b.charged_at", "b.returned_at",
     "left join patron_groups g on g.id = b.patron_group_id", ""},
    {"Equipment type", "t.name || case when t.of_groups = 1 then ' (group)' else '' end", "l.charged_at",
     "l.returned_at",
     "join booking_equipment l on l.booking_id = b.id join equipment_types t on t.id = l.equipment_type_id",
     " and l.in_room = 0"},
    {"Room type", "t.name", "b.room_charged_at", "b.room_returned_at",
     "left join rooms r on r.id = b.room_id join room_types t on t.id = coalesce(r.room_type_id, "
     "b.wanted_room_type_id)",
     " and b.booking_type = 1"},
    {"Media type", "coalesce(m.name, '(without a type)')", "l.charged_at", "l.returned_at",
     "join booking_items l on l.booking_id = b.id left join media_types m on m.id = l.media_type_id", ""},
};

/// Has each booking once, so that its sum is the desk's.
constexpr const Division& byGroup = divisions[0];

/// The bookings of a desk that begin within a span, by the index of its days. A booking that ends when it
/// starts is due when the day is over.
std::string sqlOf(const Division& division) {
  return std::string(
             "select x.name, count(*), cast(sum(case when x.charged_at is not null then x.back_at - "
             "x.charged_at "
             "else 0 end) as bigint), sum(case when x.charged_at is not null and x.back_at > x.due_at then 1 "
             "else 0 end), sum(case when x.status = 2 then 1 else 0 end), sum(case when x.status in (3, 4) "
             "then "
             "1 else 0 end) from (select b.status, case when b.ends_at > b.starts_at then b.ends_at else "
             "b.starts_at - b.starts_at % 86400 + 86400 end as due_at, ") +
         division.name + " as name, " + division.chargedAt + " as charged_at, coalesce(" +
         division.returnedAt + ", :now) as back_at from bookings b " + division.joins +
         " where b.location_id = :location_id and b.starts_at >= :from_at and b.starts_at < :until_at" +
         division.which + ") x group by x.name";
}

struct Span {
  Moment from = 0;
  Moment until = 0;
  Moment now = 0;
};

using FiguresByName = std::map<std::string, Figures>;

FiguresByName figuresAt(Connection& db, std::int64_t desk, const Division& division, const Span& span) {
  FiguresByName figures;
  std::string name;
  Figures row;
  Query query(db, sqlOf(division));
  query.bind("now", span.now)
      .bind("location_id", desk)
      .bind("from_at", span.from)
      .bind("until_at", span.until);
  query.into(name, row.booked, row.secondsOut, row.late, row.unclaimed, row.cancelled);
  while (query.next()) figures[name] = row;
  return figures;
}

Figures sumOf(const FiguresByName& figures) {
  Figures sum;
  for (const auto& [name, each] : figures) sum += each;
  return sum;
}

StatisticsPart partOf(const char* by, const FiguresByName& figures) {
  StatisticsPart part{.by = by, .lines = {}};
  for (const auto& [name, each] : figures) part.lines.push_back({name, each});
  return part;
}

std::vector<NamedRow> desksNamed(Connection& db, std::string_view location) {
  if (location.empty()) {
    Query all(db, "select id, name from locations order by name");
    return namedRows(all);
  }
  Query query(db, "select id, name from locations where name = :name");
  query.bind("name", location);
  std::vector<NamedRow> desks = namedRows(query);
  if (desks.empty()) throw UserError("There is no location named \"" + std::string(location) + "\".");
  return desks;
}

std::vector<MonthStatistics::Refusal> refusalsOf(const std::map<int, std::int64_t>& counts) {
  std::map<std::string, std::int64_t> byWords;
  for (const auto& [reason, times] : counts) byWords[refusalWords(reason)] += times;
  std::vector<MonthStatistics::Refusal> refusals;
  for (const auto& [words, times] : byWords) refusals.push_back({words, times});
  std::ranges::stable_sort(refusals, std::ranges::greater(), &MonthStatistics::Refusal::times);
  return refusals;
}

}  // namespace

Figures& Figures::operator+=(const Figures& more) {
  booked += more.booked;
  secondsOut += more.secondsOut;
  late += more.late;
  unclaimed += more.unclaimed;
  cancelled += more.cancelled;
  return *this;
}

MonthStatistics monthStatistics(Connection& db, Moment month, std::string_view location, Moment now) {
  const Span span{.from = startOfMonth(month), .until = startOfMonth(month, 1), .now = now};
  planForSearch(db);  // what a month has is little beside the history
  FiguresByName ofDesks;
  FiguresByName ofDivisions[std::size(divisions)];
  std::map<int, std::int64_t> refusals;
  for (const NamedRow& desk : desksNamed(db, location)) {
    for (std::size_t place = 0; place < std::size(divisions); ++place) {
      const FiguresByName found = figuresAt(db, desk.id, divisions[place], span);
      if (&divisions[place] == &byGroup) ofDesks[desk.name] = sumOf(found);
      for (const auto& [name, each] : found) ofDivisions[place][name] += each;
    }
    for (const auto& [reason, times] : refusalsAt(db, desk.id, span.from, span.until))
      refusals[reason] += times;
  }
  MonthStatistics statistics{.month = span.from,
                             .madeAt = now,
                             .location = std::string(location),
                             .all = sumOf(ofDesks),
                             .parts = {partOf("Desk", ofDesks)},
                             .refusals = refusalsOf(refusals)};
  for (std::size_t place = 0; place < std::size(divisions); ++place)
    statistics.parts.push_back(partOf(divisions[place].by, ofDivisions[place]));
  return statistics;
}

}  // namespace vantry::server
