#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "messaging/transport.h"

namespace vantry::test {

/// Tags and replies written as text, for tests.
///
/// A pair reads `TAG=value`. A value runs up to the next pair, the end of its segment or of the line, without
/// blanks around it; in double quotes it may hold anything, a double quote written twice. Segments are parted
/// by
/// "|" or line breaks; empty ones do not count. Everything here throws std::invalid_argument for text that
/// cannot be read so.
struct TagBlock {
  using Pairs = std::vector<TagValue>;
  Pairs head;                  ///< of segments that begin with "head:"
  std::vector<Pairs> records;  ///< all others, in their order
};
[[nodiscard]] TagBlock blockOf(std::string_view text);

/// The pairs of one segment: "DATE=2026-11-24 HBK=N".
[[nodiscard]] std::vector<TagValue> pairsOf(std::string_view text);

/// A whole reply: "head: BOOKID=7 | EID=1 ENO=TV1 | EID=2".
[[nodiscard]] Reply replyOf(std::string_view text, int rc = 0);
[[nodiscard]] Reply replyOf(const TagBlock& block, int rc);

/// Pairs as they would be written, for messages.
[[nodiscard]] std::string inWords(const std::vector<TagValue>& pairs);

}  // namespace vantry::test
