#pragma once

#include <functional>

#include "lists/main_view.h"

namespace vantry {

/// The members of a group, below the list of groups. Its controls have the number of their kind of record.
class MemberPane {
 public:
  MemberPane(const MainParts& parts, Container& parent);

  Frame fraMembers;
  Grid fa;
  Button cmdNewInv, cmdEditInv, cmdDeleteInv;
  Command create, edit, remove, sort;

  /// A member was deleted: its id, and its type by name.
  std::function<void(std::string_view id, std::string_view type)> deleted;

  /// Reads the members of a group and shows them. The pane stays closed when they cannot be read.
  void open(const std::string& group);
  void close() { fraMembers.Visible = false; }
  [[nodiscard]] bool isOpen() const { return fraMembers.Visible; }
  [[nodiscard]] int count() const { return fa.Rows - fa.FixedRows; }

  void BuildInventoryFlexArray();
  void secure(const Rights& rights);
  void fa_Click();
  void fa_MouseDown();
  void fa_DblClick();
  void mnuPopupMemberEdit_Click();
  void mnuPopupMemberDelete_Click();
  void mnuPopupMemberSortAscending_Click() { sortRows(SortOrder::Ascending); }
  void mnuPopupMemberSortDescending_Click() { sortRows(SortOrder::Descending); }

 private:
  void connect();
  void sortRows(SortOrder order);
  void takeStatuses();

  MainParts parts_;
  Ask ask_;
  ReplyList list_;
};

}  // namespace vantry
