#pragma once

#include <string>

namespace vantry::server {

/// In a pattern of the settings: where the operator's login belongs.
inline constexpr const char* loginMark = "{login}";

/// Where the house keeps its people and their passwords, and how an operator is found there: by a pattern of
/// the entry's name, or by a search.
struct DirectorySettings {
  std::string address = {};    ///< "ldap://host:port" or "ldaps://host", several parted by blanks or commas
  bool plain = false;          ///< speaks no TLS, which only the same machine allows
  std::string authority = {};  ///< PEM file of who vouches for it; empty: the system's
  std::string name = {};       ///< "uid={login},ou=people,dc=library,dc=example"; empty to search
  std::string base = {};       ///< below which entry the search is made
  std::string filter = "(uid={login})";  ///< that one entry fits
  std::string account = {};              ///< the name of the entry that may search; empty: anybody may
  std::string passwordFile = {};         ///< its first line is the password of that entry
  int limit = 5;  ///< seconds in which the directory has to answer, at whatever address
};

}  // namespace vantry::server
