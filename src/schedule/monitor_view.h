#pragma once

#include "lists/main_view.h"
#include "schedule/main_views.h"

namespace vantry {

/// A view of the Schedule Monitor: a list of bookings that is laid out by the view.
class MonitorView : public MainView {
 public:
  MonitorView(const MainParts& parts, Frame& frame, const ViewRow& view);

  Grid faDaemon;

  void BuildDaemonFlexArray();
  void load() override { BuildDaemonFlexArray(); }
  ReplyList* list() override { return &list_; }

 private:
  ViewId view_;
  ReplyList list_;
};

}  // namespace vantry
