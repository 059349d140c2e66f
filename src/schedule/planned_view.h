#pragma once

#include "lists/main_view.h"

namespace vantry {

/// A view whose list is not built yet: its frame is empty.
class PlannedView : public MainView {
 public:
  PlannedView(const MainParts& parts, Frame&) : MainView(parts) {}
};

}  // namespace vantry
