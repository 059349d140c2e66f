#pragma once

#include <cstdint>
#include <random>
#include <span>

namespace vantry::server {

/// The chance behind the demo library. The standard's distributions may differ between libraries, so it has
/// its own.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}

  /// A number from 0 to count - 1.
  [[nodiscard]] int below(int count) {
    return static_cast<int>(engine_() % static_cast<std::uint32_t>(count));
  }
  [[nodiscard]] int between(int first, int last) { return first + below(last - first + 1); }
  [[nodiscard]] bool percent(int chance) { return below(100) < chance; }

  template <class T, std::size_t N>
  [[nodiscard]] const T& of(const T (&values)[N]) {
    return values[static_cast<std::size_t>(below(static_cast<int>(N)))];
  }
  template <class T>
  [[nodiscard]] const T& of(std::span<const T> values) {
    return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
  }

 private:
  std::mt19937 engine_;
};

}  // namespace vantry::server
