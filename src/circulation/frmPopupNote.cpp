#include "circulation/frmPopupNote.h"

#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr std::string_view kWindowCaption = "Popup Note";
static constexpr std::string_view kNext = "&Next >";
static constexpr std::string_view kLast = "&OK";

frmPopupNote::frmPopupNote(App& app) : Form(app.windows, "frmPopupNote"), app_(app) {
  Caption = std::string(kWindowCaption);
  txtPopupNote.MultiLine = true;
  txtPopupNote.Locked = true;
  txtPopupNote.AccessibleName = "Note";
  cmdPrevious.Visible = false;
  cmdNext.Visible = false;
  cmdNext.Default = true;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  on(cmdOK.Click, this, &frmPopupNote::cmdOK_Click);
  on(cmdNext.Click, this, &frmPopupNote::cmdNext_Click);
  on(cmdPrevious.Click, this, &frmPopupNote::cmdPrevious_Click);
  Layout = Column{txtPopupNote, Gap{}, Row{Stretch{}, cmdPrevious, cmdNext, cmdOK}};
}

void frmPopupNote::Form_Load() {
  app_.tools.PrepareForm(*this);
  if (NoteType == "S") return show({NoteCaption, NoteText});
  const std::string_view prefix = NoteType == "C" ? "Charge Popup Note:  " : "Discharge Popup Note:  ";
  if (RoomNoteCount > 0) readNotes(tags::RNO, prefix);
  if (EquipmentNoteCount > 0) readNotes(tags::ENO, prefix);
  if (notes_.empty()) return;
  const bool several = notes_.size() > 1;
  cmdPrevious.Visible = several;
  cmdPrevious.Enabled = false;
  cmdPrevious.Tag = "-1";
  cmdNext.Visible = several;
  cmdNext.Tag = "1";
  cmdOK.Visible = !several;
  showNote(0);
}

void frmPopupNote::Form_Activate() {
  (cmdNext.Visible ? cmdNext : cmdOK).SetFocus();
}

void frmPopupNote::readNotes(std::string_view tag, std::string_view prefix) {
  while (app_.message.NextRecord(tag))
    notes_.push_back({std::string(prefix) + app_.message.Get(tag), app_.message.Get(tags::PMSG)});
}

void frmPopupNote::showNote(int index) {
  NoteText = notes_.at(static_cast<std::size_t>(index)).text;
  show(notes_[static_cast<std::size_t>(index)]);
}

void frmPopupNote::show(const Note& note) {
  Caption = note.caption;
  txtPopupNote.Text = note.text;
}

void frmPopupNote::cmdNext_Click() {
  if (cmdNext.Caption == kLast) return cmdOK_Click();
  const int index = intOf(cmdNext.Tag.get());
  showNote(index);
  if (index == static_cast<int>(notes_.size()) - 1) cmdNext.Caption = std::string(kLast);
  cmdNext.Tag = std::to_string(index + 1);
  cmdPrevious.Tag = std::to_string(intOf(cmdPrevious.Tag.get()) + 1);
  cmdPrevious.Enabled = true;
}

void frmPopupNote::cmdPrevious_Click() {
  const int index = intOf(cmdPrevious.Tag.get());
  showNote(index);
  cmdPrevious.Tag = std::to_string(index - 1);
  cmdPrevious.Enabled = index > 0;
  cmdNext.Tag = std::to_string(intOf(cmdNext.Tag.get()) - 1);
  cmdNext.Caption = std::string(kNext);
  cmdNext.Enabled = true;
  if (!cmdPrevious.Enabled) cmdNext.SetFocus();
}

void frmPopupNote::cmdOK_Click() {
  Unload();
}

void ShowReplyNotes(App& app, std::string_view mode, int rooms, int pieces) {
  if (rooms + pieces <= 0) return;
  frmPopupNote window(app);
  window.NoteType = mode;
  window.RoomNoteCount = static_cast<std::int16_t>(rooms);
  window.EquipmentNoteCount = static_cast<std::int16_t>(pieces);
  window.ShowModal();
}

void ShowSingleNote(App& app, std::string_view text) {
  frmPopupNote window(app);
  window.NoteType = "S";
  window.NoteCaption = kWindowCaption;
  window.NoteText = text;
  window.ShowModal();
}

}  // namespace vantry
