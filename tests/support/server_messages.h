#pragma once

#include <string_view>
#include <vector>

#include "words/requests.h"

namespace vantry::server {

/// A whole message of the request that carries the tag, with values that mean something in `DeskLibrary`.
/// Each tag stands once. Empty when the request does not know the tag.
[[nodiscard]] std::vector<TagValue> messageWith(const RequestRow& row, std::string_view tag);

/// One message for each tag of each request that has a handler, so that every alternative is among them; one
/// without tags for a request that takes none.
struct SampleMessage {
  const RequestRow* row;
  std::string_view tag;
  std::vector<TagValue> tags;
};
[[nodiscard]] std::vector<SampleMessage> sampleMessages();

}  // namespace vantry::server
