#include "circulation/frmDischarge.h"

#include "circulation/frmPopupNote.h"
#include "lists/reply_list.h"
#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr std::string_view kAll = "1";
constexpr std::string_view kPart = "0";
constexpr std::string_view kCancelled = "2";

constexpr int kLists = 2;
constexpr const char* kSelectCaptions[kLists] = {"&Select All", "Select A&ll"};
constexpr const char* kDeselectCaptions[kLists] = {"&Deselect All", "D&eselect All"};

}  // namespace

frmDischarge::frmDischarge(App& app)
    : Form(app.windows, "frmDischarge"), app_(app), ask_(app.global, Name()) {
  Caption = "Discharge Booking Media and Equipment";
  for (int index = 0; index < kLists; ++index) {
    list(index).MultiSelect = true;
    cmdSelectAll.add(*this, kSelectCaptions[index]).Enabled = false;
    cmdDeselectAll.add(*this, kDeselectCaptions[index]).Enabled = false;
  }
  dtDischargeDate.AccessibleName = "Discharge Date";
  txtDischargeTime.AccessibleName = "Discharge Time";
  dtTodaysDate.Visible = false;
  txtRightNow.Visible = false;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  chkOverride_Click();
  arrange();
  connect();
}

void frmDischarge::arrange() {
  fraDischargeDateTime.Layout =
      Row{lblDischargeDate, dtDischargeDate, Gap{}, lblDischargeTime, txtDischargeTime, Stretch{}};
  const LayoutNode items = Column{lblItems, lstItems, Row{cmdSelectAll(0), cmdDeselectAll(0), Stretch{}}};
  const LayoutNode equipment =
      Column{lblEquipment, lstEquipment, Row{cmdSelectAll(1), cmdDeselectAll(1), Stretch{}}};
  Layout = Column{Row{items.share(1), Gap{}, equipment.share(1)},
                  Gap{},
                  chkOverride,
                  fraDischargeDateTime,
                  Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmDischarge::connect() {
  for (int index = 0; index < kLists; ++index) {
    on(cmdSelectAll(index).Click, this, &frmDischarge::cmdSelectAll_Click, index);
    on(cmdDeselectAll(index).Click, this, &frmDischarge::cmdDeselectAll_Click, index);
  }
  on(chkOverride.Click, this, &frmDischarge::chkOverride_Click);
  on(dtDischargeDate.Change, this, &frmDischarge::dtDischargeDate_Change);
  on(txtDischargeTime.Change, this, &frmDischarge::txtDischargeTime_Change);
  on(cmdOK.Click, this, &frmDischarge::cmdOK_Click);
  on(cmdCancel.Click, this, &frmDischarge::cmdCancel_Click);
  ScanReceived = [this](std::string_view text) { tick(text); };
}

void frmDischarge::Form_Load() {
  app_.tools.PrepareForm(*this);
  if (ask_.codeOf("BND", {{tags::BOOKID, BookingId}}) == 0) {
    fillLists();
  } else {
    informationBox(app_.desktop,
                   "An error occurred while retrieving the items/equipment still charged for the booking.");
  }
  const DateTime now = app_.clock.now();
  dtTodaysDate.Value = now.date;
  dtDischargeDate.Value = now.date;
  txtDischargeTime.Value = now.time;
}

void frmDischarge::fillLists() {
  const TagMessage& message = app_.message;
  scanNames_.clear();
  while (app_.message.NextRecord(tags::IM)) {
    addScanName(0, message.Get(tags::MEDBAR));
    lstItems.AddItem(message.Get(tags::TITL), message.Get(tags::IM));
  }
  const std::string_view name = pieceTag(app_);
  while (app_.message.NextRecord(tags::EID)) {
    addScanName(1, message.Get(tags::BNO));
    addScanName(1, message.Get(tags::ENO));
    lstEquipment.AddItem(message.Get(tags::ETY) + " - " + message.Get(name), message.Get(tags::EID));
  }
  for (int index = 0; index < kLists; ++index) offer(index);
}

void frmDischarge::offer(int index) {
  if (list(index).ListCount() == 0) return;
  cmdSelectAll(index).Enabled = true;
  cmdDeselectAll(index).Enabled = true;
  if (app_.preferences.DischargeSelect) cmdSelectAll_Click(index);
}

void frmDischarge::selectAll(int index, bool on) {
  for (int line = 0; line < list(index).ListCount(); ++line) list(index).Selected(line, on);
}

/// The name of the line that is added next.
void frmDischarge::addScanName(int index, std::string name) {
  if (!name.empty()) scanNames_.push_back({std::move(name), index, list(index).ListCount()});
}

void frmDischarge::tick(std::string_view scanned) {
  for (const ScanName& row : scanNames_) {
    if (equalNoCase(row.name, trim(scanned))) return list(row.list).Selected(row.line, true);
  }
  warningBox(app_.desktop, "Barcode Not Found!");
}

void frmDischarge::chkOverride_Click() {
  setEnabled(chkOverride.Value, lblDischargeDate, dtDischargeDate, lblDischargeTime, txtDischargeTime);
}

void frmDischarge::dtDischargeDate_Change() {
  if (dtDischargeDate.Value.get() > dtTodaysDate.Value.get()) {
    criticalBox(app_.desktop, "Cannot set discharge date to a future date!");
    dtDischargeDate.Value = dtTodaysDate.Value.get();  // the day on which the dialog opened
    return;
  }
  if (!isToday()) return;
  txtRightNow.Value = app_.clock.now().time;
  // By the texts as they show, in which "09:00 AM" comes behind "01:00 PM": deliberate, other than below.
  if (txtDischargeTime.textAmPm() > txtRightNow.textAmPm()) refuseTime();
}

void frmDischarge::txtDischargeTime_Change() {
  if (!isToday()) return;
  txtRightNow.Value = app_.clock.now().time;
  if (txtDischargeTime.Value.get() > txtRightNow.Value.get()) refuseTime();
}

void frmDischarge::refuseTime() {
  criticalBox(app_.desktop, "Cannot set discharge time to a future time!");
  txtDischargeTime.Value = app_.clock.now().time;
}

void frmDischarge::sayFailure() const {
  informationBox(app_.desktop, "An error occurred while trying to discharge the booking.");
}

/// What stands in the booking's room goes back with it and was not offered.
bool frmDischarge::readRoomPieces(std::vector<std::string>& pieces) {
  if (ask_.codeOf("GIREFD", {{tags::BOOKID, BookingId}}) != 0) return false;
  pieces.reserve(static_cast<std::size_t>(app_.message.Count(tags::EID)));
  while (app_.message.NextRecord(tags::EID)) pieces.push_back(app_.message.Get(tags::EID));
  return true;
}

void frmDischarge::addSelected(const ListBox& lines, std::string_view tag) {
  for (int line = 0; line < lines.ListCount(); ++line) {
    if (lines.Selected(line)) {
      app_.message.Add(tag, lines.ItemData(line));
    } else {
      DischargeStatus = kPart;
    }
  }
}

void frmDischarge::cmdOK_Click() {
  // The server takes a missing moment for now.
  if (!entriesAreGiven(fraDischargeDateTime)) return;
  DischargeStatus = kAll;
  std::vector<std::string> roomPieces;
  if (!readRoomPieces(roomPieces)) return sayFailure();
  app_.message.Add(tags::BOOKID, std::to_string(BookingId));
  addSelected(lstItems, tags::IM);
  addSelected(lstEquipment, tags::EID);
  for (const std::string& piece : roomPieces) app_.message.Add(tags::EID, piece);
  if (chkOverride.Value)
    app_.message.Add(tags::ETIME_, ServerTools::GetControlDate(dtDischargeDate, &txtDischargeTime));
  if (ask_.codeOf("DBK") != 0) return sayFailure();
  ShowReplyNotes(app_, "D", app_.message.Count(tags::RNO), app_.message.Count(tags::ENO));
  informationBox(app_.desktop, "Selected items discharged successfully!");
  Hide();
}

void frmDischarge::cmdCancel_Click() {
  DischargeStatus = kCancelled;
  Hide();
}

std::string DischargeBooking(App& app, const std::string& bookingId) {
  frmDischarge window(app);
  window.BookingId = intOf(bookingId);
  window.ShowModal();
  return window.DischargeStatus;
}

}  // namespace vantry
