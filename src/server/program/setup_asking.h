#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "server/program/setup_plan.h"

namespace vantry::server {

/// What a check throws is what is wrong.
template <class Check>
std::string faultOf(const Check& check) {
  try {
    check();
    return {};
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

/// Empty for an empty one.
[[nodiscard]] inline std::string absolutePath(const std::string& path) {
  return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

/// What all questions of a set-up need: who answers them, the configuration as it is, and what they change in
/// it.
class SetupAsking {
 public:
  SetupAsking(const SetupDialog& asks, const GivenAnswers& answers, const std::vector<Setting>& configured,
              const ServiceUser& service)
      : dialog(asks), given(answers), user(service), standing_(configured) {}

  const SetupDialog& dialog;
  const GivenAnswers& given;
  const ServiceUser& user;

  /// What the configuration says now, else another value.
  [[nodiscard]] std::string standing(const std::string& name, const std::string& otherwise) const;
  [[nodiscard]] bool isSwitchedOn(const std::string& name) const;
  /// What is as it was is left as it is written.
  void set(const std::string& name, const std::string& value);
  [[nodiscard]] const std::vector<Setting>& changes() const { return changes_; }

  /// What a check that runs as the user of the service throws.
  template <class Check>
  [[nodiscard]] std::string faultAsService(const Check& check) const {
    return faultOf([&] {
      const ServiceUser::Acting acting(user);
      check();
    });
  }

 private:
  const std::vector<Setting>& standing_;
  std::vector<Setting> changes_;
};

/// Asks who reaches the server, where it listens, and what it needs for that.
void askReach(SetupAsking& asking);
/// Asks for the directory that has passwords of operators, and how they are found there.
[[nodiscard]] DirectorySettings askDirectory(SetupAsking& asking);

}  // namespace vantry::server
