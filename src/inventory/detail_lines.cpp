#include "inventory/detail_lines.h"

#include "inventory/frmMaintDetails.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum Places { kTypeId, kTypeName, kText };
constexpr ReplyColumn kMaintenanceColumns[] = {{"Id", tags::MTI, CellKind::Plain, 0},
                                               {"Maintenance Type", tags::MTY, CellKind::Plain, 2400},
                                               {"Details", tags::MCO, CellKind::Plain, 5000}};
constexpr ReplyColumn kRoomColumns[] = {{"ID", tags::RDI, CellKind::Plain, 0},
                                        {"Detail Type", tags::RDTY, CellKind::Plain, 2400},
                                        {"Details", tags::RDTL, CellKind::Plain, 5000}};

}  // namespace

const DetailLinesKind kMaintenanceDetails{"fa",       kSourceMaintenance, kMaintenanceColumns,
                                          tags::MDID, tags::MTI,          tags::MCO};
const DetailLinesKind kRoomDetails{"fa(3)", kSourceRoom, kRoomColumns, tags::RDI, tags::RDI, tags::RDTL};

DetailLines::DetailLines(App& app, Frame& frame, const DetailLinesKind& kind)
    : fa(frame, kind.grid),
      cmdAddDetail(frame, "cmdAddDetail", "&Add..."),
      cmdEditDetail(frame, "cmdEditDetail", "&Edit..."),
      cmdRemoveDetail(frame, "cmdRemoveDetail", "&Remove"),
      mnuPopupDetails(frame.form(), "mnuPopupDetails", "Popup Details"),
      mnuPopupDetailsAdd(mnuPopupDetails, "mnuPopupDetailsAdd", "Add..."),
      mnuPopupDetailsEdit(mnuPopupDetails, "mnuPopupDetailsEdit", "Edit..."),
      mnuPopupDetailsRemove(mnuPopupDetails, "mnuPopupDetailsRemove", "Remove"),
      dtDetailDate(frame, "dtDetailDate"),
      dtDetailTime(frame, "dtDetailTime"),
      app_(app),
      kind_(kind),
      list_(app, fa, MomentFields{dtDetailDate, dtDetailTime}) {
  mnuPopupDetails.Visible = false;
  setVisible(false, dtDetailDate, dtDetailTime);
  fa.AccessibleName = "Details";
  list_.build({.columns = kind_.columns, .walk = kind_.walk});
  connect();
}

void DetailLines::connect() {
  on(add.Run, this, &DetailLines::cmdAddDetail_Click);
  on(edit.Run, this, &DetailLines::cmdEditDetail_Click);
  on(remove.Run, this, &DetailLines::cmdRemoveDetail_Click);
  add.link(cmdAddDetail);
  add.link(mnuPopupDetailsAdd);
  edit.link(cmdEditDetail);
  edit.link(mnuPopupDetailsEdit);
  remove.link(cmdRemoveDetail);
  remove.link(mnuPopupDetailsRemove);
  on(fa.Click, this, &DetailLines::fa_Click);
  on(fa.DblClick, &edit, &Command::run);
  fa.RightClick = [this] { app_.desktop.popupMenu(mnuPopupDetails, nullptr); };
  DisableButtons();
}

LayoutNode DetailLines::layout() {
  return Column{fa, Row{cmdAddDetail, cmdEditDetail, cmdRemoveDetail, Stretch{}}};
}

void DetailLines::fill() {
  list_.fill();
  DisableButtons();
}

void DetailLines::addTags() const {
  for (int row = fa.FixedRows; row < fa.Rows; ++row) {
    app_.message.Add(kind_.typeTag, list_.text(row, kTypeId));
    app_.message.Add(kind_.textTag, list_.text(row, kText));
  }
}

void DetailLines::fa_Click() {
  setEnabled(hasRow(), edit, remove);
}

void DetailLines::DisableButtons() {
  fa.Row = 0;
  disable(edit, remove);
}

void DetailLines::secure(bool mayUpdate) {
  add.Allowed = mayUpdate;
  edit.Allowed = mayUpdate;
  remove.Allowed = mayUpdate;
}

// Lines

void DetailLines::showLine(int row, const DetailLine& line) {
  list_.setText(row, kTypeId, line.typeId);
  list_.setText(row, kTypeName, line.typeName);
  list_.setText(row, kText, line.text);
  fa.Row = row;
  fa_Click();
  raise(Changed);
}

void DetailLines::cmdAddDetail_Click() {
  frmMaintDetails window(app_, kind_.source, {});
  window.ShowModal();
  if (!window.answer) return;
  fa.Rows = fa.Rows + 1;
  showLine(fa.Rows - 1, *window.answer);
}

void DetailLines::cmdEditDetail_Click() {
  if (!hasRow()) return;
  const int row = fa.Row;
  frmMaintDetails window(app_, kind_.source,
                         {list_.text(row, kTypeId), list_.text(row, kTypeName), list_.text(row, kText)});
  window.ShowModal();
  if (window.answer) showLine(row, *window.answer);
}

void DetailLines::cmdRemoveDetail_Click() {
  if (!hasRow() || !questionBox(app_.desktop, "Are you sure you want to REMOVE this detail?")) return;
  fa.RemoveItem(fa.Row);
  fa_Click();
  raise(Changed);
}

}  // namespace vantry
