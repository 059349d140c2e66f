#include "server/desk/library_border.h"

#include <memory>

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

Pending<bool> askOtherLibrary(Connection& db, std::int64_t bookingId, std::int64_t desk) {
  static const std::string sql = "select case when " + isOfLibrary("b.location_id") +
                                 " then 0 else 1 end from bookings b where b.id = :id";
  const auto query = std::make_shared<Query>(db, sql);
  query->bind("desk", desk).bind("id", bookingId).send();
  return Pending<bool>([query] {
    bool other = false;
    fetchOne(*query, other);
    return other;
  });
}

}  // namespace vantry::server
