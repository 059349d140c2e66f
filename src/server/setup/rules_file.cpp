#include "server/setup/rules_file.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "server/access/audit.h"
#include "server/setup/administration.h"
#include "server/setup/rules_file_store.h"
#include "server/setup/rules_file_text.h"

namespace vantry::server {

namespace {

std::string readWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (!file.is_open() || file.bad() || std::filesystem::is_directory(path)) {
    throw UserError("The file \"" + path + "\" cannot be read.");
  }
  return text.str();
}

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
  RulesReport read;
  const Rules wanted = readRulesText(readWhole(path), read.faults);
  RulesReport report;
  const auto work = [&](Connection& db) {
    report = read;
    const Rules standing = readRules(db);
    checkRules(wanted, standing, readKnownPlaces(db), report.faults);
    if (report.faults.count() > 0) return;
    const RulesPlan plan = planRules(wanted, standing);
    report.counts = plan.counts;
    if (use == RulesUse::Take) writePlan(db, plan, path, now);
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
