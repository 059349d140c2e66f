#include "desktop/installed_components.h"

#include <QFontDatabase>
#include <QImageReader>

namespace vantry {

void InstalledComponents::ValidateResources(std::string_view commandLine) {
  if (commandLine.find("/nocheck") != std::string_view::npos) return;
  std::string missing;
  if (!QImageReader::supportedImageFormats().contains("svg"))
    missing += "SVG pictures (Debian's package libqt6svg6)\n";
  if (QFontDatabase::families().isEmpty()) missing += "A font (Debian's package fonts-dejavu-core)\n";
  if (missing.empty()) return;
  criticalBox(desktop_, missing + "\nThese errors must be corrected for this application to run.",
              "Resource Version Errors");
  desktop_.endProgram();
}

}  // namespace vantry
