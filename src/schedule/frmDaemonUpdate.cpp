#include "schedule/frmDaemonUpdate.h"

namespace vantry {

frmDaemonUpdate::frmDaemonUpdate(App& app) : Form(app.windows, "frmDaemonUpdate"), app_(app) {
  Layout = Column{lblUpdate};
}

void frmDaemonUpdate::Form_Load() {
  app_.tools.PrepareForm(*this);
}

}  // namespace vantry
