#include "platform/inifile.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "platform/settings.h"
#include "platform/text.h"

namespace vantry {

void IniFile::Open(std::string_view fileName) {
  std::string name(fileName);
  std::replace(name.begin(), name.end(), '\\', '/');
  const auto relative = name.find_first_not_of('/');
  file_ = folder_ / name.substr(relative == std::string::npos ? name.size() : relative);
}

std::vector<std::string> IniFile::lines() const {
  std::vector<std::string> result;
  std::ifstream stream(file_, std::ios::binary);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    result.push_back(std::move(line));
  }
  return result;
}

void IniFile::mustBeReadable() const {
  // What cannot even be looked at counts as there.
  std::error_code unknown;
  const bool there = std::filesystem::exists(file_, unknown) || unknown;
  // A folder opens like a file and fails with the first byte.
  std::ifstream stream(file_, std::ios::binary);
  stream.peek();
  if (there && (!stream.is_open() || stream.bad())) throw std::runtime_error("Cannot read " + file_.string());
}

static bool isSection(std::string_view line) {
  line = trim(line);
  return line.size() >= 2 && line.front() == '[' && line.back() == ']';
}

struct LineRange {
  std::size_t first;  ///< behind the section's heading
  std::size_t end;
};

static std::optional<LineRange> sectionRange(const std::vector<std::string>& lines, std::string_view name) {
  std::size_t first = 0;
  for (; first < lines.size(); ++first) {
    const auto line = trim(lines[first]);
    if (isSection(line) && equalNoCase(line.substr(1, line.size() - 2), name)) break;
  }
  if (first == lines.size()) return std::nullopt;
  std::size_t last = ++first;
  while (last < lines.size() && !isSection(lines[last])) ++last;
  return LineRange{first, last};
}

std::string IniFile::ReadSection() const {
  const auto all = lines();
  const auto range = sectionRange(all, section_);
  std::string result;
  if (!range) return result;
  for (std::size_t i = range->first; i < range->end; ++i) {
    if (trim(all[i]).empty()) continue;
    if (!result.empty()) result += '\0';
    result += all[i];
  }
  return result;
}

void IniFile::WriteKey(std::string_view key, std::string_view value) {
  mustBeReadable();
  auto all = lines();
  const std::string entry = std::string(key) + '=' + std::string(value);
  auto range = sectionRange(all, section_);
  if (!range) {
    all.push_back('[' + section_ + ']');
    range = LineRange{all.size(), all.size()};
  }
  const auto begin = all.begin() + static_cast<std::ptrdiff_t>(range->first);
  const auto end = all.begin() + static_cast<std::ptrdiff_t>(range->end);
  const auto found = std::find_if(begin, end, [&](const std::string& line) {
    return equalNoCase(trim(line.substr(0, line.find('='))), key);
  });
  if (found != end) {
    *found = entry;
  } else {
    all.insert(end, entry);
  }
  std::string content;
  for (const auto& line : all) content += line + '\n';
  writeFileWhole(file_, content);
}

}  // namespace vantry
