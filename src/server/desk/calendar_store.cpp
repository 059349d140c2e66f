#include "server/desk/calendar_store.h"

#include <memory>

#include "server/store/query.h"

namespace vantry::server {

std::vector<CalendarRow> calendarsOf(Connection& db, std::int64_t locationId, CalendarKind kind) {
  std::vector<CalendarRow> rows;
  CalendarRow row;
  Query query(
      db,
      "select id, description, starts_on, ends_on from calendars where location_id = :location_id and "
      "kind = :kind order by starts_on, id");
  query.bind("location_id", locationId).bind("kind", static_cast<int>(kind));
  query.into(row.id, row.description, row.startsOn, row.endsOn);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::optional<CalendarRow> findCalendar(Connection& db, std::int64_t id) {
  CalendarRow row;
  Query query(db, "select id, description, starts_on, ends_on from calendars where id = :id");
  query.bind("id", id).into(row.id, row.description, row.startsOn, row.endsOn);
  while (query.next()) {
  }
  return row.id == 0 ? std::nullopt : std::optional(row);
}

std::array<OpenHours, 7> weekOf(Connection& db, std::int64_t calendarId) {
  return askWeek(db, calendarId).get();
}

Pending<std::array<OpenHours, 7>> askWeek(Connection& db, std::int64_t calendarId) {
  const auto query = std::make_shared<Query>(
      db,
      "select weekday, is_open, opens_at, closes_at from calendar_days where calendar_id = :calendar_id "
      "and weekday between 0 and 6");
  query->bind("calendar_id", calendarId).send();
  return Pending<std::array<OpenHours, 7>>([query] {
    std::array<OpenHours, 7> week{};
    int number = 0;
    OpenHours hours;
    query->into(number, hours.open, hours.opensAt, hours.closesAt);
    while (query->next()) week.at(static_cast<std::size_t>(number)) = hours;
    return week;
  });
}

std::vector<OpenException> exceptionsOf(Connection& db, std::int64_t calendarId) {
  return askExceptions(db, calendarId).get();
}

Pending<std::vector<OpenException>> askExceptions(Connection& db, std::int64_t calendarId) {
  const auto query =
      std::make_shared<Query>(db,
                              "select on_date, is_open, opens_at, closes_at from calendar_exceptions "
                              "where calendar_id = :calendar_id order by on_date");
  query->bind("calendar_id", calendarId).send();
  return Pending<std::vector<OpenException>>([query] {
    std::vector<OpenException> rows;
    OpenException row;
    query->into(row.date, row.hours.open, row.hours.opensAt, row.hours.closesAt);
    while (query->next()) rows.push_back(row);
    return rows;
  });
}

}  // namespace vantry::server
