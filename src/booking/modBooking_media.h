#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "booking/booking_record.h"
#include "frame/app.h"

namespace vantry {

class BookingParts;

// The adding of media to a booking. A thing without an item is a wish for any item of its holdings or title.

/// A media type as the server numbers it; "0" for none.
struct MediaType {
  std::string id = "0";
  std::string name;
};

/// One title, holdings record or item, on its way into a booking. Ids are "0" where the thing is a wish.
struct MediaThing {
  std::string BI, MI, IM;
  MediaType type;
  std::string title;
  std::string location, copy, callNumber, enumeration, chronology, year;
};
/// What one look-up found.
using ItemMatches = std::vector<MediaThing>;

void AddMediaByBarcode(BookingParts& parts);
void AddMediaByItemId(BookingParts& parts);
/// `dirty` rises when something was added.
void AddMediaFromSearch(BookingParts& parts, bool& dirty);

/// Appends a row with what is known of the thing; a missing type is shown as "No Media Type".
void AddMediaRow(BookingParts& parts, const MediaThing& thing);
/// The same for a thing that a booking holds already: asks for the details of its item and holdings first,
/// and says what cannot be read. It sends requests, so that no walk may be under way.
void AddStoredMediaRow(BookingParts& parts, MediaThing thing);

/// Whether a row has exactly these ids.
[[nodiscard]] bool IsMediaInBooking(std::string_view bi, std::string_view mi, std::string_view im,
                                    std::string_view mtid, BookingParts& parts);
/// Asks for a media type where there are several; type "0" when there is none, or none was chosen.
[[nodiscard]] MediaType PickMediaType(App& app);
/// Takes away the required equipment of media types that no row has any longer, and counts the booking's
/// equipment anew. After adding, removing and loading.
void RefreshMediaEquipment(BookingParts& parts);

enum class MarcKind;
/// Shows the catalogue's record of the selected row; nothing for a row without one.
void ShowMarcRecord(BookingParts& parts, MarcKind kind);

}  // namespace vantry
