#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "lists/main_view.h"

namespace vantry {

/// The views of the main window. Each has one row in the table that drives its class, frame, menu entry, list
/// bar entry, place in the view combo and heading.
enum class ViewId {
  Rooms,
  Equipment,
  Groups,
  Maintenance,
  Charge,
  Discharge,
  QuickDischarge,
  Day,
  Month,
  Year,
  Staff,
  Conflict,
  Delivery,
  Pickup,
  RoomSchedules,
  LibRooms,
  EquipmentList,
  ItemList
};

/// The arrays of frames, of which one frame shows at a time. Each has a group of the list bars.
enum class FrameArray { Main, View, Daemon, Staff };
inline constexpr int kFrameArrays = 4;

/// What an operator needs to see a view: nothing, any right on its subject, or the right to charge or
/// discharge.
enum class ViewNeeds { Nothing, Subject, Charge, Discharge };

/// A view without a number cannot be the first one and is not remembered as the last.
inline constexpr int kNoNumber = -1;

struct ViewRow {
  ViewId id;
  int number;  ///< as preferences and the settings file keep it
  FrameArray array;
  int frame;  ///< index in its array
  Mode mode;
  ViewNeeds needs;
  int kind;  ///< the heading's tag: what the list on the screen is, for reports and commands
  std::optional<Subject> subject;  ///< of an inventory view
  SearchCategory search;           ///< what the search window looks for when it is opened from the view
  MenuItem MainMenus::*menu;
  std::string_view picture;  ///< name of its icon, and of its help page
  std::string_view comboText;
  std::string_view heading;    ///< what precedes the menu entry's caption; with "=" the whole heading
  MenuItem MainMenus::*popup;  ///< of its list, or nullptr
  std::unique_ptr<MainView> (*make)(const MainParts& parts, Frame& frame, const ViewRow& view);
};

/// In the order of the view combo.
[[nodiscard]] std::span<const ViewRow> viewTable();
[[nodiscard]] const ViewRow& viewOf(ViewId id);
/// The row of a view number, or nullptr.
[[nodiscard]] const ViewRow* viewOfNumber(int number);
/// The view that lists this kind of the inventory's records.
[[nodiscard]] const ViewRow& inventoryViewOf(int kind);

[[nodiscard]] bool maySee(const Rights& rights, const ViewRow& view);

/// The kinds that `SetFormSecurity` knows beside the inventory's own indexes.
inline constexpr int kKindEquipment = 0;
inline constexpr int kKindGroups = 1;
inline constexpr int kKindRooms = 2;
inline constexpr int kKindMaintenance = 3;
inline constexpr int kKindBookings = 9;

/// A menu caption as plain text, without its mnemonic.
[[nodiscard]] std::string plainCaption(std::string_view caption);

}  // namespace vantry
