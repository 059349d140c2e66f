#include "messaging/dialogs.h"
#include "messaging/frmLogon.h"
#include "platform/desktop.h"

namespace vantry {

bool LogonDialog::Run(ServerSession& session, TagMessage& message, std::string_view onlyOperator) {
  // Whoever was logged on before is so no longer, also if nobody follows him.
  if (onlyOperator.empty()) {
    session.transport().logoff();
    message.forgetSession();
  }
  frmLogon window(windows_, tools_, session, onlyOperator);
  window.ShowModal();
  // A request that waits for the log-on goes on waiting for its reply.
  if (!onlyOperator.empty()) windows_.desktop().setPointer(Pointer::Hourglass);
  return window.isLoggedOn();
}

}  // namespace vantry
