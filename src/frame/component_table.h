#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// What the program needs at run time: a file and its versions.
struct ComponentEntry {
  std::string file;
  std::string minimum;  ///< of up to four parts, "6.4.0.0"; empty where the file alone matters
  std::string maximum;
  bool exact = false;  ///< exactly the minimum version; otherwise a later one will do
};

/// A component as it was found. An empty version cannot be read.
struct FoundComponent {
  std::string fileVersion;
  std::string productVersion;
};

/// Where components are looked for.
class ComponentFiles {
 public:
  virtual ~ComponentFiles() = default;
  /// Nothing when the file is missing.
  [[nodiscard]] virtual std::optional<FoundComponent> find(const std::string& file) const = 0;
};

/// A component that is not as it must be.
struct ComponentFailure {
  std::string required;  ///< name and versions
  std::string error;
};

/// The components of the program: file, minimum, maximum and operator ("=" or "+") of each, all joined by
/// "~".
[[nodiscard]] std::string_view resourceVersions();
/// The same entries one by one.
[[nodiscard]] std::span<const std::string_view> resourceList();

/// Reads the table. Nothing when the list has other entries, or an entry cannot be read.
[[nodiscard]] std::optional<std::vector<ComponentEntry>> readComponents(
    std::string_view table, std::span<const std::string_view> list);

/// What is missing or of another version, in the order of the entries.
[[nodiscard]] std::vector<ComponentFailure> checkComponents(const std::vector<ComponentEntry>& entries,
                                                            const ComponentFiles& files);

}  // namespace vantry
