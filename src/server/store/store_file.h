#pragma once

#include <sys/types.h>

#include <string>

namespace vantry::server {

/// The user version of a database that is a copy and has not been opened as a library since.
inline constexpr int versionOfCopies = 0x436F7079;

/// The file of a SQLite database. SQLite opens files by name, so that after a move a second connection would
/// work on another file than the first. This class knows the file itself.
class StoreFile {
 public:
  explicit StoreFile(std::string path) : path_(std::move(path)) {}

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool exists() const;
  [[nodiscard]] bool folderExists() const;

  /// Throws std::runtime_error when the file is a copy, as `backUp` marks them, beside the log of another
  /// one, which SQLite would write into it.
  void refuseForeignLog() const;

  /// Takes what the name leads to now for the file.
  void remember();
  /// Whether the name leads to the remembered file; true as long as none is remembered.
  [[nodiscard]] bool isInPlace() const;

 private:
  std::string path_;
  dev_t device_ = 0;
  ino_t number_ = 0;
  bool remembered_ = false;
};

}  // namespace vantry::server
