#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "messaging/ask.h"
#include "platform/command.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "records/edit_menu.h"

namespace vantry {

class App;

/// The names and requests of the notes of one kind of record.
struct NotesKind {
  const char* typeCombo;
  const char* textBox;
  std::string_view listCode, readCode, saveCode, removeCode;
  std::string_view recordTag;
  std::string_view noteTag;
  std::string_view nameTag;
  const char* closeQuestion;
};
extern const NotesKind kEquipmentNotes;  ///< of pieces and groups
extern const NotesKind kRoomNotes;

/// The page of a record's notes: at most one for each type of note.
class NotesPanel {
 public:
  /// `recordId` gives the id of the record that the notes belong to.
  NotesPanel(App& app, const Ask& ask, Frame& frame, const NotesKind& kind,
             std::function<std::string()> recordId);
  NotesPanel(const NotesPanel&) = delete;

  Label lblNoteType;
  ComboBox cboNoteType;
  Label lblUpdated;
  DateField dtNOTE_UP_DATE;
  Label lblName;
  TextBox txtOPNAME;
  TextBox txtNote;
  Button cmdSaveNote, cmdUndoNote, cmdRemoveNote;
  Command saveNote, undoNote, removeNote;

  bool Dirty = false;  ///< the text was changed since it was read or saved
  bool Saved = false;  ///< what is shown was saved here

  /// Reads the types, and shows no note.
  void load();
  /// In a copy nothing can be changed: the notes are those of its model.
  void lock();
  /// The copy is a record of its own now, without notes.
  void unlock();
  void secure(bool mayUpdate);
  /// Asks whether a changed note is to be saved, before the window closes. False for one that is not stored
  /// yet, since only the operator can settle what prevents it.
  [[nodiscard]] bool mayClose();

  void cboNoteType_Click();
  void cmdSaveNote_Click();
  void cmdUndoNote_Click();
  void cmdRemoveNote_Click();

 private:
  void connect();
  void arrange(Frame& frame);
  /// Reads the types anew; the one of this name stays selected.
  void fillTypes(const std::string& selected);
  void readNote();
  void showNote(const std::string& text, const std::string& updated, const std::string& name);
  void textChanged();
  void allowCommands();
  [[nodiscard]] bool hasType() const;
  [[nodiscard]] bool mayStore();
  [[nodiscard]] bool store(const std::string& selectedThen);

  App& app_;
  const Ask& ask_;
  const NotesKind& kind_;
  std::function<std::string()> recordId_;
  std::string typeId_;  ///< of the note that is shown
  bool mayUpdate_ = true;
  bool locked_ = false;
  bool loaded_ = false;
};

}  // namespace vantry
