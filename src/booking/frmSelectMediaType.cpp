#include "booking/frmSelectMediaType.h"

namespace vantry {

frmSelectMediaType::frmSelectMediaType(App& app, const std::vector<MediaType>& types)
    : Form(app.windows, "frmSelectMediaType"), app_(app), types_(types) {
  Caption = "Select Media Type";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  lstMediaTypes.DblClick = [this] { cmdOK_Click(); };
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
