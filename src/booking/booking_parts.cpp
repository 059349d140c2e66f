#include "booking/booking_parts.h"

#include "booking/modBooking_rooms.h"
#include "lists/grids.h"

namespace vantry {

BookingParts::BookingParts(App& program, const Places& places)
    : app(program),
      requester(program, places.requester, record),
      times(program, places.times, record),
      media(*this, places.media),
      place(*this, places.place),
      equipment(*this, places.equipment) {
  requester.GroupChanged = [this] { LoadRoomsOfRequester(*this); };
  requester.Changed = [this] {
    times.showExpireDate();
    raise(Changed);
  };
  times.Changed = media.Changed = place.Changed = equipment.Changed = [this] { raise(Changed); };
}

void BookingParts::open() {
  place.loading = true;
  showTips();
  app.booking.warnings.InitWarningList();
}

void BookingParts::showTips() {
  if (!app.preferences.ToolTips) return;
  const struct {
    Control& control;
    const char* tip;
  } tips[] = {
      {requester.requester.text, "Scan or type the requester's barcode."},
      {requester.requester.check, "Look the barcode up and check the requester."},
      {requester.requester.pick, "Find the requester."},
      {requester.onBehalfOf.text, "Scan or type the barcode of whoever fetches the things."},
      {requester.onBehalfOf.check, "Look the barcode up and check the pick-up patron."},
      {requester.onBehalfOf.pick, "Find the pick-up patron."},
      {requester.chkAdminBooking, "Book for the library, without a requester."},
      {times.cmdMultipleBookings, "Book the same things at several times."},
      {place.cmdNewRoom, "Create a room for this booking."},
      {media.cmdNewMedia, "Create a media item for this booking."},
  };
  for (const auto& row : tips) row.control.ToolTipText = std::string(row.tip);
}

void BookingParts::startNew() {
  record.AdminBooking = "N";
  record.WizardCreated = "N";
  times.startToday();
  requester.chkAdminBooking.Visible = app.context.rights.has(Right::OVITM);
}

void BookingParts::merge(bool on) {
  SetGridMerge(times.faDatesTimes, on);
  SetGridMerge(media.faMedia, on);
}

void BookingParts::disableEditing() {
  requester.disableEditing();
  times.disableEditing();
  media.disableEditing();
  place.disableEditing();
  equipment.disableEditing();
}

std::string BookingParts::thingsText() const {
  return std::to_string(record.ItemCount) + " media, " + std::to_string(record.EquipmentCount) + " equipment";
}

}  // namespace vantry
