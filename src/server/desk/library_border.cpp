#include "server/desk/library_border.h"

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

std::string isOfLibrary(std::string_view column, std::string_view desks) {
  return std::string(column) +
         " in (select y.id from locations y where y.library_id in (select w.library_id from locations w "
         "where "
         "w.id in (" +
         std::string(desks) + ")))";
}

bool isOfOtherLibrary(Connection& db, std::int64_t bookingId, std::int64_t desk) {
  static const std::string sql = "select case when " + isOfLibrary("b.location_id") +
                                 " then 0 else 1 end from bookings b where b.id = :id";
  bool other = false;
  Query query(db, sql);
  query.bind("desk", desk).bind("id", bookingId);
  fetchOne(query, other);
  return other;
}

}  // namespace vantry::server
