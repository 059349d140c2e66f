#pragma once

#include "platform/menu.h"

namespace vantry {

/// The main window's menus and popup menus, with their captions.
struct MainMenus {
  explicit MainMenus(Form& window) : form(window) {}
  Form& form;

  MenuItem mnuFile{form, "mnuFile", "&File"};
  MenuItem mnuFileGetRequests{mnuFile, "mnuFileGetRequests", "&Get Requests"};
  MenuItem mnuFileNew{mnuFile, "mnuFileNew", "&New"};
  MenuItem mnuFileNewInventory{mnuFileNew, "mnuFileNewInventory", "&Inventory"};
  MenuItem mnuFileNewInvEquip{mnuFileNewInventory, "mnuFileNewInvEquip", "&Equipment"};
  MenuItem mnuFileNewInvGroup{mnuFileNewInventory, "mnuFileNewInvGroup", "&Group"};
  MenuItem mnuFileNewInvRoom{mnuFileNewInventory, "mnuFileNewInvRoom", "&Room"};
  MenuItem mnuFileNewInvMaint{mnuFileNewInventory, "mnuFileNewInvMaint", "&Maintenance"};
  MenuItem mnuFileNewBooking{mnuFileNew, "mnuFileNewBooking", "&Booking"};
  MenuItem mnuFileNewBookingWiz{mnuFileNew, "mnuFileNewBookingWiz", "Booking &Wizard"};
  MenuItem mnuFileNewPickup{mnuFileNew, "mnuFileNewPickup", "&Pick-Up"};
  MenuItem mnuFilePrint{mnuFile, "mnuFilePrint", "&Print"};
  MenuItem mnuFilePrintDetail{mnuFilePrint, "mnuFilePrintDetail", "Item &Detail (selected)"};
  MenuItem mnuFilePrintDetailAll{mnuFilePrint, "mnuFilePrintDetailAll", "Item Detail (&all)"};
  MenuItem mnuFilePrintListing{mnuFilePrint, "mnuFilePrintListing", "Summary &Listing"};
  MenuItem mnuFileLine1{mnuFile, "mnuFileLine1", "-"};
  MenuItem mnuFileLoginInfo{mnuFile, "mnuFileLoginInfo", "&Login Information..."};
  MenuItem mnuFileChangePassword{mnuFile, "mnuFileChangePassword", "Change Pass&word..."};
  MenuItem mnuFileLine2{mnuFile, "mnuFileLine2", "-"};
  MenuItem mnuFileLogoff{mnuFile, "mnuFileLogoff", "Log &Off "};
  MenuItem mnuFileExit{mnuFile, "mnuFileExit", "E&xit"};

