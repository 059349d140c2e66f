#include "records/record_fields.h"

#include <utility>

#include "records/field_kinds.h"
#include "records/required_fields.h"

namespace vantry {

static void lockField(Control& control) {
  if (const FieldKind* kind = fieldKindOf(control)) kind->lock(control);
}

RecordFields::RecordFields(std::vector<RecordField> rows) : rows_(std::move(rows)) {
  for (const RecordField& row : rows_) {
    if (!row.required.empty()) row.control.Tag = requiredTag(row.required);
    if (row.use == FieldUse::Shown) lockField(row.control);
  }
}

void RecordFields::load(const ValueOf& valueOf) const {
  for (const RecordField& row : rows_) {
    if (row.tag.empty()) continue;
    const std::string value = valueOf(row.tag);
    if (row.show)
      row.show(value);
    else if (const FieldKind* kind = fieldKindOf(row.control))
      kind->show(row.control, value);
  }
}

void RecordFields::save(const Take& take) const {
  for (const RecordField& row : rows_) {
    if (row.tag.empty() || row.use != FieldUse::Edited) continue;
    if (const FieldKind* kind = fieldKindOf(row.control)) take(row.tag, kind->value(row.control));
  }
}

void RecordFields::showTips(bool on) const {
  for (const RecordField& row : rows_) {
    if (!row.tip.empty()) row.control.ToolTipText = std::string(on ? row.tip : "");
  }
}

void RecordFields::tellChanges(const Event& changed) const {
  for (const RecordField& row : rows_) {
    const FieldKind* kind =
        row.use == FieldUse::Edited && !row.tag.empty() ? fieldKindOf(row.control) : nullptr;
    if (!kind) continue;
    Event& event = kind->changed(row.control);
    event = [own = std::move(event), changed] {
      raise(own);
      raise(changed);
    };
  }
}

void RecordFields::lock() const {
  for (const RecordField& row : rows_) {
    if (row.use == FieldUse::Edited && !row.tag.empty()) lockField(row.control);
  }
}

void RecordFields::secure(const Rights& rights) const {
  for (const RecordField& row : rows_) {
    if (row.right && !rights.has(*row.right)) lockField(row.control);
  }
}

}  // namespace vantry
