#pragma once

#include "inventory/members_page.h"

namespace vantry {

class frmGroup;

/// The page of a group's pieces. A piece joins or leaves only while both are back.
class GroupMembers : public MembersPage {
 public:
  GroupMembers(App& app, const Ask& ask, Frame& frame, frmGroup& group);
  void secure(const Rights& rights) override;
  void BuildGroupMembers() { readMembers(); }
  void BuildInGroupEquipmentTree() { buildTree(); }
  void mnuPopupMembersAdd_Click() { addSelected(); }
  void mnuPopupMembersRemove_Click() { removeSelected(); }
  /// Takes the piece that was looked up last out again.
  void cmdUndo_Click() override;

 protected:
  [[nodiscard]] bool put(const MemberThing& thing, bool lookedUp) override;
  void take(const MemberThing& thing) override;
  void membersChanged() override;
  void fillSlots() override;

 private:
  [[nodiscard]] bool mayJoin(const MemberThing& thing) const;
  /// Asks whether a piece that has left stays in the bookings that held it.
  [[nodiscard]] bool staysInBookings(const std::string& pieceId);
  [[nodiscard]] std::string keyOfType(const std::string& pieceId);
  void forgetUndo();

  frmGroup& group_;
  std::string lastAdded_;  ///< the piece that `cmdUndo` takes out
};

}  // namespace vantry
