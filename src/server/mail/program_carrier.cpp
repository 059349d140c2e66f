#include "server/mail/program_carrier.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sysexits.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <string_view>

namespace vantry::server {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds longestRun{60};
constexpr int betweenLooks = 200;  ///< milliseconds

class Handle {
 public:
  explicit Handle(int handle = -1) : handle_(handle) {}
  ~Handle() { close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  [[nodiscard]] int get() const { return handle_; }
  void take(int handle) {
    close();
    handle_ = handle;
  }
  void close() {
    if (handle_ >= 0) ::close(handle_);
    handle_ = -1;
  }

 private:
  int handle_;
};

/// The server blocks signals in its threads and ignores broken pipes; a program of its own expects neither.
class Attributes {
 public:
  Attributes() {
    sigset_t none;
    sigemptyset(&none);
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    sigaddset(&pipe, SIGXFSZ);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &pipe);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

class Actions {
 public:
  explicit Actions(int input) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
    // The connections of desks are not the program's, which may leave a child behind.
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  ~Actions() { posix_spawn_file_actions_destroy(&actions_); }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

Delivery failed(const std::string& what) {
  return {Delivery::Kind::Failed, what};
}

/// One run of the program.
class Run {
 public:
  Run(const std::string& program, const std::stop_token& ending) : program_(program), ending_(ending) {}
  ~Run() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  Delivery with(std::string_view text) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return failed(std::strerror(errno));
    Handle theirs(ends[0]);
    input_.take(ends[1]);
    if (const int error = start(theirs.get()); error != 0)
      return failed(program_ + ": " + std::strerror(error));
    theirs.close();
    fcntl(input_.get(), F_SETFL, O_NONBLOCK);
    if (!write(text)) return failed(program_ + " took too long");
    input_.close();
    return outcome();
  }

 private:
  int start(int input) {
    const Actions actions(input);
    const Attributes attributes;
    std::array<char, 3> fromHeader{"-t"};
    std::array<char, 4> dotsAreText{"-oi"};
    std::array<char*, 4> arguments{program_.data(), fromHeader.data(), dotsAreText.data(), nullptr};
    const int error =
        posix_spawn(&child_, program_.c_str(), actions.get(), attributes.get(), arguments.data(), environ);
    if (error != 0) child_ = 0;
    return error;
  }

  /// Waits for the handle; false when the time is over or the server ends.
  bool wait(int handle, short events) const {
    while (!ending_.stop_requested() && steady_clock::now() < until_) {
      pollfd waited{.fd = handle, .events = events, .revents = 0};
      if (poll(&waited, 1, betweenLooks) > 0) return true;
    }
    return false;
  }

  /// A program that reads no further has its reasons, which its exit status tells.
  bool write(std::string_view text) {
    while (!text.empty()) {
      const ssize_t written = ::write(input_.get(), text.data(), text.size());
      if (written >= 0) {
        text.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno == EAGAIN) {
        if (!wait(input_.get(), POLLOUT)) return false;
      } else if (errno != EINTR) {
        return true;
      }
    }
    return true;
  }

  Delivery outcome() {
    // The library's own header for it is none for C++.
    const Handle process(static_cast<int>(syscall(SYS_pidfd_open, child_, 0)));
    if (process.get() < 0 || !wait(process.get(), POLLIN)) return failed(program_ + " took too long");
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = 0;
    if (WIFEXITED(status) && WEXITSTATUS(status) == EX_OK) return {Delivery::Kind::Sent};
    if (!WIFEXITED(status)) return failed(program_ + " was ended by a signal");
    const int code = WEXITSTATUS(status);
    const bool forGood = code == EX_NOUSER || code == EX_NOHOST || code == EX_DATAERR;
    return {forGood ? Delivery::Kind::Refused : Delivery::Kind::Failed,
            program_ + " ended with " + std::to_string(code)};
  }

  std::string program_;
  const std::stop_token& ending_;
  steady_clock::time_point until_ = steady_clock::now() + longestRun;
  Handle input_;
  pid_t child_ = 0;
};

class ProgramCarrier : public MailCarrier {
 public:
  explicit ProgramCarrier(std::string program) : program_(std::move(program)) {}

  Delivery carry(const Letter& letter, const std::stop_token& ending) override {
    // Programs of this kind take the line ends of the system.
    std::string text = letter.text;
    std::erase(text, '\r');
    return Run(program_, ending).with(text);
  }

 private:
  std::string program_;
};

}  // namespace

std::unique_ptr<MailCarrier> makeProgramCarrier(const std::string& program) {
  return std::make_unique<ProgramCarrier>(program);
}

}  // namespace vantry::server
