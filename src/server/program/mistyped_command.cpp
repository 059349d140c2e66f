#include "server/program/mistyped_command.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace vantry::server {

namespace {

/// How many signs must be added, removed, replaced or swapped with the next one to make one word the other.
std::size_t distanceOf(std::string_view one, std::string_view other) {
  std::vector<std::size_t> last;
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= one.size(); ++i) {
    std::vector<std::size_t> next{i};
    for (std::size_t j = 1; j <= other.size(); ++j) {
      const std::size_t replaced = row[j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
      next.push_back(std::min({replaced, row[j] + 1, next[j - 1] + 1}));
      const bool isSwapped = i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (isSwapped) next[j] = std::min(next[j], last[j - 2] + 1);
    }
    last = std::move(row);
    row = std::move(next);
  }
  return row.back();
}

/// Empty when none is like it.
std::string nearestTo(const std::string& word, const std::vector<std::string>& names) {
  const auto nearest =
      std::ranges::min_element(names, {}, [&](const std::string& name) { return distanceOf(word, name); });
  const bool isLike = nearest != names.end() && distanceOf(word, *nearest) <= 1 + word.size() / 4;
  return isLike ? *nearest : std::string();
}

/// The command whose own command was not found.
const CLI::App& lastFound(const CLI::App& program) {
  const CLI::App* app = &program;
  while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
  return *app;
}

std::vector<std::string> commandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* each : app.get_subcommands(nullptr)) names.push_back(each->get_name());
  return names;
}

/// The first word that nothing takes. Behind an option that nothing takes it may be the option's value.
std::optional<std::string> strayWord(const CLI::App& program) {
  const std::vector<std::string> words = program.remaining(true);
  const bool isWord = !words.empty() && !words.front().starts_with('-');
  return isWord ? std::optional(words.front()) : std::nullopt;
}

}  // namespace

CLI::RequiredError namingMistyped(const CLI::App& program, const CLI::RequiredError& error) {
  const CLI::App& before = lastFound(program);
  const std::vector<std::string> names = commandsOf(before);
  const std::optional<std::string> word = strayWord(program);
  if (!word || names.empty()) return error;
  const std::string behind = &before == &program ? "" : before.get_name() + " ";
  const std::string nearest = nearestTo(*word, names);
  const std::string all =
      std::accumulate(names.begin(), names.end(), std::string(),
                      [](const std::string& list, const std::string& name) { return list + " " + name; });
  return {"There is no command \"" + behind + *word + "\". " +
              (nearest.empty() ? "There are:" + all + "." : "Did you mean \"" + behind + nearest + "\"?"),
          CLI::ExitCodes::RequiredError};
}

}  // namespace vantry::server
