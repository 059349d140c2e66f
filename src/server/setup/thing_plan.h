#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "server/setup/inventory_plan.h"

namespace vantry::server {

/// The import of pieces, or of groups with their members.
class ThingPlan : public InventoryPlan<InventoryThing> {
 public:
  enum class Kind { Pieces, Groups };
  ThingPlan(Connection& db, Inventory& inventory, Kind kind, const CsvTable& table, const ImportUse& use,
            InventoryReport& report);

 protected:
  [[nodiscard]] bool hasKey() const override { return hasColumn("barcode") || hasColumn("number"); }
  bool find(const CsvTable::Row& row, std::optional<std::size_t>& place) override;
  [[nodiscard]] InventoryThing fresh() const override;
  void judgeRow(const Row& row) override;
  void judge() override;
  [[nodiscard]] std::string label(const InventoryThing& thing) const override;
  [[nodiscard]] bool belongs(const InventoryThing& thing) const override;
  [[nodiscard]] std::int64_t retiredStatus() const override { return retiredStatus_; }
  void beforeWriting(const Row& row) override;
  void writeRow(const Row& row, const Stamp& stamp) override;
  void afterWriting(const Row& row, Moment now) override;
  void retire(std::int64_t id, Moment now) override;

 private:
  bool findByNumber(const CsvTable::Row& row, std::optional<std::size_t>& place);
  void requireWhole(const Row& row);
  void judgePlace(const Row& row);
  void judgeBarcode(const Row& row);
  void judgeMembers(const Row& row);
  void judgeBarcodes();
  void writeBarcodes(const Row& row);

  const bool groups_;
  const std::string noun_;
  std::int64_t retiredStatus_ = 0;
  std::map<std::string, std::size_t> barcodes_;  ///< new active ones, and their lines
  LinesByPlace changed_;                         ///< members of changed groups included
};

}  // namespace vantry::server
