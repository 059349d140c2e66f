#pragma once

#include "frame/makers.h"

namespace vantry {

/// Fills in every window and command of this program that is opened from a floor below it, by its kind or
/// name. What is missing here goes to `Makers::notBuilt`.
void fillMakers(Makers& makers);

}  // namespace vantry
