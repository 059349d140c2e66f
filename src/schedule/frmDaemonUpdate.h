#pragma once

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/form.h"

namespace vantry {

/// Tells that the Schedule Monitor is being read anew. It has no commands.
class frmDaemonUpdate : public Form {
  App& app_;

 public:
  explicit frmDaemonUpdate(App& app);
  void Form_Load() override;

  Label lblUpdate{*this, "lblUpdate", "Schedule Monitor  Updating..."};
};

}  // namespace vantry
