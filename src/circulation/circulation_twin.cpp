#include "circulation/circulation_twin.h"

#include "messaging/return_codes.h"
#include "words/tags.h"

namespace vantry {
namespace {

using M = MainMenus;

constexpr SearchType kChargeTypes[] = {
    {"Requester Barcode", "", tags::BNO, ""},
    {"Pickup Patron Barcode", "", tags::PPBAR, ""},
    {"Confirmation Number", "", tags::CNUM, ""},
    {"Patron Last Name", "", tags::PLN, ""},
};

constexpr SearchType kDischargeTypes[] = {
    {"Requester Barcode", "", tags::BNO, ""},
    {"Pickup Patron Barcode", "", tags::PPBAR, ""},
    {"Confirmation Number", "", tags::CNUM, ""},
    {"Media Barcode", "", tags::MEDBAR, ""},
    {"Equipment Barcode", "", tags::EQBAR, ""},
    {"Patron Last Name", "", tags::PLN, ""},
    {"Item ID", "", tags::IM, ""},
    {"Equipment Number", "", tags::ENO, ""},
    {"Library of Congress Call Number", "0", tags::CN, "MLC#"},
    {"Dewey Decimal Call Number", "1", tags::CN, "MDEW"},
    {"NLM Classification Call Number", "2", tags::CN, "MNLM"},
    {"Government Documents Call Number", "3", tags::CN, "MSUD"},
    {"Other Call Number", "8", tags::CN, "MOTH"},
    {"Codoc Classification Call Number", "999", tags::CN, "MCOD"},
};

constexpr RowButton kChargeButtons[] = {{"cmdCCharge", "&Charge", &MainView::charge},
                                        {"cmdCEdit", "&Edit", &MainView::edit},
                                        {"cmdCDelete", "&Delete", &MainView::remove},
                                        {"cmdCCancel", "Ca&ncel", &MainView::cancel}};
constexpr RowButton kDischargeButtons[] = {{"cmdDDischarge", "D&ischarge...", &MainView::discharge}};

constexpr MenuItem M::*kHiddenOnCharge[] = {&M::mnuPopupBookingsNew, &M::mnuPopupBookingsSep3,
                                            &M::mnuPopupBookingsPrint};
constexpr MenuItem M::*kHiddenOnDischarge[] = {&M::mnuPopupBookingsNew,    &M::mnuPopupBookingsEdit,
                                               &M::mnuPopupBookingsCancel, &M::mnuPopupBookingsDelete,
                                               &M::mnuPopupBookingsSep1,   &M::mnuPopupBookingsSep3,
                                               &M::mnuPopupBookingsPrint};

// The twins differ on purpose also where it looks like an oversight: only the discharge tells its searches in
// the status bar, and only there the details follow the preference for barcodes and pass over wishes, since
// what is out is no wish any more.
constexpr CirculationTwin kCharge = {
    .cboSearch = "cboChargeSearch",
    .txtSearchFor = "txtChargeSearchFor",
    .cmdSearch = "cmdCSearch",
    .cmdClear = "cmdCClear",
    .fraBookings = "fraCBookings",
    .faBookings = "faChargeBookings",
    .cmdDetails = "cmdCDetails",
    .tvwDetails = "tvwCDetails",
    .detailsCaption = "De&tails >>",
    .rowButtons = kChargeButtons,
    .searchTypes = kChargeTypes,
    .code = "SSC",
    .searchFailed = "An error occurred while searching for bookings to charge.",
    .nothingFound = "There are no bookings ready for charge which match your search criteria.",
    .doneCode = codes::AlreadyCharged,
    .doneText = "Selected booking already charged!",
    .tellsStatus = false,
    .showsWishes = true,
    .followsBarcodes = false,
    .firstSearch = &Preferences::ChargeSearch,
    .clearsAfter = &Preferences::ChargeClear,
    .ownEntry = &M::mnuPopupBookingsCharge,
    .otherEntry = &M::mnuPopupBookingsDischarge,
    .hiddenEntries = kHiddenOnCharge,
};

constexpr CirculationTwin kDischarge = {
    .cboSearch = "cboDischargeSearch",
    .txtSearchFor = "txtDischargeSearchFor",
    .cmdSearch = "cmdDSearch",
    .cmdClear = "cmdDClear",
    .fraBookings = "fraDBookings",
    .faBookings = "faDischargeBookings",
    .cmdDetails = "cmdDDetails",
    .tvwDetails = "tvwDDetails",
    .detailsCaption = "De&tails>>",
    .rowButtons = kDischargeButtons,
    .searchTypes = kDischargeTypes,
    .code = "SSD",
    .searchFailed = "An error occurred while searching for bookings to discharge.",
    .nothingFound = "There are no bookings available for discharge which match your search criteria.",
    .doneCode = 0,
    .doneText = "",
    .tellsStatus = true,
    .showsWishes = false,
    .followsBarcodes = true,
    .firstSearch = &Preferences::DischargeSearch,
    .clearsAfter = &Preferences::DischargeClear,
    .ownEntry = &M::mnuPopupBookingsDischarge,
    .otherEntry = &M::mnuPopupBookingsCharge,
    .hiddenEntries = kHiddenOnDischarge,
};

}  // namespace

const CirculationTwin& chargeTwin() {
  return kCharge;
}
const CirculationTwin& dischargeTwin() {
  return kDischarge;
}

}  // namespace vantry
