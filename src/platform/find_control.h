#pragma once

#include "platform/controls.h"

namespace vantry {

/// The first control, within frames as well, that is meant; nullptr without one.
template <class IsMeant>
Control* findIn(const Container& container, const IsMeant& isMeant) {
  for (Control* control : container.Controls()) {
    if (isMeant(*control)) return control;
    if (control->kind() != ControlKind::Frame) continue;
    if (Control* inner = findIn(*static_cast<Frame*>(control), isMeant)) return inner;
  }
  return nullptr;
}

}  // namespace vantry
