#include "inventory/piece_window.h"

#include "inventory/frmBarcodes.h"
#include "inventory/frmNumbers.h"
#include "inventory/frmStatus.h"
#include "inventory/status_names.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kNone = "(none)";
constexpr const char* kNoType = "0";
constexpr int kLongestNumber = 30;

}  // namespace

PieceWindow::PieceWindow(App& app, const PieceWindowKind& kind, const char* bookingsGrid)
    : InventoryWindow(app, kind.window),
      place(app, ask_, fraDetails, kind.moveRefusal),
      bookings(app, ask_, fraBookings, kEquipmentBookings, bookingsGrid, [this] { return recordId(); }),
      kind_(kind) {
  txtEQUIP_NO.MaxLength = kLongestNumber;
  txtSTS_TYPE.Locked = true;
  txtBARCODE_NO.TakesScans = true;
  cmdEQUIP_NO.AccessibleName = "Assigned numbers";
  place.record = [this] { return PlacedRecord{isCopy() ? "" : recordId(), txtSTS_TYPE.Text}; };
  connect();
}

void PieceWindow::connect() {
  const Event changed = [this] { touch(); };
  cboEQUIP_TYPE.Click = changed;
  txtBARCODE_NO.Change = changed;
  place.Changed = changed;
  on(cmdEQUIP_NO.Click, this, &PieceWindow::cmdEQUIP_NO_Click);
  on(txtBARCODE_NO.DblClick, this, &PieceWindow::txtBARCODE_NO_DblClick);
  on(txtSTS_TYPE.DblClick, this, &PieceWindow::txtSTS_TYPE_DblClick);
  txtEQUIP_NO.KeyDown = [this](std::string_view key) {
    return answersF4(key, !txtEQUIP_NO.Locked, &PieceWindow::cmdEQUIP_NO_Click);
  };
  txtBARCODE_NO.KeyDown = [this](std::string_view key) {
    return answersF4(key, isStored() && maySave(), &PieceWindow::txtBARCODE_NO_DblClick);
  };
  txtSTS_TYPE.KeyDown = [this](std::string_view key) {
    return answersF4(key, isStored() && maySave(), &PieceWindow::txtSTS_TYPE_DblClick);
  };
}

bool PieceWindow::answersF4(std::string_view key, bool mayOpen, void (PieceWindow::*handler)()) {
  if (key != "F4") return false;
  if (mayOpen) (this->*handler)();
  return true;
}

std::vector<RecordField> PieceWindow::sharedFields() {
  std::vector<RecordField> rows{
      {.control = cboEQUIP_TYPE, .required = "Equipment Type", .tip = kind_.typeTip},
      {.control = txtEQUIP_NO, .required = "Number", .tip = kind_.numberTip},
      {.control = txtBARCODE_NO, .tip = "Select the active barcode."},
      {.control = txtSTS_TYPE,
       .tag = tags::STY,
       .use = FieldUse::Shown,
       .required = "Status",
       .tip = kind_.statusTip},
      {.control = place.cboLOC_NAME, .required = "Location", .tip = kind_.locationTip},
      {.control = place.cboROOM_NAME, .required = "Room", .tip = kind_.roomTip},
      {.control = place.txtTEMP_ROOM_NAME, .tip = kind_.currentlyAtTip},
  };
  return rows;
}

// Opening

void PieceWindow::prepare() {
  InventoryWindow::prepare();
  fillTypes();
  place.prepare();
}

void PieceWindow::fillTypes() {
  cboEQUIP_TYPE.Clear();
  cboEQUIP_TYPE.AddItem(std::string(kNone), kNoType);
  for (const Category& category : app_.context.categories.*kind_.categories)
    cboEQUIP_TYPE.AddItem(category.name, category.id);
}

const std::string& PieceWindow::typeId() const {
  return cboEQUIP_TYPE.ItemData(cboEQUIP_TYPE.ListIndex);
}

void PieceWindow::showNew() {
  txtSTS_TYPE.Text = std::string(kNotCharged);
  selectNewType();
  place.showFirst();
}

/// The type that was used last, else the first one.
void PieceWindow::selectNewType() {
  const std::string& last = app_.slots.typeNames[static_cast<std::size_t>(slot())];
  const int found = last.empty() ? -1 : cboEQUIP_TYPE.indexOf(last);
  cboEQUIP_TYPE.ListIndex = found >= 0 ? found : std::min(1, cboEQUIP_TYPE.ListCount() - 1);
}

