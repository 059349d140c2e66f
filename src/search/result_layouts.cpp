#include "search/result_layouts.h"

#include <array>

#include "words/tags.h"

namespace vantry {
namespace {

using namespace tags;
using enum CellKind;

constexpr int kWidth = 1500;

/// A column of texts; the key of each layout is hidden.
constexpr ReplyColumn key(std::string_view tag) {
  return {"ID", tag, Plain, 0};
}
constexpr ReplyColumn date(std::string_view heading, std::string_view tag) {
  return {heading, tag, Date, kWidth, SortKind::ShortDate};
}

constexpr ReplyColumn kBookingsColumns[] = {key(BOOKID),
                                            date("Start Date", STIME),
                                            {"Start Time", STIME, Time, kWidth, SortKind::ClockTime},
                                            {"Start Time24", STIME, Time24, 0, SortKind::ClockTime},
                                            date("End Date", ETIME_),
                                            {"End Time", ETIME_, Time, kWidth, SortKind::ClockTime},
                                            {"End Time24", ETIME_, Time24, 0, SortKind::ClockTime},
                                            {"Requester", REQ, Requester},
                                            {"Confirmation #", CNUM},
                                            {"Booking Type", BTYP},
                                            {"Delivery Room/Pickup Location", DPL},
                                            {"Equipment Count", ECNT},
                                            {"Item Count", ICNT}};
constexpr ReplyColumn kEquipmentColumns[] = {key(EID),       {"Number", ENO},   {"Location", LNA},
                                             {"Room", RNM},  {"Status", STY},   {"Manufacturer", EMA},
                                             {"Model", EMO}, {"Serial #", ESN}, {"Group Number", GRPNO},
                                             {"Format", EFO}};
constexpr ReplyColumn kEquipmentInGroups[] = {
    key(EID),        {"Group Name", GRPNA}, {"Number", ENO}, {"Location", LNA}, {"Room", RNM},
    {"Status", STY}, {"Manufacturer", EMA}, {"Model", EMO},  {"Serial #", ESN}, {"Format", EFO}};
constexpr ReplyColumn kEquipmentInRooms[] = {key(EID),          {"Room", RNM},     {"Number", ENO},
                                             {"Location", LNA}, {"Status", STY},   {"Manufacturer", EMA},
                                             {"Model", EMO},    {"Serial #", ESN}, {"Group Name", GRPNA},
                                             {"Format", EFO}};
constexpr ReplyColumn kGroups[] = {key(EID),      {"Number", ENO}, {"Location", LNA},
                                   {"Room", RNM}, {"Status", STY}, {"Notes", MNC}};
constexpr ReplyColumn kGroupsInRooms[] = {key(EID),          {"Room", RNM},   {"Number", ENO},
                                          {"Location", LNA}, {"Status", STY}, {"Notes", MNC}};
constexpr ReplyColumn kRooms[] = {
    key(RID),        {"Number", RNO},   {"Room Name", RNM}, {"Room Location", LNA},
    {"Status", STY}, {"Capacity", RCA}, {"Notes", MNC}};
constexpr ReplyColumn kMaintenanceColumns[] = {
    key(MID), date("Date", MDYI), {"Equipment Type", ETY}, {"Number", ENO}, {"Name", ON}};
constexpr ReplyColumn kPatrons[] = {
    key(PID), {kPatronColumn, PLN, Own}, {"SSN", PSSN}, {"Institution ID", PIID}};
constexpr ReplyColumn kPatronsInBookings[] = {key(PID),
                                              {kPatronColumn, PLN, Own},
                                              {"SSN", PSSN},
                                              {"Institution ID", PIID},
                                              {"Patron Group", PGNM},
                                              {"Barcode", BNO},
                                              {"Barcode Status", BST}};

/// By number, from 1.
constexpr std::array<ResultLayout, 13> kLayouts = {{{{kBookingsColumns, BOOKID, BOOKID}, kBooking},
                                                    {{kEquipmentColumns, ETI, EID}, kEquipment},
                                                    {{kEquipmentInGroups, ETI, EID}, kEquipment},
                                                    {{kEquipmentInRooms, ETI, EID}, kEquipment},
                                                    {{kEquipmentColumns, ETI, EID}, kEquipment},
                                                    {{kGroups, ETI, EID}, kGroup},
                                                    {{kGroupsInRooms, ETI, EID}, kGroup},
                                                    {{kGroups, ETI, EID}, kGroup},
                                                    {{kRooms, RTI, RID}, kRoom},
                                                    {{kRooms, RTI, RID}, kRoom},
                                                    {{kMaintenanceColumns, MSD, MID}, kMaintenance},
                                                    {{kPatrons, PID, PID}},
                                                    {{kPatronsInBookings, PID, PID}}}};

}  // namespace

const ResultLayout& resultLayout(int number) {
  return kLayouts.at(static_cast<std::size_t>(number - 1));
}

}  // namespace vantry
