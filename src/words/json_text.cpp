#include "words/json_text.h"

#include <cstddef>

#include "words/utf8.h"

namespace vantry {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isPlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x20 && byte < 0x80 && c != '"' && c != '\\';
}

void appendEscaped(std::string& json, char c) {
  constexpr std::string_view hex = "0123456789abcdef";
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
      json += "\\u00";
      json += hex[static_cast<std::size_t>(c) >> 4U];
      json += hex[static_cast<std::size_t>(c) & 0xFU];
  }
}

}  // namespace

void appendJsonText(std::string& json, std::string_view text) {
  json += '"';
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && isPlain(text[plain])) ++plain;
    json += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const std::size_t length = characterLength(text);
    if (length == 0) {
      json += replacement;
    } else if (length == 1) {
      appendEscaped(json, text.front());
    } else {
      json += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  json += '"';
}

void appendJsonMember(std::string& json, std::string_view key, std::string_view value) {
  appendJsonText(json, key);
  json += ':';
  appendJsonText(json, value);
}

std::string jsonObject(std::initializer_list<std::pair<std::string_view, std::string_view>> members) {
  std::string json = "{";
  for (const auto& [key, value] : members) {
    if (json.size() > 1) json += ',';
    appendJsonMember(json, key, value);
  }
  return json + '}';
}

}  // namespace vantry
