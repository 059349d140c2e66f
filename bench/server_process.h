#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "server/base/moment.h"
#include "server/program/server.h"

/// As many as the system lets this program have.
inline void allowManyConnections() {
  rlimit files{};
  getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = files.rlim_max;
  setrlimit(RLIMIT_NOFILE, &files);
}

/// A server in a process of its own, which ends with this object. Made before this program has other threads.
class ServerProcess {
 public:
  explicit ServerProcess(vantry::Server::Options options) {
    int told[2];
    int held[2];
    if (pipe(told) != 0 || pipe(held) != 0) throw std::runtime_error("no pipe");
    child_ = fork();
    if (child_ == 0) {
      close(held[1]);
      serve(std::move(options), told[1], held[0]);
      _exit(0);
    }
    close(told[1]);
    close(held[0]);
    hold_ = held[1];
    if (read(told[0], &port_, sizeof port_) != sizeof port_)
      throw std::runtime_error("the server did not start");
    close(told[0]);
  }
  ~ServerProcess() {
    close(hold_);
    waitpid(child_, nullptr, 0);
  }
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  [[nodiscard]] int port() const { return port_; }

  /// Seconds of processor time so far.
  [[nodiscard]] double processorTime() const {
    std::ifstream file("/proc/" + std::to_string(child_) + "/stat");
    std::string word;
    double ticks = 0;
    for (int number = 1; file >> word; ++number) {
      if (number == 14 || number == 15) ticks += std::stod(word);
    }
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
  }

  [[nodiscard]] double megabytes() const {
    std::ifstream file("/proc/" + std::to_string(child_) + "/statm");
    double all = 0;
    double resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
  }

 private:
  static void serve(vantry::Server::Options options, int told, int held) {
    options.threads = 300;
    options.quickHashes = true;
    options.clock = [] { return vantry::server::makeMoment(2026, 11, 24, 12); };
    vantry::Server server(options);
    server.start();
    const int port = server.port();
    if (write(told, &port, sizeof port) != sizeof port) return;
    char ended = 0;
    while (read(held, &ended, 1) > 0) {
    }
  }

  pid_t child_ = 0;
  int hold_ = -1;
  int port_ = 0;
};
