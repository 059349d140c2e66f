#pragma once

#include <optional>
#include <set>
#include <string>
#include <tuple>

#include "server/setup/inventory_plan.h"

namespace vantry::server {

/// The import of rooms, and of what stands in them.
class RoomPlan : public InventoryPlan<InventoryRoom> {
 public:
  RoomPlan(Connection& db, Inventory& inventory, const CsvTable& table, const ImportUse& use,
           InventoryReport& report);

 protected:
  [[nodiscard]] bool hasKey() const override { return hasColumn("number"); }
  bool find(const CsvTable::Row& row, std::optional<std::size_t>& place) override;
  [[nodiscard]] InventoryRoom fresh() const override { return {}; }
  void judgeRow(const Row& row) override;
  void judge() override;
  [[nodiscard]] std::string label(const InventoryRoom& room) const override;
  [[nodiscard]] std::int64_t retiredStatus() const override { return retiredStatus_; }
  void writeRow(const Row& row, const Stamp& stamp) override;
  void afterWriting(const Row& row, Moment now) override;
  void retire(std::int64_t id, Moment now) override;

 private:
  void judgeThings(const Row& row);
  void relocate(std::size_t thing, const RoomRecord& room, std::size_t line);

  std::int64_t retiredStatus_ = 0;
  std::set<std::tuple<std::string, std::string, std::string>> named_;  ///< by location, type and number
  LinesByPlace changed_;
  LinesByPlace changedThings_;
};

}  // namespace vantry::server
