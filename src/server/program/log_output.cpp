#include "server/program/log_output.h"

#include <poll.h>
#include <unistd.h>

#include <climits>
#include <string>

namespace vantry::server {

namespace {

// A pipe that has room takes so much at once.
constexpr std::size_t longestLine = PIPE_BUF;

}  // namespace

bool LogOutput::hasRoom() const {
  pollfd asked{.fd = file_, .events = POLLOUT, .revents = 0};
  return poll(&asked, 1, 0) == 1 && (asked.revents & POLLOUT) != 0;
}

bool LogOutput::write(const spdlog::details::log_msg& line) {
  if (!hasRoom()) return false;
  spdlog::memory_buf_t text;
  formatter_->format(line, text);
  if (text.size() > longestLine) {
    text.resize(longestLine);
    text[longestLine - 1] = '\n';
  }
  return ::write(file_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void LogOutput::sink_it_(const spdlog::details::log_msg& line) {
  if (dropped_ > 0) {
    const std::string told = std::to_string(dropped_) + " lines of the log were dropped: nobody took them";
    if (write({line.logger_name, spdlog::level::warn, told})) dropped_ = 0;
  }
  if (dropped_ > 0 || !write(line)) ++dropped_;
}

}  // namespace vantry::server
