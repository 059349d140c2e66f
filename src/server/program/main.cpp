#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "server/program/command_line.h"

namespace {

/// Each connection takes a file handle, and the usual limit is far below what the system allows.
void raiseFileLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);  // a refusal leaves the limit as it was
}

}  // namespace

int main(int argc, char** argv) {
  // What is written holds names, keys and hashes: it is for this user alone.
  umask(077);
  std::signal(SIGPIPE, SIG_IGN);
  raiseFileLimit();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is a full disk, and told as one
  return vantry::server::runCommandLine(argc, argv);
}
