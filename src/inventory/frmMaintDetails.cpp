#include "inventory/frmMaintDetails.h"

#include <array>

#include "inventory/record_refusals.h"
#include "messaging/ask.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// The types of lines that a record window has.
struct DetailSource {
  const char* caption;
  std::string_view code;
  std::array<ReplyColumn, 2> columns;  ///< id and name
};

namespace {

enum Columns { kTypeId, kTypeName };

constexpr DetailSource kOfRoom = {
    "Room Detail Types",
    "GETRDTLTY",
    {{{.heading = "ID", .tag = tags::RDI, .width = 0}, {.heading = "Detail Type", .tag = tags::RDTY}}}};
constexpr DetailSource kOfMaintenance = {
    "Maintenance Types",
    "GETMDTY",
    {{{.heading = "ID", .tag = tags::MTI, .width = 0}, {.heading = "Maintenance Type", .tag = tags::MTY}}}};

}  // namespace

frmMaintDetails::frmMaintDetails(App& app, RecordSource source, DetailLine line)
    : Form(app.windows, "frmMaintDetails"),
      app_(app),
      source_(source == kSourceRoom ? kOfRoom : kOfMaintenance),
      line_(std::move(line)),
      list_(app, fa) {
  Caption = source_.caption;
  fa.AccessibleName = source_.caption;
  txtDetails.MultiLine = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(fa.Click, this, &frmMaintDetails::enableOK);
  on(txtDetails.Change, this, &frmMaintDetails::enableOK);
  on(cmdOK.Click, this, &frmMaintDetails::cmdOK_Click);
  on(cmdCancel.Click, this, &frmMaintDetails::cmdCancel_Click);
  Layout = Column{fa, lblDetails, txtDetails, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmMaintDetails::Form_Load() {
  app_.tools.PrepareForm(*this);
  list_.build({.columns = source_.columns, .walk = source_.columns[kTypeId].tag});
  Ask(app_.global, Name())(source_.code, {}, [this] { list_.fill(); });
  selectType();
  txtDetails.Text = line_.text;
  enableOK();
}

void frmMaintDetails::Form_Activate() {
  fa.SetFocus();
}

void frmMaintDetails::selectType() {
  for (int row = fa.FixedRows; row < fa.Rows; ++row) {
    if (list_.text(row, kTypeId) == line_.typeId) fa.Row = row;
  }
}

void frmMaintDetails::enableOK() {
  cmdOK.Enabled = fa.Row >= fa.FixedRows && !trim(txtDetails.Text.get()).empty();
}

void frmMaintDetails::cmdOK_Click() {
  if (!cmdOK.Enabled || !fitsMessage(app_.desktop, txtDetails.Text.get())) return;
  answer = {list_.text(fa.Row, kTypeId), list_.text(fa.Row, kTypeName), txtDetails.Text};
  Hide();
}

}  // namespace vantry
