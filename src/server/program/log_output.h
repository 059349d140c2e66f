#pragma once

#include <cstddef>
#include <mutex>
#include <string_view>

#include <spdlog/sinks/base_sink.h>

namespace vantry::server {

/// The log on an output that others read. Whoever writes a line never waits for them: what the system has no
/// room for is dropped, and its count is told as soon as there is room again. A queue in front of the
/// system's own would only lose more lines when the program is killed.
class LogOutput final : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit LogOutput(int file) : file_(file) {}

 private:
  void sink_it_(const spdlog::details::log_msg& line) override;
  void flush_() override {}
  bool write(const spdlog::details::log_msg& line);
  [[nodiscard]] bool hasRoom() const;

  const int file_;
  std::size_t dropped_ = 0;
};

}  // namespace vantry::server
