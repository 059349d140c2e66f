#include "inventory/frmMaintenance.h"

#include <algorithm>

#include "frame/app.h"
#include "inventory/frmBarcodes.h"
#include "inventory/month_names.h"
#include "inventory/record_refusals.h"
#include "inventory/status_names.h"
#include "lists/grids.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static const InventoryWindowKind kKind{
    .window = {kMaintenance,
               "frmMaintenance",
               "maintenance",
               "maintenance",
               Subject::Maintenance,
               {"Changes will be lost!  Do you wish to SAVE this record before exiting?", Box::Kind::Warning,
                false}},
    .caption = "Maintenance",
    .read = "GETMDTL",
    .create = "NEWEMAINTD",
    .update = "UPDEMAINTD",
    .idTag = tags::MID,
    .refusalEndsSave = false,
    .nextSource = kSourceNextMaintenance,
    .search = kFindMaintenance,
    .tabStrip = "tabMaintenance",
    .tabStripOfNew = nullptr,
    .pages = {{"Details", "mnuViewDetails", "&Details"},
              {"Properties", "mnuViewProperties", "&Properties", "record-properties"}}};

static constexpr std::string_view kNoBarcode = "(none)";

frmMaintenance::frmMaintenance(App& app) : InventoryWindow(app, kKind), fields_(fieldTable()) {
  txtMEDIA_NOTE.MultiLine = true;
  txtMAINTENANCE_NOTE.MultiLine = true;
  placePages({{"Details", fraDetails}, {"Properties", fraProperties}});
  connect();
  arrange();
}

std::vector<RecordField> frmMaintenance::fieldTable() {
  std::vector<RecordField> rows{{txtEQUIP_TYPE, tags::ETY, FieldUse::Shown},
                                {txtEQUIP_NO, tags::ENO, FieldUse::Shown},
                                {txtMEDIA_NOTE, tags::MNO},
                                {dtMAINT_DATEIN, tags::MDI},
                                {dtMAINT_DATEOUT, tags::MDO},
                                {dtEQUIP_NXT_MAINT, tags::ENM}};
  propertyFields.addFields(rows);
  rows.push_back({txtMAINTENANCE_NOTE, tags::MNT, FieldUse::Shown});
  return rows;
}

void frmMaintenance::connect() {
  const Event changed = [this] { touch(); };
  fields_.tellChanges(changed);
  chkIN_MAINT.Click = changed;
  txtBARCODE_NO.Change = changed;
  details.Changed = changed;
  const auto ruled = [this](DateField& field, void (frmMaintenance::*rule)()) {
    field.Change = [own = field.Change, rule, this] {
      raise(own);
      (this->*rule)();
    };
    on(field.LostFocus, this, rule);
  };
  ruled(dtMAINT_DATEIN, &frmMaintenance::dtMAINT_DATEIN_Change);
  ruled(dtMAINT_DATEOUT, &frmMaintenance::dtMAINT_DATEOUT_Change);
  ruled(dtEQUIP_NXT_MAINT, &frmMaintenance::dtEQUIP_NXT_MAINT_Change);
  on(commands.print.Run, this, &frmMaintenance::mnuFilePrint_Click);
  on(txtBARCODE_NO.DblClick, this, &frmMaintenance::txtBARCODE_NO_DblClick);
  txtBARCODE_NO.KeyDown = [this](std::string_view key) {
    if (key != "F4") return false;
    txtBARCODE_NO_DblClick();
    return true;
  };
}

void frmMaintenance::arrange() {
  fraDetails.Layout = Column{
      Row{Fields{lblEQUIP_TYPE, txtEQUIP_TYPE, lblEQUIP_NO, txtEQUIP_NO, lblBARCODE_NO, txtBARCODE_NO}.share(
              1),
          Gap{},
          Fields{lblMAINT_DATEIN, dtMAINT_DATEIN, lblMAINT_DATEOUT, dtMAINT_DATEOUT, lblEQUIP_NXT_MAINT,
                 dtEQUIP_NXT_MAINT}
              .share(1)},
      chkIN_MAINT, lblMEDIA_NOTE, LayoutNode(txtMEDIA_NOTE).share(1), details.layout().share(2)};
  fraProperties.Layout = Column{propertyFields.layout(), lblMAINTENANCE_NOTE, txtMAINTENANCE_NOTE};
  Layout = pagesLayout();
}

