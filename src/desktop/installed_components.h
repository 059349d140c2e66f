#pragma once

#include <filesystem>

#include "frame/component_table.h"
#include "frame/components.h"
#include "platform/clock.h"
#include "platform/desktop.h"

namespace vantry {

/// The libraries of the toolkit, its plug-ins and the program's own files, as they are on this workstation.
class InstalledFiles : public ComponentFiles {
 public:
  /// Files of the program are beside it or in its folder "System"; without a folder they are not looked for.
  explicit InstalledFiles(std::filesystem::path program) : program_(std::move(program)) {}
  [[nodiscard]] std::optional<FoundComponent> find(const std::string& file) const override;

 private:
  std::filesystem::path program_;
};

/// The parts that the front end needs while it runs. They are installed by the system's packages, which
/// leaves nothing to be registered.
class InstalledComponents : public ComponentCheck {
 public:
  explicit InstalledComponents(Desktop& desktop, std::filesystem::path program = {})
      : desktop_(desktop), files_(std::move(program)) {}
  void RegisterComponents() override {}
  void ValidateResources(std::string_view commandLine) override;

 private:
  Desktop& desktop_;
  SystemClock clock_;
  InstalledFiles files_;
};

}  // namespace vantry
