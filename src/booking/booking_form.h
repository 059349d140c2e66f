#pragma once

#include "booking/booking_record.h"
#include "booking/times_panel.h"
#include "frame/app.h"
#include "platform/grid.h"
#include "platform/tree.h"

namespace vantry {

/// What editor and wizard have in common, as the routines of modBooking read it. The window owns all of it.
struct BookingForm {
  App& app;
  Form& form;
  TimesPanel& times;
  Grid& faMedia;
  Tree& tvwOtherEquipment;
  Tree& tvwEquipment;
};

}  // namespace vantry
