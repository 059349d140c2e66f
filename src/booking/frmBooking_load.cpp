// How the booking editor comes to show a booking.
#include "booking/frmBooking.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_media.h"
#include "booking/modBooking_tags.h"
#include "frame/app.h"
#include "lists/grids.h"
#include "messaging/server_tools.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {

void frmBooking::Form_Load() {
  app_.tools.PrepareForm(*this);
  app_.global.BusyAllForms();
  // The slots speak for this window only.
  const std::string id = app_.slots.ids[kBooking];
  const bool isNew = intOf(id) == 0;
  const bool copy = std::exchange(app_.booking.copyMode, false);
  pickupMode_ = std::exchange(app_.slots.newPickup, false) && isNew;
  CallerView = app_.slots.source;
  loading_ = place.loading = true;
  showToolTips();
  app_.booking.warnings.InitWarningList();
  mnuViewMergeCells.Checked = app_.preferences.MergeCells;
  SetGridMerge(times.faDatesTimes, app_.preferences.MergeCells);
  SetGridMerge(media.faMedia, app_.preferences.MergeCells);
  if (pickupMode_) showPickUpMode();
  fillStaff();
  if (isNew) {
    loadNew();
  } else if (!loadBooking(id, copy)) {
    return;
  }
  SetFormSecurity();
  showStatus();
  selectTab(0);
  loading_ = place.loading = false;
  Dirty = copy;
  showSummary();
  app_.global.ReadyAllForms();
  focusFirst();
}

void frmBooking::showPickUpMode() {
  times.cmdMultipleBookings.Visible = false;
  requester.hidePickupPatron();
  place.showPickUpOnly();
  for (Control* control :
       {static_cast<Control*>(&equipment.lblSetupTime), static_cast<Control*>(&equipment.txtSetupTime),
        static_cast<Control*>(&equipment.lblCleanupTime), static_cast<Control*>(&equipment.txtCleanupTime),
        static_cast<Control*>(&equipment.cmdSuggestTimes)})
    control->Visible = false;
}

void frmBooking::fillStaff() {
  for (ComboBox* combo : {&cboSetupStaff, &cboCleanupStaff}) {
    combo->AddItem("(none)", "0");
    for (const StaffMember& member : app_.context.staff) {
      if (member.active) combo->AddItem(member.name, member.id);
    }
    combo->ListIndex = 0;
  }
}

void frmBooking::loadNew() {
  setTitle(pickupMode_ ? "New Immediate Pick-Up Booking" : "New Booking");
  record.AdminBooking = "N";
  record.WizardCreated = "N";
  times.startToday();
  mnuBooking.Enabled = false;
  setCommand(mnuFileCopyBooking, "abCopy", false);
  setCommand(mnuFileDeleteBooking, "abDelete", false);
  setCommand(mnuFilePrint, "abPrint", false);
  for (const char* tool : {"abCancel", "abCharge", "abDischarge"}) barBooking.tool(tool).Enabled = false;
  if (pickupMode_) {
    times.startNow();
  } else {
    place.choose(app_.preferences.BookRoomType);
  }
  requester.chkAdminBooking.Visible = app_.context.rights.has(Right::OVITM);
  takeNextRequester();
}

/// The requester of the booking that was saved before this one.
void frmBooking::takeNextRequester() {
  if (app_.preferences.RetainRequester && app_.booking.NextRequester.id != 0) {
    requester.cmdRequester_Click();
    if (record.RoomId != 0) BuildEquipmentTab(form_, record);  // his first room
  }
  app_.booking.NextRequester = {};
}

bool frmBooking::read(std::string_view code) {
  return ask_(code, {{tags::BOOKID, record.BookingId}});
}

bool frmBooking::loadBooking(std::string_view id, bool copy) {
  record.BookingId = intOf(id);
  if (!read("GETMSD")) {
    closeNow();
    return false;
  }
  ReadBookingHead(app_.message, record);
  if (copy) takeCopyRequester();
  showHead();
  showTypeAndRooms();
  readPlace();
  readMedia();
  readEquipment();
  readRequiredTypes();
  if (record.RequesterId != 0 && GetPatronPrivileges(app_, record)) times.showExpireDate();
  if (copy) {
    endCopy();
  } else {
    endSaved();
  }
  return true;
}

/// The requester of a copy takes the place of the model's.
void frmBooking::takeCopyRequester() {
  const CopyRequester fresh = std::exchange(app_.booking.copyRequester, {});
  if (fresh.PatronId == 0) return;
  const bool administrative = fresh.PatronId == kCopyAdministrative;
  record.AdminBooking = administrative ? "Y" : "N";
  record.RequesterId = administrative ? 0 : fresh.PatronId;
  record.RequesterName = fresh.PatronName;
  record.PatronGroupId = fresh.PatronGroupId;
  record.PatronGroupName = fresh.PatronGroupName;
  record.ExpireDate = fresh.ExpireDate;
}

