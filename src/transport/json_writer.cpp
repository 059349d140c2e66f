#include "transport/json_writer.h"

namespace vantry {
namespace {

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The length of the character of UTF-8 at the start of the text; 0 where none stands.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) return 0;
  }
  // Overlong forms, surrogates, and what lies beyond the last plane.
  const bool wrong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F) ||
                     (lead == 0xF0 && byte(1) < 0x90) || (lead == 0xF4 && byte(1) > 0x8F);
  return wrong ? 0 : length;
}

void appendEscaped(std::string& json, char c) {
  switch (c) {
    case '"':
      json += "\\\"";
      return;
    case '\\':
      json += "\\\\";
      return;
    case '\n':
      json += "\\n";
      return;
    case '\r':
      json += "\\r";
      return;
    case '\t':
      json += "\\t";
      return;
    default:
      break;
  }
  if (static_cast<unsigned char>(c) >= 0x20) {
    json += c;
    return;
  }
  static constexpr std::string_view digits = "0123456789abcdef";
  json += "\\u00";
  json += digits[static_cast<std::size_t>(c) >> 4U];
  json += digits[static_cast<std::size_t>(c) & 0xFU];
}

}  // namespace

void appendJsonText(std::string& json, std::string_view text) {
  json += '"';
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0) json += "\xEF\xBF\xBD";
    if (length == 1) appendEscaped(json, text.front());
    if (length > 1) json += text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  json += '"';
}

std::string requestBody(const std::vector<TagValue>& tags) {
  std::string body = "{\"tags\":[";
  for (const auto& [tag, value] : tags) {
    if (body.back() == ']') body += ',';
    body += '[';
    appendJsonText(body, tag);
    body += ',';
    appendJsonText(body, value);
    body += ']';
  }
  body += "]}";
  return body;
}

}  // namespace vantry
