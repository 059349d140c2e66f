#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/command.h"
#include "platform/controls.h"
#include "platform/tree.h"

namespace vantry {

/// The page of a piece's maintenance records: years and months, and the records of what is selected.
class MaintenancePage {
 public:
  /// `pieceId` gives the id of the piece.
  MaintenancePage(App& app, const Ask& ask, Frame& frame, std::function<std::string()> pieceId);
  MaintenancePage(const MaintenancePage&) = delete;

  Tree tvwMaint;
  Grid fa;
  Button cmdNewMaint, cmdEditMaint, cmdDeleteMaint;
  MenuItem mnuPopupMaintenance, mnuPopupMaintNew, mnuPopupMaintEdit, mnuPopupMaintDelete;
  MenuItem mnuPopupMaintSort, mnuPopupMaintSortAscending, mnuPopupMaintSortDescending;
  Command newMaint, editMaint, deleteMaint;
  // Hidden: through them a moment becomes a text.
  DateField dtMaintDate;
  TimeField dtMaintTime;

  /// A new record of the piece is wanted.
  Event create;

  /// Reads the years and the records of the current one.
  void BuildMaintenanceTab();
  void tvwMaint_NodeClick();
  void cmdEditMaint_Click();
  void mnuPopupMaintDelete_Click();
  void mnuPopupMaintSortAscending_Click() { sort(SortOrder::Ascending); }
  void mnuPopupMaintSortDescending_Click() { sort(SortOrder::Descending); }

  /// A copy has no maintenance of its own yet.
  void lock();
  void unlock();
  void secure(const Rights& rights);

 private:
  void connect();
  void addYear(const std::string& year);
  /// Adds the records of a month, behind those of the months before.
  void readMonth(const std::string& year, int month);
  void fa_Click();
  void sort(SortOrder order);

  App& app_;
  const Ask& ask_;
  std::function<std::string()> pieceId_;
  ReplyList list_;
  int month_ = 0;  ///< whose records are being read
  bool locked_ = false;
};

}  // namespace vantry
