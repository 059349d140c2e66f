#include "inventory/pending_move.h"

#include "frame/app.h"
#include "messaging/ask.h"
#include "messaging/return_codes.h"
#include "words/tags.h"

namespace vantry {

bool ReleaseFromBookings(App& app, const Ask& ask, std::string_view id, const char* refusal) {
  const bool moves = app.desktop.messageBox({Box::Kind::Question,
                                             "Equipment is used in a pending booking. "
                                             "Are you sure you want to move this equipment?",
                                             "",
                                             {"&OK", "&Cancel"}}) == 0;
  if (!moves) return false;
  const int rc = ask.codeOf("DLTEBFR", {{tags::EID, id}});
  if (rc == codes::HeldByBookings) {
    plainBox(app.desktop, refusal);
    return false;
  }
  static_cast<void>(ask.succeeded(rc, "DLTEBFR"));  // another failure is told, and the server decides
  return true;
}

}  // namespace vantry
