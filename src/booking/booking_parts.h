#pragma once

#include "booking/equipment_panel.h"
#include "booking/media_panel.h"
#include "booking/place_panel.h"
#include "booking/requester_panel.h"
#include "booking/times_panel.h"

namespace vantry {

/// A booking while a window makes or edits it: its record and the five panels through which it is entered.
/// Editor and wizard own one each; the routines of modBooking act on it.
class BookingParts {
 public:
  /// The containers in which the panels make their controls.
  struct Places {
    Container& requester;
    Container& times;
    Container& media;
    Container& place;
    Container& equipment;
  };
  BookingParts(App& program, const Places& places)
      : app(program),
        requester(program, places.requester, record),
        times(program, places.times, record),
        media(*this, places.media),
        place(*this, places.place),
        equipment(*this, places.equipment) {}
  BookingParts(const BookingParts&) = delete;
  BookingParts& operator=(const BookingParts&) = delete;

  App& app;
  BookingRecord record;
  RequesterPanel requester;
  TimesPanel times;
  MediaPanel media;
  PlacePanel place;
  EquipmentPanel equipment;
};

}  // namespace vantry
