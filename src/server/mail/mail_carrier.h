#pragma once

#include <memory>
#include <stop_token>
#include <string>

#include "server/base/user_error.h"
#include "server/mail/mail_settings.h"

namespace vantry::server {

struct Letter {
  std::string from;  ///< addresses, already checked
  std::string to;
  std::string text;
};

/// What became of a letter. One that is refused will never be taken; one that is put off may be later; when
/// one failed, all others would now.
struct Delivery {
  enum class Kind { Sent, Refused, PutOff, Failed } kind = Kind::Failed;
  std::string fault = {};  ///< for people
};

/// Gives letters to the mail system. Used by one thread.
class MailCarrier {
 public:
  MailCarrier() = default;
  virtual ~MailCarrier() = default;
  MailCarrier(const MailCarrier&) = delete;
  MailCarrier& operator=(const MailCarrier&) = delete;

  /// Takes a minute at most, and ends early when the token asks for it.
  [[nodiscard]] virtual Delivery carry(const Letter& letter, const std::stop_token& ending) = 0;
};

/// What the settings name is not there, or may not be read: it may be another time.
class MailUnavailable : public UserError {
 public:
  using UserError::UserError;
};

/// The carrier that the settings name. Throws UserError with a sentence for settings that make no sense, and
/// MailUnavailable.
[[nodiscard]] std::unique_ptr<MailCarrier> makeCarrier(const MailSettings& settings);

}  // namespace vantry::server
