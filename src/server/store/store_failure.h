#pragma once

#include "server/store/dialect.h"
#include "server/store/store_error.h"

namespace vantry::server {

// What the database library throws becomes the one kind of error that the server knows. Both are called
// while an exception is handled.

/// Rethrows it as StoreError. The long form of the library's messages holds the values of the statement,
/// which belong in no log.
[[noreturn]] void rethrowAsStoreError();

/// The same for a failure to connect: whatever a database server says to a stranger, there is no connection.
[[noreturn]] void rethrowAsUnreachable(const Dialect& dialect);

}  // namespace vantry::server
