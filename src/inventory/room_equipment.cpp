#include "inventory/room_equipment.h"

#include "frame/secured_commands.h"
#include "inventory/frmRoom.h"
#include "inventory/frmRoomEquip.h"
#include "inventory/modRoom.h"
#include "inventory/pending_move.h"
#include "inventory/record_refusals.h"
#include "inventory/status_names.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn kId{"ID", tags::EID, CellKind::Plain, 0};
constexpr ReplyColumn kPiece{"Barcode", {}, CellKind::Piece};

// clang-format off
constexpr ReplyColumn kPieces[] = {
    kId, {"Group?", tags::EIU, CellKind::Plain, 0}, {"RoomId", tags::RID, CellKind::Plain, 0}, kPiece,
    {"Location", tags::LNA}, {"Room", tags::RNM}, {"Manufacturer", tags::EMA}, {"Model", tags::EMO},
    {"Status", tags::STY}, {"Format", tags::EFO}};
constexpr ReplyColumn kGroups[] = {
    kId, {"Group?", tags::EIU, CellKind::Plain, 0}, {"RoomId", tags::RID, CellKind::Plain, 0}, kPiece,
    {"Location", tags::LNA}, {"Room", tags::RNM}, {"Status", tags::STY}};
constexpr ReplyColumn kMembers[] = {
    kId, kPiece, {"Type", tags::ETY, CellKind::Plain, 2200},
    {.heading = "Group?", .tag = tags::EIU, .width = 900, .align = Align::Center}, {"Status", tags::ESDS}};

constexpr MembersEntry kEntries[] = {
    {"mnuPopupEquipmentNewEquipment", "New Equipment", &MembersPage::newPiece},
    {"mnuPopupEquipmentNewGroup", "New Group", &MembersPage::newGroup},
    {"mnuPopupEquipmentEditEquipment", "Edit Equipment", &MembersPage::editPiece},
    {"mnuPopupEquipmentEditGroup", "Edit Group", &MembersPage::editGroup},
    {"mnuPopupEquipmentLine1", "-", nullptr},
    {"mnuPopupEquipmentMembersAdd", "Add to Room", &MembersPage::add},
    {"mnuPopupEquipmentMembersRemove", "Remove from Room", &MembersPage::remove},
    {"mnuPopupEquipmentLine2", "-", nullptr},
    {"mnuPopupEquipmentSortAscending", "Sort Ascending", &MembersPage::sortAscending},
    {"mnuPopupEquipmentSortDescending", "Sort Descending", &MembersPage::sortDescending}};
// clang-format on

const MembersKind kKind{
    .caption = "Equipment / Groups",
    .tree = "tvwRoom",
    .add = "cmdAddToRoom",
    .remove = "cmdRemoveFromRoom",
    .source = kSourceRoom,
    .recordTag = tags::RID,
    .sources = {{{"Groups", "RoomTree|Groups", kGroup, "GETGCAT", true, "GETGITM", false, kGroups},
                 {"Equipment", "RoomTree|Equipment", kEquipment, "GETEAVC", true, "GETNGRPE", true,
                  kPieces}}},
    .members = "GETREQP",
    .columns = kMembers,
    .purpose = "3",
    .entries = kEntries};

}  // namespace

RoomEquipment::RoomEquipment(App& app, const Ask& ask, Frame& frame, frmRoom& room)
    : MembersPage(app, ask, frame, kKind, [&room] { return room.recordId(); }), room_(room) {}

/// Who may only look at rooms does nothing here.
void RoomEquipment::secure(const Rights& rights) {
  vantry::secure(rights, {{add, Right::RMUPD},
                          {remove, Right::RMUPD},
                          {addByBarcode, Right::RMUPD},
                          {addByNumber, Right::RMUPD},
                          {undo, Right::RMUPD},
                          {newPiece, Right::EQADD},
                          {newGroup, Right::EQADD}});
  txtBarOrNumber.Enabled = rights.has(Right::RMUPD);
  const bool opens = !viewOnly(rights, Subject::Rooms) && mayReach(rights, Subject::Equipment);
  editPiece.Allowed = opens;
  editGroup.Allowed = opens;
}

// Moving

bool RoomEquipment::place(const std::string& id, const std::string& roomId) {
  return askForRecord(ask_, "ADDREQP",
                      {{tags::EID, id}, {tags::RID, roomId}, {tags::ULI, app_.context.locationId}});
}

bool RoomEquipment::put(const MemberThing& thing, bool) {
  if (!place(thing.id, recordId())) return false;
  lastAdded_ = thing;
  // What was here already has no other room to go back to, nor has what was in none.
  undo.Enabled = intOf(thing.roomId) != 0 && thing.roomId != recordId();
  return true;
}

/// Sent with the room where the thing is, the request only asks whether a pending booking holds it.
bool RoomEquipment::mayLeave(const MemberThing& thing) {
  const int rc = ask_.codeOf("ADDREQP", {{tags::EID, thing.id}, {tags::RID, recordId()}});
  if (rc != codes::PendingBooking) return recordSucceeded(ask_, rc, "ADDREQP");
  if (thing.status == kCharged) {
    disable(remove);
    return false;
  }
  const bool asks = thing.status == kNotCharged && app_.context.rights.has(Right::EBM);
  return !asks || ReleaseFromBookings(app_, ask_, thing.id, kMoveRefusal);
}

void RoomEquipment::take(const MemberThing& thing) {
  if (!mayLeave(thing)) return;
  frmRoomEquip window(app_, thing.id);
  window.ShowModal();
  if (window.moved) hasLeft(thing.id);
}

void RoomEquipment::cmdUndo_Click() {
  const auto member = memberOf(lastAdded_.id);
  if (!member || !mayLeave(*member) || !place(member->id, lastAdded_.roomId)) return;
  hasLeft(member->id);
}

/// The room is stored with each thing that leaves it, so that it shows who changed it.
void RoomEquipment::hasLeft(const std::string& id) {
  dropRow(members_, id);
  DisableButtons();
  buildTree();
  tree_NodeClick();
  lastAdded_ = {};
  disable(undo);
  room_.mnuFileSave_Click();
}

// Other windows

void RoomEquipment::fillSlots() {
  app_.slots.room = {room_.cboLOC_NAME.Text(), RoomEntry(room_.txtROOM_NO.Text, room_.txtROOM_NAME.Text)};
}

}  // namespace vantry
