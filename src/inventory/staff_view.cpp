#include "inventory/staff_view.h"

#include "words/tags.h"

namespace vantry {

static constexpr ReplyColumn kColumns[] = {
    {"ID?", tags::PID, CellKind::Plain, 0},
    {"Staff Name", tags::PATNM, CellKind::Plain, 3600},
    {"Active?", tags::PSTS, CellKind::YesNo, 1000},
    {"Active Bookings", tags::BCNT, CellKind::Plain, 1000},
};

StaffView::StaffView(const MainParts& mainParts, Frame& frame)
    : MainView(mainParts), faStaff(frame, "faStaff"), list_(mainParts, faStaff) {
  frame.Layout = Column{faStaff};
  list_.hooks.filled = [this](int) {
    const TagMessage& message = app().message;
    app().context.staff.push_back(
        {message.Get(tags::PID), message.Get(tags::PATNM), message.Get(tags::PSTS) == "Y"});
  };
  list_.hooks.progress = [this](int row, int total) { parts().showProgress(row, total); };
}

void StaffView::BuildStaffFlexArray() {
  list_.build({.columns = kColumns, .walk = tags::PID});
}

void StaffView::refresh() {
  list_.clear();
  app().context.staff.clear();
  ask()("GETOPS", {}, [this] { list_.fill(); });
}

}  // namespace vantry
