#include "messaging/dialogs.h"
#include "messaging/frmLogon.h"
#include "platform/desktop.h"

namespace vantry {

bool LogonDialog::Run(ServerSession& session, TagMessage& message, std::string_view onlyOperator) {
  // Whoever was logged on before is logged off, also if nobody logs on.
  if (onlyOperator.empty()) {
    session.transport().logoff();
    message.forgetSession();
  }
  frmLogon window(windows_, tools_, session, onlyOperator);
  window.ShowModal();
  // A request that waited for the log-on now waits for its reply.
  if (!onlyOperator.empty()) windows_.desktop().setPointer(Pointer::Hourglass);
  return window.isLoggedOn();
}

}  // namespace vantry
