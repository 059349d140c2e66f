#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <string_view>

#include "server/directory/directory_settings.h"

namespace vantry::server {

/// Throws UserError, with a sentence, for settings that no directory could be asked by.
void checkDirectory(const DirectorySettings& settings);

/// The directory of the house, over LDAP. It says whether a password is right, and nothing else. For many
/// threads at once. Each waits no longer than the settings say, but for the look-up of the host's name, which
/// is the system's, and which all of them do one after another. SIGPIPE is ignored from the first one on.
class Directory {
 public:
  /// Asks nothing yet. Throws UserError as checkDirectory does.
  explicit Directory(DirectorySettings settings);

  enum class Verdict {
    Right,
    Wrong,  ///< or nobody has that name, or the directory lets them in no more
    Away    ///< nothing is known; the log tells why
  };
  [[nodiscard]] Verdict judge(std::string_view login, std::string_view password);

  /// What keeps operators from being judged, in a sentence; empty when nothing does.
  [[nodiscard]] std::string fault() const;

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] std::string sentenceOf(std::string_view reason) const;

  DirectorySettings settings_;
  std::atomic<Clock::rep> restsUntil_;
};

}  // namespace vantry::server
