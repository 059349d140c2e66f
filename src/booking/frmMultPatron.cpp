#include "booking/frmMultPatron.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum PatronColumn { kName, kGroupName, kStatus, kGroupId, kPatronId, kStatusId };
constexpr std::string_view kFormat =
    "<Patron Name|<Patron Group|<Barcode Status|<Patron Group ID|<Patron ID|<";
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
  const TagMessage& message = app_.message;
  faPatrons.Redraw = false;
  faPatrons.FormatString = std::string(kFormat);
  faPatrons.Rows = message.Count(tags::PID) + 1;
  for (int row = 1; app_.message.NextRecord(tags::PID); ++row) {
    faPatrons.TextMatrix(row, kName,
                         PatronName(message.Get(tags::PLN), message.Get(tags::PFN), message.Get(tags::PMN)));
    faPatrons.TextMatrix(row, kGroupName, message.Get(tags::PGNM));
    faPatrons.TextMatrix(row, kStatus, message.Get(tags::BST));
    faPatrons.TextMatrix(row, kGroupId, message.Get(tags::PGID));
    faPatrons.TextMatrix(row, kPatronId, message.Get(tags::PID));
    faPatrons.TextMatrix(row, kStatusId, message.Get(tags::BSI));
  }
  for (int col = 0; col < faPatrons.Cols; ++col) faPatrons.ColData(col, col);
  faPatrons.AutoSize(kName, kPatronId);
  faPatrons.ColWidth(kStatusId, 0);
  faPatrons.Row = 1;
  faPatrons.Redraw = true;
  faPatrons_Click();
}

void frmMultPatron::Form_Activate() {
  faPatrons.SetFocus();
}

std::string frmMultPatron::chosen(int data) const {
  const int row = faPatrons.Row;
  return row < faPatrons.FixedRows ? std::string() : faPatrons.TextMatrix(row, faPatrons.columnOfData(data));
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
