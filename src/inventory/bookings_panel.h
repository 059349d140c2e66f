#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/command.h"
#include "platform/controls.h"

namespace vantry {

/// Which bookings a record's page lists.
enum BookingsShown { kHistoricalBookings = 0, kCurrentBookings = 1 };

/// The requests and columns of the bookings of one kind of record.
struct BookingsKind {
  std::string_view historicalCode, currentCode;
  std::string_view recordTag;
  std::span<const ReplyColumn> columns;
};
extern const BookingsKind kEquipmentBookings;  ///< of pieces and groups
extern const BookingsKind kRoomBookings;

/// The page of a record's bookings.
class BookingsPanel {
 public:
  /// `grid` is the name of its list; `recordId` gives the id of the record that is booked.
  BookingsPanel(App& app, const Ask& ask, Frame& frame, const BookingsKind& kind, const char* grid,
                std::function<std::string()> recordId);
  BookingsPanel(const BookingsPanel&) = delete;

  Grid fa;
  Button cmdEditBooking, cmdViewCurrentBookings, cmdViewOldBookings;
  MenuItem mnuPopupBookings, mnuPopupBookingEdit, mnuPopupBookingCurrent, mnuPopupBookingOld;
  Command editBooking, viewCurrent, viewOld;
  // Hidden: through them a moment becomes a text.
  DateField dtStartDate;
  TimeField dtStartTime;
  DateField dtEndDate;
  TimeField dtEndTime;

  /// Asks for the bookings and shows them.
  void ViewBookings(BookingsShown which);
  /// The first visit of the page.
  void load();
  /// A copy has no bookings: nothing else is asked for until it is saved.
  void lock();
  void unlock();
  /// No booking is selected any more.
  void DisableButtons();
  /// Applies the rights over bookings.
  void secure(const Rights& rights);

  void cmdViewCurrentBookings_Click() { ViewBookings(kCurrentBookings); }
  void cmdViewOldBookings_Click() { ViewBookings(kHistoricalBookings); }
  void cmdEditBooking_Click();

 private:
  void connect();
  [[nodiscard]] std::string momentText(const ReplyColumn& column);

  App& app_;
  const Ask& ask_;
  const BookingsKind& kind_;
  std::function<std::string()> recordId_;
  ReplyList list_;
};

}  // namespace vantry
