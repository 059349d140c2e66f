#pragma once

#include <string>
#include <string_view>

#include "frame/preferences.h"

namespace vantry {

/// The text to search for: with `AutoTruncate` on it ends in the server's truncation mark, of which it never
/// gets a second one. Barcodes and numbers are no exception.
[[nodiscard]] inline std::string ApplyAutoTruncate(const Preferences& preferences, std::string_view text) {
  std::string sought(text);
  if (preferences.AutoTruncate && !sought.ends_with('?')) sought += '?';
  return sought;
}

}  // namespace vantry
