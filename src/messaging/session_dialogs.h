#pragma once

#include <string_view>

#include "messaging/server_session.h"
#include "messaging/tagmessage.h"
#include "platform/windows.h"

namespace vantry {

/// Lets the operator change their password.
class PasswordDialog {
 public:
  explicit PasswordDialog(Windows& windows) : windows_(windows) {}
  /// `scope` names the programs that the new password is for; the server keeps one password for "All".
  void Run(ServerSession& session, TagMessage& message, std::string_view scope);

 private:
  Windows& windows_;
};

/// Says who is logged on, where, and over what kind of line.
class LoginInfoDialog {
 public:
  explicit LoginInfoDialog(Windows& windows) : windows_(windows) {}
  void Run(const ServerSession& session, std::string_view locationName);

 private:
  Windows& windows_;
};

/// Says what this program is.
class AboutBox {
 public:
  explicit AboutBox(Windows& windows) : windows_(windows) {}
  void Run(const ServerSession& session);

 private:
  Windows& windows_;
};

}  // namespace vantry
