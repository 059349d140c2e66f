#include "server/program/setup_dialog.h"

#include <iostream>
#include <optional>

#include "server/access/passwords.h"
#include "server/base/first_line.h"
#include "server/program/terminal.h"
#include "server/setup/administration.h"

namespace vantry::server {

namespace {

[[noreturn]] void breakOff() {
  throw UserError("The set-up was broken off before its last answer. Nothing was changed.");
}

std::vector<std::string> splitAtCommas(const std::string& line) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t comma = line.find(','); start != std::string::npos; comma = line.find(',', start)) {
    const std::string_view part = trimmed(std::string_view(line).substr(start, comma - start));
    if (!part.empty()) parts.emplace_back(part);
    start = comma == std::string::npos ? comma : comma + 1;
  }
  return parts;
}

std::string firstFault(const Question& question, const std::vector<std::string>& answers) {
  for (const std::string& each : answers) {
    if (const std::string fault = question.fault(each); !fault.empty()) return fault;
  }
  return {};
}

std::string passwordIn(const std::string& file) {
  const std::optional<std::string> line = firstLineOf(file);
  if (!line) throw UserError("The file \"" + file + "\" with the password cannot be read.");
  if (const std::string weakness = weaknessOf(*line); !weakness.empty()) throw UserError(weakness);
  return *line;
}

std::string promptOf(const Question& question) {
  const std::string& shown = question.shown.empty() ? question.suggestion : question.shown;
  return question.text + (shown.empty() ? "" : " [" + shown + "]") + ": ";
}

}  // namespace

std::string SetupDialog::answer(const Question& question, const std::string& given) const {
  const bool isFixed = takesSuggestions_ || !given.empty();
  for (;;) {
    const std::optional<std::string> line = isFixed ? given : askLine(promptOf(question));
    if (!line) breakOff();
    std::string answer(trimmed(*line));
    if (answer.empty() && given.empty()) answer = question.suggestion;
    const std::string fault = question.fault(answer);
    if (fault.empty()) return answer;
    if (isFixed) throw UserError(fault);
    std::cerr << fault << '\n';
  }
}

std::vector<std::string> SetupDialog::answers(const Question& question,
                                              const std::vector<std::string>& given) const {
  if (!given.empty()) {
    if (const std::string fault = firstFault(question, given); !fault.empty()) throw UserError(fault);
    return given;
  }
  const Question line{
      .text = question.text, .suggestion = question.suggestion, .fault = [&](const std::string& all) {
        const std::vector<std::string> parts = splitAtCommas(all);
        const bool needsOne = parts.empty() && !question.suggestion.empty();
        return needsOne ? question.fault({}) : firstFault(question, parts);
      }};
  return splitAtCommas(answer(line, {}));
}

std::string SetupDialog::password(const std::string& file) const {
  if (!file.empty()) return passwordIn(file);
  for (;;) {
    try {
      return readNewPassword();
    } catch (const UserError& error) {
      if (hasInputEnded()) breakOff();
      if (takesSuggestions_) throw;
      std::cerr << error.what() << '\n';
    }
  }
}

}  // namespace vantry::server
