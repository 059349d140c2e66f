#include "inventory/staff_view.h"

#include "frame/app.h"
#include "lists/grids.h"
#include "words/tags.h"

namespace vantry {

StaffView::StaffView(const MainParts& parts, Frame& frame) : faStaff(frame, "faStaff"), parts_(parts) {
  frame.Layout = Column{faStaff};
}

void StaffView::BuildStaffFlexArray() {
  faStaff.Rows = 1;
  faStaff.FormatString = "ID?|<Staff Name|<Active?|<Active Bookings";
  faStaff.ColWidth(0, 0);
  faStaff.ColWidth(1, 3600);
}

void StaffView::refill() {
  App& app = parts_.app;
  app.global.BusyAllForms();
  faStaff.Redraw = false;
  faStaff.Rows = 1;
  app.context.staff.clear();
  const int rc = app.message.Send("GETOPS");
  if (rc != 0) {
    faStaff.Redraw = true;
    app.global.ReadyAllForms();
    app.global.ReportRequestError(rc, "GETOPS", parts_.form.Name());
    return;
  }
  const int total = app.message.Count(tags::PID);
  faStaff.Rows = total + 1;
  for (int row = 1; app.message.NextRecord(tags::PID); ++row) {
    app.context.staff.push_back(
        {app.message.Get(tags::PID), app.message.Get(tags::PATNM), app.message.Get(tags::PSTS) == "Y"});
    faStaff.TextMatrix(row, 0, app.message.Get(tags::PID));
    faStaff.TextMatrix(row, 1, app.message.Get(tags::PATNM));
    faStaff.TextMatrix(row, 2, app.message.Get(tags::PSTS) == "Y" ? "Y" : "N");
    faStaff.TextMatrix(row, 3, app.message.Get(tags::BCNT));
    parts_.showProgress(row, total);
  }
  SetGridAutoSize(app, faStaff);
  faStaff.Redraw = true;
  app.global.ReadyAllForms();
}

}  // namespace vantry
