#include "server/setup/feed_administration.h"

#include <vector>

#include "server/access/audit.h"
#include "server/base/user_error.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

/// What a name leads to, and the library that it belongs to.
struct Owned {
  std::int64_t id = 0;
  std::int64_t libraryId = 0;
};

/// The one row of a statement for a name. `what` is what the name is of.
Owned onlyOne(Connection& db, const char* sql, const std::string& what, const std::string& name) {
  Owned found;
  int count = 0;
  Query query(db, sql);
  query.bind("name", name).into(found.id, found.libraryId);
  while (query.next()) ++count;
  if (count == 0) throw UserError("There is no " + what + " \"" + name + "\".");
  if (count > 1) throw UserError("There are several of the " + what + " \"" + name + "\".");
  return found;
}

std::int64_t onlyLibrary(Connection& db) {
  std::int64_t id = 0;
  int count = 0;
  Query query(db, "select id from libraries");
  query.into(id);
  while (query.next()) ++count;
  if (count != 1) throw UserError("Say with --library whose bookings of the group are meant.");
  return id;
}

std::int64_t libraryOf(Connection& db, const std::string& name) {
  if (name.empty()) return onlyLibrary(db);
  return onlyOne(db, "select id, id from libraries where name = :name", "library", name).id;
}

Feed feedOf(Connection& db, const FeedWish& wish) {
  Feed feed{.showsNames = wish.showsNames, .daysBack = wish.daysBack, .daysAhead = wish.daysAhead};
  if (!wish.desk.empty()) {
    const Owned desk =
        onlyOne(db, "select id, library_id from locations where name = :name", "location", wish.desk);
    feed.locationId = desk.id;
    feed.libraryId = desk.libraryId;
  } else if (!wish.room.empty()) {
    const Owned room =
        onlyOne(db,
                "select r.id, l.library_id from rooms r join locations l on l.id = r.location_id "
                "where l.name || '/' || r.number = :name",
                "room", wish.room);
    feed.roomId = room.id;
    feed.libraryId = room.libraryId;
  } else {
    feed.groupId =
        onlyOne(db, "select id, 0 from patron_groups where name = :name", "patron group", wish.group).id;
    feed.libraryId = libraryOf(db, wish.library);
  }
  return feed;
}

std::string nameOf(std::int64_t id) {
  return "feed " + std::to_string(id);
}

}  // namespace

AddedFeed addFeed(Connection& db, const FeedWish& wish, Moment now) {
  Feed feed = feedOf(db, wish);
  feed.createdAt = now;
  AddedFeed added = addFeed(db, feed);
  const std::string subject = findFeed(db, added.id)->subject;
  auditCommand(db, now, "feed added", nameOf(added.id),
               subject + (feed.showsNames ? ", with names" : ", without names"));
  return added;
}

void revokeFeed(Connection& db, std::int64_t id, Moment now) {
  const std::optional<Feed> feed = findFeed(db, id);
  if (!feed) throw UserError("There is no feed " + std::to_string(id) + ".");
  dropFeed(db, id);
  auditCommand(db, now, "feed revoked", nameOf(id), feed->subject);
}

}  // namespace vantry::server
