#pragma once

#include "booking/modBooking_patrons.h"

namespace vantry {

/// The requester of a booking and the patron who fetches it, as editor and wizard enter them.
class RequesterPanel {
 public:
  /// Makes the controls in `place`; the record belongs to the same booking.
  RequesterPanel(App& app, Container& place, BookingRecord& record);

  /// A patron, or the kind of booking, has changed.
  Event Changed;
  /// A requester's group is known, or there is none: the rooms follow.
  Event GroupChanged;

  PatronField requester;  ///< txtRequester, cmdRequesterCheck, cmdRequester
  Label lblPatronGroup;
  TextBox txtPatronGroup;
  CheckBox chkAdminBooking;
  PatronField onBehalfOf;  ///< txtOnBehalfOf, cmdOnBehalfOfCheck, cmdOnBehalfOf

  /// The fields of both patrons in two aligned columns, for the window's layout.
  LayoutNode layout();

  /// Shows the patrons of a booking that was read. Its requester can be entered only where there is none.
  void showBooking();
  /// Takes a requester of whom id and name are known.
  void take(const Patron& patron);
  /// A saved booking keeps its requester.
  void lockRequester();
  void hidePickupPatron();
  /// The booking can only be read from now on.
  void disableEditing();

  void cmdRequester_Click();
  void cmdRequesterCheck_Click();
  void cmdOnBehalfOf_Click();
  void cmdOnBehalfOfCheck_Click();
  void chkAdminBooking_Click();

 private:
  void connect();
  RequesterForm form();

  App& app_;
  BookingRecord& record_;
};

}  // namespace vantry
