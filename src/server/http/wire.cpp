#include "server/http/wire.h"

#include <nlohmann/json.hpp>

namespace vantry::server {

namespace {

using nlohmann::json;

constexpr std::size_t longestTag = 16;
constexpr std::size_t mostTags = 2'000;

/// A NUL inside would end the text for one database and be refused by the other.
bool isSound(const std::string& text) {
  return text.find('\0') == std::string::npos;
}

/// Takes a message in as it is read, and ends the reading at whatever is no part of one. So nothing is held
/// but its tags, however deep or long the text is.
class MessageReader final : public nlohmann::json_sax<json> {
 public:
  std::vector<TagValue> tags;

  /// Whether all of a message was there.
  [[nodiscard]] bool isWhole() const { return place_ == Place::Behind; }

  bool start_object(std::size_t) override { return step(Place::Before, Place::Object); }
  bool key(string_t& name) override { return name == "tags" && step(Place::Object, Place::Tags); }
  bool start_array(std::size_t) override {
    if (place_ == Place::Tags) return step(Place::Tags, Place::List);
    return tags.size() < mostTags && step(Place::List, Place::Tag);
  }
  bool string(string_t& text) override {
    if (!isSound(text)) return false;
    if (place_ == Place::Value) {
      tags.back().value = std::move(text);
      return step(Place::Value, Place::PairEnd);
    }
    if (place_ != Place::Tag || text.empty() || text.size() > longestTag) return false;
    tags.push_back({std::move(text), {}});
    return step(Place::Tag, Place::Value);
  }
  bool end_array() override {
    return place_ == Place::PairEnd ? step(Place::PairEnd, Place::List) : step(Place::List, Place::End);
  }
  bool end_object() override { return step(Place::End, Place::Behind); }

  bool null() override { return false; }
  bool boolean(bool) override { return false; }
  bool number_integer(number_integer_t) override { return false; }
  bool number_unsigned(number_unsigned_t) override { return false; }
  bool number_float(number_float_t, const string_t&) override { return false; }
  bool binary(binary_t&) override { return false; }
  bool parse_error(std::size_t, const std::string&, const json::exception&) override { return false; }

 private:
  /// What comes next.
  enum class Place { Before, Object, Tags, List, Tag, Value, PairEnd, End, Behind };

  bool step(Place from, Place to) {
    if (place_ != from) return false;
    place_ = to;
    return true;
  }

  Place place_ = Place::Before;
};

}  // namespace

std::optional<std::vector<TagValue>> readMessage(std::string_view text) {
  MessageReader reader;
  if (!json::sax_parse(text.begin(), text.end(), &reader) || !reader.isWhole()) return std::nullopt;
  return std::move(reader.tags);
}

std::optional<TextPair> readTextPair(std::string_view text, std::string_view first, std::string_view second) {
  const json document = json::parse(text.begin(), text.end(), nullptr, false);
  if (!document.is_object() || document.size() != 2) return std::nullopt;
  const auto one = document.find(std::string(first));
  const auto two = document.find(std::string(second));
  if (one == document.end() || two == document.end()) return std::nullopt;
  const auto* firstText = one->get_ptr<const json::string_t*>();
  const auto* secondText = two->get_ptr<const json::string_t*>();
  if (firstText == nullptr || secondText == nullptr) return std::nullopt;
  if (!isSound(*firstText) || !isSound(*secondText)) return std::nullopt;
  return TextPair{*firstText, *secondText};
}

}  // namespace vantry::server
