#pragma once

#include <initializer_list>

#include "frame/rights.h"
#include "platform/command.h"

namespace vantry {

/// A command that needs a right.
struct SecuredCommand {
  Command& command;
  Right right;
};

/// Allows each command as the operator's rights say.
inline void secure(const Rights& rights, std::initializer_list<SecuredCommand> commands) {
  for (const SecuredCommand& row : commands) row.command.Allowed = rights.has(row.right);
}

}  // namespace vantry
