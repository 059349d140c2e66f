#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "words/requests.h"

namespace vantry {

/// A message from text: tags parted by blanks, each with "=" and its value or without for an empty one.
inline std::vector<TagValue> messageOf(std::string_view text) {
  std::vector<TagValue> tags;
  for (const auto word : wordsOf(text)) {
    const auto at = word.find('=');
    tags.push_back(
        {std::string(word.substr(0, at)), at == word.npos ? "" : std::string(word.substr(at + 1))});
  }
  return tags;
}

/// A fault in words, such as "Missing DATE"; "sound" for none.
inline std::string wordsFor(const std::optional<MessageFault>& fault) {
  if (!fault) return "sound";
  using enum MessageFault::Kind;
  const std::string kind = fault->kind == Missing      ? "Missing "
                           : fault->kind == Unexpected ? "Unexpected "
                                                       : "BadValue ";
  return kind + fault->tag;
}

}  // namespace vantry
