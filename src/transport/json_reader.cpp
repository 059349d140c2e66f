#include "transport/json_reader.h"

#include <simdjson.h>

#include <limits>

namespace vantry {
namespace {

namespace json = simdjson::ondemand;

/// The text with the room behind it that the parser reads into.
simdjson::padded_string_view padded(std::string& body) {
  body.reserve(body.size() + simdjson::SIMDJSON_PADDING);
  return simdjson::padded_string_view(body.data(), body.size(), body.capacity());
}

bool readFields(json::object object, Reply& reply) {
  for (auto field : object) {
    std::string_view tag;
    std::string_view value;
    if (field.unescaped_key().get(tag) || field.value().get_string().get(value)) return false;
    reply.add(tag, value);
  }
  return true;
}

bool readRecords(json::array records, Reply& reply) {
  for (auto record : records) {
    json::object object;
    if (record.get_object().get(object)) return false;
    reply.beginRecord();
    if (!readFields(object, reply)) return false;
  }
  return true;
}

bool readCode(json::value value, Reply& reply) {
  std::int64_t code = 0;
  if (value.get_int64().get(code)) return false;
  using Code = std::numeric_limits<std::int16_t>;
  if (code < Code::min() || code > Code::max()) return false;
  reply.rc = static_cast<int>(code);
  return true;
}

/// One part of a reply; an unknown part is passed over, so that a later server may say more.
bool readPart(json::field& part, Reply& reply, bool& hasCode) {
  std::string_view key;
  if (part.unescaped_key().get(key)) return false;
  if (key == "rc") return hasCode = readCode(part.value(), reply);
  if (key == "head") {
    json::object head;
    // The head's values stand before all records, in the reply as on the wire.
    return reply.recordCount() == 0 && !part.value().get_object().get(head) && readFields(head, reply);
  }
  if (key == "records") {
    json::array records;
    return !part.value().get_array().get(records) && readRecords(records, reply);
  }
  return true;
}

/// Whether nothing but blanks follows what was read.
bool isAtEnd(json::document& document) {
  const char* rest = nullptr;
  return document.current_location().get(rest) == simdjson::OUT_OF_BOUNDS;
}

bool readReply(json::parser& parser, std::string& body, Reply& reply) {
  json::document document;
  json::object parts;
  if (parser.iterate(padded(body)).get(document) || document.get_object().get(parts)) return false;
  bool hasCode = false;
  reply.reserve(body.size());
  for (auto part : parts) {
    json::field field;
    if (std::move(part).get(field) || !readPart(field, reply, hasCode)) return false;
  }
  return hasCode && isAtEnd(document);
}

/// The working memory takes some five times the reply; that of larger ones is given back.
constexpr std::size_t kLargestKept = 4U * 1024 * 1024;

}  // namespace

struct ReplyReader::Parser : json::parser {};

ReplyReader::ReplyReader() = default;

ReplyReader::~ReplyReader() = default;

bool ReplyReader::read(std::string& body, Reply& reply) {
  if (!parser_) parser_ = std::make_unique<Parser>();
  const bool sound = readReply(*parser_, body, reply);
  if (body.size() > kLargestKept) parser_.reset();
  return sound;
}

std::string readText(std::string& body, std::string_view key) {
  json::parser parser;
  json::document document;
  std::string_view text;
  if (parser.iterate(padded(body)).get(document) || document[key].get_string().get(text)) return {};
  return std::string(text);
}

int readNumber(std::string& body, std::string_view key) {
  json::parser parser;
  json::document document;
  std::int64_t number = 0;
  if (parser.iterate(padded(body)).get(document) || document[key].get_int64().get(number)) return -1;
  if (number < 0 || number > std::numeric_limits<int>::max()) return -1;
  return static_cast<int>(number);
}

}  // namespace vantry