void frmMaintenance::merge(bool on) {
  mnuViewMergeCells.Checked = on;
  SetGridMerge(details.fa, on);
}

// Opening

/// The piece is the one that was looked up, or the one whose window asks.
void frmMaintenance::showNew() {
  const auto& found = app_.lookUp.LookupRows;
  const LookUpRow piece = found.empty() ? LookUpRow{} : found.front();
  pieceId_ = piece.EID;
  txtEQUIP_NO.Text = piece.ENO;
  txtBARCODE_NO.Text = piece.BNO;
  txtEQUIP_TYPE.Text = piece.ETY;
  if (CallerView != kSourceEquipment) dtMAINT_DATEIN.Value = today();
  BuildStatusTypes();
}

void frmMaintenance::readRecord() {
  txtBARCODE_NO.Locked = !isCopy();
  // A refused request was reported, and leaves the fields empty.
  if (!askForStored()) return;
  const TagMessage& message = app_.message;
  pieceId_ = message.Get(tags::EID);
  modelNumber = message.Get(tags::ENO);
  txtBARCODE_NO.Text = message.Get(tags::BNO);
  fields_.load([this](std::string_view tag) { return app_.message.Get(tag); });
  if (isCopy()) propertyFields.clear();
  if (isCopy()) txtMAINTENANCE_NOTE.Text = "";
  chkIN_MAINT.Value = message.Get(tags::STY) == kInMaintenance;
  details.fill();
  listedIn_ = isCopy() ? std::string() : category();
  BuildStatusTypes();
}

/// Finds the id of the status that the box sets.
void frmMaintenance::BuildStatusTypes() {
  if (!ask_("GETEGSTY")) return;
  while (app_.message.NextRecord(tags::SID)) {
    if (app_.message.Get(tags::STY) != kInMaintenance) continue;
    chkIN_MAINT.Tag = app_.message.Get(tags::SID);
    return;
  }
}

std::string frmMaintenance::category() const {
  const auto& day = dtMAINT_DATEIN.Value.get();
  return day ? monthCategory(std::to_string(day->year), day->month) : std::string();
}

// Dates

void frmMaintenance::dtMAINT_DATEIN_Change() {
  if (isLoading()) return;
  if (dtMAINT_DATEIN.isEmpty()) {
    if (dtMAINT_DATEIN.Unreadable().empty()) dtMAINT_DATEIN.Value = today();
    return;
  }
  // Nothing is earlier than any day.
  if (dtMAINT_DATEIN.Value.get() > dtMAINT_DATEOUT.Value.get())
    dtMAINT_DATEOUT.Value = dtMAINT_DATEIN.Value.get();
}

void frmMaintenance::dtMAINT_DATEOUT_Change() {
  if (isLoading() || dtMAINT_DATEOUT.isEmpty()) return;
  if (dtMAINT_DATEIN.Value.get() > dtMAINT_DATEOUT.Value.get())
    dtMAINT_DATEIN.Value = dtMAINT_DATEOUT.Value.get();
  if (dtEQUIP_NXT_MAINT.Value.get() < dtMAINT_DATEOUT.Value.get())
    dtEQUIP_NXT_MAINT.Value = dtMAINT_DATEOUT.Value.get();
}

void frmMaintenance::dtEQUIP_NXT_MAINT_Change() {
  if (isLoading() || dtEQUIP_NXT_MAINT.isEmpty()) return;
  if (dtEQUIP_NXT_MAINT.Value.get() < dtMAINT_DATEOUT.Value.get())
    dtEQUIP_NXT_MAINT.Value = dtMAINT_DATEOUT.Value.get();
}

// Saving

bool frmMaintenance::requiredAreFilled() {
  if (!dtMAINT_DATEIN.isEmpty()) return fitsMessage(app_.desktop, txtMEDIA_NOTE.Text.get()) || holdBack();
  warningBox(app_.desktop, "Missing Required Fields:\n\nDate In");
  dtMAINT_DATEIN.SetFocus();
  return false;
}

