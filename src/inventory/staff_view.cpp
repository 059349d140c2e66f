#include "inventory/staff_view.h"

#include <algorithm>

#include "messaging/return_codes.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/frmPatronCounter.h"
#include "records/search_window.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn kColumns[] = {
    {"ID?", tags::PID, CellKind::Plain, 0},
    {"Staff Name", tags::PATNM, CellKind::Plain, 3600},
    {"Active?", tags::PSTS, CellKind::YesNo, 1000},
    {"Active Bookings", tags::BCNT, CellKind::Plain, 1000},
};

constexpr const char* kDetails = "Staff Details";
constexpr const char* kAdding = "Add Staff Member";

constexpr RefusalWords kRefusals[] = {
    {codes::NotFound,
     {},
     "One of the selected staff is not on the list any more.\n\nAnother desk has deleted them.  Nothing was "
     "changed."},
    {codes::TagMissing, tags::PID, "This patron is not there any more."},
    {codes::NoRight, {}, "You are not authorized to change the staff."},
};

/// They follow the other buttons in the order of the tab key.
ControlArray<Button> activateButtons(Frame& frame) {
  ControlArray<Button> buttons("cmdStaffActivate");
  for (const char* caption : {"Activate", "Deactivate"}) buttons.add(frame, caption);
  return buttons;
}

}  // namespace

StaffView::StaffView(const MainParts& mainParts, Frame& frame)
    : MainView(mainParts, frame),
      faStaff(frame, "faStaff"),
      cmdStaffAdd(frame, "cmdStaffAdd", "&Add"),
      cmdStaffDelete(frame, "cmdStaffDelete", "&Delete"),
      cmdStaffActivate(activateButtons(frame)),
      fraStaffDetails(frame, "fraStaffDetails", kDetails),
      lblStaff(fraStaffDetails, "lblStaff", "Staff Memb&er:"),
      txtStaff(fraStaffDetails, "txtStaff"),
      cmdStaffCheck(fraStaffDetails, "cmdStaffCheck", "Chec&k"),
      cmdStaff(fraStaffDetails, "cmdStaff", "&Staff..."),
      chkStaffActive(fraStaffDetails, "chkStaffActive", "Active?"),
      cmdOK(fraStaffDetails, "cmdOK", "&OK"),
      cmdCancel(fraStaffDetails, "cmdCancel", "&Cancel"),
      list_(mainParts, faStaff) {
  faStaff.AccessibleName = "Staff";
  faStaff.MultiSelect = true;
  cmdStaff.AccessibleName = "Find the staff member among the patrons";
  cmdStaffCheck.AccessibleName = "Look the barcode up";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  fraStaffDetails.Visible = false;
  connect();
  arrange(frame);
}

void StaffView::connect() {
  on(faStaff.Click, this, &StaffView::faStaff_Click);
  on(create.Run, this, &StaffView::cmdStaffAdd_Click);
  on(remove.Run, this, &StaffView::cmdStaffDelete_Click);
  on(activate.Run, this, &StaffView::cmdStaffActivate_Click, 0);
  on(deactivate.Run, this, &StaffView::cmdStaffActivate_Click, 1);
  create.Enabled = true;
  create.link(cmdStaffAdd);
  remove.link(cmdStaffDelete);
  activate.link(cmdStaffActivate(0));
  deactivate.link(cmdStaffActivate(1));
  on(txtStaff.Change, this, &StaffView::txtStaff_Change);
  on(txtStaff.Enter, this, &StaffView::txtStaff_Enter);
  on(cmdStaffCheck.Click, this, &StaffView::cmdStaffCheck_Click);
  on(cmdStaff.Click, this, &StaffView::cmdStaff_Click);
  on(cmdOK.Click, this, &StaffView::cmdOK_Click);
  on(cmdCancel.Click, this, &StaffView::cmdCancel_Click);
  showCountersFrom(txtStaff, app(), [this] { return patron_; });
  list_.hooks.filled = [this](int) {
    const TagMessage& message = app().message;
    app().context.staff.push_back(
        {message.Get(tags::PID), message.Get(tags::PATNM), message.Get(tags::PSTS) == "Y"});
  };
  list_.hooks.progress = [this](int row, int total) { parts().showProgress(row, total); };
}

void StaffView::arrange(Frame& frame) {
  const LayoutNode fields = Column{Fields{lblStaff, Row{txtStaff, cmdStaffCheck, cmdStaff}},
                                   Row{chkStaffActive, Stretch{}, cmdOK, cmdCancel}};
  fraStaffDetails.Layout = Row{fields.share(2), Stretch{}};
  frame.Layout =
      Column{faStaff, Row{cmdStaffAdd, cmdStaffDelete, cmdStaffActivate(0), cmdStaffActivate(1), Stretch{}},
             fraStaffDetails};
}

