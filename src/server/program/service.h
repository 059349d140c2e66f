#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace vantry::server {

/// The user of the system that the service runs as, where this program may act for it: as root, on a machine
/// that has that user. Else it stands for this user, and changes nothing.
class ServiceUser {
 public:
  /// `isForService`: whether the work is for the service at all.
  explicit ServiceUser(bool isForService);
  /// The group that may read the service's configuration; empty for this user's own.
  [[nodiscard]] const std::string& group() const { return name_; }

  /// Lets this program act as the service's user as long as it lives, so that files belong to that user, and
  /// what the service may not read or write is noticed.
  class Acting {
   public:
    explicit Acting(const ServiceUser& user);
    ~Acting();
    Acting(const Acting&) = delete;
    Acting& operator=(const Acting&) = delete;

   private:
    bool acts_;
    std::vector<gid_t> groupsBefore_;
  };

 private:
  std::string name_;
  uid_t user_ = 0;
  gid_t group_ = 0;
};

/// Whether systemd runs this machine and knows the service.
[[nodiscard]] bool hasService();

/// Has the service start with the machine, and starts it now, or anew if it runs. Throws UserError when it
/// does not start.
void startService();

}  // namespace vantry::server
