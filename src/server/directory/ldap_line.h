#pragma once

#include <sys/time.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <ldap.h>

#include "server/directory/connection_limit.h"
#include "server/directory/directory_settings.h"

namespace vantry::server {

/// The directory cannot be asked, or does not say; `what` is the reason, which is no whole sentence.
class DirectoryFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Makes the library ready. Its first call must not be made by two threads at once.
void prepareLdap();

/// The name of an entry with the login in place of its mark, escaped as names need it.
[[nodiscard]] std::string nameFor(std::string_view pattern, std::string_view login);
/// The same for the filter of a search.
[[nodiscard]] std::string filterFor(std::string_view pattern, std::string_view login);
/// Whether it is one.
[[nodiscard]] bool isEntryName(const std::string& name);

/// One line to the directory, protected unless the settings say otherwise. All that is done on it has to be
/// done before `end`. Everything throws DirectoryFault.
class LdapLine {
 public:
  using Clock = std::chrono::steady_clock;

  /// `address` is one of those of the settings.
  LdapLine(const DirectorySettings& settings, const std::string& address, Clock::time_point end);
  LdapLine(const LdapLine&) = delete;
  LdapLine& operator=(const LdapLine&) = delete;

  /// Whether the entry has that password. From then on the line has the rights of the entry. A password is
  /// needed: without one the directory takes anybody.
  [[nodiscard]] bool isLetIn(const std::string& entry, std::string_view password);

  /// The name of the one entry below the base that fits; nothing when none does.
  [[nodiscard]] std::optional<std::string> find(const std::string& base, const std::string& filter);

  /// Has the directory say something.
  void greet();

 private:
  struct Unbind {
    void operator()(LDAP* line) const { ldap_unbind_ext_s(line, nullptr, nullptr); }
    void operator()(LDAPMessage* message) const { ldap_msgfree(message); }
  };
  using Message = std::unique_ptr<LDAPMessage, Unbind>;

  struct Found {
    int code;
    Message entries;
  };
  Found search(const std::string& base, int scope, const std::string& filter);
  void set(int option, const void* value);
  timeval limitNextStep();
  void need(int code);
  [[noreturn]] void fail(int code);

  Clock::time_point end_;
  ConnectionLimit limit_;
  ldap_conncb onConnection_;
  std::unique_ptr<LDAP, Unbind> line_;
};

}  // namespace vantry::server
