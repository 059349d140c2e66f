#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "frame/app.h"
#include "platform/controls.h"

namespace vantry {

/// Shows notes that staff must see when a thing is charged or discharged, one at a time: those of the last
/// reply, or one text of its caller. It reads the reply and sends no request. The public fields are set
/// before it loads.
class frmPopupNote : public Form {
 public:
  explicit frmPopupNote(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();
  void cmdNext_Click();
  void cmdPrevious_Click();

  std::string NoteType;  ///< "C" charge, "D" discharge, "S" a single note
  std::int16_t RoomNoteCount = 0;
  std::int16_t EquipmentNoteCount = 0;
  std::string NoteCaption;  ///< with "S": the window's caption
  std::string NoteText;     ///< with "S": the text; otherwise the note on show

  TextBox txtPopupNote{*this, "txtPopupNote"};
  Button cmdPrevious{*this, "cmdPrevious", "< &Back"};
  Button cmdNext{*this, "cmdNext", "&Next >"};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  struct Note {
    std::string caption;
    std::string text;
  };
  void readNotes(std::string_view tag, std::string_view prefix);
  void showNote(int index);
  void show(const Note& note);

  App& app_;
  std::vector<Note> notes_;
};

/// Shows the notes of the reply, rooms before pieces. Without any nothing appears.
void ShowReplyNotes(App& app, std::string_view mode, int rooms, int pieces);
/// Shows one text.
void ShowSingleNote(App& app, std::string_view text);

}  // namespace vantry
