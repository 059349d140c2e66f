#pragma once

#include <atomic>
#include <cstdio>
#include <string>
#include <string_view>

/// Counts what was measured and what of it failed. A figure of work that was refused says nothing, so that a
/// program with failures does not end with 0. For many threads at once.
class Failures {
 public:
  /// Counts one piece of work. The first failures are printed.
  void note(std::string_view what, bool done) {
    ++count_;
    if (done) return;
    if (++failed_ <= mostTold) std::printf("failed: %s\n", std::string(what).c_str());
  }

  /// Prints the count, and returns what `main` returns.
  [[nodiscard]] int tell() const {
    std::printf("%d of %d failed\n", failed_.load(), count_.load());
    return failed_ == 0 && count_ > 0 ? 0 : 1;
  }

 private:
  static constexpr int mostTold = 10;
  std::atomic<int> count_ = 0;
  std::atomic<int> failed_ = 0;
};

/// Whether the JSON of a reply begins with this return code.
inline bool hasCode(std::string_view json, int rc) {
  return json.starts_with("{\"rc\":" + std::to_string(rc) + ",");
}
