#pragma once

#include <string>

namespace vantry::test {

/// Writes a certificate for "localhost" that vouches for itself, and its key, as PEM files.
void writeCertificate(const std::string& certificateFile, const std::string& keyFile);

}  // namespace vantry::test
