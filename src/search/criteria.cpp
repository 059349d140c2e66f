#include "search/criteria.h"

#include <algorithm>
#include <iterator>

namespace vantry {
namespace {

using F = CriterionForm;
using S = ListSource;
using K = ControlKind;

// clang-format off

// Bookings

constexpr Criterion kBookingDate[] = {
    {"dtBookingDate", "Date", K::DateField, F::Day, 7, S::None, 0},
    {"dtDateStart", "First date", K::DateField, F::Day, 8, S::None, 1},
    {"dtDateEnd", "Last date", K::DateField, F::Day, 9, S::None, 1}};
constexpr Criterion kBookingConfirmation[] = {
    {"txtConfirmationNumber", "Confirmation &number:", K::TextBox, F::Text, 11}};
constexpr Criterion kBookingLocation[] = {
    {"cboBookingLocation", "&Location:", K::ComboBox, F::List, 4, S::Locations},
    {"cboBookingRoom", "&Room:", K::ComboBox, F::List, 12, S::RoomsOfLocation}};
constexpr Criterion kBookingMedia[] = {
    {"txtBookingMediaBarcode", "&Barcode:", K::TextBox, F::PlainText, 26},
    {"txtBibIDs", "Catalogue &ids:", K::TextBox, F::Titles},
    {"cmdSearchMedia", "Search Catalo&gue...", K::Button}};
constexpr Criterion kBookingEquipment[] = {
    {"cboBookingEquip", "Equipment type", K::ComboBox, F::List, 1, S::EquipmentTypes, 0},
    {"cboBookingGroup", "Group type", K::ComboBox, F::List, 13, S::GroupTypes, 1},
    {"txtEquipBarcode", "Barcode", K::TextBox, F::PlainText, 17, S::None, 2}};
constexpr Criterion kBookingStaff[] = {
    {"cboBookingStaff", "Staff &member:", K::ComboBox, F::List, 14, S::Staff}};
constexpr Criterion kBookingPatronName[] = {
    {"txtBLast", "&Last name:", K::TextBox, F::Text, 22},
    {"txtBMiddle", "&Middle name:", K::TextBox, F::Text, 23},
    {"txtBFirst", "F&irst name:", K::TextBox, F::Text, 24}};
constexpr Criterion kBookingPatronBarcode[] = {
    {"txtBBarcode", "Patron &barcode:", K::TextBox, F::Text, 29}};

// Equipment

constexpr Criterion kEquipmentType[] = {
    {"cboEquipmentType", "T&ype:", K::ComboBox, F::List, 1, S::EquipmentTypes}};
constexpr Criterion kEquipmentNumber[] = {
    {"txtEquipNumber(0)", "Number", K::TextBox, F::Text, 2, S::None, 0},
    {"txtEquipNumber(1)", "Barcode", K::TextBox, F::Text, 17, S::None, 1}};
constexpr Criterion kEquipmentManufacturer[] = {
    {"txtEquipManufacturer", "&Manufacturer:", K::TextBox, F::Text, 3}};
constexpr Criterion kEquipmentSerialNo[] = {
    {"txtEquipSerialNo", "Serial &number:", K::TextBox, F::Text, 28}};
constexpr Criterion kEquipmentLocation[] = {
    {"cboEquipmentLocation", "&Location:", K::ComboBox, F::List, 4, S::Locations},
    {"cboEquipRoom", "&Room:", K::ComboBox, F::List, 12, S::RoomsOfLocation}};
constexpr Criterion kEquipmentModel[] = {
    {"txtEquipModel", "&Model:", K::TextBox, F::Text, 5}};
constexpr Criterion kEquipmentStatus[] = {
    {"cboEquipStatus", "Stat&us:", K::ComboBox, F::List, 6, S::EquipmentStatuses}};
constexpr Criterion kEquipmentNextMaintDate[] = {
    {"dtNextMaintDate", "Date", K::DateField, F::Day, 7, S::None, 0},
    {"dtNextMaintStartDate", "First date", K::DateField, F::Day, 8, S::None, 1},
    {"dtNextMaintEndDate", "Last date", K::DateField, F::Day, 9, S::None, 1}};

// Equipment groups

constexpr Criterion kGroupType[] = {
    {"cboGroupType", "T&ype:", K::ComboBox, F::List, 13, S::GroupTypes}};
constexpr Criterion kGroupNumber[] = {
    {"txtGroupNumber(0)", "Number", K::TextBox, F::Text, 2, S::None, 0},
    {"txtGroupNumber(1)", "Barcode", K::TextBox, F::Text, 17, S::None, 1}};
constexpr Criterion kGroupEquipment[] = {
    {"cboGroupEquipment", "&Equipment type:", K::ComboBox, F::List, 1, S::EquipmentTypes}};
constexpr Criterion kGroupLocation[] = {
    {"cboGroupLocation", "&Location:", K::ComboBox, F::List, 4, S::Locations},
    {"cboGroupRoom", "&Room:", K::ComboBox, F::List, 12, S::RoomsOfLocation}};
constexpr Criterion kGroupStatus[] = {
    {"cboGroupStatus", "Stat&us:", K::ComboBox, F::List, 6, S::EquipmentStatuses}};

// Rooms

constexpr Criterion kRoomType[] = {
    {"cboRoomType", "T&ype:", K::ComboBox, F::List, 21, S::RoomTypes}};
constexpr Criterion kRoomName[] = {
    {"txtRoomName", "&Name:", K::TextBox, F::Text, 18}};
constexpr Criterion kRoomNumber[] = {
    {"txtRoomNumber", "&Number:", K::TextBox, F::Text, 2}};
constexpr Criterion kRoomLocation[] = {
    {"cboRoomLocation", "&Location:", K::ComboBox, F::List, 4, S::Locations}};
constexpr Criterion kRoomEquipment[] = {
    {"cboRoomEquip", "Equipment type", K::ComboBox, F::List, 1, S::EquipmentTypes, 0},
    {"cboRoomGroup", "Group type", K::ComboBox, F::List, 13, S::GroupTypes, 1}};
constexpr Criterion kRoomCapacity[] = {
    {"cboCompare", "Com&parison:", K::ComboBox, F::None, 0, S::Comparisons},
    {"txtRoomCapacity", "Capacit&y:", K::NumberField, F::Compared, 15}};
constexpr Criterion kRoomStatus[] = {
    {"cboRoomStatus", "Stat&us:", K::ComboBox, F::List, 6, S::RoomStatuses}};
constexpr Criterion kRoomAvailableDate[] = {
    {"dtRoomDate", "Dat&e:", K::DateField, F::DayOrTime, 7},
    {"txtRoomTime", "Ti&me:", K::TimeField, F::None, 25}};
constexpr Criterion kRoomDetails[] = {
    {"cboRoomDetail", "Detai&l:", K::ComboBox, F::List, 16, S::RoomDetails}};

// Maintenance

constexpr Criterion kMaintDate[] = {
    {"dtMaintDate", "Date", K::DateField, F::Day, 7, S::None, 0},
    {"dtMaintStart", "First date", K::DateField, F::Day, 8, S::None, 1},
    {"dtMaintEnd", "Last date", K::DateField, F::Day, 9, S::None, 1}};
constexpr Criterion kMaintEquipment[] = {
    {"cboMaintEquip", "Equipment type", K::ComboBox, F::List, 1, S::EquipmentTypes, 0},
    {"txtMaintEquipNumber", "Number", K::TextBox, F::Text, 2, S::None, 1}};
constexpr Criterion kMaintDetails[] = {
    {"cboMaintDetails", "Detai&l:", K::ComboBox, F::List, 16, S::MaintenanceDetails}};
constexpr Criterion kMaintStaff[] = {  // deliberately no criterion: the choice has no effect
    {"cboMaintStaff", "Staff &member:", K::ComboBox, F::None, 0, S::Staff}};

// Patrons

constexpr Criterion kPatronName[] = {
    {"txtLast", "&Last name:", K::TextBox, F::Text, 22},
    {"txtMiddle", "&Middle name:", K::TextBox, F::Text, 23},
    {"txtFirst", "F&irst name:", K::TextBox, F::Text, 24}};
constexpr Criterion kPatronBarcode[] = {
    {"txtBarcode", "&Barcode:", K::TextBox, F::Text, 17}};
constexpr Criterion kPatronSsn[] = {
    {"txtSSN", "SS&N:", K::MaskedField, F::Text, 19}};
constexpr Criterion kPatronInstitutionId[] = {
    {"txtInstitutionID", "&Institution ID:", K::TextBox, F::Text, 20}};

// Pages, in the order of the tabs

constexpr std::string_view kDates[] = {"On one da&y", "B&etween two days"};
constexpr std::string_view kTypesOrBarcode[] = {"&Equipment type", "&Group type", "&Barcode"};
constexpr std::string_view kTypes[] = {"&Equipment type", "&Group type"};
constexpr std::string_view kNumbers[] = {"&Number", "&Barcode"};
constexpr std::string_view kTypeOrNumber[] = {"&Equipment type", "&Number"};

constexpr CriteriaPage kBookingPages[] = {
    {"Date", "fraFindBookingsByDate", kBookingDate, "optDate", kDates},
    {"Confirmation", "fraFindBookingsByConfirmation", kBookingConfirmation},
    {"Location", "fraFindBookingsByLocation", kBookingLocation},
    {"Media", "fraFindBookingsByMedia", kBookingMedia},
    {"Equipment", "fraFindBookingsByEquipment", kBookingEquipment, "optBookingEquipType", kTypesOrBarcode},
    {"Staff", "fraFindBookingsByStaff", kBookingStaff},
    {"Patron Name", "fraFindBookingsByPatronName", kBookingPatronName},
    {"Patron Barcode", "fraFindBookingsByPatronBarcode", kBookingPatronBarcode}};
constexpr CriteriaPage kEquipmentPages[] = {
    {"Type", "fraFindEquipmentByType", kEquipmentType},
    {"Number", "fraFindEquipmentByNumber", kEquipmentNumber, "optEquipNumber", kNumbers},
    {"Manufacturer", "fraFindEquipmentByManufacturer", kEquipmentManufacturer},
    {"Serial Number", "fraFindEquipmentBySerialNo", kEquipmentSerialNo},
    {"Location", "fraFindEquipmentByLocation", kEquipmentLocation},
    {"Model", "fraFindEquipmentByModel", kEquipmentModel},
    {"Status", "fraFindEquipmentByStatus", kEquipmentStatus},
    {"Next Maintenance", "fraFindEquipmentByNextMaintDate", kEquipmentNextMaintDate, "optNextMaintDate", kDates}};
constexpr CriteriaPage kGroupPages[] = {
    {"Type", "fraFindEquipmentGroupsByType", kGroupType},
    {"Number", "fraFindEquipmentGroupsByNumber", kGroupNumber, "optGroupNumber", kNumbers},
    {"Equipment", "fraFindEquipmentGroupsByEquipment", kGroupEquipment},
    {"Location", "fraFindEquipmentGroupsByLocation", kGroupLocation},
    {"Status", "fraFindEquipmentGroupsByStatus", kGroupStatus}};
constexpr CriteriaPage kRoomPages[] = {
    {"Type", "fraFindRoomsByType", kRoomType},
    {"Name", "fraFindRoomsByName", kRoomName},
    {"Number", "fraFindRoomsByNumber", kRoomNumber},
    {"Location", "fraFindRoomsByLocation", kRoomLocation},
    {"Equipment", "fraFindRoomsByEquipment", kRoomEquipment, "optRoomEquipType", kTypes},
    {"Capacity", "fraFindRoomsByCapacity", kRoomCapacity},
    {"Status", "fraFindRoomsByStatus", kRoomStatus},
    {"Available", "fraFindRoomsByAvailableDate", kRoomAvailableDate},
    {"Details", "fraFindRoomsByDetails", kRoomDetails}};
constexpr CriteriaPage kMaintenancePages[] = {
    {"Date", "fraFindMaintenanceByDate", kMaintDate, "optMaintDate", kDates},
    {"Equipment", "fraFindMaintenanceByEquipment", kMaintEquipment, "optMaintEquip", kTypeOrNumber},
    {"Details", "fraFindMaintenanceByDetails", kMaintDetails},
    {"Staff", "fraFindMaintenanceByStaff", kMaintStaff}};
constexpr CriteriaPage kPatronPages[] = {
    {"Name", "fraFindPatronByName", kPatronName},
    {"Barcode", "fraFindPatronByBarcode", kPatronBarcode},
    {"SSN", "fraFindPatronBySSN", kPatronSsn},
    {"Institution ID", "fraFindPatronByInstitutionID", kPatronInstitutionId}};
constexpr int kPatronOrder[] = {1, 0, 2, 3};  // deliberately not the order of the tabs

// Categories

constexpr SearchScope kBookingScopes[] = {{"", 4, 1}};
constexpr SearchScope kEquipmentScopes[] = {{"Inventory", 1, 2},
                                            {"Equipment Groups", 2, 3},
                                            {"Rooms - Non Storage", 3, 4},
                                            {"Rooms - Storage", 6, 4},
                                            {"Bookings", 4, 5}};
constexpr SearchScope kGroupScopes[] = {
    {"Inventory", 1, 6}, {"Rooms - Non Storage", 3, 7}, {"Rooms - Storage", 6, 7}, {"Bookings", 4, 8}};
constexpr SearchScope kRoomScopes[] = {{"Inventory", 1, 9}, {"Bookings", 3, 10}};
constexpr SearchScope kMaintenanceScopes[] = {{"", 0, 11}};
constexpr SearchScope kPatronScopes[] = {{"Patron File", 5, 12}, {"Bookings", 4, 13}};

constexpr SearchCategoryRow kCategories[] = {
    {"Bookings", 1, kBookingScopes, kBookingPages},
    {"Equipment", 2, kEquipmentScopes, kEquipmentPages},
    {"Equipment Groups", 3, kGroupScopes, kGroupPages},
    {"Rooms", 4, kRoomScopes, kRoomPages},
    {"Maintenance", 5, kMaintenanceScopes, kMaintenancePages},
    {"Patrons", 6, kPatronScopes, kPatronPages, kPatronOrder}};

struct WrongValueRow {
  int number;
  std::string_view words;
};
constexpr std::string_view kWrongIds = "Please enter whole numbers with commas between them, 5,000 at most.";
constexpr WrongValueRow kWrongValues[] = {
    {kSearchSpan, "The last date is before the first one."},
    {11, "A confirmation number consists of figures; ? at the end stands for any others."},
    {kSearchTitles, kWrongIds},
    {kSearchHoldings, kWrongIds}};
constexpr std::string_view kNothingInIt = "Please enter at least one letter or figure.";

// clang-format on

}  // namespace

std::span<const SearchCategoryRow> searchCategories() {
  return kCategories;
}

std::string_view wrongValue(int number) {
  const auto* found = std::find_if(std::begin(kWrongValues), std::end(kWrongValues),
                                   [number](const WrongValueRow& row) { return row.number == number; });
  return found == std::end(kWrongValues) ? kNothingInIt : found->words;
}

}  // namespace vantry
