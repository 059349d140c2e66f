#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// A file of named sections with one entry per line. Section names and keys compare without regard to case. A
/// file that does not exist reads as empty and is made by the first write.
class IniFile {
 public:
  /// Relative names are looked for in `folder`.
  explicit IniFile(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void Open(std::string_view fileName);
  void SelectSection(std::string_view name) { section_ = name; }
  /// The selected section's lines, parted by NUL characters; empty when there is no such section.
  [[nodiscard]] std::string ReadSection() const;
  /// Throws std::runtime_error when the file cannot be written, or is there and cannot be read: what it holds
  /// is not to be lost.
  void WriteKey(std::string_view key, std::string_view value);

 private:
  std::vector<std::string> lines() const;
  void mustBeReadable() const;
  std::filesystem::path folder_;
  std::filesystem::path file_;
  std::string section_;
};

}  // namespace vantry
