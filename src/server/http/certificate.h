#pragma once

#include <cstdint>
#include <string>

namespace vantry::server {

/// The two PEM files with which the server speaks TLS.
struct CertificateFiles {
  std::string certificate;
  std::string key;
};

/// Throws UserError unless both can be read and the key is that of the certificate.
void checkCertificate(const CertificateFiles& files);

/// The moment after which the certificate of the file is no longer valid, in seconds since 1970-01-01 UTC.
/// Throws UserError.
[[nodiscard]] std::int64_t endOfCertificate(const std::string& certificate);

}  // namespace vantry::server
