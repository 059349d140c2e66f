#pragma once

#include "frame/app.h"

namespace vantry {

/// The windows of circulation for all others.
class CirculationDialogs : public CirculationWindows {
 public:
  explicit CirculationDialogs(App& app) : app_(app) {}

  void showReplyNotes(std::string_view mode, int rooms, int pieces) override;
  void showNote(std::string_view text) override;
  [[nodiscard]] std::string discharge(int bookingId) override;

 private:
  App& app_;
};

}  // namespace vantry
