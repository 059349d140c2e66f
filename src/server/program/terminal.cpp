#include "server/program/terminal.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <iostream>

#include "server/access/passwords.h"
#include "server/setup/administration.h"

namespace vantry::server {

namespace {

/// How the terminal was; a handler of signals reaches nothing but a global.
termios terminalBefore{};

/// The signal comes again when this returns, and then ends the program, as it would have without us.
void giveEchoBack(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &terminalBefore);
  raise(signal);
}

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// Turns the terminal's echo off for as long as it lives, also when a signal ends it.
class Silence {
 public:
  Silence() {
    tcgetattr(STDIN_FILENO, &terminalBefore);
    struct sigaction handling {};
    handling.sa_handler = giveEchoBack;
    handling.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t each = 0; each < endingSignals.size(); ++each) {
      sigaction(endingSignals[each], &handling, &handledBefore_[each]);
    }
    termios silent = terminalBefore;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  }
  ~Silence() {
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &terminalBefore);
    for (std::size_t each = 0; each < endingSignals.size(); ++each) {
      sigaction(endingSignals[each], &handledBefore_[each], nullptr);
    }
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::array<struct sigaction, endingSignals.size()> handledBefore_{};
};

std::string readLine() {
  std::string line;
  std::getline(std::cin, line);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::string askSilently(const char* question) {
  std::cerr << question << std::flush;
  std::string line;
  {
    const Silence silence;
    line = readLine();
  }
  std::cerr << '\n';
  return line;
}

std::string askTwice() {
  std::string first = askSilently("New password: ");
  if (askSilently("Again: ") != first) throw UserError("The two passwords differ.");
  return first;
}

}  // namespace

std::optional<std::string> askLine(const std::string& question) {
  std::cerr << question << std::flush;
  std::string line = readLine();
  if (line.empty() && std::cin.eof()) return std::nullopt;
  return line;
}

bool hasInputEnded() {
  return std::cin.eof();
}

std::string readNewPassword() {
  std::string password = isatty(STDIN_FILENO) != 0 ? askTwice() : readLine();
  if (const std::string weakness = weaknessOf(password); !weakness.empty()) throw UserError(weakness);
  return password;
}

}  // namespace vantry::server
