#include "server/desk/short_text.h"

#include <memory>

#include "server/base/moment.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// A text and the span of the record, which may have none.
const char* sqlOf(Audited kind) {
  switch (kind) {
    case Audited::Booking:
      return "select 'status ' || status || ', patron ' || coalesce(patron_id, 0) || ', room ' || "
             "coalesce(room_id, 0) || ', equipment ' || equipment_count || ', media ' || item_count, "
             "starts_at, "
             "ends_at from bookings where id = :id";
    case Audited::Equipment:
      return "select 'number ' || number || ', type ' || equipment_type_id || ', location ' || location_id "
             "|| "
             "', room ' || coalesce(room_id, 0) || ', group ' || coalesce(group_id, 0), null, null from "
             "equipment where id = :id";
    case Audited::Room:
      return "select 'number ' || number || ', type ' || room_type_id || ', location ' || location_id || ', "
             "capacity ' || capacity, null, null from rooms where id = :id";
    case Audited::Maintenance:
      return "select 'piece ' || equipment_id, came_in_on, went_out_on from maintenance where id = :id";
    case Audited::Patron:
      return "select 'late ' || p.late_returns || ', historical ' || p.historical_bookings || ', cancelled ' "
             "|| "
             "p.cancelled_bookings || ', unclaimed ' || p.unclaimed_bookings || case when s.active = 1 then "
             "', "
             "active staff' when s.active = 0 then ', staff' else '' end, null, null from patrons p left "
             "join "
             "staff s on s.patron_id = p.id where p.id = :id";
  }
  return "";
}

}  // namespace

Pending<std::string> askShort(Connection& db, Audited kind, std::int64_t id) {
  const auto query = std::make_shared<Query>(db, sqlOf(kind));
  query->bind("id", id).send();
  return Pending<std::string>([query] {
    std::string text;
    Moment from = 0;
    Moment until = 0;
    fetchOne(*query, text, from, until);
    if (from != 0) text += ", " + momentText(from);
    if (until != 0) text += " to " + momentText(until);
    return text;
  });
}

}  // namespace vantry::server
