#pragma once

#include <cstdint>
#include <string>

#include "server/base/moment.h"
#include "server/desk/feed_store.h"

namespace vantry::server {

// Feeds of bookings. Both run inside the caller's writing transaction, throw UserError, and leave a row in
// the audit.

/// What a feed is to be of: one of the first three.
struct FeedWish {
  std::string desk = {};
  std::string room = {};  ///< "Main Desk/101"
  std::string group = {};
  std::string library = {};  ///< whose bookings of the group; may be empty where there is one library
  bool showsNames = false;
  int daysBack = 30;
  int daysAhead = 365;
};
/// Its secret is told this once.
[[nodiscard]] AddedFeed addFeed(Connection& db, const FeedWish& wish, Moment now);

void revokeFeed(Connection& db, std::int64_t id, Moment now);

}  // namespace vantry::server
