#include "desktop/installed_components.h"

#include <link.h>

#include <QFontDatabase>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QPluginLoader>

#include "desktop/qtext.h"
#include "frame/frmVersionInfo.h"

namespace vantry {

namespace fs = std::filesystem;

/// The path from which the library of this name was loaded; empty when it was not.
static fs::path loadedLibrary(const std::string& name) {
  struct Search {
    const std::string& name;
    fs::path found;
  } search{name, {}};
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* data) {
        auto& wanted = *static_cast<Search*>(data);
        if (fs::path(info->dlpi_name).filename().string().starts_with(wanted.name))
          wanted.found = info->dlpi_name;
        return wanted.found.empty() ? 0 : 1;
      },
      &search);
  return search.found;
}

/// A library's file ends in its version: "libQt6Core.so.6.4.2".
static std::optional<FoundComponent> findLibrary(const std::string& name) {
  const fs::path loaded = loadedLibrary(name);
  if (loaded.empty()) return std::nullopt;
  std::error_code unreadable;  // then the name that it was loaded by counts
  const fs::path real = fs::canonical(loaded, unreadable);
  const std::string file = (unreadable ? loaded : real).filename().string();
  const auto version = file.find(".so.");
  return FoundComponent{version == std::string::npos ? "" : file.substr(version + 4),
                        utf8(QLibraryInfo::version().toString())};
}

/// A plug-in carries the version of the toolkit that it was built for, a byte for each of its three parts.
static std::optional<FoundComponent> findPlugin(const std::string& name) {
  const QString path = QLibraryInfo::path(QLibraryInfo::PluginsPath) + '/' + qt(name);
  if (!fs::exists(utf8(path))) return std::nullopt;
  const int number = QPluginLoader(path).metaData().value("version").toInt();
  if (number == 0) return FoundComponent{};
  const std::string version = std::to_string(number >> 16) + '.' + std::to_string(number >> 8 & 0xFF) + '.' +
                              std::to_string(number & 0xFF);
  return FoundComponent{version, version};
}

std::optional<FoundComponent> InstalledFiles::find(const std::string& file) const {
  if (file.starts_with("lib")) return findLibrary(file);
  if (file.ends_with(".so")) return findPlugin(file);
  const bool isFont = file.starts_with("fonts-");
  const bool found =
      isFont ? !QFontDatabase::families().isEmpty()
             : program_.empty() || fs::exists(program_ / file) || fs::exists(program_ / "System" / file);
  if (!found) return std::nullopt;
  return FoundComponent{};
}

void InstalledComponents::ValidateResources(std::string_view commandLine) {
  if (commandLine.find("/nocheck") != std::string_view::npos) return;
  if (!ComponentsAreValid(desktop_, clock_, files_)) desktop_.endProgram();
}

}  // namespace vantry
