#pragma once

#include <string_view>

#include "server/access/sessions.h"
#include "server/base/moment.h"
#include "server/store/database.h"

namespace vantry::server {

/// Writes a row of the audit. `session` is null for a login that failed; `code` is that of the request, if it
/// is one.
void audit(Connection& db, const Session* session, Moment now, std::string_view action,
           std::string_view subject, std::string_view detail, std::string_view code = {});

/// The same for what the command line does. The row names the system's user.
void auditCommand(Connection& db, Moment now, std::string_view action, std::string_view subject,
                  std::string_view detail);

}  // namespace vantry::server
