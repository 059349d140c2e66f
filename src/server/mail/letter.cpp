#include "server/mail/letter.h"

#include <memory>

#include <gmime/gmime.h>

#include "server/base/mail_address.h"
#include "server/base/user_error.h"

namespace vantry::server {

namespace {

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\"";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// A name is one line in the header, whatever the patron's record has in it.
std::string oneLine(std::string_view text) {
  std::string line(text);
  for (char& sign : line) {
    if (static_cast<unsigned char>(sign) < ' ' || sign == '\x7F') sign = ' ';
  }
  return line;
}

/// In UTF-8 whatever it contains; left to itself, the library would choose a smaller set of characters.
Owned<GMimePart> bodyPart(const std::string& body) {
  const Owned<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(body.data(), body.size()));
  const Owned<GMimeDataWrapper> content(
      g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
  Owned<GMimePart> part(g_mime_part_new_with_type("text", "plain"));
  g_mime_object_set_content_type_parameter(GMIME_OBJECT(part.get()), "charset", "utf-8");
  g_mime_part_set_content(part.get(), content.get());
  g_mime_part_set_content_encoding(part.get(), GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
  return part;
}

void setDate(GMimeMessage* message, Moment at) {
  const std::string text = momentText(at);
  const auto number = [&](std::size_t from, std::size_t size) { return std::stoi(text.substr(from, size)); };
  GDateTime* date = g_date_time_new_local(number(0, 4), number(5, 2), number(8, 2), number(11, 2),
                                          number(14, 2), number(17, 2));
  if (date == nullptr) return;
  g_mime_message_set_date(message, date);
  g_date_time_unref(date);
}

std::string textOf(GMimeMessage* message) {
  GMimeFormatOptions* format = g_mime_format_options_new();
  g_mime_format_options_set_newline_format(format, GMIME_NEWLINE_FORMAT_DOS);
  char* text = g_mime_object_to_string(GMIME_OBJECT(message), format);
  std::string result(text);
  g_free(text);
  g_mime_format_options_free(format);
  return result;
}

/// Before the first use in this process.
void prepare() {
  static const bool done = [] {
    g_mime_init();
    return true;
  }();
  static_cast<void>(done);
}

}  // namespace

MailSender senderIn(std::string_view setting) {
  const std::size_t open = setting.find('<');
  const bool isNamed = open != std::string_view::npos && setting.ends_with('>');
  MailSender sender;
  if (isNamed) sender.name = oneLine(trimmed(setting.substr(0, open)));
  sender.address = isNamed ? setting.substr(open + 1, setting.size() - open - 2) : setting;
  if (!isMailAddress(sender.address))
    throw UserError("\"" + oneLine(setting) +
                    "\" is no address that mail can be sent from. Write --mail-from "
                    "'Booking Desk <desk@library.example>'.");
  return sender;
}

std::string letterText(const LetterHead& head, const MailText& text) {
  if (!isMailAddress(head.toAddress)) throw UserError("The address is none that mail can be sent to.");
  prepare();
  const Owned<GMimeMessage> message(g_mime_message_new(TRUE));
  const std::string domain = head.from.address.substr(head.from.address.find('@') + 1);
  g_mime_message_add_mailbox(message.get(), GMIME_ADDRESS_TYPE_FROM, head.from.name.c_str(),
                             head.from.address.c_str());
  g_mime_message_add_mailbox(message.get(), GMIME_ADDRESS_TYPE_TO, oneLine(head.toName).c_str(),
                             head.toAddress.c_str());
  g_mime_message_set_subject(message.get(), oneLine(text.subject).c_str(), "utf-8");
  g_mime_message_set_message_id(message.get(), (head.id + "@" + domain).c_str());
  setDate(message.get(), head.at);
  // No automatic answer is wanted.
  g_mime_object_set_header(GMIME_OBJECT(message.get()), "Auto-Submitted", "auto-generated", nullptr);
  const Owned<GMimePart> part = bodyPart(text.body);
  g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(part.get()));
  return textOf(message.get());
}

}  // namespace vantry::server
