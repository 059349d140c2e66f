#include "inventory/group_members.h"

#include "frame/secured_commands.h"
#include "inventory/frmGroup.h"
#include "inventory/record_refusals.h"
#include "inventory/status_names.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn kId{"ID", tags::EID, CellKind::Plain, 0};
constexpr ReplyColumn kPiece{"Barcode", {}, CellKind::Piece};

// clang-format off
constexpr ReplyColumn kCandidates[] = {
    kId, kPiece, {"Location", tags::LNA}, {"Room", tags::RNM}, {"Status", tags::STY},
    {"Manufacturer", tags::EMA}, {"Model", tags::EMO}, {"Serial", tags::ESN},
    {"Group Name", tags::GRPNO}, {"Format", tags::EFO}};
constexpr ReplyColumn kMembers[] = {
    kId, kPiece, {"Type", tags::ETY, CellKind::Plain, 1800}, {"Room", tags::RNM}, {"Status", tags::STY},
    {"Manufacturer", tags::EMA}, {"Model", tags::EMO}, {"Serial", tags::ESN}, {"Format", tags::EFO}};

constexpr MembersEntry kEntries[] = {
    {"mnuPopupEquipmentEdit", "Edit", &MembersPage::editPiece},
    {"mnuPopupEquipmentNew", "New", &MembersPage::newPiece},
    {"mnuPopupEquipmentLine1", "-", nullptr},
    {"mnuPopupMembersAdd", "Add to Group", &MembersPage::add},
    {"mnuPopupMembersRemove", "Remove from Group", &MembersPage::remove},
    {"mnuPopupEquipmentLine2", "-", nullptr},
    {"mnuPopupSortAscending", "Sort Ascending", &MembersPage::sortAscending},
    {"mnuPopupSortDescending", "Sort Descending", &MembersPage::sortDescending}};
// clang-format on

const MembersKind kKind{.caption = "Equipment",
                        .tree = "tvwGroup",
                        .add = "cmdAddToGroup",
                        .remove = "cmdRemoveFromGroup",
                        .source = kSourceGroup,
                        .recordTag = tags::EID,
                        .sources = {{{"Grouped Equipment", "GroupTree|Groups", kEquipment, "GETEASC", true,
                                      "GETGRPE", true, kCandidates},
                                     {"Equipment", "GroupTree|Equipment", kEquipment, "GETEAVC", false,
                                      "GETNGRPE", true, kCandidates}}},
                        .members = "GETGEQ",
                        .columns = kMembers,
                        .purpose = "2",
                        .entries = kEntries};

}  // namespace

GroupMembers::GroupMembers(App& app, const Ask& ask, Frame& frame, frmGroup& group)
    : MembersPage(app, ask, frame, kKind, [&group] { return group.recordId(); }), group_(group) {}

void GroupMembers::secure(const Rights& rights) {
  vantry::secure(rights, {{add, Right::EQUPD},
                          {remove, Right::EQUPD},
                          {addByBarcode, Right::EQUPD},
                          {addByNumber, Right::EQUPD},
                          {undo, Right::EQUPD},
                          {newPiece, Right::EQADD}});
  txtBarOrNumber.Enabled = rights.has(Right::EQUPD);
  mnuEntries.front()->Caption = viewOnly(rights, Subject::Equipment) ? "View" : "Edit";
}

// Adding

bool GroupMembers::mayJoin(const MemberThing& thing) const {
  if (group_.txtSTS_TYPE.Text == kNotCharged && thing.status == kNotCharged) return true;
  warningBox(app_.desktop,
             "                   Unable to add equipment. \n\n"
             "Status of equipment/group must be NOT CHARGED.");
  return false;
}

/// The look-up's path reads the group's value under another tag, and only it can be undone.
bool GroupMembers::put(const MemberThing& thing, bool lookedUp) {
  if (!mayJoin(thing)) return false;
  const int rc = ask_.codeOf(
      "NEWGITM", {{tags::EID, thing.id}, {tags::GRPID, recordId()}, {tags::ULI, group_.place.locationId()}});
  if (!joinSucceeded(app_, ask_, rc)) return false;
  group_.takeMembersValue(app_.message.Get(lookedUp ? tags::EQVR : tags::MVL));
  lastAdded_ = lookedUp ? thing.id : "";
  undo.Enabled = lookedUp;
  return true;
}

// Removing

/// The piece is out with code 100 as well, which tells that bookings have lost it.
void GroupMembers::take(const MemberThing& thing) {
  const int rc = ask_.codeOf(
      "REMGITM", {{tags::EID, thing.id}, {tags::GRPID, recordId()}, {tags::ULI, group_.place.locationId()}});
  const bool hadBookings = rc == codes::HeldByBookings;
  if (!hadBookings && !recordSucceeded(ask_, rc, "REMGITM")) return;
  group_.takeMembersValue(app_.message.Get(tags::MVL));
  forgetUndo();
  const bool stays = hadBookings && app_.message.Get(tags::BX) == "Y" && staysInBookings(thing.id);
  const std::string type = stays ? tree.SelectedKey.get() : keyOfType(thing.id);
  readMembers();
  buildTree();
  showType(type);
  membersChanged();
}

void GroupMembers::membersChanged() {
  group_.membersChanged();
}

/// The node under which a piece that has left is listed.
std::string GroupMembers::keyOfType(const std::string& pieceId) {
  if (!ask_("GETEGTN", {{tags::EID, pieceId}})) return tree.SelectedKey;
  return keyOf(kKind.sources.back(), app_.message.Get(tags::ETI));
}

bool GroupMembers::staysInBookings(const std::string& pieceId) {
  if (!questionBox(app_.desktop,
                   "This equipment has future bookings associated with it.  Do you want to keep this "
                   "equipment in those future bookings?"))
    return false;
  // A failure is reported; the piece has left the group all the same.
  static_cast<void>(askForRecord(ask_, "AETGB", {{tags::EID, pieceId}, {tags::GRPID, recordId()}}));
  return true;
}

void GroupMembers::cmdUndo_Click() {
  if (const auto member = memberOf(lastAdded_)) take(*member);
}

void GroupMembers::forgetUndo() {
  lastAdded_.clear();
  disable(undo);
}

// Other windows

void GroupMembers::fillSlots() {
  app_.slots.group = {recordId(), group_.txtEQUIP_NO.Text};
}

}  // namespace vantry
