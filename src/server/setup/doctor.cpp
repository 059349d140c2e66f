#include "server/setup/doctor.h"

#include <algorithm>
#include <cstdlib>

#include "server/desk/due_bookings.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr Moment soon = 60 * day;
constexpr Moment renewal = 30 * day;
constexpr Moment longestRest = 10 * minute;  // a server keeps house each minute
constexpr Moment longestPause = 2 * day;     // beyond it, housekeeping waits to be told
constexpr std::int64_t leastFree = 1'000'000'000;
constexpr std::int64_t mostSkew = 10;  // seconds; servers do not start with more than 60

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
    {"Every operator with rights logs on by the directory: while it is away, nobody can. Give one a password "
     "of "
     "their own with \"operator password\".",
     "select '', 0 from (select 1) x where exists (select 1 from operators where active = 1 and by_directory "
     "= 1) "
     "and not exists (select 1 from operators o join operator_rights r on r.operator_id = o.id where "
     "o.active = 1 "
     "and o.by_directory = 0)"},
    {"The operator % may work at no location.",
     "select o.login, 0 from operators o where o.active = 1 and not exists (select 1 from operator_locations "
     "p "
     "where p.operator_id = o.id) order by o.login"},
    {"The operator % has no right at any location.",
     "select o.login, 0 from operators o where o.active = 1 and exists (select 1 from operator_locations p "
     "where p.operator_id = o.id) and not exists (select 1 from operator_rights r where r.operator_id = "
     "o.id) "
     "order by o.login"},
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
    {"The audit has # rows: after a backup, \"audit prune\" deletes old ones.",
     "select '', count(*) from audit having count(*) > 1000000"},
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

void examineHousekeeping(Connection& db, Moment now, std::vector<std::string>& found) {
  const Moment last = lastSettled(db);
  if (last == 0 || std::abs(now - last) <= longestRest) return;
  std::string sentence = "Housekeeping ran last on " + momentText(last);
  sentence += last > now ? ", which is still to come: the clock was or is wrong."
                         : ": no server has worked on the database since.";
  if (std::abs(now - last) > longestPause)
    sentence += " It waits until \"trust-clock\" says that the clock is right.";
  found.push_back(sentence);
}

std::string megabytes(std::int64_t bytes) {
  return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
}

void examineCertificate(const MachineState& state, std::vector<std::string>& found) {
  if (state.certificate.empty()) return;
  const std::string named = "The certificate \"" + state.certificate + "\"";
  const std::int64_t left = state.certificateEnd - state.now;
  if (left < 0) {
    found.push_back(named + " ended on " + dateText(state.certificateEnd) + ": no desk trusts it any more.");
  } else if (left < renewal) {
    found.push_back(named + " ends on " + dateText(state.certificateEnd) + ": renew it.");
  }
}

}  // namespace

std::vector<std::string> examineMachine(const MachineState& state) {
  std::vector<std::string> found;
  examineCertificate(state, found);
  // A backup takes as much as the database.
  if (state.freeBytes >= 0 && state.freeBytes < std::max(leastFree, state.databaseBytes)) {
    found.push_back("The disk of the database has " + megabytes(state.freeBytes) +
                    " left; the database has " + megabytes(state.databaseBytes) + '.');
  }
  if (std::abs(state.clockSkew) > mostSkew) {
    found.push_back("The clock of this machine is " + std::to_string(std::abs(state.clockSkew)) +
                    " seconds " + (state.clockSkew > 0 ? "ahead of" : "behind") +
                    " the database server's: a server starts with 60 at most.");
  }
  return found;
}

LibrarySizes librarySizes(Connection& db) {
  LibrarySizes sizes;
  Query bytes(db, db.dialect().kind == Dialect::Kind::Sqlite
                      ? "select page_count * page_size from pragma_page_count(), pragma_page_size()"
                      : "select pg_database_size(current_database())");
  fetchOne(bytes, sizes.bytes);
  Query audit(db, "select count(*), coalesce(min(at), 0) from audit");
  fetchOne(audit, sizes.auditRows, sizes.auditSince);
  return sizes;
}

std::string sizesText(const LibrarySizes& sizes) {
  return "The database has " + megabytes(sizes.bytes) + "; its audit has " + std::to_string(sizes.auditRows) +
         " rows" + (sizes.auditRows > 0 ? " since " + dateText(sizes.auditSince) : "") + '.';
}

std::vector<std::string> examineLibrary(Connection& db, Moment now) {
  std::vector<std::string> found;
  for (const Examination& each : examinations) examine(db, each, now, found);
  examineCalendars(db, now, found);
  examineHousekeeping(db, now, found);
  return found;
}

}  // namespace vantry::server