void StaffView::secure(const Rights& rights) {
  const bool mayChange = rights.has(Right::PAUPD) || rights.has(Right::BKUPD);
  create.Allowed = remove.Allowed = activate.Allowed = deactivate.Allowed = mayChange;
}

// The list

void StaffView::BuildStaffFlexArray() {
  list_.build({.columns = kColumns, .walk = tags::PID});
}

void StaffView::load() {
  BuildStaffFlexArray();
  showPatron({});
  endAdding();
}

void StaffView::refresh() {
  list_.clear();
  ask()("GETOPS", {}, [this] {
    app().context.staff.clear();
    list_.fill();
  });
  faStaff_Click();
}

void StaffView::faStaff_Click() {
  setEnabled(faStaff.usable() && !faStaff.SelectedRows().empty(), remove, activate, deactivate);
}

void StaffView::addSelected() {
  for (const int row : faStaff.SelectedRows()) app().message.Add(tags::PID, list_.valueOf(row, tags::PID));
}

bool StaffView::isOnList(std::string_view patronId) const {
  for (int row = faStaff.FixedRows; row < faStaff.Rows; ++row) {
    if (list_.valueOf(row, tags::PID) == patronId) return true;
  }
  return false;
}

bool StaffView::acceptsBookings(bool onlyActive, std::string_view command) {
  const auto rows = faStaff.SelectedRows();
  const bool booked = std::any_of(rows.begin(), rows.end(), [&](int row) {
    return intOf(list_.valueOf(row, tags::BCNT)) > 0 &&
           (!onlyActive || list_.valueOf(row, tags::PSTS) == "Y");
  });
  return !booked || questionBox(app().desktop, "Staff selected for " + std::string(command) +
                                                   " currently have bookings assigned to them.  Continue?");
}

void StaffView::change(std::string_view code, Ask::Tags tags) {
  static_cast<void>(ask().succeeded(ask().codeOf(code, tags), code, kRefusals));
}

/// The buttons are off now, and the focus would jump to the next one.
void StaffView::refillChanged() {
  refresh();
  faStaff.SetFocus();
}

void StaffView::cmdStaffActivate_Click(int index) {
  if (index == 1 && !acceptsBookings(true, "deactivation")) return;
  addSelected();
  change("UPDOPS", {{tags::PSTS, index == 0 ? "Y" : "N"}});
  refillChanged();
}

void StaffView::cmdStaffDelete_Click() {
  if (!questionBox(app().desktop, "Are you sure you wish to delete the selected staff?")) return;
  if (!acceptsBookings(false, "delete")) return;
  addSelected();
  change("DELOPS", {});
  refillChanged();
}

// Adding a member

void StaffView::cmdStaffAdd_Click() {
  fraStaffDetails.Caption = kAdding;
  fraStaffDetails.Visible = true;
  chkStaffActive.Value = true;
  faStaff.Enabled = false;
  disable(create, remove, activate, deactivate, cmdStaffCheck, cmdOK);
  txtStaff.SetFocus();
}

void StaffView::txtStaff_Change() {
  patron_ = 0;
  cmdStaffCheck.Enabled = !trim(txtStaff.Text.get()).empty();
  cmdOK.Enabled = false;
}

/// A found patron leaves no barcode to be looked up.
void StaffView::txtStaff_Enter() {
  if (patron_ == 0) cmdStaffCheck.press();
}

void StaffView::cmdStaffCheck_Click() {
  const Patron patron = FindPatronByBarcode(app(), ask(), txtStaff.Text.get(), PatronUse::Staff);
  if (patron.id != 0) return showPatron(patron);
  txtStaff.SetFocus();
  txtStaff.SelectText();
}

void StaffView::cmdStaff_Click() {
  const Patron patron = FindPatronBySearch(app(), kFindStaffTag);
  if (patron.id != 0) showPatron(patron);
}

void StaffView::showPatron(const Patron& patron) {
  txtStaff.Text = patron.name;
  patron_ = patron.id;
  const bool found = patron.id != 0;
  txtStaff.Locked = found;
  txtStaff.TakesScans = !found;
  cmdOK.Enabled = found;
  if (!found) return;
  cmdStaffCheck.Enabled = false;
  cmdOK.SetFocus();
}

void StaffView::cmdOK_Click() {
  const std::string patron = std::to_string(patron_);
  showPatron({});
  if (!isOnList(patron))
    change("ADDOP", {{tags::PID, patron}, {tags::PSTS, chkStaffActive.Value ? "Y" : "N"}});
  refresh();
  endAdding();
  cmdStaffAdd.SetFocus();
}

void StaffView::cmdCancel_Click() {
  showPatron({});
  endAdding();
  cmdStaffAdd.SetFocus();
}

void StaffView::endAdding() {
  fraStaffDetails.Visible = false;
  fraStaffDetails.Caption = kDetails;
  faStaff.Enabled = true;
  create.Enabled = true;
  faStaff_Click();
}

}  // namespace vantry
