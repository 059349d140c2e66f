#pragma once

#include "lists/main_view.h"
#include "records/patron_look_up.h"

namespace vantry {

/// The staff to whom bookings can be assigned. They are patrons who were taken onto this list; several rows
/// can be selected and changed at once.
class StaffView : public MainView {
 public:
  StaffView(const MainParts& parts, Frame& frame);

  Grid faStaff;
  Button cmdStaffAdd, cmdStaffDelete;
  ControlArray<Button> cmdStaffActivate;  ///< 0 activates, 1 deactivates
  Command activate, deactivate;

  /// Shows while a member is added.
  Frame fraStaffDetails;
  Label lblStaff;
  TextBox txtStaff;  ///< a barcode while it is typed, the patron's name once they are found
  Button cmdStaffCheck, cmdStaff;
  CheckBox chkStaffActive;
  Button cmdOK, cmdCancel;

  void BuildStaffFlexArray();
  void load() override;
  void refresh() override;
  void sorted() override { faStaff_Click(); }
  void secure(const Rights& rights) override;
  ReplyList* list() override { return &list_; }

  void faStaff_Click();
  void cmdStaffAdd_Click();
  void cmdStaffDelete_Click();
  void cmdStaffActivate_Click(int index);
  void txtStaff_Change();
  void txtStaff_Enter();
  void cmdStaffCheck_Click();
  void cmdStaff_Click();
  void cmdOK_Click();
  void cmdCancel_Click();

 private:
  void connect();
  void arrange(Frame& frame);
  void showPatron(const Patron& patron);
  void endAdding();
  [[nodiscard]] bool isOnList(std::string_view patronId) const;
  /// Adds the ids of the selected rows to the message.
  void addSelected();
  /// Whether the command may go on although bookings are assigned to the selected staff.
  [[nodiscard]] bool acceptsBookings(bool onlyActive, std::string_view command);
  void change(std::string_view code, Ask::Tags tags);
  void refillChanged();

  ReplyList list_;
  int patron_ = 0;  ///< who is to be added; 0 for nobody yet
};

}  // namespace vantry
