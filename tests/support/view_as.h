#pragma once

#include "schedule/frmMain.h"

namespace vantry::test {

/// A view of the main window by its class, which the window itself need not know.
template <class View>
View& viewAs(frmMain& main, ViewId id) {
  return dynamic_cast<View&>(main.view(id));
}

}  // namespace vantry::test
