#include "frame/component_table.h"

#include <array>

#include "platform/text.h"

namespace vantry {

// The table is kept twice, so that an entry that was changed by mistake is noticed.
static constexpr std::string_view kResourceVersions =
    "libQt6Core.so.6~6.4.0.0~6.4.0.0~+~"
    "libQt6Gui.so.6~6.4.0.0~6.4.0.0~+~"
    "libQt6Widgets.so.6~6.4.0.0~6.4.0.0~+~"
    "libQt6Svg.so.6~6.4.0.0~6.4.0.0~+~"
    "libQt6Multimedia.so.6~6.4.0.0~6.4.0.0~+~"
    "libQt6PrintSupport.so.6~6.4.0.0~6.4.0.0~+~"
    "imageformats/libqsvg.so~6.4.0.0~6.4.0.0~+~"
    "printsupport/libcupsprintersupport.so~6.4.0.0~6.4.0.0~+~"
    "multimedia/libgstreamermediaplugin.so~6.4.0.0~6.4.0.0~+~"
    "fonts-dejavu-core~~~+~"
    "misc/vantryhelp.ini~~~+~";

static constexpr std::string_view kResourceList[] = {
    "libQt6Core.so.6~6.4.0.0~6.4.0.0~+~",
    "libQt6Gui.so.6~6.4.0.0~6.4.0.0~+~",
    "libQt6Widgets.so.6~6.4.0.0~6.4.0.0~+~",
    "libQt6Svg.so.6~6.4.0.0~6.4.0.0~+~",
    "libQt6Multimedia.so.6~6.4.0.0~6.4.0.0~+~",
    "libQt6PrintSupport.so.6~6.4.0.0~6.4.0.0~+~",
    "imageformats/libqsvg.so~6.4.0.0~6.4.0.0~+~",
    "printsupport/libcupsprintersupport.so~6.4.0.0~6.4.0.0~+~",
    "multimedia/libgstreamermediaplugin.so~6.4.0.0~6.4.0.0~+~",
    "fonts-dejavu-core~~~+~",
    "misc/vantryhelp.ini~~~+~",
};

std::string_view resourceVersions() {
  return kResourceVersions;
}
std::span<const std::string_view> resourceList() {
  return kResourceList;
}

/// Takes the text up to the next "~" off the front; nothing without one.
static std::optional<std::string> takeField(std::string_view& text) {
  const auto end = text.find('~');
  if (end == std::string_view::npos) return std::nullopt;
  std::string field(text.substr(0, end));
  text.remove_prefix(end + 1);
  return field;
}

std::optional<std::vector<ComponentEntry>> readComponents(std::string_view table,
                                                          std::span<const std::string_view> list) {
  std::string joined;
  for (const std::string_view entry : list) joined += entry;
  if (joined != table) return std::nullopt;
  std::vector<ComponentEntry> entries;
  while (!table.empty()) {
    const auto file = takeField(table);
    const auto minimum = takeField(table);
    const auto maximum = takeField(table);
    const auto sign = takeField(table);
    if (!sign || (*sign != "=" && *sign != "+")) return std::nullopt;
    entries.push_back({*file, *minimum, *maximum, *sign == "="});
  }
  if (entries.size() != list.size()) return std::nullopt;
  return entries;
}

static std::array<int, 4> partsOf(std::string_view version) {
  std::array<int, 4> parts{};
  for (int& part : parts) {
    const auto dot = version.find('.');
    part = intOf(version.substr(0, dot));
    if (dot == std::string_view::npos) break;
    version.remove_prefix(dot + 1);
  }
  return parts;
}

static bool fits(const ComponentEntry& entry, std::string_view version) {
  const auto found = partsOf(version);
  const auto least = partsOf(entry.minimum);
  return entry.exact ? found == least : found >= least;
}

static std::string requiredText(const ComponentEntry& entry) {
  if (entry.minimum.empty()) return entry.file;
  const bool range = entry.maximum != entry.minimum;
  return entry.file + "  -  " + entry.minimum + (range ? ".." + entry.maximum : "");
}

/// The condition of a component; empty when it is as it must be.
static std::string errorOf(const ComponentEntry& entry, const std::optional<FoundComponent>& found) {
  if (!found) return "File is missing.";
  if (entry.minimum.empty()) return {};
  if (found->fileVersion.empty()) return "No version Info.";
  if (!fits(entry, found->fileVersion)) return "Wrong File Version:  (" + found->fileVersion + ")";
  if (!fits(entry, found->productVersion)) return "Wrong Product Version:  (" + found->productVersion + ")";
  return {};
}

std::vector<ComponentFailure> checkComponents(const std::vector<ComponentEntry>& entries,
                                              const ComponentFiles& files) {
  std::vector<ComponentFailure> failures;
  for (const ComponentEntry& entry : entries) {
    std::string error = errorOf(entry, files.find(entry.file));
    if (!error.empty()) failures.push_back({requiredText(entry), std::move(error)});
  }
  return failures;
}

}  // namespace vantry
