#include "messaging/dialogs.h"
#include "platform/desktop.h"

namespace vantry {

/// Small and without buttons: the connection opens, or a box asks.
class frmConnect : public Form {
 public:
  explicit frmConnect(Windows& windows) : Form(windows, "frmConnect") {
    Caption.put("Vantry");
    Resizable = false;
    Layout = Row{imgConnect, lblConnecting, Stretch{}};
  }
  Image imgConnect{*this, "imgConnect", "vantry"};
  Label lblConnecting{*this, "lblConnecting", "Connecting..."};
};

ConnectDialog::ConnectDialog(Windows& windows) : windows_(windows) {}

ConnectDialog::~ConnectDialog() = default;

void ConnectDialog::open() {
  if (!window_) window_ = std::make_unique<frmConnect>(windows_);
  window_->Show();
  windows_.desktop().handleEvents();
}

void ConnectDialog::Close() {
  if (window_) window_->Unload();
  window_.reset();
}

bool ConnectDialog::askRetry(const std::string& reason) {
  // Closing the box tries again: a stray key must not lose what was typed.
  const Box question{Box::Kind::Warning, reason, {}, {"&Retry", "E&xit"}, 0};
  return windows_.desktop().messageBox(question) == 0;
}

}  // namespace vantry
