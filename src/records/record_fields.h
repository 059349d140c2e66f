#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/rights.h"
#include "platform/control.h"

namespace vantry {

/// How a field takes part in the reading and saving of its record.
enum class FieldUse {
  Edited,  ///< read, changed by the operator and saved
  Shown,   ///< read, and never changed here
};

/// One row of a record window's table of fields.
struct RecordField {
  Control& control;
  /// Of the value in the record. Empty where the window reads and saves the field by itself, and for a
  /// control that has a tool tip only.
  std::string_view tag = {};
  FieldUse use = FieldUse::Edited;
  std::string_view required = {};  ///< label of a field that must hold a value
  std::string_view tip = {};
  std::optional<Right> right = {};  ///< without it the field is locked
  /// Shows the value where the kind of control does not know how.
  std::function<void(const std::string&)> show = {};
};

/// The fields of one record window, as a table. It reads and saves them, marks the required ones, gives tool
/// tips, tells of changes and locks. What a kind of control does with a value is in `field_kinds.h`.
class RecordFields {
 public:
  using ValueOf = std::function<std::string(std::string_view tag)>;
  using Take = std::function<void(std::string_view tag, std::string value)>;

  explicit RecordFields(std::vector<RecordField> rows);

  /// Shows the values of all tags.
  void load(const ValueOf& valueOf) const;
  /// Hands on the tags and values of the fields that are edited, in the order of the table.
  void save(const Take& take) const;
  /// Shows the tool tips, or takes them away.
  void showTips(bool on) const;
  /// From now on a change of an edited field is told, after what the window itself does with it.
  void tellChanges(const Event& changed) const;
  /// Locks the edited fields: the record can only be read from now on.
  void lock() const;
  /// Locks the fields whose right the operator lacks.
  void secure(const Rights& rights) const;

 private:
  std::vector<RecordField> rows_;
};

}  // namespace vantry