  MenuItem mnuView{form, "mnuView", "&View"};
  MenuItem mnuViewInventory{mnuView, "mnuViewInventory", "&Inventory"};
  MenuItem mnuViewInventoryRooms{mnuViewInventory, "mnuViewInventoryRooms", "Rooms"};
  MenuItem mnuViewInventoryEquipment{mnuViewInventory, "mnuViewInventoryEquipment", "Equipment"};
  MenuItem mnuViewInventoryGroups{mnuViewInventory, "mnuViewInventoryGroups", "Equipment Groups"};
  MenuItem mnuViewInventoryMaintenance{mnuViewInventory, "mnuViewInventoryMaintenance",
                                       "Equipment Maintenance"};
  MenuItem mnuViewSchedule{mnuView, "mnuViewSchedule", "&Schedule"};
  MenuItem mnuViewScheduleDay{mnuViewSchedule, "mnuViewScheduleDay", "Day View"};
  MenuItem mnuViewScheduleMonth{mnuViewSchedule, "mnuViewScheduleMonth", "Month View"};
  MenuItem mnuViewScheduleYear{mnuViewSchedule, "mnuViewScheduleYear", "Year View"};
  MenuItem mnuViewScheduleCharge{mnuViewSchedule, "mnuViewScheduleCharge", "Charge"};
  MenuItem mnuViewScheduleDischarge{mnuViewSchedule, "mnuViewScheduleDischarge", "Discharge"};
  MenuItem mnuViewScheduleQuickDischarge{mnuViewSchedule, "mnuViewScheduleQuickDischarge", "Quick Discharge"};
  MenuItem mnuViewStaff{mnuView, "mnuViewStaff", "&Staff"};
  MenuItem mnuViewDaemonConflict{mnuView, "mnuViewDaemonConflict", "Conflict Resolution && Warning"};
  MenuItem mnuViewDaemonDelivery{mnuView, "mnuViewDaemonDelivery", "Delivery and Cleanup Notification"};
  MenuItem mnuViewDaemonPickup{mnuView, "mnuViewDaemonPickup", "Pickup Slips"};
  MenuItem mnuViewDaemonRooms{mnuView, "mnuViewDaemonRooms", "Room Schedules"};
  MenuItem mnuViewDaemonLibRooms{mnuView, "mnuViewDaemonLibRooms", "Library Media Scheduled Rooms"};
  MenuItem mnuViewDaemonEquipmentPickUpList{mnuView, "mnuViewDaemonEquipmentPickUpList",
                                            "Equipment Pick List"};
  MenuItem mnuViewDaemonItemPickUpList{mnuView, "mnuViewDaemonItemPickUpList", "Item Pick List"};
  MenuItem mnuViewLine1{mnuView, "mnuViewLine1", "-"};
  MenuItem mnuViewMergeCells{mnuView, "mnuViewMergeCells", "&Merge Cells"};

  MenuItem mnuTools{form, "mnuTools", "&Tools"};
  MenuItem mnuToolsSearch{mnuTools, "mnuToolsSearch", "&Search"};
  MenuItem mnuToolsCalendars{mnuTools, "mnuToolsCalendars", "Booking &Calendars..."};
  MenuItem mnuToolsOptions{mnuTools, "mnuToolsOptions", "&Options..."};
  MenuItem mnuToolsDefaults{mnuTools, "mnuToolsDefaults", "Session &Defaults..."};

  MenuItem mnuMode{form, "mnuMode", "&Mode"};
  MenuItem mnuModeStandard{mnuMode, "mnuModeStandard", "&Standard"};
  MenuItem mnuModeDaemon{mnuMode, "mnuModeDaemon", "Schedule &Monitor"};

  MenuItem mnuHelp{form, "mnuHelp", "&Help"};
  MenuItem mnuHelpTopics{mnuHelp, "mnuHelpTopics", "&Help Topics"};
  MenuItem mnuHelpGuide{mnuHelp, "mnuHelpGuide", "&Guide for Librarians"};
  MenuItem mnuHelpWeb{mnuHelp, "mnuHelpWeb", "&Tolmark on the Web"};
  MenuItem mnuHelpWebSite0{mnuHelpWeb, "mnuHelpWebSite(0)", "Tolmark &Home Page"};
  MenuItem mnuHelpWebSite1{mnuHelpWeb, "mnuHelpWebSite(1)", "Corvane &Support Web"};
  MenuItem mnuHelpAbout{mnuHelp, "mnuHelpAbout", "&About Vantry..."};

  // Popup menus: hidden from the bar.
  MenuItem mnuPopupTools{form, "mnuPopupTools", "Popup Tools"};
  MenuItem mnuPopupToolsNew{mnuPopupTools, "mnuPopupToolsNew", "New"};
  MenuItem mnuPopupToolsEdit{mnuPopupTools, "mnuPopupToolsEdit", "Edit"};
  MenuItem mnuPopupToolsDelete{mnuPopupTools, "mnuPopupToolsDelete", "Delete"};
  MenuItem mnuPopupToolsSort{mnuPopupTools, "mnuPopupToolsSort", "Sort"};
  MenuItem mnuPopupToolsSortAscending{mnuPopupToolsSort, "mnuPopupToolsSortAscending", "Ascending"};
  MenuItem mnuPopupToolsSortDescending{mnuPopupToolsSort, "mnuPopupToolsSortDescending", "Descending"};
  MenuItem mnuPopupToolsPrint{mnuPopupTools, "mnuPopupToolsPrint", "Print"};
  MenuItem mnuPopupToolsPrintDetail{mnuPopupToolsPrint, "mnuPopupToolsPrintDetail", "Item Detail (selected)"};
  MenuItem mnuPopupToolsPrintDetailAll{mnuPopupToolsPrint, "mnuPopupToolsPrintDetailAll",
                                       "Item Details (all)"};
  MenuItem mnuPopupToolsPrintListing{mnuPopupToolsPrint, "mnuPopupToolsPrintListing", "Summary Listing"};

