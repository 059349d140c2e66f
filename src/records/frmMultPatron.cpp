#include "records/frmMultPatron.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr ReplyColumn kName{"Patron Name", {}, CellKind::Own};
constexpr ReplyColumn kGroupName{"Patron Group", tags::PGNM};
constexpr ReplyColumn kStatus{"Barcode Status", tags::BST};
constexpr ReplyColumn kPatronId{"Patron ID", tags::PID};
constexpr ReplyColumn kBookingColumns[] = {kName,     kGroupName,
                                           kStatus,   {"Patron Group ID", tags::PGID},
                                           kPatronId, {"", tags::BSI, CellKind::Plain, 0}};
constexpr ReplyColumn kStaffColumns[] = {kName, kGroupName, kStatus, kPatronId};
constexpr int kNameColumn = 0;
constexpr int kActive = 1;

}  // namespace

frmMultPatron::frmMultPatron(App& app, PatronUse use)
    : Form(app.windows, "frmMultPatron"), app_(app), use_(use) {
  Caption = "Multiple Patrons - Select Patron";
  faPatrons.AccessibleName = "Patrons";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmMultPatron::cmdOK_Click);
  on(cmdCancel.Click, this, &frmMultPatron::cmdCancel_Click);
  on(faPatrons.Click, this, &frmMultPatron::faPatrons_Click);
  on(faPatrons.DblClick, this, &frmMultPatron::cmdOK_Click);
  Layout = Column{faPatrons, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmMultPatron::Form_Load() {
  app_.tools.PrepareForm(*this);
  const bool forStaff = use_ == PatronUse::Staff;
  list_.build(
      dialogLayout(forStaff ? std::span<const ReplyColumn>(kStaffColumns) : kBookingColumns, tags::PID));
  list_.hooks.ownText = [&message = app_.message](const ReplyColumn&) {
    return PatronName(message.Get(tags::PLN), message.Get(tags::PFN), message.Get(tags::PMN));
  };
  list_.fill();
  faPatrons.Row = 1;
  faPatrons_Click();
}

void frmMultPatron::Form_Activate() {
  faPatrons.SetFocus();
}

void frmMultPatron::faPatrons_Click() {
  const bool chosen = faPatrons.Row >= faPatrons.FixedRows;
  cmdOK.Enabled =
      chosen && (use_ == PatronUse::Staff || intOf(list_.valueOf(faPatrons.Row, tags::BSI)) == kActive);
}

void frmMultPatron::cmdOK_Click() {
  if (!cmdOK.Enabled) return;
  const int row = faPatrons.Row;
  Tag = list_.text(row, kNameColumn) + "|" + list_.valueOf(row, tags::PGNM) + "|" +
        list_.valueOf(row, tags::PGID) + "|" + list_.valueOf(row, tags::PID);
  Hide();
}

void frmMultPatron::cmdCancel_Click() {
  Tag = "";
  Hide();
}

Patron PickOfPatrons(App& app, PatronUse use) {
  frmMultPatron window(app, use);
  window.ShowModal();
  const std::string chosen = window.Tag.get();
  Patron patron;
  if (chosen.empty()) return patron;
  int position = 1;
  const auto next = [&] { return ServerTools::NextToken(position, chosen, "|"); };
  patron.name = next();
  patron.groupName = next();
  patron.groupId = intOf(next());
  patron.id = intOf(next());
  return patron;
}

}  // namespace vantry
