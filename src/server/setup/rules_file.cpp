#include "server/setup/rules_file.h"

#include <filesystem>

#include "server/access/audit.h"
#include "server/setup/file_text.h"
#include "server/setup/rules_file_store.h"
#include "server/setup/rules_file_text.h"

namespace vantry::server {

namespace {

std::string changesText(const std::vector<KindCounts>& counts) {
  std::string text;
  for (const KindCounts& each : counts) {
    if (each.added + each.changed > 0) text += (text.empty() ? "" : "; ") + countsText(each);
  }
  return text;
}

void writePlan(Connection& db, const RulesPlan& plan, const std::string& path, Moment now) {
  const std::string changes = changesText(plan.counts);
  if (changes.empty()) return;
  addRules(db, plan.added);
  changeRules(db, plan.changed);
  auditCommand(db, now, "rules taken", std::filesystem::path(path).filename().string(), changes);
}

}  // namespace

std::string showRules(Database& database) {
  Rules rules;
  database.read([&](Connection& db) { rules = readRules(db); });
  return rulesText(rules);
}

RulesReport takeRules(Database& database, const std::string& path, RulesUse use, Moment now) {
  FileFaults faults;
  const Rules wanted = readRulesText(wholeFile(path), faults);
  return takeReadRules(database, {path, wanted, faults}, use, now);
}

RulesReport takeReadRules(Database& database, const ReadRules& read, RulesUse use, Moment now) {
  RulesReport report;
  const auto work = [&](Connection& db) {
    report = {{}, read.faults};
    const Rules standing = readRules(db);
    checkRules(read.rules, standing, readKnownPlaces(db), report.faults);
    if (report.faults.count() > 0) return;
    const RulesPlan plan = planRules(read.rules, standing);
    report.counts = plan.counts;
    if (use == RulesUse::Take) writePlan(db, plan, read.path, now);
  };
  if (use == RulesUse::Take) {
    database.write(work);
  } else {
    database.read(work);
  }
  return report;
}

std::string countsText(const KindCounts& counts) {
  return std::string(counts.kind) + ": " + std::to_string(counts.added) + " added, " +
         std::to_string(counts.changed) + " changed, " + std::to_string(counts.same) + " as they were";
}

}  // namespace vantry::server
