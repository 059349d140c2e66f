#include "inventory/notes_panel.h"

#include "frame/app.h"
#include "inventory/record_refusals.h"
#include "messaging/server_tools.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kNone = "(none)";
constexpr std::string_view kFilled = " +";

std::string withoutMark(std::string_view name) {
  return std::string(name.ends_with(kFilled) ? name.substr(0, name.size() - kFilled.size()) : name);
}

}  // namespace

const NotesKind kEquipmentNotes{"cboEQUIP_NOTE_TYPE",
                                "txtEQUIP_NOTE",
                                "GETEGNS",
                                "GETEGN",
                                "AUEGNOTE",
                                "REMEGN",
                                tags::EID,
                                tags::ENID,
                                tags::ENTY,
                                "Note changes will be lost!  Do you wish to SAVE the note before exiting?"};
const NotesKind kRoomNotes{"cboROOM_NOTE_TYPE",
                           "txtROOM_NOTE",
                           "GETRNS",
                           "GETRN",
                           "AURNOTE",
                           "REMRN",
                           tags::RID,
                           tags::RNID,
                           tags::RNTY,
                           "Note changes will be lost!  Do you wish to SAVE this note before exiting?"};

NotesPanel::NotesPanel(App& app, const Ask& ask, Frame& frame, const NotesKind& kind,
                       std::function<std::string()> recordId)
    : lblNoteType(frame, "lblNoteType", "Note Type:"),
      cboNoteType(frame, kind.typeCombo),
      lblUpdated(frame, "lblUpdated", "Updated:"),
      dtNOTE_UP_DATE(frame, "dtNOTE_UP_DATE"),
      lblName(frame, "lblName", "Name:"),
      txtOPNAME(frame, "txtOPNAME"),
      txtNote(frame, kind.textBox),
      cmdSaveNote(frame, "cmdSaveNote", "&Save"),
      cmdUndoNote(frame, "cmdUndoNote", "&Undo"),
      cmdRemoveNote(frame, "cmdRemoveNote", "&Remove"),
      app_(app),
      ask_(ask),
      kind_(kind),
      recordId_(std::move(recordId)) {
  txtNote.AccessibleName = "Note";
  txtNote.MultiLine = true;
  txtOPNAME.Locked = true;
  dtNOTE_UP_DATE.Enabled = false;
  cboNoteType.AddItem(std::string(kNone));
  cboNoteType.ListIndex = 0;
  connect();
  arrange(frame);
  allowCommands();
}

void NotesPanel::connect() {
  on(cboNoteType.Click, this, &NotesPanel::cboNoteType_Click);
  on(txtNote.Change, this, &NotesPanel::textChanged);
  on(saveNote.Run, this, &NotesPanel::cmdSaveNote_Click);
  on(undoNote.Run, this, &NotesPanel::cmdUndoNote_Click);
  on(removeNote.Run, this, &NotesPanel::cmdRemoveNote_Click);
  saveNote.link(cmdSaveNote);
  undoNote.link(cmdUndoNote);
  removeNote.link(cmdRemoveNote);
}

void NotesPanel::arrange(Frame& frame) {
  frame.Layout =
      Column{Row{Fields{lblNoteType, cboNoteType}.share(1), Gap{},
                 Fields{lblUpdated, dtNOTE_UP_DATE}.share(1), Gap{}, Fields{lblName, txtOPNAME}.share(1)},
             txtNote, Row{cmdSaveNote, cmdUndoNote, cmdRemoveNote, Stretch{}}};
}

// Types

void NotesPanel::load() {
  loaded_ = true;
  if (recordId_().empty()) return;  // a refused record has none
  fillTypes(std::string(kNone));
}

void NotesPanel::fillTypes(const std::string& selected) {
  cboNoteType.Clear();
  cboNoteType.AddItem(std::string(kNone));
  const TagMessage& message = app_.message;
  if (ask_(kind_.listCode, {{kind_.recordTag, recordId_()}})) {
    while (app_.message.NextRecord(kind_.noteTag)) {
      const bool filled = message.Get(tags::NX) == "Y";
      cboNoteType.AddItem(message.Get(kind_.nameTag) + (filled ? std::string(kFilled) : ""),
                          message.Get(kind_.noteTag));
    }
  }
  const std::string wanted = withoutMark(selected);
  int found = 0;
  for (int i = 1; i < cboNoteType.ListCount() && found == 0; ++i) {
    if (withoutMark(cboNoteType.List(i)) == wanted) found = i;
  }
  cboNoteType.ListIndex = found;
}

