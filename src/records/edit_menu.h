#pragma once

#include <initializer_list>

#include "platform/command.h"
#include "platform/controls.h"

namespace vantry {

class Desktop;

/// Cut, Copy and Paste for the text fields of a window. They act on the field that had the focus last.
class EditMenu {
 public:
  explicit EditMenu(Desktop& desktop);
  EditMenu(const EditMenu&) = delete;
  EditMenu& operator=(const EditMenu&) = delete;

  /// Cut and Copy need a selection, Paste a text on the clipboard; a locked field can only be copied from.
  Command cut, copy, paste;

  /// Follows the focus and the selection of these fields from now on.
  void follow(std::initializer_list<TextBox*> fields);
  /// The same for all text fields of a window or frame, and of the frames in it.
  void follow(const Container& container);
  /// The field is the active one: allows what its selection and the clipboard allow.
  void CheckField(TextBox& field);

  void CutText();
  void CopyText();
  void PasteText();

 private:
  Desktop& desktop_;
  TextBox* field_ = nullptr;
};

}  // namespace vantry
