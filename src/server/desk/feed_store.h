#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/base/moment.h"
#include "server/policy/policy_times.h"
#include "server/store/database.h"

namespace vantry::server {

/// A feed of bookings at a secret address. One of the three keys tells what it is of; the others are 0.
struct Feed {
  std::int64_t id = 0;
  std::int64_t libraryId = 0;  ///< whose bookings it tells
  std::int64_t locationId = 0;
  std::int64_t roomId = 0;
  std::int64_t groupId = 0;
  bool showsNames = false;
  int daysBack = 0;
  int daysAhead = 0;
  Moment createdAt = 0;
  std::string library = {};  ///< its name; set when it is read, as the next
  std::string subject = {};  ///< the name of the desk or the patron group, or "Main Desk/101" of a room
};

/// Keeps the feed and gives the secret part of its address, of which only a hash is stored.
struct AddedFeed {
  std::int64_t id = 0;
  std::string secret;
};
[[nodiscard]] AddedFeed addFeed(Connection& db, const Feed& feed);

[[nodiscard]] std::optional<Feed> findFeed(Connection& db, std::string_view secret);
[[nodiscard]] std::optional<Feed> findFeed(Connection& db, std::int64_t id);
[[nodiscard]] std::vector<Feed> allFeeds(Connection& db);
void dropFeed(Connection& db, std::int64_t id);

/// What tells this store's bookings from those of all others.
[[nodiscard]] std::string feedOrigin(Connection& db);

struct FeedBooking {
  std::int64_t id = 0;
  int type = 0;
  Moment startsAt = 0;
  Moment endsAt = 0;
  Moment createdAt = 0;
  Moment updatedAt = 0;
  std::string place;
  std::string requester;  ///< empty where the feed or the patron does not show it
  std::string things;     ///< a line for each piece and item
};
/// The bookings of the feed that start in the window, by their start, without those that were canceled or
/// that nobody fetched.
[[nodiscard]] std::vector<FeedBooking> bookingsOf(Connection& db, const Feed& feed, const Period& window);

}  // namespace vantry::server
