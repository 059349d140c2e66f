#pragma once

#include <string>
#include <vector>

#include "server/directory/directory_settings.h"
#include "server/program/configuration.h"
#include "server/program/service.h"
#include "server/program/setup_dialog.h"
#include "server/setup/library_setup.h"

namespace vantry::server {

/// The answers that came by options or in a file; what is empty is asked for.
struct GivenAnswers {
  std::string database;
  std::string timeZone;
  std::string library;
  std::vector<std::string> desks;
  std::vector<std::string> groups;
  std::string login;
  std::string name;
  std::string passwordFile;
  std::string reach;  ///< "this-machine", "proxy" or "certificate"
  std::string address;
  std::string port;
  std::string proxy;
  std::string certificate;
  std::string key;
  std::string directory;  ///< its address, or "none"
  std::string directoryAuthority;
  std::string directoryName;
  std::string directoryBase;
  std::string directoryFilter;
  std::string directoryAccount;
  std::string directoryPasswordFile;
};

/// What a set-up is to do, every answer of it a good one.
struct SetupPlan {
  std::string database;
  bool isNew = true;       ///< whether the database has no library yet
  bool movesZone = false;  ///< whether a library that is there gets another time zone
  LibraryWish library;
  DirectorySettings directory;    ///< where operators may have their passwords; without an address none
  std::vector<Setting> settings;  ///< of the configuration file, that differ; an empty one is removed
};

/// Asks what was not given. `standing` is the configuration as it is; its values, and those of the database,
/// are what is suggested. Throws UserError.
[[nodiscard]] SetupPlan askForPlan(const SetupDialog& dialog, const GivenAnswers& given,
                                   const std::vector<Setting>& standing, const ServiceUser& user);

}  // namespace vantry::server
