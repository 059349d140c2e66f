#pragma once

#include <chrono>
#include <span>

#include "server/store/database.h"

namespace vantry::server {

/// A read that is large enough to be done in parts.
struct PartedRead {
  Connection& own;                    ///< on which its transaction runs
  Database* spare = nullptr;          ///< where a second connection may be had, if there is to be one
  std::chrono::milliseconds longest;  ///< that a statement of the second may take
};

/// Runs every part, and returns when all are done. The own connection takes them from the front. If another
/// one is free, it takes them from the back meanwhile, and sees the same state of the store. A part whose
/// connection was lost is run again from its beginning.
void readInParts(const PartedRead& read, std::span<const Database::Work> parts);

}  // namespace vantry::server
