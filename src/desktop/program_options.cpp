#include "desktop/program_options.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "platform/inifile.h"
#include "platform/text.h"

namespace vantry {

namespace fs = std::filesystem;

static fs::path folderOf(const char* variable, const char* belowHome) {
  const char* set = std::getenv(variable);
  if (set && *set) return fs::path(set) / "vantry";
  const char* home = std::getenv("HOME");
  return fs::path(home && *home ? home : ".") / belowHome / "vantry";
}

/// The folders whose "vantry.ini" may name the server: the user's, then those that all users of the machine
/// share.
static std::vector<fs::path> foldersOfSettings(const fs::path& user) {
  std::vector<fs::path> folders{user};
  const char* set = std::getenv("XDG_CONFIG_DIRS");
  std::string_view shared = set && *set ? set : "/etc/xdg";
  while (!shared.empty()) {
    const auto end = std::min(shared.find(':'), shared.size());
    if (end > 0) folders.push_back(fs::path(shared.substr(0, end)) / "vantry");
    shared.remove_prefix(std::min(end + 1, shared.size()));
  }
  return folders;
}

/// An entry of section "Server" in the folder's "vantry.ini"; nothing where it is missing.
static std::optional<std::string> entryIn(const fs::path& folder, std::string_view key) {
  IniFile file(folder);
  file.Open("vantry.ini");
  file.SelectSection("Server");
  const std::string section = file.ReadSection();
  for (std::size_t start = 0; start < section.size();) {
    const auto end = std::min(section.find('\0', start), section.size());
    const std::string_view line = std::string_view(section).substr(start, end - start);
    const auto equals = line.find('=');
    if (equals != std::string_view::npos && equalNoCase(trim(line.substr(0, equals)), key))
      return std::string(trim(line.substr(equals + 1)));
    start = end + 1;
  }
  return std::nullopt;
}

namespace {

struct FoundEntry {
  std::string text;  ///< empty where no file has the entry
  fs::path folder;   ///< of the file that has it
};

}  // namespace

/// The entry of the first file that has it. An empty one counts: with it users set aside what the machine's
/// file says.
static FoundEntry firstEntry(const fs::path& user, std::string_view key) {
  for (const fs::path& folder : foldersOfSettings(user)) {
    if (auto text = entryIn(folder, key)) return {std::move(*text), folder};
  }
  return {};
}

/// Fills what the command line leaves open.
static void readFiles(ProgramOptions& options, bool addressIsGiven, bool authorityIsGiven) {
  if (!addressIsGiven) options.server = firstEntry(options.user, "Address").text;
  if (authorityIsGiven || options.server.empty()) return;
  const FoundEntry authority = firstEntry(options.user, "Authority");
  if (!authority.text.empty()) options.authority = (authority.folder / authority.text).string();
}

ProgramOptions readOptions(const std::vector<std::string>& arguments) {
  ProgramOptions options;
  options.user = folderOf("XDG_CONFIG_HOME", ".config");
  options.data = folderOf("XDG_DATA_HOME", ".local/share") / "library.sqlite";
  bool embedded = false;
  bool addressIsGiven = false;
  bool authorityIsGiven = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    options.usage = options.usage || word == "--help" || word == "/?";
    options.version = options.version || word == "--version";
    const bool takesValue = word == "--server" || word == "--data" || word == "--screenshot" ||
                            word == "--view" || word == "--authority" || word == "--user";
    if (!takesValue) {
      options.rest += (options.rest.empty() ? "" : " ") + word;
      continue;
    }
    if (++i == arguments.size()) {
      options.fault = word + " wants a value.";
      return options;
    }
    const std::string& value = arguments[i];
    if (word == "--server") options.server = value;
    if (word == "--authority") options.authority = value;
    if (word == "--data") options.data = value;
    if (word == "--user") options.user = value;
    if (word == "--screenshot") options.screenshot = value;
    if (word == "--view") options.view = intOf(value);
    embedded = embedded || word == "--data" || word == "--screenshot";
    addressIsGiven = addressIsGiven || word == "--server";
    authorityIsGiven = authorityIsGiven || word == "--authority";
  }
  if (!embedded || addressIsGiven) readFiles(options, addressIsGiven, authorityIsGiven);
  return options;
}

fs::path filesOfProgram(const fs::path& program) {
  const fs::path shared = program.parent_path() / "share" / "vantry";
  return fs::exists(shared) ? shared : program;
}

std::string usageText() {
  return "The workstation of a library's booking desk.\n"
         "Usage: vantry [options]\n"
         "  --server URL        the library's server; without it the embedded one\n"
         "  --authority FILE    PEM file of the authority that vouches for the server\n"
         "  --data FILE         the embedded server's file\n"
         "  --user FOLDER       where settings are kept\n"
         "  --screenshot FILE   log on to a fresh small library, write a picture of the first view, end\n"
         "  --view N            the first view of the screenshot\n"
         "  /nocheck            skip the check of the program's components\n"
         "  --version           print the version and end\n"
         "  --help, /?          print this and end\n";
}

}  // namespace vantry
