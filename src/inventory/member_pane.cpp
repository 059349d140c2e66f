#include "inventory/member_pane.h"

#include "frame/secured_commands.h"
#include "inventory/inventory_removal.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

/// The server keeps "Not Charged" under this id.
constexpr std::string_view kNotCharged = "6";

constexpr int kTypeColumn = 2;
constexpr ReplyColumn kColumns[] = {{"ID", tags::EID, CellKind::Plain, 0},
                                    {"Barcode", {}, CellKind::Piece},
                                    {"Equipment Type", tags::ETY, CellKind::Plain, 2200},
                                    {"Status", tags::STY},
                                    {"Manufacturer", tags::EMA},
                                    {"Model", tags::EMO},
                                    {"Serial", tags::ESN},
                                    {"Format", tags::EFO}};

}  // namespace

MemberPane::MemberPane(const MainParts& parts, Container& parent)
    : fraMembers(parent, "fraMembers", "Members"),
      fa(fraMembers, "fa(4)"),
      cmdNewInv(fraMembers, "cmdNewInv(4)", "Ne&w"),
      cmdEditInv(fraMembers, "cmdEditInv(4)", "Ed&it"),
      cmdDeleteInv(fraMembers, "cmdDeleteInv(4)", "De&lete"),
      parts_(parts),
      ask_(parts.app.global, parts.form.Name()),
      list_(parts, fa) {
  fa.AccessibleName = "Members of the selected group";
  fraMembers.Visible.put(false);
  fraMembers.Layout = Column{fa, Row{cmdNewInv, cmdEditInv, cmdDeleteInv, Stretch{}}};
  connect();
  disable(create);  // until the statuses of a group are known
  fa_Click();
}

void MemberPane::connect() {
  MainMenus& menus = parts_.menus;
  on(fa.Click, this, &MemberPane::fa_Click);
  on(fa.DblClick, this, &MemberPane::fa_DblClick);
  on(fa.RightClick, this, &MemberPane::fa_MouseDown);
  on(edit.Run, this, &MemberPane::mnuPopupMemberEdit_Click);
  on(remove.Run, this, &MemberPane::mnuPopupMemberDelete_Click);
  on(menus.mnuPopupMemberSortAscending.Click, this, &MemberPane::mnuPopupMemberSortAscending_Click);
  on(menus.mnuPopupMemberSortDescending.Click, this, &MemberPane::mnuPopupMemberSortDescending_Click);
  create.link(cmdNewInv);
  create.link(menus.mnuPopupMemberNew);
  edit.link(cmdEditInv);
  edit.link(menus.mnuPopupMemberEdit);
  remove.link(cmdDeleteInv);
  remove.link(menus.mnuPopupMemberDelete);
  sort.link(menus.mnuPopupMemberSort);
  list_.hooks.progress = [this](int row, int total) { parts_.showProgress(row, total); };
}

void MemberPane::BuildInventoryFlexArray() {
  list_.build({.columns = kColumns, .walk = tags::EID});
}

void MemberPane::secure(const Rights& rights) {
  vantry::secure(rights, {{create, Right::EQADD}, {remove, Right::EQDEL}});
  const bool views = viewOnly(rights, Subject::Equipment);
  cmdEditInv.Caption = views ? "V&iew" : "Ed&it";
  parts_.menus.mnuPopupMemberEdit.Caption = views ? "View" : "Edit";
}

void MemberPane::open(const std::string& group) {
  if (!ask_("GETEGSTS", {{tags::EID, group}})) return;
  takeStatuses();
  parts_.showMessage("Requesting Data From Server...");
  const bool read = ask_("GETGEQ", {{tags::EID, group}}, [this] {
    list_.fill();
    parts_.showProgress(count(), count());
  });
  if (!read) return parts_.showMessage("");
  fa_Click();
  fraMembers.Visible = true;
}

/// A group takes new members only while nothing but "Not Charged" is in force on it.
void MemberPane::takeStatuses() {
  create.Enabled = true;
  while (parts_.app.message.NextRecord(tags::SID)) {
    if (parts_.app.message.Get(tags::SID) != kNotCharged) disable(create);
  }
}

void MemberPane::fa_Click() {
  setEnabled(fa.Row >= fa.FixedRows, edit, remove);
  setEnabled(fa.hasData(), sort);
}

void MemberPane::fa_MouseDown() {
  parts_.app.desktop.popupMenu(parts_.menus.mnuPopupMember, nullptr);
}

void MemberPane::fa_DblClick() {
  if (fa.MouseRow >= fa.FixedRows) mnuPopupMemberEdit_Click();
}

void MemberPane::mnuPopupMemberEdit_Click() {
  if (fa.Row < fa.FixedRows) return;
  OpenRecordWindow(parts_.app, {kGroupMember, list_.text(fa.Row, 0), kSourceGroupMembers});
}

void MemberPane::mnuPopupMemberDelete_Click() {
  const std::string id = list_.text(fa.Row, 0);
  const std::string type = list_.text(fa.Row, kTypeColumn);
  if (!RemoveInventoryRecord(parts_.app, ask_, kGroupMember, id)) return;
  fa.RemoveItem(fa.Row);
  parts_.showProgress(count(), count());
  fa_Click();
  fa.SetFocus();
  if (deleted) deleted(id, type);
}

void MemberPane::sortRows(SortOrder order) {
  list_.sort(order);
  fa_Click();
}

}  // namespace vantry
