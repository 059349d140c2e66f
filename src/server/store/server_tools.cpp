#include "server/store/server_tools.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

#include <libpq-fe.h>

namespace vantry::server {

namespace {

constexpr int notFound = 127;

/// What the address says, by the names of the variables that PostgreSQL's programs read.
std::vector<std::pair<std::string, std::string>> environmentOf(const std::string& url) {
  const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
      PQconninfoParse(url.c_str(), nullptr), PQconninfoFree);
  if (!options) throw std::runtime_error("The address of the database cannot be read.");
  std::vector<std::pair<std::string, std::string>> variables;
  for (const PQconninfoOption* each = options.get(); each->keyword != nullptr; ++each) {
    if (each->val != nullptr && each->envvar != nullptr) variables.emplace_back(each->envvar, each->val);
  }
  return variables;
}

}  // namespace

void runServerTool(const std::string& url, const std::vector<std::string>& command) {
  const auto variables = environmentOf(url);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("The program " + command[0] + " cannot be started.");
  if (child == 0) {
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> words;
    for (const std::string& each : command) words.push_back(const_cast<char*>(each.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(notFound);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == notFound)
    throw std::runtime_error("The program " + command[0] + " is not installed.");
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error("The program " + command[0] + " failed.");
}

}  // namespace vantry::server
