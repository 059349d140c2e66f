#pragma once

#include <string>
#include <string_view>

#include "booking/booking_record.h"
#include "frame/app.h"
#include "platform/controls.h"
#include "records/patron_look_up.h"

namespace vantry {

// The requester of a booking and the patron who fetches it.

/// The field of one patron: a barcode while it is typed, the name once the patron is validated.
struct PatronField {
  PatronField(Container& place, const std::string& name, const std::string& label,
              const std::string& pickName);
  Label label;
  TextBox text;
  Button check;  ///< validates what was typed
  Button pick;   ///< searches
  Label state;   ///< tells whether the patron is validated

  /// Shows a validated patron's name; empty: nobody.
  void show(std::string_view name);
  /// The text has changed: it is a barcode that is not validated yet.
  void textChanged();
  /// What was typed has to be validated first.
  bool isPending(int patronId) const;
  void lock();
};

/// The part of a window that takes a requester, as the routines of modBooking use it.
struct RequesterForm {
  App& app;
  PatronField& requester;
  TextBox& txtPatronGroup;
  /// The requester is known, or is nobody: the group decides the rooms. Raised before the patron is
  /// validated.
  Event requesterIsKnown;
  /// The requester is valid and stays.
  Event requesterIsTaken;
};

/// Sets the requester from the search window.
void PickRequester(const RequesterForm& form, BookingRecord& record);
/// Sets a requester of whom id and name are known; their group is found by their barcode.
void TakeRequester(const RequesterForm& form, BookingRecord& record, Patron patron);
void PickPickupPatron(App& app, PatronField& field, BookingRecord& record);
/// Take the barcode in the field. Afterwards the field shows either a valid patron or nobody.
void ValidateRequesterBarcode(const RequesterForm& form, BookingRecord& record);
void ValidatePickupBarcode(App& app, PatronField& field, BookingRecord& record);

/// As whom a patron is validated.
enum class PatronMode { Requester, PickupPatron };
/// Tells what speaks against a patron; false, with the id in the record 0, after a refusal. Nobody passes.
[[nodiscard]] bool ValidatePatron(App& app, BookingRecord& record, PatronMode mode);
/// Reads limits, counts and the end of the requester's privileges; false when they cannot be read, which has
/// been told.
bool GetPatronPrivileges(App& app, BookingRecord& record);

/// The check box was set or cleared: switches between an administrative booking and one with a requester.
void AdminBookingChanged(const RequesterForm& form, CheckBox& chkAdminBooking, BookingRecord& record);

}  // namespace vantry
