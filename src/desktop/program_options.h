#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantry {

/// What the client takes from its command line, its surroundings, and the "vantry.ini" of the user and of the
/// machine. The command line counts before the user's file, and that before the machine's.
struct ProgramOptions {
  std::string server;          ///< address of the library's server; empty: the embedded one
  std::string authority;       ///< PEM file of the authority that vouches for the server; empty: the system's
  std::filesystem::path data;  ///< the embedded server's file
  std::filesystem::path user;  ///< folder of settings and "vantry.ini"
  std::filesystem::path program;  ///< folder of the files that belong to the program
  std::string screenshot;         ///< PNG file to write instead of working; empty: work
  bool usage = false;             ///< print the usage and end
  bool version = false;           ///< print the version and end
  int view = -1;                  ///< first view for a screenshot; -1: as preferred
  std::string rest;               ///< what is not for the front end, unchanged
  std::string fault;              ///< one sentence about what cannot be understood; empty: all is well
};

[[nodiscard]] ProgramOptions readOptions(const std::vector<std::string>& arguments);

/// Where the files that belong to the program are: shared data once it is installed, else beside the program,
/// whose folder is given.
[[nodiscard]] std::filesystem::path filesOfProgram(const std::filesystem::path& program);

/// The text that --help prints.
[[nodiscard]] std::string usageText();

}  // namespace vantry
