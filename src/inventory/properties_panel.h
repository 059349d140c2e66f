#pragma once

#include <vector>

#include "platform/controls.h"
#include "platform/fields.h"
#include "records/record_fields.h"

namespace vantry {

/// The page of a record's properties: who made and changed it, when and where, and how often it was booked.
class PropertiesPanel {
 public:
  explicit PropertiesPanel(Frame& frame);
  PropertiesPanel(const PropertiesPanel&) = delete;

  Label lblCreatedBy, lblCreateDate, lblCreateLocation;
  TextBox txtCR_OPNAME;
  DateField dtCR_DATE;
  TextBox txtCR_LOC_NAME;
  Label lblUpdatedBy, lblUpdateDate, lblUpdateLocation;
  TextBox txtUP_OPNAME;
  DateField dtUP_DATE;
  TextBox txtUP_LOC_NAME;

  /// Adds the rows of what is shown to a window's table of fields.
  void addFields(std::vector<RecordField>& rows);
  /// The layout with more fields below: labels and fields in turn.
  [[nodiscard]] LayoutNode layout(std::initializer_list<LayoutNode> more = {});
  /// Shows nothing: a copy was made by nobody yet.
  void clear();
  /// Shows who stored the record, from the reply of its save.
  void showCreated(const RecordFields::ValueOf& valueOf);
  void showUpdated(const RecordFields::ValueOf& valueOf);
};

}  // namespace vantry
