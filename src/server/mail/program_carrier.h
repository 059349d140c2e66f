#pragma once

#include "server/mail/mail_carrier.h"

namespace vantry::server {

/// Gives each letter to a program that is called as sendmail is: "PROGRAM -t -oi", the letter on its standard
/// input.
[[nodiscard]] std::unique_ptr<MailCarrier> makeProgramCarrier(const std::string& program);

}  // namespace vantry::server
