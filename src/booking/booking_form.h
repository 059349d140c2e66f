#pragma once

#include "booking/booking_record.h"
#include "booking/times_panel.h"
#include "frame/app.h"
#include "platform/grid.h"
#include "platform/tree.h"

namespace vantry {

class EquipmentPanel;
class MediaPanel;
class PlacePanel;

/// What editor and wizard have in common, as the routines of modBooking read it. The window owns all of it.
struct BookingForm {
  App& app;
  Form& form;
  TimesPanel& times;
  Grid& faMedia;
  Tree& tvwOtherEquipment;
  Tree& tvwEquipment;
  /// The panels that hold these lists, with the fields by which things are added. Only the routines that read
  /// such a field, or enable a command of the list, need them.
  MediaPanel* media = nullptr;
  EquipmentPanel* equipment = nullptr;
  /// Likewise for the routines of the place.
  PlacePanel* place = nullptr;
};

}  // namespace vantry
