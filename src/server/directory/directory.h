#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "server/directory/directory_settings.h"

namespace vantry::server {

/// Throws UserError, with a sentence, for settings that no directory could be asked by.
void checkDirectory(const DirectorySettings& settings);

/// The directory of the house, over LDAP. It says whether a password is right, and nothing else. For many
/// threads at once. Where it has several addresses, the next is asked when one does not say. Each thread
/// waits no longer than the settings say, but for the look-up of the host's name, which is the system's, and
/// which all of them do one after another. SIGPIPE is ignored from the first one on.
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

  /// What keeps operators from being judged, in a sentence for each address where something does.
  [[nodiscard]] std::vector<std::string> faults() const;

 private:
  using Clock = std::chrono::steady_clock;

  struct Place {
    explicit Place(std::string at) : address(std::move(at)) {}

    std::string address;
    std::atomic<Clock::rep> restsUntil = Clock::time_point::min().time_since_epoch().count();

    [[nodiscard]] bool rests() const { return Clock::now().time_since_epoch().count() < restsUntil; }
  };

  DirectorySettings settings_;
  std::deque<Place> places_;
};

}  // namespace vantry::server
