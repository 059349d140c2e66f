#include "reports/modPrint.h"

#include "reports/assignments.h"
#include "reports/booking_confirmation.h"
#include "reports/record_details.h"

namespace vantry {

void modPrint::print(const frmBooking& window) {
  note(PrintBookingConfirmation(app_, window));
}

void modPrint::print(const frmGenAssign& window) {
  note(PrintAssignments(app_, window));
}

void modPrint::print(const frmEquipment& window) {
  note(PrintEquipmentDetail(app_, window));
}

void modPrint::print(const frmRoom& window) {
  note(PrintRoomDetail(app_, window));
}

void modPrint::print(const frmGroup& window) {
  note(PrintGroupDetail(app_, window));
}

void modPrint::print(const frmMaintenance& window) {
  note(PrintMaintenanceDetail(app_, window));
}

void modPrint::note(const PrintResult& result) {
  using enum PrintResult::Outcome;
  goesOn_ = result.outcome == Printed || result.outcome == Filed;
}

}  // namespace vantry
