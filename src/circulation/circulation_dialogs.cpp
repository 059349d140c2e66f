#include "circulation/circulation_dialogs.h"

#include "circulation/frmDischarge.h"
#include "circulation/frmPopupNote.h"

namespace vantry {

void CirculationDialogs::showReplyNotes(std::string_view mode, int rooms, int pieces) {
  ShowReplyNotes(app_, mode, rooms, pieces);
}

void CirculationDialogs::showNote(std::string_view text) {
  ShowSingleNote(app_, text);
}

std::string CirculationDialogs::discharge(int bookingId) {
  return DischargeBooking(app_, std::to_string(bookingId));
}

}  // namespace vantry
