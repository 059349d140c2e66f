#include "server/program/configuration.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/setup/administration.h"

namespace vantry::server {

namespace {

using Lines = std::vector<std::string>;

/// The parts of "serve.port": the command, empty for the program, and the option.
struct SplitName {
  std::string section;
  std::string option;
};

SplitName splitName(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return {.section = {}, .option = name};
  return {.section = name.substr(0, dot), .option = name.substr(dot + 1)};
}

CLI::App* commandNamed(CLI::App& app, const std::string& section) {
  CLI::App* found = &app;
  for (const std::string& word : CLI::detail::split(section, '.')) {
    if (word.empty()) continue;
    const auto commands = found->get_subcommands([&](CLI::App* each) { return each->get_name() == word; });
    if (commands.empty()) return nullptr;
    found = commands.front();
  }
  return found;
}

CLI::Option* optionIn(CLI::App& app, const std::string& option) {
  CLI::Option* found = app.get_option_no_throw("--" + option);
  return found != nullptr && found->get_configurable() ? found : nullptr;
}

[[noreturn]] void refuse(const std::string& file, const std::string& sentence) {
  throw UserError(file + ": " + sentence);
}

CLI::Option* needOption(CLI::App& app, const std::string& file, const std::string& name) {
  const auto [section, option] = splitName(name);
  CLI::App* command = commandNamed(app, section);
  CLI::Option* found = command == nullptr ? nullptr : optionIn(*command, option);
  if (found != nullptr) return found;
  CLI::App* serving = section.empty() ? commandNamed(app, "serve") : nullptr;
  const bool isOfServe = serving != nullptr && optionIn(*serving, option) != nullptr;
  refuse(file, "there is no setting " + inQuotes(name) + (isOfServe ? "; it belongs below [serve]." : "."));
}

/// The sentence of an option's own check, without the name of the option in front.
std::string withoutName(const std::string& sentence) {
  const std::size_t colon = sentence.find(": ");
  return sentence.starts_with("--") && colon != std::string::npos ? sentence.substr(colon + 2) : sentence;
}

void give(CLI::Option& option, const std::string& file, const Setting& setting) {
  std::string values;
  for (const std::string& value : setting.values) values += (values.empty() ? "" : ", ") + value;
  const std::string cannotBe = inQuotes(setting.name) + " cannot be " + inQuotes(values);
  try {
    const bool isFlag = option.get_expected_min() == 0;
    if (isFlag) {
      option.add_result(option.get_flag_value(splitName(setting.name).option, values));
    } else {
      option.add_result(setting.values);
    }
    option.run_callback();
  } catch (const CLI::ValidationError& error) {
    refuse(file, cannotBe + ": " + withoutName(error.what()) + ".");
  } catch (const CLI::ArgumentMismatch&) {
    refuse(file, cannotBe + ": it takes one value. One with blanks or commas needs quotation marks.");
  } catch (const CLI::ParseError&) {
    refuse(file, cannotBe + ".");
  }
}

std::string quotedValue(const std::string& value) {
  const bool hasDouble = value.find('"') != std::string::npos;
  if ((hasDouble && value.find('\'') != std::string::npos) || value.find('\n') != std::string::npos)
    throw UserError("A file of settings cannot hold " + value + ".");
  const char mark = hasDouble ? '\'' : '"';
  return mark + value + mark;
}

/// Words and numbers stand as they are.
std::string writtenValue(const std::string& value) {
  const bool isNumber = !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
  return isNumber || value == "true" || value == "false" ? value : quotedValue(value);
}

std::string lineFor(const Setting& setting) {
  std::string list;
  for (const std::string& value : setting.values) list += (list.empty() ? "" : ", ") + writtenValue(value);
  return splitName(setting.name).option + " = " + (setting.values.size() == 1 ? list : "[" + list + "]");
}

bool isHead(const std::string& line) {
  const std::string_view plain = trimmed(line);
  return plain.size() > 2 && plain.front() == '[' && plain.back() == ']';
}

/// Of a section: its lines without its head.
struct Range {
  std::size_t first;
  std::size_t last;
};

Range sectionIn(Lines& lines, const std::string& section) {
  auto first = lines.begin();
  if (!section.empty()) {
    first = std::ranges::find_if(
        lines, [&](const std::string& line) { return trimmed(line) == "[" + section + "]"; });
    if (first == lines.end()) {
      if (!lines.empty()) lines.emplace_back();
      first = lines.insert(lines.end(), "[" + section + "]");
    }
    ++first;
  }
  const auto last = std::find_if(first, lines.end(), isHead);
  return {static_cast<std::size_t>(first - lines.begin()), static_cast<std::size_t>(last - lines.begin())};
}

bool sets(const std::string& line, const std::string& option) {
  const std::string_view plain = trimmed(line);
  return trimmed(plain.substr(0, plain.find('='))) == option;
}

/// Removes the entry at that line, which a list in several lines may be.
std::size_t removeEntry(Lines& lines, std::size_t at) {
  std::size_t end = at + 1;
  const std::string_view value = trimmed(std::string_view(lines[at]).substr(lines[at].find('=') + 1));
  if (value.starts_with('[')) {
    while (end < lines.size() && !trimmed(lines[end - 1]).ends_with(']')) ++end;
  }
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at),
              lines.begin() + static_cast<std::ptrdiff_t>(end));
  return end - at;
}

