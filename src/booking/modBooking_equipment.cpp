#include "booking/modBooking_equipment.h"

#include <cstdlib>

#include "booking/booking_parts.h"
#include "booking/frmAddEquipType.h"
#include "booking/frmPickEquip.h"
#include "booking/modBooking_ask.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "platform/text.h"
#include "records/look_up.h"
#include "words/tags.h"

namespace vantry {
namespace {

// What the server needs to know of a look-up and of a note.
constexpr std::string_view kForBookings = "3";     ///< `EPT`
constexpr std::string_view kAboutEquipment = "1";  ///< `PWHI`
constexpr std::string_view kWhenBooked = "1";      ///< `PTYP`

/// Groups have negative keys.
std::string pieceKey(const EquipmentPiece& piece) {
  const int id = std::abs(intOf(piece.EID));
  return std::to_string(piece.isGroup() ? -id : id);
}

TreeNode* addPiece(Tree& tree, std::string_view root, const EquipmentPiece& piece) {
  TreeNode* node = tree.Add(root, pieceKey(piece), piece.number);
  if (!node) return nullptr;
  node->columns = {piece.ETY, piece.isGroup() ? "Yes" : "No", piece.status};
  node->parent->expanded = true;
  tree.changed();
  return node;
}

void showBookingNote(App& app, const EquipmentPiece& piece) {
  if (!askForBooking(app).orWarn(
          "An error occurred while retreiving the booking note for the selected equipment.", "GETPMSG",
          {{tags::PWHI, kAboutEquipment},
           {tags::PTYP, kWhenBooked},
           {tags::PWID, std::abs(intOf(piece.EID))}}))
    return;
  const std::string note = app.message.Get(tags::PMSG);
  if (trim(note).empty()) return;
  app.circulation().showNote("Schedule Popup Note:  " + piece.ETY + " - " + note);
}

using LookUp = void (&)(App&);

void addByText(BookingParts& parts, LookUp lookUp) {
  App& app = parts.app;
  TextBox& text = parts.equipment.txtEquipBarcode;
  app.lookUp.text = trim(text.Text.get());
  if (app.lookUp.text.empty()) return;
  app.message.Add(tags::EPT, kForBookings);
  lookUp(app);
  if (!app.lookUp.LookupStatus.empty() || app.lookUp.LookupRows.empty()) return;
  const LookUpRow& row = app.lookUp.LookupRows.front();
  const EquipmentPiece piece{row.EID, PieceNumber(app, row.ENO, row.BNO), row.ETY, row.EIU, row.STY};
  StoreTimes(parts);
  if (!MayUsePiece(app, parts.record, piece.EID)) return;
  if (ConfirmEquipmentLimit(app, parts.record)) return;
  const bool added = AddPieceNode(parts, piece, kPieceAddedTwice);
  text.Text = "";
  if (added) showBookingNote(app, piece);
}

}  // namespace

std::string PieceNumber(const App& app, std::string_view number, std::string_view barcode) {
  return std::string(app.preferences.Barcodes ? barcode : number);
}

EquipmentPiece ReadPiece(const App& app) {
  const TagMessage& message = app.message;
  return {message.Get(tags::EID), PieceNumber(app, message.Get(tags::ENO), message.Get(tags::BNO)),
          message.Get(tags::ETY), message.Get(tags::EIU), message.Get(tags::ESDS)};
}

void AddEquipmentByNumber(BookingParts& parts) {
  addByText(parts, FindEquipmentByNumber);
}

void AddEquipmentByBarcode(BookingParts& parts) {
  addByText(parts, FindEquipmentByBarcode);
}

void AddSpecificEquipment(BookingParts& parts) {
  StoreTimes(parts);
  frmPickEquip window(parts.app, parts.record);
  window.ShowModal();
  if (window.picked.empty() || ConfirmEquipmentLimit(parts.app, parts.record)) return;
  for (const EquipmentPiece& piece : window.picked) {
    if (AddPieceNode(parts, piece, kPieceAddedTwice)) showBookingNote(parts.app, piece);
  }
}

void AddEquipmentType(BookingParts& parts, bool& dirty) {
  StoreTimes(parts);
  frmAddEquipType window(parts.app, parts.record);
  window.ShowModal();
  const std::string& chosen = window.Tag.get();
  if (chosen.empty() || ConfirmEquipmentLimit(parts.app, parts.record)) return;
  const auto bar = chosen.find('|');
  if (AddTypeNode(parts, chosen.substr(0, bar), chosen.substr(bar + 1))) dirty = true;
}

bool WantEquipmentType(BookingParts& parts, const std::string& eti, const std::string& ety) {
  if (parts.equipment.tvwEquipment.find(eti)) return true;
  StoreTimes(parts);
  if (!MayUseType(parts.app, parts.record, eti) || ConfirmEquipmentLimit(parts.app, parts.record))
    return false;
  return AddTypeNode(parts, eti, ety);
}

bool AddPieceNode(BookingParts& parts, const EquipmentPiece& piece, std::string_view ifTwice) {
  if (!addPiece(parts.equipment.tvwOtherEquipment, roots::Specific, piece)) {
    informationBox(parts.app.desktop, std::string(ifTwice));
    return false;
  }
  parts.record.EquipmentCount = countEquipment(parts);
  return true;
}

bool AddTypeNode(BookingParts& parts, std::string_view eti, std::string_view ety) {
  TreeNode* node = parts.equipment.tvwEquipment.Add(roots::Types, std::string(eti), std::string(ety));
  if (!node) {
    informationBox(parts.app.desktop,
                   "Equipment/Equipment Group type " + std::string(ety) + " already in booking.");
    return false;
  }
  node->parent->expanded = true;
  parts.equipment.tvwEquipment.changed();
  parts.record.EquipmentCount = countEquipment(parts);
  return true;
}

void BuildEquipmentTab(BookingParts& parts) {
  Tree& tree = parts.equipment.tvwOtherEquipment;
  const TreeNode* root = tree.find(roots::InRoom);
  while (root && !root->children.empty()) tree.Remove(std::string(root->children.back()->key));
  parts.equipment.enableCommands();  // the selected node may be gone
  if (parts.record.RoomId == 0) return;
  App& app = parts.app;
  if (!askForBooking(app)("GETREQP", {{tags::RID, parts.record.RoomId}, {tags::BRTY, "1"}})) return;
  // What the operator has added stays.
  while (app.message.NextRecord(tags::EID)) addPiece(tree, roots::InRoom, ReadPiece(app));
}

void SuggestTimes(BookingParts& parts) {
  App& app = parts.app;
  app.message.Add(tags::RID, std::to_string(parts.record.RoomId));
  WriteEquipmentTags(app.message, parts.equipment.tvwOtherEquipment, parts.equipment.tvwEquipment,
                     EquipmentForm::Full);
  if (!askForBooking(app)("SUG")) return;
  parts.record.SetupMinutes = intOf(app.message.Get(tags::UTIME));
  parts.record.CleanupMinutes = intOf(app.message.Get(tags::CTIME_));
  parts.equipment.showMinutes();
}

}  // namespace vantry
