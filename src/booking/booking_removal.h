#pragma once

#include <span>
#include <string>
#include <string_view>

#include "frame/app.h"

namespace vantry {

/// A return code that a command words by itself.
struct OwnWords {
  int rc;
  std::string_view warning;
};

/// A command that does away with a booking: the question, the request that asks whether it may be, the
/// request that does it.
struct Removal {
  std::string_view question;
  std::string_view check;
  std::string_view code;
  std::span<const OwnWords> ownWords;  ///< of the check
};

[[nodiscard]] const Removal& cancelRemoval();
[[nodiscard]] const Removal& deleteRemoval();

/// For which windows failures are reported.
struct RemovalForms {
  std::string_view check;
  std::string_view removal;
};

enum class Removed {
  Declined,  ///< the operator said no
  Refused,   ///< the check failed
  Failed,    ///< the removal failed
  Done
};

/// Asks, checks and removes; says what there is to say.
[[nodiscard]] Removed RemoveBooking(App& app, const Removal& removal, const std::string& bookingId,
                                    const RemovalForms& forms);

}  // namespace vantry
