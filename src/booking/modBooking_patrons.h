#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "booking/booking_record.h"
#include "frame/app.h"
#include "platform/controls.h"

namespace vantry {

// The requester of a booking and the patron who fetches it.

/// A patron as look-ups give him.
struct Patron {
  int id = 0;
  std::string name;
  int groupId = 0;
  std::string groupName;
};

/// "Last, First Middle"; comma and blank only where their parts exist.
[[nodiscard]] std::string PatronName(std::string_view last, std::string_view first, std::string_view middle);

/// The field of one patron: a barcode while it is typed, his name once he is validated.
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

/// The part of a window that takes patrons, as the routines of modBooking use it.
struct PatronForm {
  App& app;
  PatronField& requester;
  TextBox& txtPatronGroup;
  CheckBox* chkAdminBooking = nullptr;  ///< where the window has it
  PatronField* pickup = nullptr;        ///< where the window has it
  std::function<void()>
      requesterIsKnown;  ///< or is nobody: his group decides the rooms. Before he is validated
};

/// Set the requester from the search window, or from what "Save and New" has handed on.
void PickRequester(const PatronForm& form, BookingRecord& record);
void PickPickupPatron(const PatronForm& form, BookingRecord& record);
/// Take the barcode that stands in the field. Afterwards either a valid patron stands there or nobody.
void ValidateRequesterBarcode(const PatronForm& form, BookingRecord& record);
void ValidatePickupBarcode(const PatronForm& form, BookingRecord& record);

/// As whom a patron is validated.
enum class PatronMode { Requester, PickupPatron };
/// Says what speaks against a patron; false, and his id in the record 0, when he is refused. Nobody passes.
[[nodiscard]] bool ValidatePatron(App& app, BookingRecord& record, PatronMode mode);
/// Reads limits, counts and the end of his privileges; false when they cannot be had, which has been said.
bool GetPatronPrivileges(App& app, BookingRecord& record);

/// The check box was set or cleared: switches between an administrative booking and one with a requester.
void AdminBookingChanged(const PatronForm& form, BookingRecord& record);

}  // namespace vantry
