#include "server/program/terminal.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

#include "server/administration.h"
#include "server/passwords.h"

namespace vantry::server {

namespace {

/// Turns the terminal's echo off for as long as it lives.
class Silence {
 public:
  Silence() {
    tcgetattr(STDIN_FILENO, &before_);
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
  }
  ~Silence() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  termios before_{};
};

std::string readLine() {
  std::string line;
  std::getline(std::cin, line);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

std::string ask(const char* question) {
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
  std::string first = ask("New password: ");
  if (ask("Again: ") != first) throw AdministrationError("The two passwords differ.");
  return first;
}

}  // namespace

std::string readNewPassword() {
  std::string password = isatty(STDIN_FILENO) != 0 ? askTwice() : readLine();
  if (const std::string weakness = weaknessOf(password); !weakness.empty())
    throw AdministrationError(weakness);
  return password;
}

}  // namespace vantry::server
