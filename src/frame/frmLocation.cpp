#include "frame/frmLocation.h"

#include "platform/wiring.h"

namespace vantry {

frmLocation::frmLocation(App& app) : Form(app.windows, "frmLocation"), app_(app) {
  Caption = "Choose Booking Desk Location";
  cmdOK.Default = true;
  on(cmdOK.Click, this, &frmLocation::cmdOK_Click);
  on(faLocations.DblClick, this, &frmLocation::cmdOK_Click);
  Layout = Column{lblLocation, faLocations, Row{Stretch{}, cmdOK}};
}

void frmLocation::Form_Load() {
  app_.tools.PrepareForm(*this);
  // Filled by hand: `ReplyList` is a floor above, since it needs the preferences.
  faLocations.Redraw = false;
  faLocations.FormatString = "<Location Name|<Owning Library";
  const auto& locations = app_.context.authorizedLocations;
  faLocations.Rows = static_cast<int>(locations.size()) + 1;
  int row = 1;
  for (const Location& location : locations) {
    faLocations.TextMatrix(row, 0, location.name);
    faLocations.TextMatrix(row, 1, location.owningLibrary);
    faLocations.RowData(row, location.id);
    ++row;
  }
  for (int col = 0; col < faLocations.Cols; ++col) faLocations.ColData(col, col);
  faLocations.AutoSize(0, 1);
  faLocations.Row = 1;
  faLocations.Redraw = true;
}

void frmLocation::Form_Activate() {
  faLocations.SetFocus();
}

void frmLocation::cmdOK_Click() {
  const int row = faLocations.Row;
  if (row < 1) return;
  app_.context.locationId = faLocations.RowData(row);
  app_.context.locationName =
      faLocations.TextMatrix(row, faLocations.columnOfData(0));  // wherever it was moved
  app_.global.BusyAllForms();
  answered_ = true;
  Unload();
}

}  // namespace vantry