void change(Lines& lines, const Setting& setting) {
  const auto [section, option] = splitName(setting.name);
  auto [first, last] = sectionIn(lines, section);
  std::optional<std::size_t> place;
  for (std::size_t at = first; at < last;) {
    if (!sets(lines[at], option)) {
      ++at;
      continue;
    }
    if (!place) place = at;
    last -= removeEntry(lines, at);
  }
  if (setting.values.empty()) return;
  if (!place) {
    place = last;
    while (*place > first && trimmed(lines[*place - 1]).empty()) --*place;
  }
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*place), lineFor(setting));
}

}  // namespace

std::vector<Setting> readSettings(const std::string& file) {
  std::ifstream input(file);
  std::error_code unreadable;
  if (!input.good() || std::filesystem::is_directory(file, unreadable))
    throw UserError(file + ": the file is missing, or this user may not read it.");
  CLI::ConfigBase reader;
  reader.comment('\0');  // only whole lines are comments, since a value may hold any sign
  std::vector<Setting> settings;
  for (const CLI::ConfigItem& item : reader.from_config(input)) {
    const bool isMark = item.name == "++" || item.name == "--";  // of a section's beginning and end
    if (!isMark) settings.push_back({.name = item.fullname(), .values = item.inputs});
  }
  return settings;
}

std::vector<std::string> takeSettings(CLI::App& app, const std::string& file) {
  std::vector<std::string> taken;
  for (const Setting& setting : readSettings(file)) {
    CLI::Option* option = needOption(app, file, setting.name);
    if (!option->empty()) continue;
    give(*option, file, setting);
    taken.push_back(setting.name);
  }
  return taken;
}

std::string withSettings(std::string_view text, const std::vector<Setting>& changes) {
  Lines lines;
  std::istringstream input{std::string(text)};
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  for (const Setting& each : changes) change(lines, each);
  std::string changed;
  for (const std::string& line : lines) changed += line + '\n';
  return changed;
}

PendingFile::PendingFile(std::string file, std::string_view text, const std::string& group)
    : file_(std::filesystem::weakly_canonical(file).string()), part_(file_ + ".new") {
  unlink(part_.c_str());
  const int opened = open(part_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (opened < 0) throw UserError(file + ": this user may not write it, or its folder is missing.");
  struct stat before {};
  struct group* const found = group.empty() ? nullptr : getgrnam(group.c_str());
  const bool replaces = stat(file_.c_str(), &before) == 0;
  const gid_t reader = found != nullptr ? found->gr_gid : getegid();
  // A user who may not give files away keeps it; then the mode alone decides who reads it.
  (void)!fchown(opened, replaces ? before.st_uid : geteuid(), replaces ? before.st_gid : reader);
  const bool written = fchmod(opened, 0640) == 0 &&
                       write(opened, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                       fsync(opened) == 0;
  close(opened);
  if (written) return;
  unlink(part_.c_str());
  throw UserError(file + ": it cannot be written to the disk.");
}

PendingFile::~PendingFile() {
  if (!part_.empty()) unlink(part_.c_str());
}

void PendingFile::commit() {
  if (rename(part_.c_str(), file_.c_str()) != 0) throw UserError(file_ + ": it cannot be replaced.");
  part_.clear();
}

}  // namespace vantry::server
