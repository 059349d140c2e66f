#pragma once

#include <cstdint>
#include <string_view>
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

/// Whether nobody else can have the piece at the times of the booking. What stands in the room of a delivery
/// is only used there; a booking that takes its room takes what it names in it along.
[[nodiscard]] bool holds(const BookingDraft& draft, const ResolvedPiece& piece);

/// The pieces that the draft names.
[[nodiscard]] std::vector<std::int64_t> namedPieces(const BookingDraft& draft);

/// Looks up everything that the draft names and removes what is named twice, members of groups that are in
/// the booking themselves, and what the room of the question satisfies. `pieces` are those that the draft
/// names. Throws TagRefusal for a key that points nowhere.
[[nodiscard]] ResolvedThings resolveThings(Connection& db, const BookingDraft& draft,
                                           const UsageQuestion& question, const Pieces& pieces);

/// For whom a booking is; both are 0 for an administrative one.
struct Requester {
  std::int64_t patronId = 0;
  std::int64_t groupId = 0;
  bool operator==(const Requester&) const = default;
};

/// The tag of the first patron, room, location or type of the draft that does not exist, or of a group in
/// which the patron has no card; empty where all is well. Whom the booking was for before is not judged
/// again.
[[nodiscard]] Pending<std::string_view> askMissingKey(Connection& db, const BookingDraft& draft,
                                                      const Requester& before);

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
