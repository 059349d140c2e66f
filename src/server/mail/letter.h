#pragma once

#include <string>
#include <string_view>

#include "server/base/moment.h"
#include "server/mail/mail_texts.h"

namespace vantry::server {

/// Who sends, out of a setting such as "Booking Desk <desk@library.example>".
struct MailSender {
  std::string name;
  std::string address;
};
/// Throws UserError with a sentence when it names no address that mail can be sent from.
[[nodiscard]] MailSender senderIn(std::string_view setting);

struct LetterHead {
  MailSender from;
  std::string toName;
  std::string toAddress;
  std::string id;  ///< what is before the "@" of its Message-ID
  Moment at = 0;
};

/// A whole message: header and body with line ends as they go over the wire, all of it ASCII. Throws
/// UserError for an address that mail cannot be sent to.
[[nodiscard]] std::string letterText(const LetterHead& head, const MailText& text);

}  // namespace vantry::server
