#pragma once

#include "inventory/inventory_view.h"

namespace vantry {

/// Maintenance of equipment, by years and months.
class MaintenanceView : public InventoryView {
 public:
  using InventoryView::InventoryView;

 protected:
  void fillTree() override;
  bool askFor(std::string_view month, const std::function<void()>& read) override;
  std::string heading(const TreeNode& node) const override;
};

}  // namespace vantry
