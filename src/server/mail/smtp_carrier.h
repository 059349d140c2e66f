#pragma once

#include "server/mail/mail_carrier.h"

namespace vantry::server {

/// Sends by SMTP, through an address such as "smtp://host:587" or "smtps://host". Always with TLS, but for a
/// mail server on this machine at "smtp://localhost".
[[nodiscard]] std::unique_ptr<MailCarrier> makeSmtpCarrier(const MailSettings& settings,
                                                           const std::string& password);

}  // namespace vantry::server
