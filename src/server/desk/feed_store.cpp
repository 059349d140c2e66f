#include "server/desk/feed_store.h"

#include <unordered_map>

#include "server/access/passwords.h"
#include "server/base/person_name.h"
#include "server/store/query.h"
#include "server/store/query_help.h"
#include "server/store/settings.h"

namespace vantry::server {

namespace {

constexpr std::string_view originSetting = "feed_origin";
constexpr std::size_t originLength = 32;

constexpr std::string_view feedColumns =
    "select f.id, f.library_id, f.location_id, f.room_id, f.patron_group_id, f.shows_names, f.days_back, "
    "f.days_ahead, f.created_at, b.name, coalesce(l.name, g.name, o.name || '/' || r.number) "
    "from feeds f join libraries b on b.id = f.library_id left join locations l on l.id = f.location_id "
    "left join patron_groups g on g.id = f.patron_group_id left join rooms r on r.id = f.room_id "
    "left join locations o on o.id = r.location_id ";

std::vector<Feed> rowsOf(Query& query) {
  std::vector<Feed> rows;
  Feed row;
  query.into(row.id, row.libraryId, row.locationId, row.roomId, row.groupId, row.showsNames, row.daysBack,
             row.daysAhead, row.createdAt, row.library, row.subject);
  while (query.next()) rows.push_back(row);
  return rows;
}

std::optional<Feed> onlyRowOf(Query& query) {
  std::vector<Feed> rows = rowsOf(query);
  return rows.empty() ? std::nullopt : std::optional(std::move(rows.front()));
}

/// Which bookings the feed has, as a condition, in the words of an index that begins with its column.
class Choice {
 public:
  Choice(const Feed& feed, const Period& window) : feed_(feed), window_(window) {}

  [[nodiscard]] std::string sql() const {
    constexpr std::string_view when =
        " and b.status in (0, 1, 99, 999) and b.starts_at >= :from_at and b.starts_at < :until_at ";
    constexpr std::string_view ofLibrary =
        "b.location_id in (select y.id from locations y where y.library_id = :library_id)";
    std::string condition = "b.location_id = :subject";
    if (feed_.roomId != 0) condition = "b.room_id = :subject and " + std::string(ofLibrary);
    if (feed_.groupId != 0) condition = "b.patron_group_id = :subject and " + std::string(ofLibrary);
    return condition.append(when);
  }

  void bind(Query& query) const {
    if (feed_.locationId == 0) query.bind("library_id", feed_.libraryId);
    query.bind("subject", feed_.locationId + feed_.roomId + feed_.groupId);
    query.bind("from_at", window_.from).bind("until_at", window_.until);
  }

 private:
  const Feed& feed_;
  const Period& window_;
};

/// A name that is not to be shown does not leave the store.
std::vector<FeedBooking> bookingsWithoutThings(Connection& db, const Feed& feed, const Choice& choice) {
  const std::string names =
      feed.showsNames ? "p.last_name, p.first_name, p.middle_name from bookings b left join "
                        "patrons p on p.id = b.patron_id and p.withheld = 0 and b.administrative = 0 "
                      : "'', '', '' from bookings b ";
  std::vector<FeedBooking> bookings;
  FeedBooking row;
  std::string last;
  std::string first;
  std::string middle;
  Query query(db,
              "select b.id, b.booking_type, b.starts_at, b.ends_at, b.created_at, b.updated_at, "
              "coalesce(r.name, l.name, t.name, ''), " +
                  names +
                  "left join rooms r on r.id = b.room_id left join locations l on l.id = "
                  "b.pickup_location_id left join room_types t on t.id = b.wanted_room_type_id where " +
                  choice.sql() + "order by b.starts_at, b.id");
  choice.bind(query);
  query.into(row.id, row.type, row.startsAt, row.endsAt, row.createdAt, row.updatedAt, row.place, last, first,
             middle);
  while (query.next()) {
    row.requester = personName(last, first, middle);
    bookings.push_back(row);
  }
  return bookings;
}

using ThingsByBooking = std::unordered_map<std::int64_t, std::string>;

/// Lines of `lines`, a text of SQL for the name of each. Most bookings of a room have none, and are left out
/// by their count.
void addThings(Connection& db, const Choice& choice, std::string_view name, std::string_view lines,
               ThingsByBooking& things) {
  std::int64_t booking = 0;
  std::string thing;
  Query query(db, "select b.id, " + std::string(name) + " from bookings b join " + std::string(lines) +
                      " where " + choice.sql() + "order by b.id, x.place, x.id");
  choice.bind(query);
  query.into(booking, thing);
  while (query.next()) {
    std::string& all = things[booking];
    all.append(all.empty() ? "" : "\n").append(thing);
  }
}

}  // namespace

AddedFeed addFeed(Connection& db, const Feed& feed) {
  if (settingOf(db, originSetting).empty())
    setSetting(db, originSetting, makeToken().substr(0, originLength));
  AddedFeed added{.id = 0, .secret = makeToken()};
  Query query(db,
              "insert into feeds (secret, library_id, location_id, room_id, patron_group_id, shows_names, "
              "days_back, days_ahead, created_at) values (:secret, :library_id, :location_id, :room_id, "
              ":patron_group_id, :shows_names, :days_back, :days_ahead, :created_at) returning id");
  query.bind("secret", hashToken(added.secret)).bind("library_id", feed.libraryId);
  query.bind("location_id", orNothing(feed.locationId)).bind("room_id", orNothing(feed.roomId));
  query.bind("patron_group_id", orNothing(feed.groupId)).bind("shows_names", feed.showsNames);
  query.bind("days_back", feed.daysBack).bind("days_ahead", feed.daysAhead);
  query.bind("created_at", feed.createdAt);
  fetchOne(query, added.id);
  return added;
}

std::optional<Feed> findFeed(Connection& db, std::string_view secret) {
  Query query(db, std::string(feedColumns) + "where f.secret = :secret");
  query.bind("secret", hashToken(secret));
  return onlyRowOf(query);
}

std::optional<Feed> findFeed(Connection& db, std::int64_t id) {
  Query query(db, std::string(feedColumns) + "where f.id = :id");
  query.bind("id", id);
  return onlyRowOf(query);
}

std::vector<Feed> allFeeds(Connection& db) {
  Query query(db, std::string(feedColumns) + "order by f.id");
  return rowsOf(query);
}

void dropFeed(Connection& db, std::int64_t id) {
  Query query(db, "delete from feeds where id = :id");
  query.bind("id", id).run();
}

std::string feedOrigin(Connection& db) {
  return settingOf(db, originSetting);
}

std::vector<FeedBooking> bookingsOf(Connection& db, const Feed& feed, const Period& window) {
  const Choice choice(feed, window);
  std::vector<FeedBooking> bookings = bookingsWithoutThings(db, feed, choice);
  ThingsByBooking things;
  addThings(db, choice, "t.name || coalesce(' ' || e.number, '')",
            "booking_equipment x on x.booking_id = b.id and b.equipment_count > 0 and x.in_room = 0 join "
            "equipment_types t on t.id = x.equipment_type_id left join equipment e on e.id = x.equipment_id",
            things);
  addThings(db, choice, "t.title",
            "booking_items x on x.booking_id = b.id and b.item_count > 0 join titles t on t.id = x.title_id",
            things);
  for (FeedBooking& each : bookings) {
    if (const auto found = things.find(each.id); found != things.end()) each.things = found->second;
  }
  return bookings;
}

}  // namespace vantry::server
