#pragma once

#include <QIcon>
#include <string_view>

namespace vantry {

/// An icon of the program's set by its name, "new"; empty for an unknown name. It is drawn anew for each size
/// and in the palette's colours, so that it is sharp everywhere and reads on light and dark.
QIcon icon(std::string_view name);

}  // namespace vantry
