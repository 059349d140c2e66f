#pragma once

#include <string_view>

namespace vantry {

/// Makes sure, before anything else, that the program's components are in place.
class ComponentCheck {
 public:
  virtual ~ComponentCheck() = default;
  virtual void RegisterComponents() = 0;
  /// Does nothing when the command line holds "/nocheck". Does not return when components are missing.
  virtual void ValidateResources(std::string_view commandLine) = 0;
};

}  // namespace vantry