void frmMaintenance::addRecord(bool) {
  app_.message.Add(tags::EID, pieceId_);
  app_.message.Add(tags::BNO, txtBARCODE_NO.Text.get());
  fields_.save([this](std::string_view tag, const std::string& value) { app_.message.Add(tag, value); });
  details.addTags();
}

/// The piece keeps its next date where a new record names none.
void frmMaintenance::takeReply(bool created) {
  showReply(created);
  if (created && dtEQUIP_NXT_MAINT.isEmpty())
    showQuietly([this] { ServerTools::PutControlDate(app_.message.Get(tags::ENM), dtEQUIP_NXT_MAINT); });
  // A window of the piece that is open would put the date before back with its next save.
  tellPiece([this](InventoryWindow& piece) { piece.takeNextMaintenance(dtEQUIP_NXT_MAINT.Value.get()); });
}

void frmMaintenance::showReply(bool created) {
  const auto valueOf = [this](std::string_view tag) { return app_.message.Get(tag); };
  created ? propertyFields.showCreated(valueOf) : propertyFields.showUpdated(valueOf);
}

/// The piece's status follows the box with every save, whichever record has put it there.
bool frmMaintenance::saveMore(bool) {
  sendStatus("REMEGSTS");
  if (chkIN_MAINT.Value) sendStatus("NEWEGSTS");
  return true;
}

void frmMaintenance::sendStatus(std::string_view code) {
  // A failure is reported, and the save goes on.
  static_cast<void>(askForRecord(
      ask_, code,
      {{tags::EID, pieceId_}, {tags::SID, chkIN_MAINT.Tag.get()}, {tags::ULI, app_.context.locationId}}));
}

void frmMaintenance::showAsStored() {
  InventoryWindow::showAsStored();
  txtBARCODE_NO.Locked = true;
}

void frmMaintenance::refreshLists() {
  if (CallerView == kSourceEquipment) return tellPiece(&InventoryWindow::BuildMaintenanceTab);
  if (CallerView != kSourceMainWindow && CallerView != kind().nextSource) return;
  const auto& years = app_.context.categories.years;
  const std::string month = category();
  if (std::find(years.begin(), years.end(), month.substr(0, month.find('-'))) == years.end())
    refreshTrees(true);
  app_.main().refillInventory(kMaintenance, month);
  if (!listedIn_.empty() && listedIn_ != month) app_.main().refillInventory(kMaintenance, listedIn_);
  listedIn_ = month;
}

void frmMaintenance::tellPiece(const std::function<void(InventoryWindow&)>& tell) {
  for (const int kind : {kEquipment, kGroupMember}) {
    if (InventoryWindow* piece = windowOf(kind, pieceId_)) tell(*piece);
  }
}

void frmMaintenance::recordIsDeleted() {
  if (CallerView == kSourceEquipment) tellPiece(&InventoryWindow::BuildMaintenanceTab);
}

// Commands

void frmMaintenance::mnuFilePrint_Click() {
  app_.reports().print(*this);
}

/// The record is stored with the barcode at once: a stored one by the barcode alone, a new one whole.
void frmMaintenance::txtBARCODE_NO_DblClick() {
  frmBarcodes window(app_, pieceId_);
  window.ShowModal();
  if (window.barcode.empty() || window.barcode == kNoBarcode) return;
  const std::string barcode = upper(window.barcode);
  showQuietly([&] { txtBARCODE_NO.Text = barcode; });
  if (!isStored()) {
    save();
    return;
  }
  const bool stored = ask_(
      "UPDEMAINTD", {{tags::MID, recordId()}, {tags::EID, pieceId_}, {tags::BNO, txtBARCODE_NO.Text.get()}});
  if (stored) showReply(false);
}

// Rights

void frmMaintenance::DisableEditing() {
  InventoryWindow::DisableEditing();
  disable(txtBARCODE_NO, chkIN_MAINT);
  details.secure(false);
}

void frmMaintenance::SetFormSecurity() {
  details.secure(true);
  InventoryWindow::SetFormSecurity();
}

}  // namespace vantry
