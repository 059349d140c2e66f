#include "booking/frmSelectMediaType.h"

#include "platform/wiring.h"

namespace vantry {

frmSelectMediaType::frmSelectMediaType(App& app, const std::vector<MediaType>& types)
    : Form(app.windows, "frmSelectMediaType"), app_(app), types_(types) {
  Caption = "Select Media Type";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmSelectMediaType::cmdOK_Click);
  on(cmdCancel.Click, this, &frmSelectMediaType::cmdCancel_Click);
  on(lstMediaTypes.DblClick, this, &frmSelectMediaType::cmdOK_Click);
  Layout = Column{lblMediaTypes, lstMediaTypes, Gap{}, Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmSelectMediaType::Form_Load() {
  app_.tools.PrepareForm(*this);
  for (const MediaType& type : types_) lstMediaTypes.AddItem(type.name, type.id);
}

void frmSelectMediaType::cmdOK_Click() {
  choice = lstMediaTypes.ListIndex;
  Hide();
}

void frmSelectMediaType::cmdCancel_Click() {
  choice = -1;
  Hide();
}

}  // namespace vantry
