#include "booking/plain_find.h"

#include "booking/modBooking_patrons.h"
#include "messaging/ask.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// The mark of the server for any ending.
static constexpr char kTruncation = '?';

PlainFind::PlainFind(App& app) : Form(app.windows, std::string(kSearchWindow)), app_(app) {
  fa.AccessibleName = "Found";
  cmdOK.Default = true;
  cmdClose.Cancel = true;
  txtSearchFor.Enter = cmdFindNow.Click = [this] { cmdFindNow_Click(); };
  fa.DblClick = cmdOK.Click = [this] { cmdOK_Click(); };
  on(cmdClose.Click, this, &PlainFind::cmdClose_Click);
}

void PlainFind::Form_Load() {
  app_.tools.PrepareForm(*this);
  mode_ = Tag.get() == kFindPatronTag ? Mode::Patron : Mode::Room;
  showMode();
  if (mode_ == Mode::Patron) {
    buildGrid("<Patron Name|<Patron Group|<Barcode|<Barcode Status");
  } else {
    buildGrid("<Room|<Kind");
    listRooms("GDRM", "Deliver");
    listRooms("GLSRM", "Library/Media Center Scheduled Room");
    fa.AutoSize(0, fa.Cols - 1);
  }
}

void PlainFind::showMode() {
  const LayoutNode buttons = Row{Stretch{}, cmdOK, cmdClose};
  Caption = mode_ == Mode::Patron ? "Find Patron for Booking" : "Find Room for Booking";
  if (mode_ == Mode::Patron) {
    Layout = Column{Row{lblSearchFor, txtSearchFor, cmdFindNow}, fa, buttons};
  } else {
    Layout = Column{fa, buttons};
  }
}

void PlainFind::Form_Activate() {
  mode_ == Mode::Patron ? txtSearchFor.SetFocus() : fa.SetFocus();
}

bool PlainFind::Form_Unload() {
  if (isShown()) Tag = "";  // closed by the system's command
  return true;
}

void PlainFind::buildGrid(std::string_view format) {
  fa.Rows = 1;
  fa.FormatString = std::string(format);
  for (int col = 0; col < fa.Cols; ++col) {
    fa.ColData(col, col);
    fa.ColWidth(col, 2000);
  }
}

void PlainFind::addRow(std::string id, std::initializer_list<std::string> cells) {
  const int row = fa.Rows;
  fa.Rows = row + 1;
  fa.RowData(row, std::move(id));
  int col = 0;
  for (const std::string& cell : cells) fa.TextMatrix(row, col++, cell);
  if (row == 1) fa.Row = 1;
}

void PlainFind::cmdFindNow_Click() {
  if (trim(txtSearchFor.Text.get()).empty()) return;
  findPatrons();
  if (fa.hasData()) fa.SetFocus();
}

void PlainFind::findPatrons() {
  TagMessage& message = app_.message;
  std::string text(trim(txtSearchFor.Text.get()));
  if (text.back() != kTruncation) text += kTruncation;
  fa.Rows = 1;
  const int rc = Ask(app_.global, *this)
                     .codeOf("FIND", {{tags::SRCHTAG, "17"},
                                      {tags::SRCHVAL, text},
                                      {tags::SRCHFOR, "6"},
                                      {tags::SRCHLOC, "5"},
                                      {tags::SRCHOP, ""}});
  if (rc != 0) return criticalBox(app_.desktop, "Your search failed! (rc = " + std::to_string(rc) + ")");
  while (message.NextRecord(tags::PID)) {
    addRow(message.Get(tags::PID),
           {PatronName(message.Get(tags::PLN), message.Get(tags::PFN), message.Get(tags::PMN)),
            message.Get(tags::PGNM), message.Get(tags::BNO), message.Get(tags::BST)});
  }
  if (!fa.hasData()) return warningBox(app_.desktop, "No matches found.");
  fa.AutoSize(0, fa.Cols - 1);
}

void PlainFind::listRooms(std::string_view code, std::string_view kind) {
  if (!Ask(app_.global, *this)(code, {{tags::ADBK, "Y"}, {tags::PGID, "0"}})) return;
  while (app_.message.NextRecord(tags::RID))
    addRow(app_.message.Get(tags::RID), {app_.message.Get(tags::RNM), std::string(kind)});
}

void PlainFind::cmdOK_Click() {
  if (fa.Row < fa.FixedRows) return;
  const std::string& id = fa.RowData(fa.Row);
  const std::string text = fa.TextMatrix(fa.Row, fa.columnOfData(0));
  close(mode_ == Mode::Patron ? text + "|" + id : id + "|" + text);
}

void PlainFind::cmdClose_Click() {
  close("");
}

void PlainFind::close(std::string answer) {
  Tag = std::move(answer);
  Hide();
}

}  // namespace vantry
