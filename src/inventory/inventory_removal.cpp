#include "inventory/inventory_removal.h"

#include <stdexcept>

#include "inventory/frmNumbers.h"
#include "inventory/record_refusals.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry {

namespace {

struct RemovalRow {
  int kind;
  std::string_view verified;  ///< what the server is asked about; empty where it is not
  std::string_view code;
  std::string_view id;
};

constexpr RemovalRow kRemovals[] = {{kEquipment, "1", "REMEQIP", tags::EID},
                                    {kGroup, "2", "REMGRP", tags::EID},
                                    {kRoom, "0", "REMROOM", tags::RID},
                                    {kMaintenance, "", "REMMAINT", tags::MID},
                                    {kGroupMember, "1", "REMEQIP", tags::EID}};

const RemovalRow& removalOf(int kind) {
  for (const RemovalRow& row : kRemovals) {
    if (row.kind == kind) return row;
  }
  throw std::logic_error("no record of the inventory");
}

}  // namespace

bool RemoveInventoryRecord(App& app, const Ask& ask, int kind, std::string_view id) {
  const RemovalRow& row = removalOf(kind);
  if (!row.verified.empty() && !recordSucceeded(ask, VerifyDelete(app, id, row.verified), "VERDELE"))
    return false;
  if (!questionBox(app.desktop, "Are you sure you want to DELETE this record?")) return false;
  if (!askForRecord(ask, row.code, {{row.id, id}})) return false;
  RefreshAssignedNumbers(app, static_cast<RecordKind>(kind == kGroupMember ? kEquipment : kind));
  return true;
}

}  // namespace vantry
