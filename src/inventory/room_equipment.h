#pragma once

#include "inventory/members_page.h"

namespace vantry {

class frmRoom;

/// The page of the pieces and groups that are regularly kept in a room. What leaves it is put into another.
class RoomEquipment : public MembersPage {
 public:
  RoomEquipment(App& app, const Ask& ask, Frame& frame, frmRoom& room);
  void secure(const Rights& rights) override;
  void BuildRoomMembers() { readMembers(); }
  void mnuPopupEquipmentMembersAdd_Click() { addSelected(); }
  void mnuPopupEquipmentMembersRemove_Click() { removeSelected(); }
  /// Puts the thing that was added last back where it came from.
  void cmdUndo_Click() override;

 protected:
  [[nodiscard]] bool put(const MemberThing& thing, bool lookedUp) override;
  void take(const MemberThing& thing) override;
  void fillSlots() override;

 private:
  [[nodiscard]] bool mayLeave(const MemberThing& thing);
  [[nodiscard]] bool place(const std::string& id, const std::string& roomId);
  void hasLeft(const std::string& id);

  frmRoom& room_;
  MemberThing lastAdded_;  ///< with the room that it came from
};

}  // namespace vantry
