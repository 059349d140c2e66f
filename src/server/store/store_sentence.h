#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "server/store/database.h"

namespace vantry::server {

/// The database's name for people: the path of its file, or its address without name and password.
[[nodiscard]] std::string_view plainDatabaseName(std::string_view url);

/// Why a database cannot be used, in a sentence for people that names it. `url` as for Database; the sentence
/// tells nothing of a name and password within it.
[[nodiscard]] std::string sentenceFor(StoreError::Kind kind, std::string_view url);

/// Does the work, and throws what the store throws in it as std::runtime_error with that sentence. What the
/// database itself says of a failure that has no name here is logged.
void tellingPlainly(const std::string& url, const std::function<void()>& work);

}  // namespace vantry::server
