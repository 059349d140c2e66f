#include "inventory/record_gone.h"

#include "frame/app.h"
#include "messaging/return_codes.h"

namespace vantry {

bool recordIsThere(App& app, const Ask& ask, int rc, std::string_view code) {
  if (rc != codes::NotFound) return ask.succeeded(rc, code);
  warningBox(app.desktop, "This record is not there any more.\n\nAnother desk has deleted it.");
  return false;
}

bool askForRecord(App& app, const Ask& ask, std::string_view code, Ask::Tags tags) {
  return recordIsThere(app, ask, ask.codeOf(code, tags), code);
}

}  // namespace vantry
