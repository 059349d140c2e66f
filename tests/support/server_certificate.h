#pragma once

#include <string>

#include "support/server_case.h"

namespace vantry::server::test {

/// A certificate for a host of that name, and its key, as NAME.pem and NAME.key; instead of the name it may
/// be one of an address, such as "IP:127.0.0.1".
void makeCertificate(const TempFolder& folder, const std::string& name, const std::string& address = {});

}  // namespace vantry::server::test
