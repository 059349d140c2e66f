#pragma once

#include <sys/types.h>

#include <string>

#include "server/directory/directory_settings.h"
#include "support/server_case.h"

namespace vantry::server::test {

/// The system's LDAP server in a process of its own, on free ports of this machine. Below
/// "dc=library,dc=example" it has the people all, view, "a,b" and "*)(uid=*", each with the password "house-"
/// and the name, and twin twice. Only the entry "cn=reader" may search, with the password "reading".
class Slapd {
 public:
  enum class Tls { Spoken, Unknown };
  explicit Slapd(Tls tls = Tls::Spoken);
  ~Slapd();
  Slapd(const Slapd&) = delete;
  Slapd& operator=(const Slapd&) = delete;

  /// Whether the system has one; else its tests are skipped.
  [[nodiscard]] static bool isInstalled();

  void start();
  void stop();

  [[nodiscard]] std::string address() const { return "ldap://127.0.0.1:" + std::to_string(port_); }
  [[nodiscard]] std::string sealedAddress() const {
    return "ldaps://127.0.0.1:" + std::to_string(sealedPort_);
  }
  [[nodiscard]] int port() const { return port_; }
  /// Of a second authority, which has nothing to do with it.
  [[nodiscard]] std::string otherAuthority() const { return folder_.file("other.pem"); }

  /// That find an operator by the pattern of their name, or by a search.
  [[nodiscard]] DirectorySettings byName() const;
  [[nodiscard]] DirectorySettings bySearch() const;

 private:
  void write(const std::string& file, const std::string& text) const;
  void run(const std::string& command) const;

  const Tls tls_;
  TempFolder folder_;
  int port_;
  int sealedPort_;
  pid_t process_ = 0;
};

}  // namespace vantry::server::test
