#include "options/option_table.h"

namespace vantry {

using enum OptionKind;

namespace {

// clang-format off
constexpr OptionRow kGeneral[] = {
    {Check, "chkToolTips", "&Tool tips", "ToolTips"},
    {Check, "chkMergeCells", "&Merge cells in displays containing duplicate data", "MergeCells"},
    {Check, "chkAutoSizeCells", "Automatically &size cells to fit data", "AutoSizeCells"},
    {Check, "chkBookingCalendars", "Automatically display Booking &Calendars at start-up", "BookingCalendars"},
};
constexpr OptionRow kDayView[] = {
    {Check, "chkLegend(0)", "Display &Charged Bookings", "DisplayCharged"},
    {Check, "chkLegend(1)", "Display Co&mpleted Bookings", "DisplayCompleted"},
    {Check, "chkLegend(2)", "Display Ca&nceled Bookings", "DisplayCanceled"},
    {Check, "chkLegend(3)", "Display &Unclaimed Bookings", "DisplayUnclaimed"},
    {Check, "chkLegend(4)", "Display &Overdue Bookings", "DisplayOverdue"},
};
constexpr OptionRow kNumbers[] = {
    {Option, "optBarcodes", "Barcodes", "Barcodes"},
    {Option, "optSiteNumbers", "Site-specific Internal Numbers", "SiteNumbers"},
};
constexpr OptionRow kScheduler[] = {
    {Check, "chkScheduleBar", "Display &Schedule Bar", "ScheduleBar"},
    {Choices, "optScheduler", "Use schedule intervals|Key in times", "UseIntervals", "true|false", true},
    {.kind = Number, .control = "txtStartHour", .caption = "Start scheduling &at:", .key = "Start", .label = "lblStartScheduling", .unit = "AM", .unitLabel = "lblAM"},
    {.kind = Number, .control = "txtEndHour", .caption = "&End scheduling at:", .key = "End", .label = "lblEndScheduling", .unit = "PM", .unitLabel = "lblPM"},
    {.kind = List, .control = "cboSchedInterval", .caption = "Schedule &interval:", .key = "Interval", .entries = "5 minutes|10 minutes|15 minutes|20 minutes|30 minutes|1 hour", .label = "lblScheduleInterval"},
};
// The index of a colour is its place in the lists of the preferences.
constexpr OptionRow kScheduleColours[] = {
    {RowColour, "(0)", "Canceled", "Color0"},
    {RowColour, "(1)", "Complete", "Color1"},
    {RowColour, "(2)", "Multiple Bookings", "Color2"},
    {RowColour, "(3)", "Single Booking", "Color3"},
    {RowColour, "(4)", "Charged", "Color4"},
    {RowColour, "(6)", "Unclaimed", "Color6"},
    {RowColour, "(7)", "Overdue", "Color7"},
};
constexpr OptionRow kNewBooking[] = {
    {Choices, "optNewBooking", "Popup Menu|Free-Form|Wizard|Pick-up", "NewBooking", "0|1|2|3", true},
};
constexpr OptionRow kBookingRoom[] = {
    {Choices, "optRooms", "Popup Menu|Always Find|Always Suggest", "BookingsRooms", "0|1|2", true},
};
constexpr OptionRow kRoomType[] = {
    {Choices, "optBookRoomType", "Deliver|Library/Media Center Scheduled Room|Pickup", "BookRoomType", "0|1|2", true},
};
constexpr OptionRow kBookings[] = {
    {Check, "chkSuggestEquip", "Always Suggest &Equipment", "SuggestEquip"},
    {Check, "chkAutoCharge", "Automatically &Charge New Pickup Bookings", "AutoCharge"},
    {Check, "chkAutoPrintConf", "Automatically &Print Confirmations", "AutoPrintConf"},
    {Check, "chkRetainRequester", "&Retain Requester on Save and New", "RetainRequester"},
};
constexpr OptionRow kSearching[] = {
    {Check, "chkDefAdvSearch", "Default to &Advanced Searching", "Advanced"},
    {Check, "chkIncHistBookings", "Include &Historical Bookings in Booking Searches", "Historical"},
    {Check, "chkAutoTruncate", "Automatically &Truncate Search Terms", "AutoTruncate"},
    {Check, "chkAutoFindNow", "Automatically &Find Now When Searching for Bookings", "AutoFindNow"},
};
constexpr OptionRow kBibliographic[] = {
    {Check, "chkAutoTruncateBib", "Automatic Truncation for &Non-keyword Searches", "AutoTruncateBib"},
    {Check, "chkRetainSearch", "&Retain Last Search", "RetainSearch"},
};
constexpr OptionRow kResultColours[] = {
    {RowColour, "(8)", "Suppressed Records", "Color8"},
};
constexpr OptionRow kPosition[] = {
    {Choices, "optPosition", "Left|Right|Not displayed", "Position", "0|1|2", true},
};
constexpr OptionRow kAppearance[] = {
    {Picture, "txtBackgroundImage", "Background &image:", "Background"},
    {GroundColour, "(5)", "List Bar Colors", "Color5"},
};
constexpr OptionRow kFirstView[] = {
    {Choices, "optView", "Booking Schedule - Day View|Booking Schedule - Month View|Booking Schedule - Year View|"
     "Booking Schedule - Charge|Booking Schedule - Discharge|Inventory - Rooms|Inventory - Equipment|"
     "Inventory - Equipment Groups|Inventory - Maintenance|Staffing|Last view from previous session|"
     "Schedule Monitor:|Conflict Detection && Warning|Delivery && Cleanup Notification|Pickup Slips|Room Schedules|"
     "Library Media Scheduled Rooms", "View", "0|1|2|13|14|4|5|3|6|7|15||8|9|10|11|12"},
};
constexpr OptionRow kMonitor[] = {
    {Check, "chkPrintDelivery", "Automatically print deliver/cleanup slips", "AutoPrintDelivery"},
    {Check, "chkPrintPickUp", "Automatically print pickup slips", "AutoPrintPickUp"},
    {.kind = Number, .control = "txtDeliveryHours", .caption = "Examine &delivery schedule for next", .key = "DeliveryHours", .unit = "hours.", .least = 1, .most = 999},
    {.kind = Number, .control = "txtPickupHours", .caption = "Examine &pickup schedule for next", .key = "PickUpHours", .unit = "hours.", .least = 1, .most = 999},
    {.kind = Number, .control = "txtRoomHours", .caption = "Examine &room schedule for next", .key = "RoomHours", .unit = "hours.", .least = 1, .most = 999},
    {.kind = Number, .control = "txtInterval", .caption = "&Update Interval:", .key = "DaemonInterval", .unit = " (1 - 99 minutes)", .least = 1, .most = 99},
};
constexpr OptionRow kCharge[] = {
    {List, "cboChargeSearch", "&Search by:", "ChargeSearch"},
    {Check, "chkChargeClear", "Clear after succesful Charge", "ChargeClear"},  // the spelling is the window's own
    {Check, "chkPrintOnCharge", "&Print when Charging", "PrintOnCharge"},
};
constexpr OptionRow kDischarge[] = {
    {List, "cboDischargeSearch", "Search &by:", "DischargeSearch"},
    {Check, "chkDischargeClear", "Clear after successful Discharge", "DischargeClear"},
    {Check, "chkDischargeSelect", "Automatically select all media and equipment for Discharge", "DischargeSelect"},
};

constexpr OptionGroup kGeneralPage[] = {{"", "", kGeneral}, {"fraDayView", "Day View", kDayView}};
constexpr OptionGroup kInventoryPage[] = {{"fraNumbers", "Equipment/Group &Numbers Display As", kNumbers}};
constexpr OptionGroup kSchedulerPage[] = {{"", "", kScheduler}, {"fraColors", "Colors", kScheduleColours}};
constexpr OptionGroup kBookingsPage[] = {
    {"fraNewBooking", "New &Bookings", kNewBooking}, {"fraRooms", "Booking Room", kBookingRoom},
    {"fraBookRoomType", "New Booking Room Type Default", kRoomType}, {"", "", kBookings}};
constexpr OptionGroup kSearchingPage[] = {
    {"", "", kSearching}, {"fraBibSearching", "Bibliographic Searching", kBibliographic},
    {"fraResultColors", "Search Result Colors", kResultColours}};
constexpr OptionGroup kListBarPage[] = {
    {"fraPosition", "&Position", kPosition}, {"fraAppearance", "Appea&rance", kAppearance},
    {"fraView", "Default Startup &View", kFirstView}};
constexpr OptionGroup kMonitorPageGroups[] = {{"", "", kMonitor}};
constexpr OptionGroup kCirculationPage[] = {
    {"fraCharge", "Charge", kCharge}, {"fraDischarge", "Discharge", kDischarge}};

constexpr OptionPage kPages[] = {
    {"General", "Set general options", kGeneralPage},
    {"Inventory", "Set options for Inventory", kInventoryPage},
    {"Scheduler", "Set options for Scheduler", kSchedulerPage},
    {"Bookings", "Set options for Bookings", kBookingsPage},
    {"Searching", "Set options for Searching", kSearchingPage},
    {"List Bar", "Set options for List Bar", kListBarPage},
    {"Schedule Monitor", "Set options for Schedule Monitor processing", kMonitorPageGroups},
    {"Charge/Discharge", "Set options for charging and discharging bookings", kCirculationPage},
    {"Sounds", "Set sounds to play during Vantry events", {}},
};
// clang-format on

}  // namespace

std::span<const OptionPage> optionPages() {
  return kPages;
}

}  // namespace vantry
