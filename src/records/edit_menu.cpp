#include "records/edit_menu.h"

#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

EditMenu::EditMenu(Desktop& desktop) : desktop_(desktop) {
  on(cut.Run, this, &EditMenu::CutText);
  on(copy.Run, this, &EditMenu::CopyText);
  on(paste.Run, this, &EditMenu::PasteText);
  disable(cut, copy, paste);
}

void EditMenu::follow(std::initializer_list<TextBox*> fields) {
  for (TextBox* field : fields) {
    for (Event* event : {&field->GotFocus, &field->SelChange}) {
      *event = [this, field, own = std::move(*event)] {
        raise(own);
        CheckField(*field);
      };
    }
  }
}

void EditMenu::follow(const Container& container) {
  for (Control* control : container.Controls()) {
    if (control->kind() == ControlKind::TextBox) follow({static_cast<TextBox*>(control)});
    if (control->kind() == ControlKind::Frame) follow(static_cast<const Frame&>(*control));
  }
}

void EditMenu::CheckField(TextBox& field) {
  field_ = &field;
  const bool selected = field.SelLength() > 0;
  copy.Enabled = selected;
  cut.Enabled = selected && !field.Locked;
  paste.Enabled = !field.Locked && !desktop_.clipboardText().empty();
}

void EditMenu::CopyText() {
  if (field_) desktop_.copyToClipboard(trim(field_->SelText()));
}

void EditMenu::CutText() {
  CopyText();
  if (field_) field_->SelText("");
}

void EditMenu::PasteText() {
  if (field_) field_->SelText(desktop_.clipboardText());
}

}  // namespace vantry
