#pragma once

#include <string>

#include "platform/control.h"

namespace vantry {

/// What the record windows do alike with every control that takes a value, by its kind. A control of another
/// kind has no text, takes none and is only enabled or disabled.
struct FieldKind {
  ControlKind kind;
  /// Shows a record's value: of a combo the entry with this item data, of a check box "Y", of dates and times
  /// the server's form.
  void (*show)(Control&, const std::string& value);
  /// The value as a record keeps it.
  std::string (*value)(const Control&);
  /// What the operator sees; empty without a value.
  std::string (*text)(const Control&);
  /// The control can only be read from now on.
  void (*lock)(Control&);
  /// Raised when the value changes.
  Event& (*changed)(Control&);
};

/// The row of a control's kind; nullptr for one that takes no value.
[[nodiscard]] const FieldKind* fieldKindOf(const Control& control);

}  // namespace vantry
