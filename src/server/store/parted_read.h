#pragma once

#include <chrono>
#include <span>

#include "server/store/database.h"

namespace vantry::server {

/// A read that is large enough to be done in parts.
struct PartedRead {
  Connection& own;                   ///< on which its transaction runs
  Database* spare = nullptr;         ///< where a second connection may be had, if there is to be one
  std::chrono::milliseconds longest;  ///< that a statement of the second may take
};

/// Runs each part once that is done, and returns when all are. The own connection takes them from the front.
/// From the back another one takes them meanwhile, if one is free: it sees the same state of the store. A part
/// whose connection is lost is run again from its beginning.
void readInParts(const PartedRead& read, std::span<const Database::Work> parts);

}  // namespace vantry::server
