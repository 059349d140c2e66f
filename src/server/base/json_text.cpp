#include "server/base/json_text.h"

#include <array>
#include <cstddef>

namespace vantry::server {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isPlain(unsigned char c) {
  return c >= 0x20 && c < 0x80 && c != '"' && c != '\\';
}

bool continues(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

/// Length of the UTF-8 sequence at `at`; 0 when there is none (overlong forms, surrogates and the like
/// included).
std::size_t sequenceLength(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const auto second = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0U;
  if (lead >= 0xC2 && lead <= 0xDF) return continues(text, at + 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)) return 0;
    return continues(text, at + 1) && continues(text, at + 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) return 0;
    return continues(text, at + 1) && continues(text, at + 2) && continues(text, at + 3) ? 4 : 0;
  }
  return 0;
}

void appendEscaped(std::string& to, unsigned char c) {
  constexpr std::string_view hex = "0123456789abcdef";
  switch (c) {
    case '"':
      to += "\\\"";
      return;
    case '\\':
      to += "\\\\";
      return;
    case '\n':
      to += "\\n";
      return;
    case '\r':
      to += "\\r";
      return;
    case '\t':
      to += "\\t";
      return;
    default:
      to += "\\u00";
      to += hex[c >> 4U];
      to += hex[c & 0xFU];
  }
}

}  // namespace

void appendJsonText(std::string& to, std::string_view text) {
  to += '"';
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && isPlain(static_cast<unsigned char>(text[end]))) ++end;
    to.append(text, at, end - at);
    if (end == text.size()) break;
    at = end;
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      appendEscaped(to, static_cast<unsigned char>(text[at++]));
    } else if (const std::size_t length = sequenceLength(text, at); length > 0) {
      to.append(text, at, length);
      at += length;
    } else {
      to += replacement;
      ++at;
    }
  }
  to += '"';
}

std::string errorJson(std::string_view sentence) {
  std::string text = "{\"error\":";
  appendJsonText(text, sentence);
  text += '}';
  return text;
}

}  // namespace vantry::server
