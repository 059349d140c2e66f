#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/control.h"

namespace vantry {

/// Tells at which of several steps the operator is. It is only looked at.
class StepLine : public Control {
 public:
  StepLine(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::StepLine) {}
  /// Counted from 0. The steps before it are done.
  Property<int> Step{*this, Aspect::Value};

  void addStep(std::string caption) {
    captions_.push_back(std::move(caption));
    tell(Aspect::List);
  }
  const std::vector<std::string>& Steps() const { return captions_; }

 private:
  std::vector<std::string> captions_;
};

}  // namespace vantry
