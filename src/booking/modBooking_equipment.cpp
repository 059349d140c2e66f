#include "booking/modBooking_equipment.h"

#include <cstdlib>

#include "booking/equipment_panel.h"
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

void addByText(const BookingForm& form, BookingRecord& record, LookUp lookUp) {
  App& app = form.app;
  TextBox& text = form.equipment->txtEquipBarcode;
  app.lookUp.text = trim(text.Text.get());
  if (app.lookUp.text.empty()) return;
  app.message.Add(tags::EPT, kForBookings);
  lookUp(app);
  if (!app.lookUp.LookupStatus.empty() || app.lookUp.LookupRows.empty()) return;
  const LookUpRow& row = app.lookUp.LookupRows.front();
  const EquipmentPiece piece{row.EID, PieceNumber(app, row.ENO, row.BNO), row.ETY, row.EIU, row.STY};
  if (!MayUsePiece(app, record, piece.EID, &form)) return;
  if (ConfirmEquipmentLimit(app, record)) return;
  const bool added = AddPieceNode(form, record, piece, kPieceAddedTwice);
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

void AddEquipmentByNumber(const BookingForm& form, BookingRecord& record) {
  addByText(form, record, FindEquipmentByNumber);
}

void AddEquipmentByBarcode(const BookingForm& form, BookingRecord& record) {
  addByText(form, record, FindEquipmentByBarcode);
}

void AddSpecificEquipment(const BookingForm& form, BookingRecord& record) {
  StoreTimes(form);
  frmPickEquip window(form.app, record);
  window.ShowModal();
  if (window.picked.empty() || ConfirmEquipmentLimit(form.app, record)) return;
  for (const EquipmentPiece& piece : window.picked) {
    if (AddPieceNode(form, record, piece, kPieceAddedTwice)) showBookingNote(form.app, piece);
  }
}

void AddEquipmentType(const BookingForm& form, BookingRecord& record, bool& dirty) {
  StoreTimes(form);
  frmAddEquipType window(form.app, record);
  window.ShowModal();
  const std::string& chosen = window.Tag.get();
  if (chosen.empty() || ConfirmEquipmentLimit(form.app, record)) return;
  const auto bar = chosen.find('|');
  if (AddTypeNode(form, record, chosen.substr(0, bar), chosen.substr(bar + 1))) dirty = true;
}

bool AddPieceNode(const BookingForm& form, BookingRecord& record, const EquipmentPiece& piece,
                  std::string_view ifTwice) {
  if (!addPiece(form.tvwOtherEquipment, roots::Specific, piece)) {
    informationBox(form.app.desktop, std::string(ifTwice));
    return false;
  }
  record.EquipmentCount = countEquipment(form);
  return true;
}

bool AddTypeNode(const BookingForm& form, BookingRecord& record, std::string_view eti, std::string_view ety) {
  TreeNode* node = form.tvwEquipment.Add(roots::Types, std::string(eti), std::string(ety));
  if (!node) {
    informationBox(form.app.desktop,
                   "Equipment/Equipment Group type " + std::string(ety) + " already in booking.");
    return false;
  }
  node->parent->expanded = true;
  form.tvwEquipment.changed();
  record.EquipmentCount = countEquipment(form);
  return true;
}

void BuildEquipmentTab(const BookingForm& form, const BookingRecord& record) {
  Tree& tree = form.tvwOtherEquipment;
  const TreeNode* root = tree.find(roots::InRoom);
  while (root && !root->children.empty()) tree.Remove(std::string(root->children.back()->key));
  if (record.RoomId == 0) return;
  App& app = form.app;
  if (!askForBooking(app)("GETREQP", {{tags::RID, record.RoomId}, {tags::BRTY, "1"}})) return;
  // What the operator has added by himself stays where it is.
  while (app.message.NextRecord(tags::EID)) addPiece(tree, roots::InRoom, ReadPiece(app));
}

void SuggestTimes(const BookingForm& form, BookingRecord& record) {
  App& app = form.app;
  app.message.Add(tags::RID, std::to_string(record.RoomId));
  WriteEquipmentTags(app.message, form.tvwOtherEquipment, form.tvwEquipment, EquipmentForm::Full);
  if (!askForBooking(app)("SUG")) return;
  record.SetupMinutes = intOf(app.message.Get(tags::UTIME));
  record.CleanupMinutes = intOf(app.message.Get(tags::CTIME_));
  if (form.equipment) form.equipment->showMinutes();
}

}  // namespace vantry
