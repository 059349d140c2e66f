#pragma once

namespace vantry {

class frmBooking;
class frmEquipment;
class frmGenAssign;
class frmGroup;
class frmMaintenance;
class frmRoom;

/// What prints the contents of a window. It is implemented above the windows that it prints.
class Reports {
 public:
  virtual ~Reports() = default;

  /// The confirmation of the booking in the editor, which may be hidden.
  virtual void print(const frmBooking& window) = 0;
  /// The lists of what was assigned when a booking was charged.
  virtual void print(const frmGenAssign& window) = 0;
  // The details of the record in the window.
  virtual void print(const frmEquipment& window) = 0;
  virtual void print(const frmRoom& window) = 0;
  virtual void print(const frmGroup& window) = 0;
  virtual void print(const frmMaintenance& window) = 0;

  /// False when the last report failed or was stopped: the records that follow are not to be printed either.
  [[nodiscard]] virtual bool goesOn() const = 0;
};

}  // namespace vantry
