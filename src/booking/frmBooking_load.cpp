// How the booking editor reads and shows a booking.
#include "booking/frmBooking.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_media.h"
#include "booking/modBooking_rooms.h"
#include "booking/modBooking_tags.h"
#include "frame/app.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

void frmBooking::prepare() {
  pickupMode_ = opening().pickUp;
  parts.open();
  barBooking.ToolTips = app_.preferences.ToolTips;
  if (pickupMode_) showPickUpMode();
  fillStaff();
}

void frmBooking::recordIsShown() {
  showStatus();
  selectTab(0);
  place.loading = false;
  showSummary();
  focusFirst();
}

void frmBooking::showPickUpMode() {
  times.cmdMultipleBookings.Visible = false;
  requester.hidePickupPatron();
  place.showPickUpOnly();
  setVisible(false, equipment.lblSetupTime, equipment.txtSetupTime, equipment.lblCleanupTime,
             equipment.txtCleanupTime, equipment.cmdSuggestTimes);
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
  parts.startNew();
  allowStored(false);
  discharge.Enabled = false;
  if (pickupMode_) {
    times.startNow();
  } else {
    place.choose(app_.preferences.BookRoomType);
  }
  takeNextRequester();
}

/// The requester of the booking that was saved before this one.
void frmBooking::takeNextRequester() {
  const NextRequester& next = opening().nextRequester;
  if (!app_.preferences.RetainRequester || next.id == 0) return;
  requester.take({next.id, next.name, 0, {}});
  if (record.RoomId != 0) BuildEquipmentTab(parts);  // the first room of the group
}

bool frmBooking::read(std::string_view code) {
  return ask_(code, {{tags::BOOKID, record.BookingId}});
}

bool frmBooking::loadRecord() {
  record.BookingId = intOf(opening().id);
  if (!read("GETMSD")) return false;
  ReadBookingHead(app_.message, record);
  if (opening().copy) takeCopyRequester();
  showHead();
  showTypeAndRooms();
  readPlace();
  readMedia();
  readEquipment();
  readRequiredTypes();
  if (record.RequesterId != 0 && GetPatronPrivileges(app_, record)) times.showExpireDate();
  if (opening().copy) {
    endCopy();
  } else {
    endSaved();
  }
  return true;
}

/// The requester of a copy takes the place of the model's.
void frmBooking::takeCopyRequester() {
  const CopyRequester& fresh = opening().copyRequester;
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
  showFields();
  times.showTimes(record.StartTime, record.EndTime);
}

void frmBooking::showFields() {
  fields_.load([this](std::string_view tag) { return headValue(record, tag); });
}

/// A booking keeps a member who is not active any longer, and one whom another desk has added since; its copy
/// is a new booking.
void frmBooking::selectStaff(ComboBox& combo, const std::string& memberId) {
  const bool isKept = intOf(memberId) != 0 && !opening().copy;
  if (isKept && combo.indexOfData(memberId) < 0) combo.AddItem(app_.context.staffName(memberId), memberId);
  combo.ListIndex = std::max(0, combo.indexOfData(memberId));
}

void frmBooking::showTypeAndRooms() {
  if (const int option = optionOfType(record.BookingTypeId); option >= 0) place.choose(option);
  if (record.isAdministrative()) {
    requester.chkAdminBooking.Value = true;  // which loads the rooms as well
    requester.chkAdminBooking.Enabled = false;
  } else {
    LoadRoomsOfRequester(parts);
  }
}

void frmBooking::readPlace() {
  if (!read("GETSRM")) return place.emptyPlace();
  ReadBookingPlace(app_.message, record);
  place.showPlace(app_.message.Get(tags::RNM), app_.message.Get(tags::RTY));
  if (record.RoomId != 0) BuildEquipmentTab(parts);
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
  for (MediaThing& thing : rows) AddStoredMediaRow(parts, std::move(thing));
  record.ItemCount = media.faMedia.Rows - 1;
  media.enableCommands();
}

void frmBooking::readEquipment() {
  if (!read("GETSEQ")) return;
  while (app_.message.NextRecord(tags::EID)) {
    if (intOf(app_.message.Get(tags::EID)) == 0) {
      AddTypeNode(parts, app_.message.Get(tags::ETI), app_.message.Get(tags::ETY));
    } else {
      AddPieceNode(parts, ReadPiece(app_), kPieceReadTwice);
    }
  }
}

/// What the media types require, and what of it was asked for.
void frmBooking::readRequiredTypes() {
  for (int row = 1; row < media.faMedia.Rows; ++row)
    AddMediaEquipmentTypes(parts, media.list().text(row, kMediaType));
  if (!read("GSCIT")) return;
  while (app_.message.NextRecord(tags::MTID))
    MarkRequiredEquipment(parts, requiredTypeKey(app_.message.Get(tags::MTID), app_.message.Get(tags::ETI)));
}

void frmBooking::endCopy() {
  title_ = copiedBookingTitle(record.ConfirmationNumber);
  record.BookingId = 0;
  record.BookingResult = 0;
  record.ConfirmationNumber.clear();
  txtConfirmationNumber.Text = "";
  allowStored(false);
  discharge.Enabled = false;
}

void frmBooking::endSaved() {
  title_ = savedBookingTitle(record.ConfirmationNumber);
  times.cmdMultipleBookings.Visible = false;
  requester.lockRequester();
  allowStored(true);
  discharge.Enabled = false;
}

}  // namespace vantry
