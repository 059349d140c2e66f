#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vantry {

/// The user's settings: text by application, section and key; keys without regard to case.
class Settings {
 public:
  virtual ~Settings() = default;
  /// The stored text, or the default where the key is missing.
  [[nodiscard]] virtual std::string GetSetting(std::string_view application, std::string_view section,
                                               std::string_view key, std::string_view fallback) const = 0;
  /// Throws std::runtime_error when the text cannot be stored.
  virtual void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                           std::string_view text) = 0;
  /// Keeps a copy of the store as it is, beside it, because a value in it could not be read.
  virtual void keepAside() = 0;
};

/// Settings in one text file of the user. Every write replaces the file whole, so that a crash leaves the old
/// or the new one. A file with lines that cannot be read is kept aside under its name and ".bad"; what can be
/// read of it counts.
class FileSettings : public Settings {
 public:
  explicit FileSettings(std::filesystem::path file);

  [[nodiscard]] std::string GetSetting(std::string_view application, std::string_view section,
                                       std::string_view key, std::string_view fallback) const override;
  void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                   std::string_view text) override;
  void keepAside() override;

 private:
  struct Entry {
    std::string key;  ///< as it was written first
    std::string text;
  };
  using Section = std::map<std::string, Entry>;  ///< by the key in small letters

  void read();
  std::filesystem::path file_;
  std::map<std::string, Section> sections_;  ///< by "application\section"
  bool keptAside_ = false;
};

/// Writes a file whole: beside it first, then in its place. Throws std::runtime_error.
void writeFileWhole(const std::filesystem::path& file, std::string_view content);

}  // namespace vantry
