#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace vantry {

class App;
class Form;

/// Kinds of the record opener. 5 and 6 have no window.
enum RecordKind {
  kEquipment = 0,
  kGroup = 1,
  kRoom = 2,
  kMaintenance = 3,
  kGroupMember = 4,
  kBooking = 7,
  kWizard = 8
};
inline constexpr int kRecordKinds = 21;

/// What the search window looks for, by its own numbers.
enum SearchCategory {
  kFindBookings,
  kFindEquipment,
  kFindGroups,
  kFindRooms,
  kFindMaintenance,
  kFindPatrons
};

/// Makes the windows and runs the commands that belong to a higher floor than their callers. The program's
/// composition root fills it.
class Makers {
 public:
  using RecordMaker = std::function<std::unique_ptr<Form>(App&)>;
  using Command = std::function<void(App&)>;
  using Search = std::function<void(App&, SearchCategory)>;
  using WindowMaker = std::function<std::unique_ptr<Form>(App&)>;

  /// Called with the name of a window or command that this program does not have.
  std::function<void(std::string_view)> notBuilt;

  void addRecord(int kind, RecordMaker maker) {
    records_.at(static_cast<std::size_t>(kind)) = std::move(maker);
  }
  void addCommand(std::string name, Command command) { commands_[std::move(name)] = std::move(command); }
  void setSearch(Search search) { search_ = std::move(search); }
  void addWindow(std::string name, WindowMaker maker) { windows_[std::move(name)] = std::move(maker); }

  /// A new window for a record of the kind; nullptr for a kind without one.
  [[nodiscard]] std::unique_ptr<Form> makeRecord(int kind, App& app) const;
  /// A new window of this name, for a caller that asks it and reads its answer; nullptr where there is none.
  [[nodiscard]] std::unique_ptr<Form> makeWindow(std::string_view name, App& app) const;
  /// Runs the command of a window's or routine's name.
  void run(std::string_view name, App& app) const;
  /// Opens the search window on what is sought.
  void search(App& app, SearchCategory category) const;

 private:
  std::array<RecordMaker, kRecordKinds> records_;
  std::map<std::string, Command, std::less<>> commands_;
  Search search_;
  std::map<std::string, WindowMaker, std::less<>> windows_;
};

}  // namespace vantry
