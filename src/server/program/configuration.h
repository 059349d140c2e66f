#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace vantry::server {

/// What a file of settings says of one option: "database", or "serve.port" below "[serve]".
struct Setting {
  std::string name;
  std::vector<std::string> values;
};

/// The settings of a file, in its order. Lines that begin with "#" are comments. Throws UserError when the
/// file cannot be read.
[[nodiscard]] std::vector<Setting> readSettings(const std::string& file);

/// Gives the options of the program, or of one command, the values of the file, but for those that have one
/// already; returns the names of those that it gave. Throws UserError with file and entry for a setting that
/// there is not, or a value that it cannot have.
std::vector<std::string> takeSettings(CLI::App& app, const std::string& file);

/// The text of a file with these settings in place of its own; everything else stays, comments too. A setting
/// without a value is removed. Throws UserError for a value that no file can hold.
[[nodiscard]] std::string withSettings(std::string_view text, const std::vector<Setting>& changes);

/// A file that is written beside the one that it is to replace, and takes its place when `commit` is called.
/// Until then nothing has changed. It can be read by its owner and its group: those of the file before, else
/// this user and the group that is named. Throws UserError.
class PendingFile {
 public:
  PendingFile(std::string file, std::string_view text, const std::string& group);
  ~PendingFile();
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  void commit();

 private:
  std::string file_;
  std::string part_;
};

}  // namespace vantry::server
