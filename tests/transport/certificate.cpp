#include "transport/certificate.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace vantry::test {
namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openFile(const std::string& name) {
  File file(std::fopen(name.c_str(), "w"), &std::fclose);
  if (!file) throw std::runtime_error("cannot write " + name);
  return file;
}

void addAlternativeName(X509& certificate, const char* name) {
  X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, name);
  X509_add_ext(&certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

}  // namespace

void writeCertificate(const std::string& certificateFile, const std::string& keyFile) {
  const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
  const std::unique_ptr<X509, void (*)(X509*)> certificate(X509_new(), &X509_free);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_set_pubkey(certificate.get(), key.get());
  X509_NAME* name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("localhost"),
                             -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  addAlternativeName(*certificate, "DNS:localhost");
  if (X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0)
    throw std::runtime_error("the test's certificate cannot be signed");
  PEM_write_X509(openFile(certificateFile).get(), certificate.get());
  PEM_write_PrivateKey(openFile(keyFile).get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
}

}  // namespace vantry::test