void PieceWindow::readRecord() {
  oldType_ = app_.slots.typeNames[static_cast<std::size_t>(slot())];
  cboEQUIP_TYPE.ListIndex = std::max(0, cboEQUIP_TYPE.indexOf(oldType_));
  txtBARCODE_NO.Locked = !isCopy();
  // A refused request was reported, and leaves the fields empty.
  if (!ask_(kind_.readCode, {{tags::EID, recordId()}})) return;
  modelNumber = messageValue(tags::ENO);
  if (isCopy()) {
    const std::string name = upper(cboEQUIP_TYPE.Text());
    txtEQUIP_NO.Text = name.substr(0, placeOfCharacter(name, kLongestNumber));
    oldType_.clear();  // the copy is one more of its type
  } else {
    txtEQUIP_NO.Text = modelNumber;
    txtBARCODE_NO.Text = messageValue(tags::BNO);
  }
  showOwn();
  place.showStored();
}

void PieceWindow::recordIsShown() {
  InventoryWindow::recordIsShown();
  place.probe();
}

// Saving

void PieceWindow::copyEnds() {
  bookings.unlock();
  txtSTS_TYPE.Text = std::string(kNotCharged);  // the status of its model is not its own
  if (NotesPanel* notes = notesPanel()) notes->unlock();
}

void PieceWindow::addRecord(bool created) {
  TagMessage& message = app_.message;
  if (created) {
    message.Add(tags::BNO, txtBARCODE_NO.Text.get());
    place.takeRegularRoom();
  }
  message.Add(tags::ETI, typeId());
  message.Add(tags::ETY, cboEQUIP_TYPE.Text());
  message.Add(tags::ENO, txtEQUIP_NO.Text.get());
  addOwnTags();
  place.addTags();
  typeChanged_ = cboEQUIP_TYPE.Text() != oldType_;
  oldType_ = cboEQUIP_TYPE.Text();
  app_.slots.typeNames[static_cast<std::size_t>(slot())] = oldType_;
}

void PieceWindow::takeReply(bool created) {
  const auto valueOf = [this](std::string_view tag) { return messageValue(tag); };
  created ? properties().showCreated(valueOf) : properties().showUpdated(valueOf);
}

void PieceWindow::showAsStored() {
  InventoryWindow::showAsStored();
  txtBARCODE_NO.Locked = true;
  txtSTS_TYPE.Locked = true;
}

void PieceWindow::refreshLists() {
  const bool fromMainWindow = CallerView == kSourceMainWindow || CallerView == kind().nextSource;
  if (!fromMainWindow && !typeChanged_) return;
  refreshTrees(typeChanged_);
  app_.main().refillInventory(kind().window.kind, typeId());
}

// The dialogs

void PieceWindow::showNumbers() {
  ShowAssignedNumbers(app_, static_cast<RecordKind>(kind().window.kind), typeId());
}

void PieceWindow::cmdEQUIP_NO_Click() {
  if (intOf(typeId()) != 0) showNumbers();
}

void PieceWindow::refreshNumbers() {
  RefreshAssignedNumbers(app_, static_cast<RecordKind>(kind().window.kind), typeId());
}

void PieceWindow::txtBARCODE_NO_DblClick() {
  if (isStored()) openBarcode();
}

void PieceWindow::openBarcode() {
  frmBarcodes window(app_, recordId());
  window.ShowModal();
  if (window.barcode == kNone) {
    txtBARCODE_NO.Text = "";
    txtBARCODE_NO.SetFocus();
    return;
  }
  txtBARCODE_NO.Text = upper(window.barcode);
  if (!window.changed) return;
  touch();
  save();
}

void PieceWindow::txtSTS_TYPE_DblClick() {
  frmStatus window(app_, static_cast<RecordKind>(kind().window.kind), isCopy() ? "" : recordId());
  window.ShowModal();
  if (!window.status.empty()) txtSTS_TYPE.Text = window.status;
  place.statusChanged();
  if (window.changed) save();
}

// Rights

void PieceWindow::DisableEditing() {
  InventoryWindow::DisableEditing();
  cboEQUIP_TYPE.Locked = true;
  txtEQUIP_NO.Locked = true;
  disable(cmdEQUIP_NO, txtBARCODE_NO, txtSTS_TYPE);
  place.lock();
}

void PieceWindow::SetFormSecurity() {
  InventoryWindow::SetFormSecurity();
  bookings.secure(app_.context.rights);
}

}  // namespace vantry
