#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "frame/booking_shared.h"
#include "frame/circulation_windows.h"
#include "frame/look_up_slots.h"
#include "frame/main_window.h"
#include "frame/makers.h"
#include "frame/operator_context.h"
#include "frame/preferences.h"
#include "frame/record_opening.h"
#include "frame/reports.h"
#include "messaging/dialogs.h"
#include "messaging/modGlobal.h"
#include "messaging/server_session.h"
#include "messaging/server_tools.h"
#include "messaging/tagmessage.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/inifile.h"
#include "platform/settings.h"
#include "platform/windows.h"

namespace vantry {

class ComponentCheck;

/// The program's two modes.
enum class Mode { None, Standard, Monitor };

/// The group that a new piece joins, for whoever opens the piece from a group.
struct GroupSlots {
  std::string id;
  std::string number;
};

/// The room that a new piece is kept in, for whoever opens the piece from a room: names as the lists show
/// them.
struct RoomSlots {
  std::string location;
  std::string name;
};

/// What the opener tells the window of a record, which reads it in its `Form_Load`.
struct RecordSlots {
  RecordOpening opening;
  std::array<std::string, kRecordKinds> typeNames;
  std::array<std::string, kRecordKinds> typeIds;
  GroupSlots group;
  RoomSlots room;
};

/// What the program shares. One object; windows and modules get it by reference.
class App {
 public:
  /// The outside world, which outlives the program's own objects.
  struct Outside {
    Desktop& desktop;
    Transport& transport;
    const Clock& clock;
    Settings& settings;
    ComponentCheck& components;
    std::filesystem::path programFolder;  ///< of help and help map
    std::filesystem::path userFolder;     ///< of "vantry.ini"
  };

  App(const Outside& outside, std::string commandLine);
  /// Frees the windows first: they refer to what is below.
  ~App() { windows.freeAll(); }

  Desktop& desktop;
  const Clock& clock;
  Settings& settings;
  ComponentCheck& components;
  const std::string commandLine;

  Windows windows;
  TagMessage message;
  ServerSession session;
  ServerTools tools;
  modGlobal global;
  ConnectDialog connectDialog;
  IniFile ini;
  IniFile helpMap;
  BibSearchDialog bibSearch;

  OperatorContext context;
  Preferences preferences;
  DaySlots daySlots;
  int daemonPeriod = 0;  ///< milliseconds between refreshes of the Schedule Monitor; 0 for none
  /// The locations whose bookings the monitor watches, joined by "|", for this session; "0" or empty for all
  /// at which the operator may work.
  std::string monitorLocations;
  Mode mode = Mode::None;
  RecordSlots slots;
  BookingShared booking;
  EquipmentLookUp lookUp;
  Makers makers;
  std::string helpFile;
  std::string supportCaption;

  const std::filesystem::path& programFolder() const { return programFolder_; }
  /// The main window; made by the composition root before the program starts.
  MainWindow& main() const { return *main_; }
  void setMain(MainWindow& main) { main_ = &main; }
  /// The windows of circulation; made by the composition root with the main window.
  CirculationWindows& circulation() const { return *circulation_; }
  void setCirculation(CirculationWindows& dialogs) { circulation_ = &dialogs; }
  /// What prints; made by the composition root.
  Reports& reports() const { return *reports_; }
  void setReports(Reports& reports) { reports_ = &reports; }

 private:
  std::filesystem::path programFolder_;
  MainWindow* main_ = nullptr;
  CirculationWindows* circulation_ = nullptr;
  Reports* reports_ = nullptr;
};

}  // namespace vantry
