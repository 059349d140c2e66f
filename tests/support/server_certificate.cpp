#include "support/server_certificate.h"

#include <cstdlib>
#include <stdexcept>

namespace vantry::server::test {

void makeCertificate(const TempFolder& folder, const std::string& name, const std::string& address) {
  const std::string command =
      "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=" + name +
      (address.empty() ? "" : " -addext subjectAltName=" + address) + " -keyout " +
      folder.file(name + ".key") + " -out " + folder.file(name + ".pem") + " 2> /dev/null";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("no certificate for " + name);
}

}  // namespace vantry::server::test
