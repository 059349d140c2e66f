#include "server/http/wire.h"

#include <nlohmann/json.hpp>

namespace vantry::server {

namespace {

using nlohmann::json;

constexpr std::size_t longestTag = 16;

json parse(std::string_view text) {
  return json::parse(text.begin(), text.end(), nullptr, false);
}

/// Text of a member; a NUL inside would end the text for one database and be refused by the other.
const std::string* soundText(const json& value) {
  const std::string* text = value.get_ptr<const json::string_t*>();
  return text != nullptr && text->find('\0') == std::string::npos ? text : nullptr;
}

std::optional<TagValue> readPair(const json& pair) {
  if (!pair.is_array() || pair.size() != 2) return std::nullopt;
  const std::string* tag = soundText(pair[0]);
  const std::string* value = soundText(pair[1]);
  if (tag == nullptr || value == nullptr || tag->empty() || tag->size() > longestTag) return std::nullopt;
  return TagValue{*tag, *value};
}

}  // namespace

std::optional<std::vector<TagValue>> readMessage(std::string_view text) {
  const json document = parse(text);
  if (!document.is_object() || document.size() != 1) return std::nullopt;
  const auto tags = document.find("tags");
  if (tags == document.end() || !tags->is_array()) return std::nullopt;
  std::vector<TagValue> result;
  result.reserve(tags->size());
  for (const json& entry : *tags) {
    std::optional<TagValue> pair = readPair(entry);
    if (!pair) return std::nullopt;
    result.push_back(std::move(*pair));
  }
  return result;
}

std::optional<TextPair> readTextPair(std::string_view text, std::string_view first, std::string_view second) {
  const json document = parse(text);
  if (!document.is_object() || document.size() != 2) return std::nullopt;
  const auto one = document.find(std::string(first));
  const auto two = document.find(std::string(second));
  if (one == document.end() || two == document.end()) return std::nullopt;
  const std::string* firstText = soundText(*one);
  const std::string* secondText = soundText(*two);
  if (firstText == nullptr || secondText == nullptr) return std::nullopt;
  return TextPair{*firstText, *secondText};
}

}  // namespace vantry::server
