#pragma once

#include "lists/main_view.h"
#include "schedule/main_views.h"

namespace vantry {

/// A view whose list is not built yet: its frame is empty. The inventory's views make new records of their
/// kind.
class PlannedView : public MainView {
 public:
  PlannedView(const MainParts& parts, Frame& frame, const ViewRow& view);
  void secure(const Rights& rights) override;

 private:
  const ViewRow& view_;
};

}  // namespace vantry
