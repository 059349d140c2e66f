#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// A key with the text to store under it.
struct Setting {
  std::string key;
  std::string text;
};

/// The user's settings: text by application, section and key; keys without regard to case.
class Settings {
 public:
  virtual ~Settings() = default;
  /// The stored text, or the default where the key is missing.
  [[nodiscard]] virtual std::string GetSetting(std::string_view application, std::string_view section,
                                               std::string_view key, std::string_view fallback) const = 0;
  /// Stores several texts in one write. What others have stored meanwhile under other keys is kept. Throws
  /// std::runtime_error when they cannot be stored; then none is.
  virtual void SaveSettings(std::string_view application, std::string_view section,
                            const std::vector<Setting>& settings) = 0;
  void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                   std::string_view text) {
    SaveSettings(application, section, {{std::string(key), std::string(text)}});
  }
  /// Keeps a copy of the store as it is, beside it, because a value in it could not be read.
  virtual void keepAside() = 0;
};

/// Settings in one text file of the user, which several programs may use at once. Every write reads the file
/// anew and replaces it whole, so that a crash leaves the old or the new one. A file with lines that cannot
/// be read is kept aside under its name and ".bad"; what can be read of it counts.
class FileSettings : public Settings {
 public:
  explicit FileSettings(std::filesystem::path file);

  [[nodiscard]] std::string GetSetting(std::string_view application, std::string_view section,
                                       std::string_view key, std::string_view fallback) const override;
  void SaveSettings(std::string_view application, std::string_view section,
                    const std::vector<Setting>& settings) override;
  void keepAside() override;

 private:
  struct Entry {
    std::string key;  ///< as it was written first
    std::string text;
  };
  using Section = std::map<std::string, Entry>;     ///< by the key in small letters
  using Sections = std::map<std::string, Section>;  ///< by "application\section"

  Sections read();
  std::filesystem::path file_;
  Sections sections_;
  bool keptAside_ = false;
};

/// Writes a file whole: beside it first, then in its place. Throws std::runtime_error.
void writeFileWhole(const std::filesystem::path& file, std::string_view content);

}  // namespace vantry
