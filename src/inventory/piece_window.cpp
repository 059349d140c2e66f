#include "inventory/piece_window.h"

#include "inventory/frmBarcodes.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr std::string_view kNone = "(none)";

PieceWindow::PieceWindow(App& app, const PieceWindowKind& kind)
    : TypedWindow(app, kind.typed, {cboEQUIP_TYPE, txtEQUIP_NO, cmdEQUIP_NO, txtSTS_TYPE}),
      place(app, ask_, fraDetails, kind.moveRefusal),
      kind_(kind) {
  txtBARCODE_NO.TakesScans = true;
  place.record = [this] { return PlacedRecord{isCopy() ? "" : recordId(), txtSTS_TYPE.Text}; };
  connectControls();
  connect();
}

void PieceWindow::connect() {
  const Event changed = [this] { touch(); };
  txtBARCODE_NO.Change = changed;
  place.Changed = changed;
  on(txtBARCODE_NO.DblClick, this, &PieceWindow::txtBARCODE_NO_DblClick);
  answerF4(
      txtBARCODE_NO, [this] { return mayOpenDialogs(); }, [this] { txtBARCODE_NO_DblClick(); });
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
  TypedWindow::prepare();
  place.prepare();
}

void PieceWindow::showNew() {
  TypedWindow::showNew();
  if (CallerView == kSourceRoom)
    place.showNamed(app_.slots.room.location, app_.slots.room.name);
  else
    place.showFirst();
}

void PieceWindow::readRecord() {
  txtBARCODE_NO.Locked = !isCopy();
  TypedWindow::readRecord();
}

void PieceWindow::showRecord() {
  if (!isCopy()) txtBARCODE_NO.Text = messageValue(tags::BNO);
  showOwn();
  place.showStored();
}

void PieceWindow::recordIsShown() {
  TypedWindow::recordIsShown();
  place.probe();
}

// Saving

void PieceWindow::addRecord(bool created) {
  if (created) {
    showQuietly([this] { txtBARCODE_NO.Text = std::string(trim(txtBARCODE_NO.Text.get())); });
    app_.message.Add(tags::BNO, txtBARCODE_NO.Text.get());
    place.takeRegularRoom();
  }
  TypedWindow::addRecord(created);
}

void PieceWindow::addOwnTags() {
  addValues();
  place.addTags();
}

void PieceWindow::showAsStored() {
  TypedWindow::showAsStored();
  txtBARCODE_NO.Locked = true;
}

// The barcode

void PieceWindow::txtBARCODE_NO_DblClick() {
  if (isStored()) openBarcode();
}

void PieceWindow::openBarcode() {
  frmBarcodes window(app_, recordId());
  window.ShowModal();
  const bool none = window.barcode == kNone;
  showQuietly([&] { txtBARCODE_NO.Text = none ? "" : upper(window.barcode); });
  if (none) return txtBARCODE_NO.SetFocus();
  if (!window.changed) return;
  touch();
  save();
}

// Rights

void PieceWindow::DisableEditing() {
  TypedWindow::DisableEditing();
  txtBARCODE_NO.Enabled = false;
  place.lock();
}

}  // namespace vantry