  MenuItem mnuPopupGroup{form, "mnuPopupGroup", "Popup Group"};
  MenuItem mnuPopupGroupNew{mnuPopupGroup, "mnuPopupGroupNew", "New"};
  MenuItem mnuPopupGroupEdit{mnuPopupGroup, "mnuPopupGroupEdit", "Edit"};
  MenuItem mnuPopupGroupDelete{mnuPopupGroup, "mnuPopupGroupDelete", "Delete"};
  MenuItem mnuPopupGroupMembers{mnuPopupGroup, "mnuPopupGroupMembers", "Members"};
  MenuItem mnuPopupGroupSort{mnuPopupGroup, "mnuPopupGroupSort", "Sort"};
  MenuItem mnuPopupGroupSortAscending{mnuPopupGroupSort, "mnuPopupGroupSortAscending", "Ascending"};
  MenuItem mnuPopupGroupSortDescending{mnuPopupGroupSort, "mnuPopupGroupSortDescending", "Descending"};
  MenuItem mnuPopupGroupPrint{mnuPopupGroup, "mnuPopupGroupPrint", "Print"};
  MenuItem mnuPopupGroupPrintDetail{mnuPopupGroupPrint, "mnuPopupGroupPrintDetail", "Item Detail (selected)"};
  MenuItem mnuPopupGroupPrintDetailAll{mnuPopupGroupPrint, "mnuPopupGroupPrintDetailAll",
                                       "Item Details (all)"};
  MenuItem mnuPopupGroupPrintListing{mnuPopupGroupPrint, "mnuPopupGroupPrintListing", "Summary Listing"};

  MenuItem mnuPopupMember{form, "mnuPopupMember", "Popup Member"};
  MenuItem mnuPopupMemberNew{mnuPopupMember, "mnuPopupMemberNew", "New"};
  MenuItem mnuPopupMemberEdit{mnuPopupMember, "mnuPopupMemberEdit", "Edit"};
  MenuItem mnuPopupMemberDelete{mnuPopupMember, "mnuPopupMemberDelete", "Delete"};
  MenuItem mnuPopupMemberSort{mnuPopupMember, "mnuPopupMemberSort", "Sort"};
  MenuItem mnuPopupMemberSortAscending{mnuPopupMemberSort, "mnuPopupMemberSortAscending", "Ascending"};
  MenuItem mnuPopupMemberSortDescending{mnuPopupMemberSort, "mnuPopupMemberSortDescending", "Descending"};

