#pragma once

#include "lists/main_view.h"

namespace vantry {

/// The staff to whom bookings can be assigned.
class StaffView : public MainView {
 public:
  StaffView(const MainParts& parts, Frame& frame);

  Grid faStaff;

  void BuildStaffFlexArray();
  void load() override { BuildStaffFlexArray(); }
  void refresh() override;
  ReplyList* list() override { return &list_; }

 private:
  ReplyList list_;
};

}  // namespace vantry
