#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "words/requests.h"
#include "words/tags.h"

namespace vantry {

/// A pattern of `RequestRow::sent`, ready to be matched against messages.
///
/// All ways through the pattern are followed side by side, one tag of the message after the other, so that no
/// nesting of repetitions makes a long message slow.
class TagPattern {
 public:
  /// A tag that occurs in the pattern, with the form that its values have in this message.
  struct Use {
    std::string_view tag;
    TagForm form;
  };

  struct Match {
    bool sound = false;
    std::size_t reached =
        0;  ///< how many tags of the message fitted before one did not, or the message ended
    std::string_view required;  ///< the tag that must be at `reached`; empty when all there is optional
    std::size_t steps = 0;      ///< how many places of the pattern were visited, for measuring
  };

  /// Keeps views into the text. Throws std::invalid_argument when the text is no pattern.
  explicit TagPattern(std::string_view text);

  [[nodiscard]] Match match(std::span<const TagValue> tags) const;

  /// The use of a tag, or nullptr for a tag that the pattern does not know.
  [[nodiscard]] const Use* find(std::string_view tag) const;

  /// Every tag of the pattern once, in the order in which they occur first.
  [[nodiscard]] std::span<const Use> uses() const { return uses_; }

 private:
  friend class PatternReader;

  static constexpr std::ptrdiff_t kFork = -1;

  /// A place takes one tag and continues at the next place, or forks to two others, both relative to itself.
  /// The second way of a fork is the one that needs least: past what is optional, into the first
  /// alternative.
  struct Place {
    std::ptrdiff_t takes = kFork;  ///< index into `uses_`
    std::ptrdiff_t first = 1;
    std::ptrdiff_t second = 1;
  };
  using Program = std::vector<Place>;

  class Front;
  [[nodiscard]] std::string_view requiredFrom(std::size_t place) const;

  std::vector<Use> uses_;
  Program program_;  ///< a place behind the last one means that the pattern is complete
};

}  // namespace vantry