  MenuItem mnuPopupScheduler{form, "mnuPopupScheduler", "Popup Scheduler"};
  MenuItem mnuPopupSchedulerEdit{mnuPopupScheduler, "mnuPopupSchedulerEdit", "Edit"};
  MenuItem mnuPopupSchedulerCancel{mnuPopupScheduler, "mnuPopupSchedulerCancel", "Cancel"};
  MenuItem mnuPopupSchedulerCharge{mnuPopupScheduler, "mnuPopupSchedulerCharge", "Charge"};
  MenuItem mnuPopupSchedulerDischarge{mnuPopupScheduler, "mnuPopupSchedulerDischarge", "Discharge"};
  MenuItem mnuPopupSchedulerItems{mnuPopupScheduler, "mnuPopupSchedulerItems", "Items"};
  MenuItem mnuPopupSchedulerSort{mnuPopupScheduler, "mnuPopupSchedulerSort", "Sort"};
  MenuItem mnuPopupSchedulerSortAsc{mnuPopupSchedulerSort, "mnuPopupSchedulerSortAsc", "Ascending"};
  MenuItem mnuPopupSchedulerSortDesc{mnuPopupSchedulerSort, "mnuPopupSchedulerSortDesc", "Descending"};
  MenuItem mnuPopupSchedulerPrint{mnuPopupScheduler, "mnuPopupSchedulerPrint", "Print"};
  MenuItem mnuPopupSchedulerPrintDetail{mnuPopupSchedulerPrint, "mnuPopupSchedulerPrintDetail",
                                        "Item Detail (selected)"};
  MenuItem mnuPopupSchedulerPrintDetailAll{mnuPopupSchedulerPrint, "mnuPopupSchedulerPrintDetailAll",
                                           "Item Details (all)"};
  MenuItem mnuPopupSchedulerPrintListing{mnuPopupSchedulerPrint, "mnuPopupSchedulerPrintListing",
                                         "Summary Listing"};

  MenuItem mnuPopupNewBooking{form, "mnuPopupNewBooking", "Popup New Booking"};
  MenuItem mnuPopupNewBookingFreeform{mnuPopupNewBooking, "mnuPopupNewBookingFreeform", "&Free form"};
  MenuItem mnuPopupNewBookingWizard{mnuPopupNewBooking, "mnuPopupNewBookingWizard", "&Wizard"};
  MenuItem mnuPopupNewBookingPickup{mnuPopupNewBooking, "mnuPopupNewBookingPickup", "&Pick-up"};

  MenuItem mnuPopupBookings{form, "mnuPopupBookings", "Popup Bookings"};
  MenuItem mnuPopupBookingsNew{mnuPopupBookings, "mnuPopupBookingsNew", "New"};
  MenuItem mnuPopupBookingsEdit{mnuPopupBookings, "mnuPopupBookingsEdit", "Edit"};
  MenuItem mnuPopupBookingsDelete{mnuPopupBookings, "mnuPopupBookingsDelete", "Delete"};
  MenuItem mnuPopupBookingsCancel{mnuPopupBookings, "mnuPopupBookingsCancel", "Cancel"};
  MenuItem mnuPopupBookingsSep1{mnuPopupBookings, "mnuPopupBookingsSep1", "-"};
  MenuItem mnuPopupBookingsCharge{mnuPopupBookings, "mnuPopupBookingsCharge", "Charge"};
  MenuItem mnuPopupBookingsDischarge{mnuPopupBookings, "mnuPopupBookingsDischarge", "Discharge..."};
  MenuItem mnuPopupBookingsSep2{mnuPopupBookings, "mnuPopupBookingsSep2", "-"};
  MenuItem mnuPopupBookingsSort{mnuPopupBookings, "mnuPopupBookingsSort", "Sort"};
  MenuItem mnuPopupBookingSortAsc{mnuPopupBookingsSort, "mnuPopupBookingSortAsc", "Ascending"};
  MenuItem mnuPopupBookingSortDesc{mnuPopupBookingsSort, "mnuPopupBookingSortDesc", "Descending"};
  MenuItem mnuPopupBookingsSep3{mnuPopupBookings, "mnuPopupBookingsSep3", "-"};
  MenuItem mnuPopupBookingsPrint{mnuPopupBookings, "mnuPopupBookingsPrint", "Print"};
  MenuItem mnuPopupBookingsPrintDetail{mnuPopupBookingsPrint, "mnuPopupBookingsPrintDetail",
                                       "Item Detail (selected)"};
  MenuItem mnuPopupBookingsPrintDetailAll{mnuPopupBookingsPrint, "mnuPopupBookingsPrintDetailAll",
                                          "Item Details (all)"};
  MenuItem mnuPopupBookingsPrintListing{mnuPopupBookingsPrint, "mnuPopupBookingsPrintListing",
                                        "Summary Listing"};
};

}  // namespace vantry
