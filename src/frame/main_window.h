#pragma once

#include <string_view>

#include "platform/element.h"

namespace vantry {

class Form;
struct Preferences;
enum class Applies;

/// The kind of `SetFormSecurity` that means the whole bar: list bars, menus and tools.
inline constexpr int kKindWholeBar = 5;

/// What modules below the main window need of it.
class MainWindow {
 public:
  virtual ~MainWindow() = default;

  virtual Form& form() = 0;
  /// Ends the program's session: unloads the main window, which ends the program.
  virtual void Abort() = 0;

  // Start-up and login.
  virtual void placeFrames() = 0;
  /// The panel for where a report was printed to: a report is often followed by a list whose progress fills
  /// the second one.
  static constexpr int kPrintingPanel = 6;
  virtual void showStatus(int panel, std::string_view text) = 0;
  virtual void showOperator(std::string_view operatorId) = 0;
  virtual void mnuModeStandard_Click() = 0;
  virtual void mnuModeDaemon_Click() = 0;
  /// Starts or stops the clock of the Schedule Monitor's refreshes.
  virtual void StartStopTimer(bool start) = 0;
  /// Disables or removes what the operator's rights forbid in menus, bars and commands of this kind of list.
  virtual void SetFormSecurity(int kind) = 0;
  virtual void refillStaff() = 0;
  /// Shows the category lists in the trees of the inventory views.
  virtual void BuildMainTrees() = 0;
  /// Reads the list of an inventory view anew, after a record of this category was stored: the id of its
  /// type, or the first day of its month. Nothing happens where another view or another category shows.
  virtual void refillInventory(int kind, std::string_view category) = 0;
  /// Takes the selected row out of an inventory view's list, after a record window has deleted its record,
  /// and lowers the count of the record's category. The ids are not compared, on purpose.
  virtual void dropInventoryRow(int kind, std::string_view category) = 0;
  /// Closes the pane of a group's members, or opens it; done twice, it reads the members anew.
  virtual void mnuPopupGroupMembers_Click() = 0;
  /// Puts the preferences that one step of their reading has completed into the window's controls.
  virtual void applyPreferences(Applies what) = 0;

  /// Reads the day's bookings anew, after one was changed elsewhere.
  virtual void GetBookingsForDate() = 0;
};

}  // namespace vantry
