#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/administration.h"

namespace vantry::server {

namespace {

struct LibraryCommand {
  std::string name;
  std::string newName;
  std::string library;
};

void printNamed(const std::vector<NamedRow>& rows) {
  for (const NamedRow& row : rows) std::cout << row.id << '\t' << row.name << '\n';
}

void addLibraryNamed(const std::string& database, const std::string& name) {
  changeLibrary(database, [&](Connection& db) { addLibrary(db, name); });
  std::cout << "The library " << inQuotes(name) << " is added.\n";
}

void listLibraries(const std::string& database) {
  printNamed(readRows(database, libraries));
}

void addLocationNamed(const std::string& database, const std::string& name, const std::string& library) {
  changeLibrary(database, [&](Connection& db) { addLocation(db, name, library); });
  std::cout << "The location " << inQuotes(name) << " of the library " << inQuotes(library) << " is added.\n";
}

void listLocations(const std::string& database) {
  for (const LocationRow& row : readRows(database, allLocations))
    std::cout << row.id << '\t' << row.name << '\t' << row.library << '\n';
}

void addGroupNamed(const std::string& database, const std::string& name) {
  changeLibrary(database, [&](Connection& db) { addPatronGroup(db, name); });
  std::cout << "The patron group " << inQuotes(name) << " is added.\n";
}

void listGroups(const std::string& database) {
  printNamed(readRows(database, patronGroups));
}

/// What can be renamed, and its name in a sentence.
struct Renamer {
  std::string_view what;
  void (*rename)(Connection& db, const Renaming& wanted, Moment now);
};
constexpr Renamer libraryRenamer{"library", renameLibrary};
constexpr Renamer locationRenamer{"location", renameLocation};
constexpr Renamer groupRenamer{"patron group", renamePatronGroup};

void renameOne(const std::string& database, const Renamer& renamer, const LibraryCommand& given) {
  changeLibrary(database, [&](Connection& db) {
    renamer.rename(db, {.from = given.name, .to = given.newName}, wallClock());
  });
  std::cout << "The " << renamer.what << ' ' << inQuotes(given.name) << " is now named "
            << inQuotes(given.newName) << ".\n";
}

using Given = std::shared_ptr<LibraryCommand>;

void describeRename(CLI::App& command, const Renamer& renamer, const Given& given, const Site& site) {
  CLI::App* rename = command.add_subcommand("rename", "Change a name; what belongs to it stays");
  rename->add_option("name", given->name, "The name as it is")->required();
  rename->add_option("new-name", given->newName, "The name to be")->required();
  rename->callback([given, renamer, &site] { renameOne(site.database, renamer, *given); });
}

}  // namespace

void describeLibrary(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<LibraryCommand>();
  CLI::App* library = app.add_subcommand("library", "Libraries")->require_subcommand(1);
  CLI::App* addLibrary = library->add_subcommand("add", "Add a library");
  addLibrary->add_option("name", given->name)->required();
  addLibrary->callback([given, &site] { addLibraryNamed(site.database, given->name); });
  library->add_subcommand("list", "List them")->callback([given, &site] { listLibraries(site.database); });
  describeRename(*library, libraryRenamer, given, site);

  CLI::App* location = app.add_subcommand("location", "Booking desk locations")->require_subcommand(1);
  CLI::App* addLocation = location->add_subcommand("add", "Add a location");
  addLocation->add_option("name", given->name)->required();
  addLocation->add_option("--library", given->library, "The library that it belongs to")->required();
  addLocation->callback([given, &site] { addLocationNamed(site.database, given->name, given->library); });
  location->add_subcommand("list", "List them")->callback([given, &site] { listLocations(site.database); });
  describeRename(*location, locationRenamer, given, site);

  CLI::App* group = app.add_subcommand("group", "Patron groups")->require_subcommand(1);
  CLI::App* addGroup = group->add_subcommand("add", "Add a patron group");
  addGroup->add_option("name", given->name)->required();
  addGroup->callback([given, &site] { addGroupNamed(site.database, given->name); });
  group->add_subcommand("list", "List them")->callback([given, &site] { listGroups(site.database); });
  describeRename(*group, groupRenamer, given, site);
}

}  // namespace vantry::server
