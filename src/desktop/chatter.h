#pragma once

namespace vantry {

/// Drops what the platform without a screen says of everything that it cannot do. Called once, before the
/// application is made.
void quietUnseenScreen();

}  // namespace vantry
