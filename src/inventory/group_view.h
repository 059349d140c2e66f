#pragma once

#include "inventory/inventory_view.h"
#include "inventory/member_pane.h"

namespace vantry {

/// The groups of equipment. The members of the selected one are listed in a pane below.
class GroupView : public InventoryView {
 public:
  GroupView(const MainParts& parts, Frame& frame, int kind, MenuItem& popup);

  Button cmdMembers;
  MemberPane members;
  Command showMembers;

  void secure(const Rights& rights) override;
  void BuildInventoryFlexArray() override;
  void mnuPopupGroupMembers_Click() override;
  void cmdMembers_Click() { mnuPopupGroupMembers_Click(); }
  void mnuPopupMemberNew_Click();
  /// The selected group stays selected, and its pane open.
  void refill(std::string_view category) override;

 protected:
  void rowSelected() override;

 private:
  void connect();
  void openMembers();
  void closeMembers();
  /// Counts the members of the selected group as the pane lists them.
  void countMembers();
};

}  // namespace vantry
