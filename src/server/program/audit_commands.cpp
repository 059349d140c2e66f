#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "server/access/audit.h"
#include "server/access/audit_list.h"
#include "server/base/user_error.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"

namespace vantry::server {

namespace {

/// The dates are texts as the operator gave them; empty ones ask for all.
struct AuditCommand {
  std::string since;
  std::string before;
  AuditFilter filter;
};

Moment momentIn(const std::string& text) {
  const std::optional<Moment> moment = parseMoment(text);
  if (!moment) throw UserError("\"" + text + "\" is no date.");
  return *moment;
}

void printAudit(const std::string& url, const AuditCommand& command) {
  AuditFilter filter = command.filter;
  if (!command.since.empty()) filter.since = momentIn(command.since);
  if (!command.before.empty()) filter.before = momentIn(command.before);
  std::vector<AuditRow> rows;
  onLibrary(
      url, [&](Database& database) { database.read([&](Connection& db) { rows = auditRows(db, filter); }); });
  for (const AuditRow& row : rows) {
    std::cout << momentText(row.at) << '\t' << row.login << '\t' << row.location << '\t' << row.action << '\t'
              << row.subject << '\t' << row.detail << '\n';
  }
}

/// Deletes what is older than the date, and leaves a row that says so.
void pruneAudit(const std::string& url, const std::string& before) {
  constexpr int atOnce = 5'000;  // so that the desks do not wait for the whole of it
  const Moment moment = momentIn(before);
  std::int64_t dropped = 0;
  onLibrary(url, [&](Database& database) {
    for (std::int64_t last = atOnce; last == atOnce; dropped += last) {
      database.writeApart("audit", [&](Connection& db) { last = dropAuditBefore(db, moment, atOnce); });
    }
    database.write([&](Connection& db) {
      auditCommand(db, wallClock(), "audit pruned", before, std::to_string(dropped) + " rows");
    });
  });
  std::cout << dropped << " rows of the audit were deleted.\n";
}

}  // namespace

void describeAudit(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<AuditCommand>();
  CLI::App* audit = app.add_subcommand("audit", "What was done, and by whom")->require_subcommand(1);
  CLI::App* show = audit->add_subcommand("show", "Write it to the standard output, the oldest first");
  show->add_option("--since", given->since, "From this day on, YYYY-MM-DD");
  show->add_option("--before", given->before, "Before this day");
  show->add_option("--operator", given->filter.login, "Done by this operator");
  show->add_option("--action", given->filter.action, "This action, \"login refused\" for example");
  show->add_option("--subject", given->filter.subject, "Done to this");
  show->add_option("--most", given->filter.most, "The latest rows, so many")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  show->callback([given, &site] { printAudit(site.database, *given); });
  CLI::App* prune = audit->add_subcommand("prune", "Delete what is older");
  prune->add_option("--before", given->before, "The first day that is kept, YYYY-MM-DD")->required();
  prune->callback([given, &site] { pruneAudit(site.database, given->before); });
}

}  // namespace vantry::server
