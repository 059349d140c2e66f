#include "server/setup/inventory_plan.h"

#include <iterator>

#include "server/base/return_codes.h"
#include "server/base/user_error.h"
#include "server/desk/remark_writer.h"

namespace vantry::server {

std::vector<std::size_t> addedIn(const std::vector<std::size_t>& before,
                                 const std::vector<std::size_t>& after) {
  std::vector<std::size_t> added;
  std::ranges::set_difference(after, before, std::back_inserter(added));
  return added;
}

std::string sentenceOfMove(int refusal) {
  return refusal == rc::groupStatus ? "is moved with its group only."
                                    : "cannot be moved: bookings that are not over hold it.";
}

void writeRemarks(Connection& db, Owner owner, std::int64_t id, const Remarks& before, const Remarks& after,
                  const Stamp& stamp) {
  for (const StatusRow& row : before.statuses) {
    if (std::ranges::find(after.statuses, row.id, &StatusRow::id) == after.statuses.end())
      removeStatus(db, owner, id, row.id);
  }
  for (const StatusRow& row : after.statuses) {
    const auto old = std::ranges::find(before.statuses, row.id, &StatusRow::id);
    if (old != before.statuses.end() && old->note == row.note) continue;
    applyStatus(db, owner, id, row.id, row.note, row.appliedAt == 0 ? stamp.at : row.appliedAt);
  }
  for (const auto& [type, note] : before.notes) {
    if (!after.notes.contains(type)) removeNote(db, owner, id, type);
  }
  for (const auto& [type, note] : after.notes) {
    const auto old = before.notes.find(type);
    if (old == before.notes.end() || old->second != note) writeNote(db, owner, id, type, note, stamp);
  }
}

std::int64_t retiredStatusOf(const RemarkTypes& types, const std::string& name) {
  const auto status = std::ranges::find(types.statuses, name, &InventoryStatus::name);
  if (status == types.statuses.end() || !status->forbids)
    throw UserError("There is no status \"" + name +
                    "\" that forbids the use. Name another with --retire-as.");
  return status->id;
}

}  // namespace vantry::server
