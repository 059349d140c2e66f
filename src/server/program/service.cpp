#include "server/program/service.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "server/base/user_error.h"

namespace vantry::server {

namespace {

constexpr const char* serviceUser = "vantry";

bool succeeds(const char* command) {
  return std::system(command) == 0;
}

/// Whoever could not leave another user's rights must not go on with them.
void need(bool done) {
  if (!done)
    throw std::runtime_error("This program cannot act as the user " + std::string(serviceUser) + ".");
}

}  // namespace

ServiceUser::ServiceUser(bool isForService) {
  if (!isForService || geteuid() != 0) return;
  const passwd* found = getpwnam(serviceUser);
  if (found == nullptr) return;
  name_ = serviceUser;
  user_ = found->pw_uid;
  group_ = found->pw_gid;
}

ServiceUser::Acting::Acting(const ServiceUser& user) : acts_(!user.name_.empty()) {
  if (!acts_) return;
  groupsBefore_.resize(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
  need(getgroups(static_cast<int>(groupsBefore_.size()), groupsBefore_.data()) >= 0 &&
       initgroups(serviceUser, user.group_) == 0 && setegid(user.group_) == 0 && seteuid(user.user_) == 0);
}

ServiceUser::Acting::~Acting() {
  if (!acts_) return;
  const bool isBack =
      seteuid(0) == 0 && setegid(0) == 0 && setgroups(groupsBefore_.size(), groupsBefore_.data()) == 0;
  if (!isBack) std::abort();
}

bool hasService() {
  std::error_code unreadable;
  return std::filesystem::exists("/run/systemd/system", unreadable) &&
         succeeds("systemctl cat vantry-server.service > /dev/null 2>&1");
}

void startService() {
  if (!succeeds("systemctl enable --quiet vantry-server.service && systemctl restart vantry-server.service"))
    throw UserError("The service does not start; \"journalctl -u vantry-server\" tells why.");
}

}  // namespace vantry::server
