#include <iostream>

#include <CLI/CLI.hpp>

#include "server/program/command_line.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

std::string valueOf(const CLI::Option& option) {
  if (option.get_expected_min() == 0) return option.count() > 0 ? option.results().front() : "false";
  if (option.count() == 0) return option.get_default_str();
  std::string values;
  for (const std::string& value : option.results()) values += (values.empty() ? "" : ", ") + value;
  return values;
}

void printSetting(const Site& site, std::string_view name, std::string_view value) {
  const auto origin = site.origins.find(std::string(name));
  std::cout << name << '\t' << value << '\t' << (origin == site.origins.end() ? "default" : origin->second)
            << '\n';
}

/// The settings with their values, and where each comes from. A password in the address of the database is
/// not shown.
void printConfiguration(const CLI::App& program, const Site& site) {
  printSetting(site, "config", site.config);
  printSetting(site, "database", plainDatabaseName(site.database));
  for (const CLI::Option* option : program.get_options()) {
    const std::string name = option->get_name().substr(2);
    if (option->get_configurable() && name != "database") printSetting(site, name, valueOf(*option));
  }
  for (const CLI::Option* option : program.get_subcommand("serve")->get_options()) {
    if (option->get_configurable())
      printSetting(site, "serve." + option->get_name().substr(2), valueOf(*option));
  }
}

}  // namespace

void describeConfiguration(CLI::App& app, const Site& site) {
  app.add_subcommand("config", "Tell the settings, and where each comes from")->callback([&app, &site] {
    printConfiguration(app, site);
  });
}

}  // namespace vantry::server
