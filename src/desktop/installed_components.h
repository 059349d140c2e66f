#pragma once

#include "frame/components.h"
#include "platform/desktop.h"

namespace vantry {

/// The parts that the front end loads while it runs: the drawing of its pictures and at least one font. They
/// are installed by the system's packages, which leaves nothing to be registered.
class InstalledComponents : public ComponentCheck {
 public:
  explicit InstalledComponents(Desktop& desktop) : desktop_(desktop) {}
  void RegisterComponents() override {}
  void ValidateResources(std::string_view commandLine) override;

 private:
  Desktop& desktop_;
};

}  // namespace vantry
