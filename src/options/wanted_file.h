#pragma once

#include <string>
#include <string_view>

#include "platform/desktop.h"

namespace vantry {

/// A kind of file that an option names.
struct WantedFile {
  std::string_view filter;  ///< as `Desktop::chooseFile` takes it
  bool (Desktop::*isUsable)(std::string_view file);
  const char* refusal;
};
inline constexpr WantedFile kWaves = {"Wave (*.wav)|*.wav", &Desktop::canPlay,
                                      "This file holds no sound that can be played."};
inline constexpr WantedFile kImages = {"Images (*.gif;*.jpg;*.bmp;*.ico)|*.gif;*.jpg;*.bmp;*.ico",
                                       &Desktop::canShow, "This file holds no picture that can be shown."};

/// Whether the file is there; one that cannot be looked at is as good as none.
[[nodiscard]] bool exists(const std::string& file);
/// Whether the file can be used. A box tells why not.
[[nodiscard]] bool isUsable(Desktop& desktop, const std::string& file, const WantedFile& wanted);

}  // namespace vantry
