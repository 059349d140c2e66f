#include <algorithm>

#include "messaging/transport.h"

namespace vantry {

int Reply::tagNumber(std::string_view tag) const {
  const auto found = std::find(tagNames_.begin(), tagNames_.end(), tag);
  return found == tagNames_.end() ? -1 : static_cast<int>(found - tagNames_.begin());
}

std::uint32_t Reply::numberFor(std::string_view tag) {
  if (nextTag_ >= tagNames_.size() || tagNames_[nextTag_] != tag) {
    const int known = tagNumber(tag);
    nextTag_ = known < 0 ? tagNames_.size() : static_cast<std::size_t>(known);
    if (known < 0) tagNames_.emplace_back(tag);
  }
  return static_cast<std::uint32_t>(nextTag_++);
}

void Reply::reserve(std::size_t bytes) {
  // On the wire a field takes its text and some twenty bytes; what is never written to costs nothing.
  constexpr std::size_t fieldOnTheWire = 20;
  text_.reserve(bytes);
  fields_.reserve(bytes / fieldOnTheWire);
}

void Reply::add(std::string_view tag, std::string_view value) {
  const std::uint32_t number = numberFor(tag);
  fields_.push_back(
      {number, static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(value.size())});
  text_ += value;
}

void Reply::beginRecord() {
  // A record begins most likely with the tag that began the one before.
  if (!starts_.empty() && starts_.back() < fields_.size()) nextTag_ = fields_[starts_.back()].tag;
  starts_.push_back(fields_.size());
}

Reply::Value Reply::value(int record, std::string_view tag) const {
  const int number = tagNumber(tag);
  if (number < 0 || record >= recordCount()) return {};
  const auto place = static_cast<std::size_t>(record);
  const std::size_t first = record < 0 ? 0 : starts_[place];
  const std::size_t next = record < 0 ? 0 : place + 1;
  const std::size_t end = next < starts_.size() ? starts_[next] : fields_.size();
  for (std::size_t i = first; i < end; ++i) {
    const Field& field = fields_[i];
    if (field.tag == static_cast<std::uint32_t>(number))
      return {std::string_view(text_).substr(field.start, field.length), true};
  }
  return {};
}

}  // namespace vantry
