#include "desktop/program_options.h"

#include <cstdlib>

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

/// The server's address in the user's file, section "Server".
static std::string addressInFile(const fs::path& folder) {
  IniFile file(folder);
  file.Open("vantry.ini");
  file.SelectSection("Server");
  const std::string section = file.ReadSection();
  for (std::size_t start = 0; start < section.size();) {
    const auto end = std::min(section.find('\0', start), section.size());
    const std::string_view line = std::string_view(section).substr(start, end - start);
    const auto equals = line.find('=');
    if (equals != std::string_view::npos && equalNoCase(trim(line.substr(0, equals)), "Address"))
      return std::string(trim(line.substr(equals + 1)));
    start = end + 1;
  }
  return {};
}

ProgramOptions readOptions(const std::vector<std::string>& arguments) {
  ProgramOptions options;
  options.user = folderOf("XDG_CONFIG_HOME", ".config");
  options.data = folderOf("XDG_DATA_HOME", ".local/share") / "library.sqlite";
  bool chosen = false;
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
    chosen = chosen || word == "--server" || word == "--data";
  }
  if (!chosen && options.screenshot.empty()) options.server = addressInFile(options.user);
  return options;
}

std::string usageText() {
  return "Usage: vantry [options]\n"
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
