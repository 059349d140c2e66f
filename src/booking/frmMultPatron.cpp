#include "booking/frmMultPatron.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum PatronColumn { kName, kGroupName, kStatus, kGroupId, kPatronId, kStatusId };
constexpr ReplyColumn kColumns[] = {{"Patron Name", {}, CellKind::Own}, {"Patron Group", tags::PGNM},
                                    {"Barcode Status", tags::BST},      {"Patron Group ID", tags::PGID},
                                    {"Patron ID", tags::PID},           {"", tags::BSI, CellKind::Plain, 0}};
constexpr int kActive = 1;

}  // namespace

frmMultPatron::frmMultPatron(App& app) : Form(app.windows, "frmMultPatron"), app_(app) {
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
  list_.build(dialogLayout(kColumns, tags::PID));
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

std::string frmMultPatron::chosen(int column) const {
  const int row = faPatrons.Row;
  return row < faPatrons.FixedRows ? std::string() : list_.text(row, column);
}

void frmMultPatron::faPatrons_Click() {
  cmdOK.Enabled = intOf(chosen(kStatusId)) == kActive;
}

void frmMultPatron::cmdOK_Click() {
  if (!cmdOK.Enabled) return;
  Tag = chosen(kName) + "|" + chosen(kGroupName) + "|" + chosen(kGroupId) + "|" + chosen(kPatronId);
  Hide();
}

void frmMultPatron::cmdCancel_Click() {
  Tag = "";
  Hide();
}

Patron PickOfPatrons(App& app) {
  frmMultPatron window(app);
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
