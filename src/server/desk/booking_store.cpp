#include "server/desk/booking_store.h"

#include "server/base/person_name.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

constexpr const char* listColumns =
    "select b.id, b.status, b.starts_at, b.ends_at, b.administrative, p.withheld, p.last_name, p.first_name, "
    "p.middle_name, b.booking_type, coalesce(r.name, l.name, t.name, ''), b.equipment_count, b.item_count "
    "from ";
constexpr const char* listJoins =
    " left join patrons p on p.id = b.patron_id left join rooms r on r.id = b.room_id "
    "left join locations l on l.id = b.pickup_location_id "
    "left join room_types t on t.id = b.wanted_room_type_id ";

void visitRows(Query& query, const BookingListVisitor& visit) {
  BookingListRow row;
  int status = 0;
  std::string last;
  std::string first;
  std::string middle;
  query.into(row.id, status, row.startsAt, row.endsAt, row.administrative, row.withheld, last, first, middle,
             row.type, row.place, row.equipmentCount, row.itemCount);
  while (query.next()) {
    row.status = static_cast<BookingStatus>(status);
    row.requester = personName(last, first, middle);
    visit(row);
  }
}

}  // namespace

void visitBookings(Connection& db, std::int64_t locationId, Moment from, Moment until,
                   const BookingListVisitor& visit) {
  static const std::string sql = std::string(listColumns) + "bookings b" + listJoins +
                                 "where b.location_id = :location_id and b.starts_at >= :from_at and "
                                 "b.starts_at < :until_at order by b.starts_at, b.id";
  Query query(db, sql);
  query.bind("location_id", locationId).bind("from_at", from).bind("until_at", until);
  visitRows(query, visit);
}

void visitBookingsAmong(Connection& db, std::span<const std::int64_t> ids, const BookingListVisitor& visit) {
  planByIndexes(db);
  const std::string sql = std::string(listColumns) + "(" + orderedKeysIn(db, "ids") +
                          ") k cross join bookings b" + listJoins + "where b.id = k.value order by k.place";
  Query query(db, sql);
  query.bind("ids", keysText(ids));
  visitRows(query, visit);
}

void visitBookingMarks(Connection& db, std::int64_t locationId, Moment from, Moment until,
                       const std::function<void(const BookingMark&)>& visit) {
  BookingMark mark;
  int status = 0;
  Query query(db,
              "select status, starts_at, ends_at from bookings where location_id = :location_id and "
              "starts_at >= :from_at and starts_at < :until_at order by starts_at");
  query.bind("location_id", locationId).bind("from_at", from).bind("until_at", until);
  query.into(status, mark.startsAt, mark.endsAt);
  while (query.next()) {
    mark.status = static_cast<BookingStatus>(status);
    visit(mark);
  }
}

std::string confirmationNumber(std::int64_t bookingId) {
  std::string number = std::to_string(bookingId);
  if (number.size() < confirmationFigures) number.insert(0, confirmationFigures - number.size(), '0');
  return number;
}

std::optional<BookingState> findBookingState(Connection& db, std::int64_t bookingId) {
  BookingState state;
  int status = 0;
  Query query(db,
              "select b.id, b.status, b.patron_id, b.patron_group_id, b.location_id, b.room_id, "
              "b.setup_staff_id, b.cleanup_staff_id, b.updated_at, "
              "(select count(*) from booking_equipment l where l.booking_id = b.id and l.in_room = 0 and "
              "l.charged_at is not null and l.returned_at is null), "
              "(select count(*) from booking_items l where l.booking_id = b.id and "
              "l.charged_at is not null and l.returned_at is null) from bookings b where b.id = :id");
  query.bind("id", bookingId);
  if (!fetchOne(query, state.id, status, state.patronId, state.groupId, state.locationId, state.roomId,
                state.setupStaffId, state.cleanupStaffId, state.updatedAt, state.out.equipment,
                state.out.items))
    return std::nullopt;
  state.status = static_cast<BookingStatus>(status);
  return state;
}

Moment nextStamp(Moment last, Moment now) {
  return std::max(now, last + 1);
}

static constexpr const char* setStamp =
    "update bookings set updated_at = :updated_at, updated_by = :updated_by, updated_location = "
    ":updated_location";

static void bindStamp(Query& query, std::int64_t bookingId, const Stamp& stamp) {
  query.bind("updated_at", stamp.at)
      .bind("updated_by", stamp.operatorId)
      .bind("updated_location", stamp.locationId)
      .bind("id", bookingId);
}

void markChanged(Connection& db, std::int64_t bookingId, const Stamp& stamp) {
  Query query(db, std::string(setStamp) + " where id = :id");
  bindStamp(query, bookingId, stamp);
  query.later();
}

void setBookingStatus(Connection& db, std::int64_t bookingId, BookingStatus status, const Stamp& stamp,
                      const std::optional<MomentColumns>& also) {
  std::string sql = std::string(setStamp) + ", status = :status";
  if (also) sql.append(", ").append(also->sql);
  Query query(db, sql + " where id = :id");
  bindStamp(query, bookingId, stamp);
  query.bind("status", static_cast<int>(status));
  if (also) query.bind("at", also->at);
  query.later();
}

void deleteBooking(Connection& db, std::int64_t bookingId) {
  Query query(db, "delete from bookings where id = :id");
  query.bind("id", bookingId).later();
}

void countCancelled(Connection& db, std::int64_t patronId) {
  Query query(db, "update patrons set cancelled_bookings = cancelled_bookings + 1 where id = :id");
  query.bind("id", patronId).later();
}

}  // namespace vantry::server
