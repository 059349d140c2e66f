#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/rules_file.h"

namespace vantry::server {

namespace {

struct RulesCommand {
  std::string file;
  bool checkOnly = false;
};

/// Throws, once each fault is told.
void refuseFaults(const FileFaults& faults) {
  if (faults.count() == 0) return;
  for (const std::string& fault : faults.told()) std::cerr << fault << '\n';
  const bool all = faults.count() == faults.told().size();
  throw UserError("Nothing was taken. The file has " + std::to_string(faults.count()) +
                  (faults.count() == 1 ? " fault." : " faults.") +
                  (all ? "" : " The first " + std::to_string(faults.told().size()) + " are told."));
}

void printRules(const std::string& url) {
  onLibrary(url, [](Database& database) { std::cout << showRules(database); });
}

void takeRulesFrom(const std::string& url, const std::string& file, bool checkOnly) {
  RulesReport report;
  onLibrary(url, [&](Database& database) {
    report = takeRules(database, file, checkOnly ? RulesUse::CheckOnly : RulesUse::Take, wallClock());
  });
  refuseFaults(report.faults);
  if (checkOnly) std::cout << "The file is sound. Taken in, it would come to this:\n";
  for (const KindCounts& counts : report.counts) std::cout << countsText(counts) << ".\n";
}

}  // namespace

void describeRules(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<RulesCommand>();
  CLI::App* rules =
      app.add_subcommand("rules", "Types, statuses, calendars and policies as a file")->require_subcommand(1);
  rules->add_subcommand("show", "Write those of the library to the standard output")
      ->callback([given, &site] { printRules(site.database); });
  CLI::App* take = rules->add_subcommand("take", "Make those of a file the library's, all or none");
  take->add_option("file", given->file, "The file to read")->required();
  take->add_flag("--check", given->checkOnly, "Only tell what is wrong, and what would change");
  take->callback([given, &site] { takeRulesFrom(site.database, given->file, given->checkOnly); });
}

}  // namespace vantry::server
