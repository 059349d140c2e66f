#include "booking/frmMultBibs.h"

#include "platform/wiring.h"

namespace vantry {

frmMultBibs::frmMultBibs(App& app, const ItemMatches& matches)
    : Form(app.windows, "frmMultBibs"), app_(app), matches_(matches) {
  Caption = "Select the Bibliographic Record for the desired item";
  lstBibs.AccessibleName = "Titles of the item";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmMultBibs::cmdOK_Click);
  on(cmdCancel.Click, this, &frmMultBibs::cmdCancel_Click);
  on(lstBibs.DblClick, this, &frmMultBibs::cmdOK_Click);
  Layout = Column{lstBibs, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmMultBibs::Form_Load() {
  app_.tools.PrepareForm(*this);
  for (const MediaThing& match : matches_) lstBibs.AddItem(match.title, match.BI);
  lstBibs.ListIndex = 0;
}

void frmMultBibs::cmdOK_Click() {
  if (choice() < 0) return;
  Tag = "1";
  Hide();
}

void frmMultBibs::cmdCancel_Click() {
  Tag = "";
  Hide();
}

}  // namespace vantry
