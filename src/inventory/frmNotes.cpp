#include "inventory/frmNotes.h"

#include "inventory/record_refusals.h"
#include "platform/wiring.h"

namespace vantry {

frmNotes::frmNotes(App& app, std::string caption, std::string description)
    : Form(app.windows, "frmNotes"), app_(app) {
  Caption = std::move(caption);
  lblDescription.Caption = std::move(description);
  txtNotes.MultiLine = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(txtNotes.Change, this, &frmNotes::txtNotes_Change);
  on(cmdOK.Click, this, &frmNotes::cmdOK_Click);
  on(cmdClear.Click, this, &frmNotes::cmdClear_Click);
  on(cmdCancel.Click, this, &frmNotes::cmdCancel_Click);
  Layout = Column{lblDescription, txtNotes, Gap{}, Row{Stretch{}, cmdOK, cmdClear, cmdCancel}};
}

void frmNotes::Form_Load() {
  app_.tools.PrepareForm(*this);
  cmdOK.Enabled = false;
}

void frmNotes::Form_Activate() {
  txtNotes.SetFocus();
}

void frmNotes::txtNotes_Change() {
  cmdOK.Enabled = true;
}

void frmNotes::cmdOK_Click() {
  if (!fitsMessage(app_.desktop, txtNotes.Text.get())) return;
  note = txtNotes.Text;
  taken = true;
  Hide();
}

void frmNotes::cmdClear_Click() {
  txtNotes.Text = "";
  cmdOK.Enabled = true;  // no note is an answer too
  txtNotes.SetFocus();
}

void frmNotes::cmdCancel_Click() {
  Hide();
}

}  // namespace vantry
