#include "platform/settings.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "platform/text.h"

namespace vantry {

[[noreturn]] static void cannotWrite(const std::filesystem::path& file) {
  throw std::runtime_error("Cannot write " + file.string() + ": " +
                           std::error_code(errno, std::generic_category()).message());
}

void writeFileWhole(const std::filesystem::path& file, std::string_view content) {
  std::error_code ignored;  // a folder that cannot be made shows in the open below
  std::filesystem::create_directories(file.parent_path(), ignored);
  const std::filesystem::path fresh = file.string() + ".new";
  const int handle = ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (handle < 0) cannotWrite(fresh);
  bool written = true;
  while (!content.empty() && written) {
    const auto count = ::write(handle, content.data(), content.size());
    written = count > 0;
    if (written) content.remove_prefix(static_cast<std::size_t>(count));
  }
  written = written && ::fsync(handle) == 0;
  const bool closed = ::close(handle) == 0;
  if (!written || !closed || std::rename(fresh.c_str(), file.c_str()) != 0) cannotWrite(file);
}

/// Values stand on one line: a backslash, a line break and a NUL are written with a backslash, and so are
/// blanks at the ends, which a reader would take for an editor's.
static std::string escaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool atEnd = i == 0 || i + 1 == text.size();
    switch (const char c = text[i]) {
      case ' ':
        result += atEnd ? "\\s" : " ";
        break;
      case '\t':
        result += atEnd ? "\\t" : "\t";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\0':
        result += "\\0";
        break;
      default:
        result += c;
    }
  }
  return result;
}

static bool unescape(std::string_view text, std::string& result) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\0') return false;
    if (text[i] != '\\') {
      result += text[i];
      continue;
    }
    if (++i == text.size()) return false;
    const auto sign = std::string_view("\\nr0st").find(text[i]);
    if (sign == std::string_view::npos) return false;
    result += "\\\n\r\0 \t"[sign];
  }
  return true;
}

/// Whoever edits the file by hand may put blanks around the sign.
static std::string_view valueBehind(std::string_view line, std::size_t equals) {
  line.remove_prefix(std::min(equals + 1, line.size()));
  return trim(line);
}

static std::string sectionName(std::string_view application, std::string_view section) {
  return lower(application) + '\\' + lower(section);
}

/// Keeps other programs from writing the file between the reading and the writing of this one. Without a
/// lock, on a file system that has none, the write goes on: it is whole all the same.
class WriteLock {
 public:
  explicit WriteLock(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::create_directories(file.parent_path(), ignored);
    handle_ = ::open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (handle_ >= 0) static_cast<void>(::flock(handle_, LOCK_EX));
  }
  ~WriteLock() {
    if (handle_ >= 0) ::close(handle_);
  }
  WriteLock(const WriteLock&) = delete;
  WriteLock& operator=(const WriteLock&) = delete;

 private:
  int handle_ = -1;
};

FileSettings::FileSettings(std::filesystem::path file) : file_(std::move(file)) {
  sections_ = read();
}

FileSettings::Sections FileSettings::read() {
  Sections sections;
  std::ifstream stream(file_, std::ios::binary);
  std::string line;
  Section* section = nullptr;
  bool bad = false;
  while (std::getline(stream, line)) {
    if (line.ends_with('\r')) line.pop_back();  // an editor's; in values it is written with a backslash
    const std::string_view whole = trim(line);
    if (whole.empty() || whole.front() == ';') continue;
    if (whole.front() == '[' && whole.back() == ']') {
      section = &sections[lower(trim(whole.substr(1, whole.size() - 2)))];
      continue;
    }
    const auto equals = line.find('=');
    const std::string key(trim(std::string_view(line).substr(0, equals)));
    std::string text;
    if (!section || equals == std::string::npos || key.empty() ||
        !unescape(valueBehind(line, equals), text)) {
      bad = true;
      continue;
    }
    (*section)[lower(key)] = {key, text};
  }
  if (bad) keepAside();
  return sections;
}

std::string FileSettings::GetSetting(std::string_view application, std::string_view section,
                                     std::string_view key, std::string_view fallback) const {
  const auto found = sections_.find(sectionName(application, section));
  if (found == sections_.end()) return std::string(fallback);
  const auto entry = found->second.find(lower(key));
  return entry == found->second.end() ? std::string(fallback) : entry->second.text;
}

void FileSettings::SaveSettings(std::string_view application, std::string_view section,
                                const std::vector<Setting>& settings) {
  const WriteLock lock(file_);
  Sections fresh = read();
  Section& target = fresh[sectionName(application, section)];
  for (const Setting& setting : settings) {
    Entry& entry = target[lower(setting.key)];
    if (entry.key.empty()) entry.key = setting.key;
    entry.text = setting.text;
  }
  std::ostringstream content;
  content << "; Settings of one user; written by the program.\n";
  for (const auto& [name, entries] : fresh) {
    content << '[' << name << "]\n";
    for (const auto& [small, stored] : entries) content << stored.key << '=' << escaped(stored.text) << '\n';
  }
  writeFileWhole(file_, content.str());
  sections_ = std::move(fresh);
}

void FileSettings::keepAside() {
  if (keptAside_) return;
  keptAside_ = true;
  std::error_code ignored;  // the copy is a courtesy: without it the program starts all the same
  std::filesystem::copy_file(file_, file_.string() + ".bad",
                             std::filesystem::copy_options::overwrite_existing, ignored);
}

}  // namespace vantry
