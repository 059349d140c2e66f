#include "server/program/marc_commands.h"

#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/base/user_error.h"
#include "server/catalogue/marc_import.h"
#include "server/program/on_library.h"
#include "server/setup/hours_import.h"
#include "server/setup/marc_map_file.h"
#include "server/setup/rules_file_words.h"

namespace vantry::server {

namespace {

struct MarcCommand {
  std::string file;
  std::string map;
  bool showMap = false;
  ImportOptions options;
};

struct HoursCommand {
  std::string file;
  std::string kind;
  std::string from;
  std::string until;
  bool checkOnly = false;
  HoursImport hours;
};

/// Throws, once each fault is told.
void refuseFaults(const std::string& file, const FileFaults& faults) {
  if (faults.count() == 0) return;
  for (const std::string& fault : faults.told()) std::cerr << file << ", " << fault << '\n';
  throw UserError("Nothing was taken. Faults in the file: " + std::to_string(faults.count()) + ".");
}

void printAll(std::ostream& out, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) out << line << '\n';
}

void tellCounts(const ImportReport& report, bool checkOnly) {
  if (checkOnly) std::cout << "Nothing was written. Taken in, the file would come to this:\n";
  std::cout << "Titles: " << report.newTitles << " new, " << report.changedTitles << " changed, "
            << report.sameTitles << " as they are. Holdings: " << report.newHoldings
            << " new. Items: " << report.newItems << " new, " << report.changedItems << " changed, "
            << report.sameItems << " as they are, " << report.retiredItems << " withdrawn.\n"
            << "Not taken: records " << report.bad << ", fields of others " << report.lostFields
            << ", holdings or items " << report.leftOut << ", records that the map does not want "
            << report.passedOver << ".\n";
}

/// Prints the counts; what was not taken is printed to the standard error.
void importMarcFile(const std::string& url, const MarcCommand& given) {
  ImportReport report;
  onLibrary(url, [&](Database& database) {
    ImportOptions options = given.options;
    FileFaults faults;
    if (!given.map.empty()) options.map = readMarcMapFile(database, given.map, faults);
    refuseFaults(given.map, faults);
    report = importMarc(database, given.file, options, wallClock());
  });
  printAll(std::cout, report.told);
  printAll(std::cerr, report.faults);
  printAll(std::cerr, report.hints);
  tellCounts(report, given.options.checkOnly);
  if (!tookAnything(report)) throw UserError("Nothing was taken.");
}

void runMarcImport(const std::string& url, const MarcCommand& given) {
  if (given.showMap) {
    std::cout << marcMapText(usualMarcMap());
  } else if (given.file.empty()) {
    throw UserError("Name the file to read.");
  } else {
    importMarcFile(url, given);
  }
}

Moment dateOf(const std::string& text) {
  const std::optional<Moment> date = readDate(text);
  if (!date) throw UserError("\"" + text + "\" is no date such as 2026-11-25.");
  return *date;
}

void tellCalendar(const CalendarEntry& calendar) {
  for (std::size_t day = 0; day < calendar.week.size(); ++day)
    std::cout << weekdayWords.at(day) << ' ' << hoursText(calendar.week.at(day)) << '\n';
  for (const ExceptionEntry& each : calendar.exceptions)
    std::cout << dateText(each.date) << ' ' << hoursText(each.hours) << '\n';
}

void importHoursFile(const std::string& url, const HoursCommand& given) {
  HoursImport hours = given.hours;
  const std::optional<int> kind = valueOf(calendarWords, given.kind);
  if (!kind) throw UserError("--for takes deliveries, rooms or pick-ups.");
  hours.kind = static_cast<CalendarKind>(*kind);
  hours.from = dateOf(given.from);
  hours.until = dateOf(given.until);
  HoursReport report;
  onLibrary(url, [&](Database& database) {
    report = importHours(database, given.file, hours, given.checkOnly ? RulesUse::CheckOnly : RulesUse::Take,
                         wallClock());
  });
  printAll(std::cerr, report.leftOut);
  refuseFaults(given.file, report.rules.faults);
  if (given.checkOnly) std::cout << "Nothing was written. Taken in, the file would come to this:\n";
  tellCalendar(report.calendar);
  for (const KindCounts& counts : report.rules.counts) std::cout << countsText(counts) << ".\n";
}

}  // namespace

void describeMarcImport(CLI::App& import, const Site& site) {
  const auto given = std::make_shared<MarcCommand>();
  ImportOptions& options = given->options;
  CLI::App* marc = import.add_subcommand("marc", "Titles, holdings and items out of MARC 21 or MARCXML");
  marc->add_option("file", given->file, "The file to read");
  marc->add_option("--map", given->map, "A file that tells where the records have their items");
  marc->add_flag("--show-map", given->showMap,
                 "Write the map that counts without a file, and do nothing else");
  marc->add_option(
      "--location", options.location,
      "For holdings that stand at none of the library's locations; they are left out without it");
  marc->add_option("--media-type", options.mediaType,
                   "For items whose carrier is none of the library's media types");
  marc->add_option("--encoding", options.encoding,
                   "The code page of the file, whatever its records say of it");
  marc->add_flag("--check", options.checkOnly, "Only tell what is wrong, and what would change");
  marc->add_flag("--retire-missing", options.retireMissing,
                 "Mark items withdrawn that the file does not name");
  marc->add_flag("--replace-titles", options.replaceTitles,
                 "Let a record replace quite another title of the same number");
  marc->callback([given, &site] { runMarcImport(site.database, *given); });
}

void describeHoursImport(CLI::App& import, const Site& site) {
  const auto given = std::make_shared<HoursCommand>();
  CLI::App* hours = import.add_subcommand("hours", "Opening hours out of an iCalendar, all or none");
  hours->add_option("file", given->file, "The file to read")->required();
  hours->add_option("--location", given->hours.location, "Whose hours they are")->required();
  hours->add_option("--for", given->kind, "deliveries, rooms or pick-ups")->required();
  hours->add_option("--name", given->hours.name, "The calendar's name; one of this name is changed")
      ->required();
  hours->add_option("--from", given->from, "The calendar's first day, as 2026-11-25")->required();
  hours->add_option("--until", given->until, "Its last day")->required();
  hours
      ->add_option("--closed-word", given->hours.closedWords, "An event closes when its summary has the word")
      ->allow_extra_args(false)
      ->capture_default_str();
  hours->add_flag("--bridge-breaks", given->hours.bridgesBreaks,
                  "Take a day with several times from its first opening to its last closing");
  hours->add_flag("--check", given->checkOnly, "Only tell what is wrong, and what would change");
  hours->callback([given, &site] { importHoursFile(site.database, *given); });
}

}  // namespace vantry::server
