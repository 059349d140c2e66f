#pragma once

#include "frame/makers.h"

namespace vantry {

/// Fills in every window and command of this program that is opened from a floor below it, by its kind or
/// name. `Makers::notBuilt` hears of what is missing here.
void fillMakers(Makers& makers);

}  // namespace vantry
