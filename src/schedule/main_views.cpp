#include "schedule/main_views.h"

#include <algorithm>
#include <stdexcept>

#include "circulation/charge_view.h"
#include "circulation/discharge_view.h"
#include "circulation/quick_discharge_view.h"
#include "inventory/group_view.h"
#include "inventory/maintenance_view.h"
#include "inventory/staff_view.h"
#include "schedule/calendar_view.h"
#include "schedule/day_view.h"
#include "schedule/monitor_view.h"
#include "schedule/pick_list_view.h"

namespace vantry {

using M = MainMenus;
using enum FrameArray;

static constexpr std::string_view kSchedule = " Booking Schedule - ";
static constexpr std::string_view kMonitor = " Schedule Monitor - ";

template <class View>
static std::unique_ptr<MainView> make(const MainParts& parts, Frame& frame, const ViewRow&) {
  return std::make_unique<View>(parts, frame);
}
/// A class that serves several rows.
template <class View>
static std::unique_ptr<MainView> makeOf(const MainParts& parts, Frame& frame, const ViewRow& view) {
  return std::make_unique<View>(parts, frame, view);
}
/// A list of the inventory.
template <class View>
static std::unique_ptr<MainView> makeInventory(const MainParts& parts, Frame& frame, const ViewRow& view) {
  return std::make_unique<View>(parts, frame, view.kind, parts.menus.*view.popup);
}

// clang-format off
static constexpr ViewRow kViews[] = {
    {ViewId::Rooms, 4, Main, 1, Mode::Standard, ViewNeeds::Subject, kKindRooms, Subject::Rooms, kFindRooms, &M::mnuViewInventoryRooms, "room", "Inventory - Rooms", "=Inventory - Rooms", &M::mnuPopupTools, makeInventory<InventoryView>},
    {ViewId::Equipment, 5, Main, 2, Mode::Standard, ViewNeeds::Subject, kKindEquipment, Subject::Equipment, kFindEquipment, &M::mnuViewInventoryEquipment, "equipment", "Inventory - Equipment", "=Inventory - Equipment", &M::mnuPopupTools, makeInventory<InventoryView>},
    {ViewId::Groups, 3, Main, 3, Mode::Standard, ViewNeeds::Subject, kKindGroups, Subject::Equipment, kFindGroups, &M::mnuViewInventoryGroups, "group", "Inventory - Equipment Groups", "=Inventory - Equipment Groups", &M::mnuPopupGroup, makeInventory<GroupView>},
    {ViewId::Maintenance, 6, Main, 4, Mode::Standard, ViewNeeds::Subject, kKindMaintenance, Subject::Maintenance, kFindMaintenance, &M::mnuViewInventoryMaintenance, "maintenance", "Inventory - Equipment Maintenance", "=Inventory - Equipment Maintenance", &M::mnuPopupTools, makeInventory<MaintenanceView>},
    {ViewId::Charge, 13, View, 4, Mode::Standard, ViewNeeds::Charge, 13, {}, kFindBookings, &M::mnuViewScheduleCharge, "charge", "Schedule - Charge", kSchedule, &M::mnuPopupBookings, make<ChargeView>},
    {ViewId::Discharge, 14, View, 5, Mode::Standard, ViewNeeds::Discharge, 14, {}, kFindBookings, &M::mnuViewScheduleDischarge, "discharge", "Schedule - Discharge", kSchedule, &M::mnuPopupBookings, make<DischargeView>},
    {ViewId::QuickDischarge, kNoNumber, View, 6, Mode::Standard, ViewNeeds::Discharge, 15, {}, kFindBookings, &M::mnuViewScheduleQuickDischarge, "quick-discharge", "Schedule - Quick Discharge", kSchedule, nullptr, make<QuickDischargeView>},
    {ViewId::Day, 0, View, 1, Mode::Standard, ViewNeeds::Nothing, kKindBookings, {}, kFindBookings, &M::mnuViewScheduleDay, "day", "Schedule - Day View", kSchedule, &M::mnuPopupBookings, make<DayView>},
    {ViewId::Month, 1, View, 2, Mode::Standard, ViewNeeds::Nothing, 10, {}, kFindBookings, &M::mnuViewScheduleMonth, "month", "Schedule - Month View", kSchedule, nullptr, make<MonthView>},
    {ViewId::Year, 2, View, 3, Mode::Standard, ViewNeeds::Nothing, 11, {}, kFindBookings, &M::mnuViewScheduleYear, "year", "Schedule - Year View", kSchedule, nullptr, make<YearView>},
    {ViewId::Staff, 7, Staff, 1, Mode::Standard, ViewNeeds::Nothing, 12, {}, kFindBookings, &M::mnuViewStaff, "staff", "Staff", "= Staff", nullptr, make<StaffView>},
    {ViewId::Conflict, 8, Daemon, 1, Mode::Monitor, ViewNeeds::Nothing, 16, {}, kFindBookings, &M::mnuViewDaemonConflict, "conflict", "Schedule Monitor - Conflict Resolution and Warning", kMonitor, &M::mnuPopupScheduler, makeOf<ConflictView>},
    {ViewId::Delivery, 9, Daemon, 2, Mode::Monitor, ViewNeeds::Nothing, 17, {}, kFindBookings, &M::mnuViewDaemonDelivery, "delivery", "Schedule Monitor - Delivery and Cleanup Notification", kMonitor, &M::mnuPopupScheduler, makeOf<DeliveryView>},
    {ViewId::Pickup, 10, Daemon, 3, Mode::Monitor, ViewNeeds::Nothing, 18, {}, kFindBookings, &M::mnuViewDaemonPickup, "pickup-slips", "Schedule Monitor - Pickup Slips", kMonitor, &M::mnuPopupScheduler, makeOf<MonitorView>},
    {ViewId::RoomSchedules, 11, Daemon, 4, Mode::Monitor, ViewNeeds::Nothing, 19, {}, kFindBookings, &M::mnuViewDaemonRooms, "room-schedules", "Schedule Monitor - Room Schedules", kMonitor, &M::mnuPopupScheduler, makeOf<RoomScheduleView>},
    {ViewId::LibRooms, 12, Daemon, 5, Mode::Monitor, ViewNeeds::Nothing, 20, {}, kFindBookings, &M::mnuViewDaemonLibRooms, "library-rooms", "Schedule Monitor - Library Media Scheduled Rooms", kMonitor, &M::mnuPopupScheduler, makeOf<LibRoomsView>},
    {ViewId::EquipmentList, kNoNumber, Daemon, 6, Mode::Monitor, ViewNeeds::Nothing, 25, {}, kFindBookings, &M::mnuViewDaemonEquipmentPickUpList, "equipment-list", "Schedule Monitor - Equipment Pick List", kMonitor, &M::mnuPopupScheduler, makeOf<PickListView>},
    {ViewId::ItemList, kNoNumber, Daemon, 7, Mode::Monitor, ViewNeeds::Nothing, 26, {}, kFindBookings, &M::mnuViewDaemonItemPickUpList, "item-list", "Schedule Monitor - Item Pick List", kMonitor, &M::mnuPopupScheduler, makeOf<PickListView>},
};
// clang-format on

std::span<const ViewRow> viewTable() {
  return kViews;
}

const ViewRow& viewOf(ViewId id) {
  return kViews[static_cast<std::size_t>(id)];
}

const ViewRow* viewOfNumber(int number) {
  if (number == kNoNumber) return nullptr;
  const auto found = std::find_if(std::begin(kViews), std::end(kViews),
                                  [&](const ViewRow& v) { return v.number == number; });
  return found == std::end(kViews) ? nullptr : &*found;
}

const ViewRow& inventoryViewOf(int kind) {
  for (const ViewRow& view : kViews) {
    if (view.array == FrameArray::Main && view.kind == kind) return view;
  }
  throw std::logic_error("no list of the inventory");
}

bool maySee(const Rights& rights, const ViewRow& view) {
  switch (view.needs) {
    case ViewNeeds::Nothing:
      return true;
    case ViewNeeds::Subject:
      return mayReach(rights, *view.subject);
    case ViewNeeds::Charge:
      return rights.has(Right::BKCHA);
    case ViewNeeds::Discharge:
      return rights.has(Right::BKDIS);
  }
  throw std::logic_error("a view without a rule");
}

std::string plainCaption(std::string_view caption) {
  std::string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;  // "&&" is one "&"
    text += caption[i];
  }
  return text;
}

}  // namespace vantry
