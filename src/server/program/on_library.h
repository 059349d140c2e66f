#pragma once

#include <functional>
#include <string>

#include "server/store/database.h"

namespace vantry::server {

/// The work of one command on a library whose schema is that of this program: a command changes no schema
/// under a server that runs. Moments are those of the library's time zone. Throws std::runtime_error with a
/// sentence for people.
void onLibrary(const std::string& url, const std::function<void(Database&)>& work);

/// One writing transaction on it.
void changeLibrary(const std::string& url, const Database::Work& work);

/// Reads in a transaction of its own: what is printed afterwards keeps no desk waiting.
template <class Rows>
Rows readRows(const std::string& url, Rows (*rows)(Connection&)) {
  Rows read;
  onLibrary(url, [&](Database& database) { database.read([&](Connection& db) { read = rows(db); }); });
  return read;
}

}  // namespace vantry::server
