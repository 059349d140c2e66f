#include <csignal>
#include <ctime>
#include <iostream>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>

#include "server/access/audit.h"
#include "server/base/user_error.h"
#include "server/jobs/retention.h"
#include "server/program/command_line.h"
#include "server/program/on_library.h"

namespace vantry::server {

namespace {

struct RetentionCommand {
  std::optional<int> bookings;
  std::optional<int> audit;
};

std::string monthsText(int months) {
  return months == 0 ? "for ever" : "for " + std::to_string(months) + " months";
}

std::string textOf(const Retention& retention) {
  return "Bookings that are over are kept with their names " + monthsText(retention.bookingMonths) +
         ", the audit " + monthsText(retention.auditMonths) + ".";
}

/// What is not given stays as it is.
void setMonths(const std::string& url, const RetentionCommand& command) {
  if (!command.bookings && !command.audit) throw UserError("Give --bookings, --audit or both.");
  Retention retention;
  changeLibrary(url, [&](Connection& db) {
    retention = retentionOf(db);
    retention.bookingMonths = command.bookings.value_or(retention.bookingMonths);
    retention.auditMonths = command.audit.value_or(retention.auditMonths);
    setRetention(db, retention);
    auditCommand(db, wallClock(), "retention set", {}, textOf(retention));
  });
  std::cout << textOf(retention) << '\n';
}

void show(const std::string& url) {
  const Retention retention = readRows(url, retentionOf);
  std::cout << textOf(retention) << '\n';
}

/// Holds back the signals that end a program, so that a step is finished before they are looked at.
class HeldSignals {
 public:
  HeldSignals() {
    sigemptyset(&ending_);
    for (const int each : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending_, each);
    pthread_sigmask(SIG_BLOCK, &ending_, &before_);
  }
  ~HeldSignals() {
    // What has arrived has been heeded.
    const timespec atOnce{};
    while (sigtimedwait(&ending_, nullptr, &atOnce) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  [[nodiscard]] bool hasOne() const {
    sigset_t arrived;
    sigpending(&arrived);
    return sigismember(&arrived, SIGINT) == 1 || sigismember(&arrived, SIGTERM) == 1 ||
           sigismember(&arrived, SIGHUP) == 1;
  }

 private:
  sigset_t ending_{};
  sigset_t before_{};
};

void runNow(const std::string& url) {
  const HeldSignals signals;
  RetentionReport report;
  onLibrary(url, [&](Database& database) {
    report = applyRetention(database, wallClock(), [&] { return !signals.hasOne(); });
  });
  changeLibrary(url, [&](Connection& db) {
    auditCommand(db, wallClock(), "retention run", {}, std::to_string(report.bookings) + " bookings");
  });
  std::cout << "Made anonymous: " << report.bookings << " bookings, " << report.blankedRows
            << " rows of the audit about bookings. Deleted: " << report.auditRows << " rows of the audit.\n";
  if (report.isStopped)
    throw UserError("Stopped. What is left is done by the server, or when the command is given again.");
}

}  // namespace

void describeRetention(CLI::App& app, const Site& site) {
  constexpr int mostMonths = 1200;
  const auto given = std::make_shared<RetentionCommand>();
  CLI::App* retention =
      app.add_subcommand("retention", "How long names are kept of what is over")->require_subcommand(1);
  CLI::App* set = retention->add_subcommand("set",
                                            "Set it; the server does the rest in small steps, a first time "
                                            "over hours, and \"run\" does it at once");
  set->add_option("--bookings", given->bookings,
                  "Whole months after which bookings that are over are made anonymous; 0 for never")
      ->check(CLI::Range(0, mostMonths));
  set->add_option("--audit", given->audit, "Whole months after which the audit is deleted; 0 for never")
      ->check(CLI::Range(0, mostMonths));
  set->callback([given, &site] { setMonths(site.database, *given); });
  retention->add_subcommand("show", "Tell it")->callback([&site] { show(site.database); });
  retention->add_subcommand("run", "Do at once what is due; Ctrl-C ends it after a step")->callback([&site] {
    runNow(site.database);
  });
}

}  // namespace vantry::server
