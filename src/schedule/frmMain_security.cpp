// What the operator's rights leave of the main window.
#include "schedule/frmMain.h"

namespace vantry {

void frmMain::SetFormSecurity(int kind) {
  const Rights& rights = app_.context.rights;
  secureCommands();
  if (kind == kKindWholeBar) {
    buildListBars();
    adjustViewEntries();
  }
  if (currentView_ && currentView_->subject && kind == currentView_->kind) {
    MenuItem& edit = kind == kKindGroups ? menus.mnuPopupGroupEdit : menus.mnuPopupToolsEdit;
    edit.Caption = viewOnly(rights, *currentView_->subject) ? "View" : "Edit";
    return;
  }
  const char* edit = viewOnly(rights, Subject::Bookings) ? "View" : "Edit";
  menus.mnuPopupBookingsEdit.Caption = edit;
  menus.mnuPopupSchedulerEdit.Caption = edit;
}

}  // namespace vantry
