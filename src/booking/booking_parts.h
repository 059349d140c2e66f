#pragma once

#include <string>

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
  BookingParts(App& program, const Places& places);
  BookingParts(const BookingParts&) = delete;
  BookingParts& operator=(const BookingParts&) = delete;

  App& app;
  BookingRecord record;
  RequesterPanel requester;
  TimesPanel times;
  MediaPanel media;
  PlacePanel place;
  EquipmentPanel equipment;

  /// Something in one of the panels has changed.
  Event Changed;

  /// A window opens on a booking: shows the tool tips as preferred and forgets the warnings of before. From
  /// now on `place.loading` is true, until the window has shown the booking.
  void open();
  /// A new booking of today, of which nothing else is known.
  void startNew();
  /// Merges equal cells of the lists, or no longer.
  void merge(bool on);
  /// The booking can only be read from now on.
  void disableEditing();

  /// What is booked, in words: "1 media, 2 equipment".
  [[nodiscard]] std::string thingsText() const;

 private:
  void showTips();
};

}  // namespace vantry
