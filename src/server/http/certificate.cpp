#include "server/http/certificate.h"

#include <cstdio>
#include <ctime>
#include <memory>

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include "server/base/user_error.h"

namespace vantry::server {

namespace {

using Certificate = std::unique_ptr<X509, void (*)(X509*)>;
using Key = std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)>;
using File = std::unique_ptr<FILE, int (*)(FILE*)>;

File opened(const std::string& path, const std::string& what) {
  File file(std::fopen(path.c_str(), "re"), &std::fclose);
  if (!file) throw UserError("The " + what + " \"" + path + "\" cannot be read.");
  return file;
}

/// A service has nobody who could be asked for the password of a key.
int noPassword(char*, int, int, void*) {
  return -1;
}

Certificate readCertificate(const std::string& path) {
  const File file = opened(path, "certificate");
  Certificate certificate(PEM_read_X509(file.get(), nullptr, noPassword, nullptr), &X509_free);
  ERR_clear_error();
  if (!certificate) throw UserError("The file \"" + path + "\" holds no certificate in PEM form.");
  return certificate;
}

Key readKey(const std::string& path) {
  const File file = opened(path, "key");
  Key key(PEM_read_PrivateKey(file.get(), nullptr, noPassword, nullptr), &EVP_PKEY_free);
  ERR_clear_error();
  if (!key) throw UserError("The file \"" + path + "\" holds no key in PEM form, or one with a password.");
  return key;
}

}  // namespace

void checkCertificate(const CertificateFiles& files) {
  if (files.certificate.empty() || files.key.empty())
    throw UserError("A certificate and its key are needed together.");
  const Certificate certificate = readCertificate(files.certificate);
  const Key key = readKey(files.key);
  const bool fits = X509_check_private_key(certificate.get(), key.get()) == 1;
  ERR_clear_error();
  if (!fits)
    throw UserError("The key \"" + files.key + "\" does not fit the certificate \"" + files.certificate +
                    "\".");
}

std::int64_t endOfCertificate(const std::string& path) {
  const Certificate certificate = readCertificate(path);
  std::tm end{};
  if (ASN1_TIME_to_tm(X509_get0_notAfter(certificate.get()), &end) != 1)
    throw UserError("The certificate \"" + path + "\" has no end that can be read.");
  return timegm(&end);
}

}  // namespace vantry::server
