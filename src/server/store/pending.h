#pragma once

#include <functional>
#include <utility>

namespace vantry::server {

/// What was asked of the store and is read when it is needed. What is asked before any of it is read costs
/// one round trip to a database server. It must be read within the transaction, and before anything of it is
/// written: a file is asked only then.
template <class Value>
class Pending {
 public:
  explicit Pending(std::function<Value()> read) : read_(std::move(read)) {}
  /// Called once.
  [[nodiscard]] Value get() const { return read_(); }

 private:
  std::function<Value()> read_;
};

/// What need not be asked.
template <class Value>
[[nodiscard]] Pending<Value> known(Value value) {
  return Pending<Value>([value = std::move(value)] { return value; });
}

}  // namespace vantry::server
