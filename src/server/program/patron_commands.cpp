#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/program/command_line.h"
#include "server/program/on_library.h"
#include "server/setup/patron_data.h"

namespace vantry::server {

namespace {

void printPatron(const std::string& url, const std::string& card) {
  std::string told;
  onLibrary(url, [&](Database& database) { told = tellPatron(database, card); });
  std::cout << told << '\n';
}

void erase(const std::string& url, const std::string& card) {
  ErasedPatron erased;
  onLibrary(url, [&](Database& database) { erased = erasePatron(database, card, wallClock()); });
  std::cout << "The patron was erased. Made anonymous: " << erased.bookings << " bookings, "
            << erased.auditRows << " rows of the audit. Copies of the database still have them.\n";
}

}  // namespace

void describePatrons(CLI::App& app, const Site& site) {
  const auto card = std::make_shared<std::string>();
  CLI::App* patron = app.add_subcommand("patron", "What one patron may ask for")->require_subcommand(1);
  CLI::App* tell = patron->add_subcommand("tell", "Write everything that is stored about them, as JSON");
  tell->add_option("card", *card, "One of their cards")->required();
  tell->callback([card, &site] { printPatron(site.database, *card); });
  CLI::App* erasing =
      patron->add_subcommand("erase", "Remove them, and make their bookings and the audit anonymous");
  erasing->add_option("card", *card, "One of their cards")->required();
  erasing->callback([card, &site] { erase(site.database, *card); });
}

}  // namespace vantry::server
