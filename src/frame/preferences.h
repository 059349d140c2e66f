#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/element.h"

namespace vantry {

class App;
class Settings;

/// Where the store keeps the preferences.
inline constexpr std::string_view kSettingsApplication = "CorvaneMedia";
inline constexpr std::string_view kSettingsSection = "Preferences";

/// Places of the colours in their two lists.
enum class ListColour {
  Canceled,
  Complete,
  MultipleBookings,
  SingleBooking,
  Charged,
  View,
  Unclaimed,
  Overdue,
  Suppressed
};
inline constexpr std::size_t kListColours = 9;
inline constexpr std::size_t kSounds = 10;

/// The operator's preferences. Until the store is read they have these values; an empty store gives the
/// table's.
struct Preferences {
  bool ToolTips = true;
  bool MergeCells = false;
  bool AutoSizeCells = true;
  bool BookingCalendars = false;
  bool DisplayCharged = true;
  bool DisplayCompleted = true;
  bool DisplayCanceled = true;
  bool DisplayUnclaimed = true;
  bool DisplayOverdue = true;
  bool Barcodes = true;
  bool SiteNumbers = false;
  int NewBooking = 0;  ///< 0 popup menu, 1 free-form, 2 wizard, 3 pick-up
  bool ScheduleBar = true;
  int BookingsRooms = 0;  ///< 0 popup menu, 1 always find, 2 always suggest
  int BookRoomType = 0;   ///< 0 deliver, 1 scheduled room, 2 pick-up
  bool SuggestEquip = false;
  bool AutoCharge = false;
  bool AutoPrintConf = false;
  bool RetainRequester = false;
  bool Advanced = false;
  bool Historical = false;
  bool AutoTruncate = false;
  bool AutoTruncateBib = false;
  bool RetainSearch = false;
  bool AutoFindNow = false;
  int View = 3;      ///< a view number, or 15 for the last view
  int Position = 0;  ///< of the list bar: 0 left, 1 right, 2 not displayed
  int LastView = 0;
  std::string Background;
  std::array<Colour, kListColours> backColours{};
  std::array<Colour, kListColours> foreColours{};
  bool UseIntervals = true;
  int Start = 6;     ///< hour before noon
  int End = 10;      ///< hour after noon; 12 means midnight
  int Interval = 1;  ///< place among 5, 10, 15, 20, 30, 60 minutes
  bool AutoPrintDelivery = false;
  bool AutoPrintPickUp = false;
  std::string DeliveryHours;
  std::string PickUpHours;
  std::string RoomHours;
  std::string DaemonInterval;
  std::array<std::string, kSounds> sounds;
  int ChargeSearch = 0;
  bool ChargeClear = false;
  bool PrintOnCharge = false;
  int DischargeSearch = 0;
  bool DischargeClear = false;
  bool DischargeSelect = true;

  Colour back(ListColour colour) const { return backColours[static_cast<std::size_t>(colour)]; }
  Colour fore(ListColour colour) const { return foreColours[static_cast<std::size_t>(colour)]; }
};

/// The part of the main window that takes the values of the rows up to this one.
enum class Applies { Nothing, Legend, ListBars, Colours, Searches };

/// One key of the store. Keys are read in the order of the table.
struct PreferenceRow {
  using Slot = std::variant<bool*, int*, Colour*, std::string*>;
  std::string_view key;
  std::string_view fallback;  ///< the text of its value in an empty store
  Slot (*slot)(Preferences&);
  Applies applies = Applies::Nothing;
  int least = 0;  ///< limits of a number, or of a text that holds one; beyond them it cannot be read
  int most = 0;   ///< 0: no limits
};

[[nodiscard]] std::span<const PreferenceRow> preferenceTable();

/// Reads one row from the store. A text that cannot be converted gives the default; false tells of it.
[[nodiscard]] bool readPreference(const PreferenceRow& row, const Settings& store, Preferences& preferences);

/// The text under which a row's value is stored.
[[nodiscard]] std::string storedText(const PreferenceRow& row, const Preferences& preferences);

/// Sets a row's value from its text. A text that cannot be converted changes nothing; false tells of it.
[[nodiscard]] bool setPreference(const PreferenceRow& row, std::string_view text, Preferences& preferences);

/// Stores in one write what differs from what the store had when it was last read, so that another client's
/// changes of other keys outlive it. False when it could not be stored, which the operator has been told.
[[nodiscard]] bool SavePreferences(App& app, const Preferences& preferences);

/// What follows from the times of the preferences: the grid of the day's slots.
struct DaySlots {
  int startMinute = 0;  ///< of the day
  int endMinute = 0;
  int interval = 0;  ///< minutes
  int count = 0;
  int perHour = 0;
  std::vector<std::string> captions;  ///< one per slot
};
[[nodiscard]] DaySlots daySlots(int start, int end, int interval);

/// Milliseconds of a number of minutes; 0 for text that is no number.
[[nodiscard]] int MinutesToMilliseconds(std::string_view minutes);

}  // namespace vantry