bool NotesPanel::hasType() const {
  return cboNoteType.ListIndex > 0;
}

/// Another type replaces the text that is shown; a text that was typed is not dropped without a question.
void NotesPanel::cboNoteType_Click() {
  if (!Dirty) return readNote();
  if (cboNoteType.ItemData(cboNoteType.ListIndex) == typeId_) return;
  const bool saves =
      askBox(app_.desktop, Box::Kind::Warning, "Note changes will be lost!  Do you wish to SAVE this note?");
  if (!saves) return readNote();
  if (!mayStore() || !store(cboNoteType.Text())) cboNoteType.ListIndex = cboNoteType.indexOfData(typeId_);
}

// The note

void NotesPanel::readNote() {
  typeId_ = cboNoteType.ItemData(cboNoteType.ListIndex);
  const bool read =
      hasType() && ask_(kind_.readCode, {{kind_.recordTag, recordId_()}, {kind_.noteTag, typeId_}});
  const TagMessage& message = app_.message;
  if (read)
    showNote(message.Get(tags::MNO), message.Get(tags::UDT), message.Get(tags::ON));
  else
    showNote("", "", "");
}

void NotesPanel::showNote(const std::string& text, const std::string& updated, const std::string& name) {
  txtNote.Text = text;
  ServerTools::PutControlDate(updated, dtNOTE_UP_DATE);
  txtOPNAME.Text = name;
  Dirty = false;
  allowCommands();
}

void NotesPanel::textChanged() {
  if (!hasType()) return;
  Dirty = true;
  Saved = false;
  allowCommands();
}

void NotesPanel::allowCommands() {
  const bool open = hasType() && !locked_;
  cboNoteType.Enabled = !locked_;
  txtNote.Enabled = open && mayUpdate_;
  setEnabled(open && mayUpdate_ && Dirty, saveNote, undoNote);
  setEnabled(open && mayUpdate_ && !txtOPNAME.Text.get().empty(), removeNote);
}

// Commands

void NotesPanel::cmdSaveNote_Click() {
  if (!typeId_.empty() && mayStore()) static_cast<void>(store(cboNoteType.Text()));
}

/// The selection of a type afterwards reads its note, with who wrote it and when.
bool NotesPanel::store(const std::string& selectedThen) {
  const std::string text = txtNote.Text;
  if (!askForRecord(ask_, kind_.saveCode,
                    {{kind_.recordTag, recordId_()}, {kind_.noteTag, typeId_}, {tags::MNO, text}}))
    return false;
  Dirty = false;
  fillTypes(selectedThen);
  Saved = true;
  return true;
}

bool NotesPanel::mayStore() {
  return fitsMessage(app_.desktop, txtNote.Text.get());
}

void NotesPanel::cmdUndoNote_Click() {
  readNote();
}

void NotesPanel::cmdRemoveNote_Click() {
  if (!questionBox(app_.desktop, "Are you sure you want to DELETE this note?")) return;
  if (!ask_(kind_.removeCode, {{kind_.recordTag, recordId_()}, {kind_.noteTag, typeId_}})) return;
  Dirty = false;
  load();
}

bool NotesPanel::mayClose() {
  if (Saved || !Dirty || !mayUpdate_) return true;
  if (!askBox(app_.desktop, Box::Kind::Warning, kind_.closeQuestion)) return true;
  if (!mayStore()) return false;
  static_cast<void>(store(cboNoteType.Text()));
  return true;
}

// Rights

void NotesPanel::lock() {
  locked_ = true;
  allowCommands();
}

void NotesPanel::unlock() {
  locked_ = false;
  if (loaded_) load();
}

void NotesPanel::secure(bool mayUpdate) {
  mayUpdate_ = mayUpdate;
  allowCommands();
}

}  // namespace vantry
