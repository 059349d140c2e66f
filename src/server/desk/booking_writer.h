#pragma once

#include <cstdint>
#include <vector>

#include "server/desk/booking_draft.h"
#include "server/desk/booking_store.h"
#include "server/desk/thing_store.h"
#include "server/desk/usage_check.h"
#include "server/store/database.h"

namespace vantry::server {

/// A booking's things with all that is stored of them.
struct ResolvedPiece {
  Piece piece;  ///< its id is 0 on a wish, which has a type only
  bool inRoom = false;
  bool inferred = false;
};
struct ResolvedThings {
  std::vector<ResolvedPiece> equipment;
  std::vector<MediaAsk> media;
  bool roomSatisfied = false;  ///< what is in the room satisfied a wish
};

/// Looks up everything that the draft names and removes what is named twice, members of groups that are in
/// the booking themselves, and what the room of the question satisfies. Throws TagRefusal for a key that
/// points nowhere.
[[nodiscard]] ResolvedThings resolveThings(Connection& db, const BookingDraft& draft,
                                           const UsageQuestion& question);

/// Throws TagRefusal where a patron, room, location or type of the draft does not exist.
void requireKeys(Connection& db, const BookingDraft& draft);

/// What is written of a booking, and who writes it.
struct StoredBooking {
  const BookingDraft& draft;
  const ResolvedThings& things;
  Stamp stamp;
};

/// Writes a new booking for one of the draft's times; gives its key.
std::int64_t insertBooking(Connection& db, const StoredBooking& booking, const Period& times);

/// Writes the draft over a booking and takes all its lines away, with what they held.
void rewriteBooking(Connection& db, std::int64_t bookingId, const StoredBooking& booking);

/// Adds the lines, and takes the things for the time that they are needed.
void addLines(Connection& db, std::int64_t bookingId, const StoredBooking& booking, const Period& times);

}  // namespace vantry::server
