#include "server/mail/mail_carrier.h"

#include <unistd.h>

#include "server/base/first_line.h"
#include "server/base/user_error.h"
#include "server/mail/program_carrier.h"
#include "server/mail/smtp_carrier.h"

namespace vantry::server {

namespace {

constexpr const char* usualProgram = "/usr/sbin/sendmail";

std::string passwordIn(const std::string& file) {
  const std::string password = firstLineOf(file).value_or("");
  if (password.empty())
    throw MailUnavailable("The password of the mail server cannot be read from " + file + ".");
  return password;
}

}  // namespace

std::unique_ptr<MailCarrier> makeCarrier(const MailSettings& settings) {
  const std::string& through = settings.through;
  if (through.starts_with("smtp://") || through.starts_with("smtps://")) {
    if (!settings.user.empty() && settings.passwordFile.empty())
      throw UserError("A user at the mail server needs --mail-password-file.");
    if (!settings.authority.empty() && access(settings.authority.c_str(), R_OK) != 0)
      throw MailUnavailable(settings.authority + " cannot be read.");
    return makeSmtpCarrier(settings,
                           settings.user.empty() ? std::string() : passwordIn(settings.passwordFile));
  }
  const std::string program = through == "sendmail" ? usualProgram : through;
  if (!program.starts_with('/'))
    throw UserError(
        "Mail goes through \"sendmail\", the path of such a program, smtp://host:587 or "
        "smtps://host, and not through \"" +
        through + "\".");
  if (access(program.c_str(), X_OK) != 0)
    throw MailUnavailable("There is no program " + program + " to send mail.");
  return makeProgramCarrier(program);
}

}  // namespace vantry::server