void frmBooking::showHead() {
  requester.showBooking();
  times.showExpireDate();
  equipment.showMinutes();
  txtConfirmationNumber.Text = record.ConfirmationNumber;
  txtBookingNote.Text = record.Note;
  showProperties();
  times.showTimes(record.StartTime, record.EndTime);
  selectStaff(cboSetupStaff, record.SetupStaffId);
  selectStaff(cboCleanupStaff, record.CleanupStaffId);
}

/// A booking keeps a member who is not active any longer.
void frmBooking::selectStaff(ComboBox& combo, int memberId) {
  const std::string id = std::to_string(memberId);
  for (const StaffMember& member : app_.context.staff) {
    if (member.id == id && combo.indexOfData(id) < 0) combo.AddItem(member.name, id);
  }
  combo.ListIndex = std::max(0, combo.indexOfData(id));
}

void frmBooking::showProperties() {
  txtCreateOperator.Text = record.CreateOperator;
  txtCreateLocation.Text = record.CreateLocation;
  txtUpdateOperator.Text = record.UpdateOperator;
  txtUpdateLocation.Text = record.UpdateLocation;
  ServerTools::PutControlDate(record.CreateDate, fpdCreateDate);
  ServerTools::PutControlDate(record.LastUpdate, fpdUpdateDate);
}

void frmBooking::showTypeAndRooms() {
  if (const int option = optionOfType(record.BookingTypeId); option >= 0) place.choose(option);
  if (record.isAdministrative()) {
    requester.chkAdminBooking.Value = true;  // which loads the rooms as well
    requester.chkAdminBooking.Enabled = false;
  } else {
    loadRooms();
  }
}

void frmBooking::readPlace() {
  if (!read("GETSRM")) return place.emptyPlace();
  ReadBookingPlace(app_.message, record);
  place.showPlace(app_.message.Get(tags::RNM), app_.message.Get(tags::RTY));
  if (record.RoomId != 0) BuildEquipmentTab(form_, record);
}

void frmBooking::readMedia() {
  if (!read("GETSITM")) return;
  std::vector<MediaThing> rows;
  while (app_.message.NextRecord(tags::MTID)) {
    MediaThing& thing = rows.emplace_back();
    thing.BI = app_.message.Get(tags::BI);
    thing.MI = app_.message.Get(tags::MI);
    thing.IM = app_.message.Get(tags::IM);
    thing.title = app_.message.Get(tags::TITL);
    thing.type = {app_.message.Get(tags::MTID), app_.message.Get(tags::MTY)};
  }
  for (MediaThing& thing : rows) AddStoredMediaRow(form_, std::move(thing));
  record.ItemCount = media.faMedia.Rows - 1;
  media.enableCommands();
}

void frmBooking::readEquipment() {
  if (!read("GETSEQ")) return;
  while (app_.message.NextRecord(tags::EID)) {
    if (intOf(app_.message.Get(tags::EID)) == 0) {
      AddTypeNode(form_, record, app_.message.Get(tags::ETI), app_.message.Get(tags::ETY));
    } else {
      AddPieceNode(form_, record, ReadPiece(app_), kPieceReadTwice);
    }
  }
}

/// What the media types require, and what of it was asked for.
void frmBooking::readRequiredTypes() {
  const int typeColumn = media.faMedia.columnOfData(kMediaType);
  for (int row = 1; row < media.faMedia.Rows; ++row)
    AddMediaEquipmentTypes(form_, media.faMedia.TextMatrix(row, typeColumn), record);
  if (!read("GSCIT")) return;
  while (app_.message.NextRecord(tags::MTID))
    MarkRequiredEquipment(form_, requiredTypeKey(app_.message.Get(tags::MTID), app_.message.Get(tags::ETI)),
                          record);
}

void frmBooking::endCopy() {
  title_ = copiedBookingTitle(record.ConfirmationNumber);
  record.BookingId = 0;
  record.BookingResult = 0;
  record.ConfirmationNumber.clear();
  txtConfirmationNumber.Text = "";
  mnuBooking.Enabled = false;
  setCommand(mnuFileCopyBooking, "abCopy", false);
  setCommand(mnuFileDeleteBooking, "abDelete", false);
  setCommand(mnuFilePrint, "abPrint", false);
  for (const char* tool : {"abCharge", "abDischarge", "abCancel"}) barBooking.tool(tool).Enabled = false;
  // For whom it is was settled before the copy opened, within the model's patron group.
  if (record.RequesterId != 0 || record.isAdministrative()) requester.lockRequester();
}

void frmBooking::endSaved() {
  title_ = savedBookingTitle(record.ConfirmationNumber);
  times.cmdMultipleBookings.Visible = false;
  requester.lockRequester();
  allowSavedCommands();
  setCommand(mnuBookingDischarge, "abDischarge", false);
}

}  // namespace vantry
