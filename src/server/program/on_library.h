#pragma once

#include <functional>
#include <string>

#include "server/store/database.h"

namespace vantry::server {

/// The work of one command on a library whose schema is that of this program: a command changes no schema
/// under a server that runs. Moments are those of the library's time zone. Throws std::runtime_error with a
/// sentence for people.
void onLibrary(const std::string& url, const std::function<void(Database&)>& work);

}  // namespace vantry::server
