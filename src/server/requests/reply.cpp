#include "server/requests/reply.h"

#include "words/json_text.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

void addMember(std::string& to, bool first, std::string_view tag, std::string_view value) {
  if (!first) to += ',';
  appendJsonMember(to, tag, value);
}

}  // namespace

Reply& Reply::head(std::string_view tag, std::string_view value) {
  if (!value.empty()) addMember(head_, head_.empty(), tag, value);
  return *this;
}

Reply& Reply::head(std::string_view tag, std::int64_t value) {
  return head(tag, std::to_string(value));
}

Reply& Reply::record() {
  body_ += records_ == 0 ? "{" : "},{";
  ++records_;
  return *this;
}

Reply& Reply::set(std::string_view tag, std::string_view value) {
  if (!value.empty()) addMember(body_, body_.back() == '{', tag, value);
  return *this;
}

Reply& Reply::set(std::string_view tag, std::int64_t value) {
  if (tag == tags::VUF || tag == tags::CHFA) reasons_.push_back(static_cast<int>(value));
  return set(tag, std::to_string(value));
}

void Reply::append(const Reply& other) {
  if (other.records_ == 0) return;
  if (records_ > 0) body_ += "},";
  body_ += other.body_;
  records_ += other.records_;
  reasons_.insert(reasons_.end(), other.reasons_.begin(), other.reasons_.end());
}

std::string Reply::json() const {
  std::string text;
  text.reserve(head_.size() + body_.size() + 48);
  text += "{\"rc\":";
  text += std::to_string(rc_);
  text += ",\"head\":{";
  text += head_;
  text += "},\"records\":[";
  text += body_;
  text += records_ > 0 ? "}]}" : "]}";
  return text;
}

}  // namespace vantry::server
