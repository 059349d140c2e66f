#pragma once

#include <string>

#include "server/mail/mail_kinds.h"

namespace vantry::server {

/// How a server sends mail. Nothing is sent without a kind that is switched on.
struct MailSettings {
  MailKinds kinds;
  std::string from;  ///< "desk@library.example", or with a name: "Desk <desk@library.example>"
  std::string through = "sendmail";  ///< or the path of a program like it, "smtp://host:587", "smtps://host"
  std::string user;                  ///< at the mail server; empty for none
  std::string passwordFile;          ///< its first line is the password
  std::string authority;             ///< PEM file of who vouches for the mail server; empty: the system's
  std::string texts =
      "/etc/vantry/mail";  ///< folder of the texts; where one is missing, there is a built-in one
};

}  // namespace vantry::server
