#include "server/setup/doctor.h"

#include "server/store/query.h"

namespace vantry::server {

namespace {

constexpr Moment soon = 60 * day;

/// One thing that is looked for: a statement whose rows are a name and a number, and the sentence for a row.
/// "%" in the sentence is the name, "#" the number.
struct Examination {
  const char* sentence;
  const char* sql;
};

constexpr Examination examinations[] = {
    {"There is no library yet: add one with \"library add\".",
     "select '', 0 from (select 1) x where not exists (select 1 from libraries)"},
    {"The library % has no booking desk location.",
     "select l.name, 0 from libraries l where not exists (select 1 from locations d where d.library_id = "
     "l.id) "
     "order by l.name"},
    {"No operator can log on: all are disabled, or there is none.",
     "select '', 0 from (select 1) x where not exists (select 1 from operators where active = 1)"},
    {"The operator % may work at no location.",
     "select o.login, 0 from operators o where o.active = 1 and not exists (select 1 from operator_locations "
     "p "
     "where p.operator_id = o.id) order by o.login"},
    {"Nobody may work at the location %.",
     "select d.name, 0 from locations d where not exists (select 1 from operator_locations p join operators "
     "o on "
     "o.id = p.operator_id and o.active = 1 where p.location_id = d.id) order by d.name"},
    {"The location % has no administrative policy: nothing can be booked for the library itself.",
     "select d.name, 0 from locations d where not exists (select 1 from policies p where p.location_id = "
     "d.id "
     "and p.patron_group_id is null) order by d.name"},
    {"The patron group % has no policy at any location: its # cards can book nothing.",
     "select g.name, (select count(*) from patron_barcodes c where c.patron_group_id = g.id) from "
     "patron_groups "
     "g where not exists (select 1 from policies p where p.patron_group_id = g.id) order by g.name"},
    {"# active cards belong to patrons who have expired.",
     "select '', count(*) from patron_barcodes c join barcode_statuses s on s.id = c.status_id and s.active "
     "= 1 "
     "join patrons p on p.id = c.patron_id where p.expires_at < :now having count(*) > 0"},
    {"There are no patrons yet: take them in with \"import patrons\".",
     "select '', 0 from (select 1) x where not exists (select 1 from patrons)"},
    {"# titles have no item, and cannot be booked.",
     "select '', count(*) from titles t where not exists (select 1 from items i where i.title_id = t.id) "
     "having "
     "count(*) > 0"},
    {"# items have no media type: the desk is asked for it at each booking.",
     "select '', count(*) from items where media_type_id is null having count(*) > 0"},
};

/// By kind.
constexpr const char* calendarUses[] = {"deliveries", "rooms", "pick-ups"};

std::string filled(std::string_view sentence, std::string_view name, std::int64_t number) {
  std::string text;
  for (const char sign : sentence) {
    if (sign == '%') {
      text += '"' + std::string(name) + '"';
    } else if (sign == '#') {
      text += std::to_string(number);
    } else {
      text += sign;
    }
  }
  return text;
}

void examine(Connection& db, const Examination& what, Moment now, std::vector<std::string>& found) {
  std::string name;
  std::int64_t number = 0;
  Query query(db, what.sql);
  query.into(name, number);
  if (std::string_view(what.sql).find(":now") != std::string_view::npos) query.bind("now", now);
  while (query.next()) found.push_back(filled(what.sentence, name, number));
}

/// The last day of the calendars of each location and use. Without one, nothing can be booked there.
void examineCalendars(Connection& db, Moment now, std::vector<std::string>& found) {
  std::string location;
  int use = 0;
  std::int64_t last = 0;
  Query query(
      db,
      "select d.name, k.kind, coalesce((select max(c.ends_on) from calendars c where c.location_id = d.id "
      "and c.kind = k.kind), 0) from locations d cross join (select 0 as kind union all select 1 union all "
      "select 2) k order by d.name, k.kind");
  query.into(location, use, last);
  while (query.next()) {
    const std::string place =
        "The calendar for " + std::string(calendarUses[use]) + " of \"" + location + "\"";
    if (last == 0) {
      found.push_back("The location \"" + location + "\" has no calendar for " + calendarUses[use] + '.');
    } else if (last < startOfDay(now)) {
      found.push_back(place + " ended on " + dateText(last) + '.');
    } else if (last < now + soon) {
      found.push_back(place + " ends on " + dateText(last) + '.');
    }
  }
}

}  // namespace

std::vector<std::string> examineLibrary(Connection& db, Moment now) {
  std::vector<std::string> found;
  for (const Examination& each : examinations) examine(db, each, now, found);
  examineCalendars(db, now, found);
  return found;
}

}  // namespace vantry::server
