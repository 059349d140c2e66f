// What stands where in the booking editor, and its tool tips.
#include "booking/frmBooking.h"

namespace vantry {

void frmBooking::buildToolBar() {
  int id = 0;
  const auto add = [&](const char* name, const char* caption, const char* picture) {
    barBooking.addButton(++id, name, caption, picture);
  };
  add("abSaveAndClose", "Save and Close", "save");
  add("abSaveAndNew", "Save and New", "new");
  barBooking.addLine();
  add("abCopy", "Copy", "copy");
  add("abDelete", "Delete", "delete");
  add("abCancel", "Cancel", "cancel");
  barBooking.addLine();
  add("abCharge", "Charge", "charge");
  add("abDischarge", "Discharge", "discharge");
  barBooking.addLine();
  add("abPrint", "Print", "print");
}

void frmBooking::buildTabs() {
  for (const char* caption : {"Schedule", "Media", "Room", "Equipment", "Notes", "Staff", "Properties"})
    tabBooking.addTab(caption);
  tabBooking.AccessibleName = "Parts of the booking";
  showTab();
}

void frmBooking::arrange() {
  arrangeHead();
  fraNotes.Layout = Column{lblBookingNote, txtBookingNote};
  fraStaff.Layout = Row{Fields{lblSetupStaff, Row{LayoutNode(cboSetupStaff).share(1)}, lblCleanupStaff,
                               Row{LayoutNode(cboCleanupStaff).share(1)}}
                            .share(1),
                        LayoutNode(Stretch{}).share(2)};
  fraProperties.Layout = Row{Fields{lblCreateOperator, txtCreateOperator, lblCreateLocation,
                                    txtCreateLocation, lblCreateDate, fpdCreateDate}
                                 .share(1),
                             Gap{},
                             Fields{lblUpdateOperator, txtUpdateOperator, lblUpdateLocation,
                                    txtUpdateLocation, lblUpdateDate, fpdUpdateDate}
                                 .share(1)};
  Layout = Column{fraHead,
                  Gap{},
                  tabBooking,
                  LayoutNode(fraSchedule).share(1),
                  LayoutNode(fraMedia).share(1),
                  LayoutNode(fraPlace).share(1),
                  LayoutNode(fraEquipment).share(1),
                  LayoutNode(fraNotes).share(1),
                  LayoutNode(fraStaff).share(1),
                  LayoutNode(fraProperties).share(1)};
}

void frmBooking::arrangeHead() {
  for (Label* label : {&lblStatus, &lblPlace, &lblThings}) label->ReadOnlyField = true;
  lblStatus.AccessibleName = "Status of the booking";
  fraHead.Layout = Row{requester.layout().share(3), Gap{},
                       Fields{lblConfirmation, Row{txtConfirmationNumber, lblStatusCaption, lblStatus},
                              lblPlaceCaption, lblPlace, lblThingsCaption, lblThings}
                           .share(2)};
}

void frmBooking::showToolTips() {
  const bool on = app_.preferences.ToolTips;
  barBooking.ToolTips = on;
  const struct {
    Control& control;
    const char* tip;
  } tips[] = {{requester.requester.text, "Scan or type the requester's barcode."},
              {requester.requester.check, "Look the barcode up and check the requester."},
              {requester.requester.pick, "Find the requester."},
              {requester.onBehalfOf.text, "Scan or type the barcode of whoever fetches the things."},
              {requester.onBehalfOf.check, "Look the barcode up and check the pick-up patron."},
              {requester.onBehalfOf.pick, "Find the pick-up patron."},
              {requester.chkAdminBooking, "Book for the library, without a requester."},
              {times.cmdMultipleBookings, "Book the same things at several times."},
              {place.cmdNewRoom, "Create a room for this booking."},
              {media.cmdNewMedia, "Create a media item for this booking."}};
  for (const auto& row : tips) row.control.ToolTipText = on ? row.tip : "";
}

}  // namespace vantry
