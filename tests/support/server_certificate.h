#pragma once

#include <string>

#include "support/server_case.h"

namespace vantry::server::test {

/// A certificate for a host of that name, and its key, as NAME.pem and NAME.key.
void makeCertificate(const TempFolder& folder, const std::string& name);

}  // namespace vantry::server::test
