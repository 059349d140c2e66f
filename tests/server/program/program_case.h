#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "server/base/moment.h"
#include "server/store/query.h"
#include "support/server_case.h"
#include "support/server_certificate.h"
#include "support/server_files.h"

namespace vantry::server::test {

struct Outcome {
  int code = -1;
  std::string text;  ///< both outputs

  /// The text, of a command that must end with this code.
  [[nodiscard]] const std::string& endedWith(int expected) const {
    EXPECT_EQ(code, expected) << text;
    return text;
  }
};

/// The program as it serves, until the end of the test.
class Serving {
 public:
  Serving(const std::string& database, std::string log, std::vector<std::string> more = {})
      : log_(std::move(log)) {
    std::filesystem::remove(log_);  // the port of an earlier one is not this one's
    child_ = fork();
    if (child_ == 0) {
      if (freopen(log_.c_str(), "w", stdout) == nullptr) _exit(9);
      std::vector<std::string> words{"vantry-server", "--database", database, "serve", "--port", "0"};
      words.insert(words.end(), more.begin(), more.end());
      std::vector<char*> arguments;
      for (std::string& each : words) arguments.push_back(each.data());
      arguments.push_back(nullptr);
      execv(VANTRY_SERVER_PROGRAM, arguments.data());
      _exit(9);
    }
  }
  ~Serving() { end(SIGKILL); }
  Serving(const Serving&) = delete;
  Serving& operator=(const Serving&) = delete;

  [[nodiscard]] pid_t process() const { return child_; }
  void send(int signal) const { kill(child_, signal); }

  int end(int signal) {
    if (child_ > 0) kill(child_, signal);
    return wait();
  }

  /// Waits until it has ended by itself.
  int wait() {
    int status = 0;
    if (child_ > 0) waitpid(child_, &status, 0);
    child_ = 0;
    return status;
  }

  /// Waits until it listens; 0 when it ended before.
  int port() {
    for (int wait = 0; wait < 2000 && port_ == 0 && child_ > 0; ++wait) {
      const std::string text = contentOf(log_);
      const std::size_t at = text.find(" port ");
      const bool whole = at != std::string::npos && text.find('\n', at) != std::string::npos;
      if (whole) port_ = std::stoi(text.substr(at + 6));
      if (waitpid(child_, nullptr, WNOHANG) == child_) child_ = 0;
      if (port_ == 0) usleep(10'000);
    }
    return port_;
  }

 private:
  int port_ = 0;
  std::string log_;
  pid_t child_ = 0;
};

/// The desk of the operator "dana", without a server between it and the database.
class DanasDesk {
 public:
  DanasDesk(const std::string& database, Moment now)
      : store_(database),
        runner_(
            store_, [now] { return now; }, HashCost::Quick),
        token_(runner_.login("dana", "a-good-password", "127.0.0.1").token) {}

  /// Tags as "TAG=value; TAG=value".
  Got ask(const std::string& code, const std::string& tags) {
    const std::vector<TagValue> read = readTags(tags);
    return answerTo(runner_,
                    {.token = token_, .code = code, .requestId = std::to_string(++requests_), .tags = read});
  }

 private:
  Database store_;
  RequestRunner runner_;
  std::string token_;
  int requests_ = 0;
};

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() : database(folder.file("library.sqlite")) {}

  Outcome run(const std::string& arguments, const std::string& input = {}) {
    return runBare("--database " + database + " " + arguments, input);
  }

  /// Without a database on the command line.
  Outcome runBare(const std::string& arguments, const std::string& input = {}) {
    std::ofstream(folder.file("input")) << input;
    return shell(std::string(VANTRY_SERVER_PROGRAM) + " " + arguments + " < " + folder.file("input"));
  }

  /// Any command of the shell.
  Outcome shell(const std::string& command) {
    const std::string output = folder.file("output");
    Outcome outcome;
    outcome.code = WEXITSTATUS(std::system(("{ " + command + "\n} > " + output + " 2>&1").c_str()));
    outcome.text = contentOf(output);
    return outcome;
  }

  void makeLibrary() {
    ASSERT_EQ(run("init").code, 0);
    ASSERT_EQ(run("library add 'City Library'").code, 0);
    ASSERT_EQ(run("location add Main --library 'City Library'").code, 0);
    ASSERT_EQ(
        run("operator add Dana --name 'Dana D.' --location Main --rights all", "a-good-password\n").code, 0);
  }

  /// Read beside the program.
  std::string value(const std::string& sql) {
    Database store(database);
    return valueOf(store, sql);
  }

  TempFolder folder;
  std::string database;
};

}  // namespace vantry::server::test
