#include "inventory/inventory_window.h"

#include "frame/modMain.h"
#include "inventory/inventory_removal.h"
#include "inventory/notes_panel.h"
#include "inventory/record_refusals.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "records/records.h"
#include "records/required_fields.h"
#include "words/tags.h"

namespace vantry {

using PageEntries = std::vector<std::unique_ptr<MenuItem>>;

static PageEntries pageEntries(MenuItem& mnuView, const InventoryWindowKind& kind) {
  PageEntries entries;
  for (const RecordPage& page : kind.pages)
    entries.push_back(std::make_unique<MenuItem>(mnuView, page.entry, page.entryCaption));
  return entries;
}

InventoryWindow::InventoryWindow(App& app, const InventoryWindowKind& kind)
    : RecordWindow(app, kind.window),
      edit(app.desktop),
      mnuViewPages(pageEntries(mnuView, kind)),
      mnuViewLine1(mnuView, "mnuViewLine1", "-"),
      mnuViewMergeCells(mnuView, "mnuViewMergeCells", "Mer&ge Cells"),
      kind_(kind),
      strip_(*this, kind.tabStrip) {
  Caption = kind.caption;
  strip_.AccessibleName = "Parts of the record";
  if (kind.tabStripOfNew) {
    stripOfNew_.emplace(*this, kind.tabStripOfNew);
    stripOfNew_->AccessibleName = "Parts of the record";
    stripOfNew_->addTab(kind.pages.front().caption);
    stripOfNew_->Visible = false;
  }
  for (int page = 0; const auto& entry : mnuViewPages)
    on(entry->Click, this, &InventoryWindow::mnuViewPage_Click, page++);
  placeCommands();
}

void InventoryWindow::placeCommands() {
  on(commands.save.Run, this, &InventoryWindow::mnuFileSave_Click);
  on(saveAndClose.Run, this, &InventoryWindow::saveAndClose_Click);
  on(commands.saveAndNew.Run, this, &InventoryWindow::abSaveAndNew_Click);
  on(commands.copy.Run, this, &InventoryWindow::mnuFileCopy_Click);
  on(commands.remove.Run, this, &InventoryWindow::mnuFileDelete_Click);
  on(commands.search.Run, this, &InventoryWindow::mnuToolsSearch_Click);
  // These windows have no keys of their own.
  linkCommands(barBooking, {{saveAndClose, nullptr, "", "abSaveAndClose", "Save and Close", "save"},
                            {commands.saveAndNew, nullptr, "", "abSaveAndNew", "Save and New", "new"},
                            {commands.save, &mnuFileSave, "", "abSave", "Save", "save"},
                            {commands.copy, &mnuFileCopy, "", "abCopy", "Copy", "copy", true},
                            {commands.remove, &mnuFileDelete, "", "abDelete", "Delete", "delete"},
                            {commands.print, &mnuFilePrint, "", "abPrint", "Print", "print", true},
                            {commands.close, &mnuFileClose},
                            {edit.cut, &mnuEditCut},
                            {edit.copy, &mnuEditCopy},
                            {edit.paste, &mnuEditPaste},
                            {commands.mergeCells, &mnuViewMergeCells},
                            {commands.search, &mnuToolsSearch, "", "abSearch", "Search", "search", true},
                            {commands.options, &mnuToolsOptions, "", "abOptions", "Options", "options"},
                            {commands.topics, &mnuHelpTopics, "F1", "abHelp", "Help", "help", true},
                            {commands.about, &mnuHelpAbout}});
}

void InventoryWindow::placePages(const std::vector<TabPages::Page>& pages) {
  for (const TabPages::Page& page : pages) frames_.push_back(&page.frame);
  pages_.emplace(strip_, pages);
  pages_->Changed = [this] { DisableButtons(); };
  edit.follow(*this);
}

LayoutNode InventoryWindow::pagesLayout() {
  LayoutNode all = Column{strip_};
  if (stripOfNew_) all.children.emplace_back(*stripOfNew_);
  for (Frame* frame : frames_) all.children.push_back(LayoutNode(*frame).share(1));
  return all;
}

// Opening

void InventoryWindow::prepare() {
  fields().showTips(app_.preferences.ToolTips);
  barBooking.ToolTips = app_.preferences.ToolTips;
}

void InventoryWindow::loadNew() {
  mode_ = Mode::New;
  Caption = std::string(kind_.caption) + " - (New)";
  if (stripOfNew_) {
    strip_.Visible = false;
    stripOfNew_->Visible = true;
    mnuView.Enabled = false;
  }
  disable(commands.remove, commands.copy, commands.print);
  showNew();
}

bool InventoryWindow::loadRecord() {
  id_ = opening().id;
  copy_ = opening().copy;
  readRecord();
  Caption = copy_ ? "Copy of " + std::string(kind_.caption) + "  - " + modelNumber : captionNow();
  setEnabled(!copy_, commands.copy, commands.remove);
  commands.print.Enabled = !copy_ && wasRead_;
  return true;
}

bool InventoryWindow::askForStored() {
  wasRead_ = askForRecord(ask_, kind_.read, {{kind_.idTag, id_}});
  return wasRead_;
}

void InventoryWindow::recordIsShown() {
  refreshNumbers();
}

std::string InventoryWindow::captionNow() const {
  return std::string(kind_.caption) + " - " + number();
}

// Saving

bool InventoryWindow::requiredAreFilled() {
  return CheckRequiredFields(*this);
}

void InventoryWindow::Save() {
  if (!requiredAreFilled()) return;
  const bool wasCopy = copy_;
  const bool created = isNew() || wasCopy;
  const bool stored = send(created);
  if (!stored && kind_.refusalEndsSave) return;
  // A refused save goes on, on purpose: the record counts as saved, and its next save is an update.
  if (!stored && created) id_.clear();
  copy_ = false;
  if (wasCopy) copyEnds();
  if (created) showAsStored();
  Caption = captionNow();
  // Before the rest, which may end the save: the next one must not store the record once more.
  mode_ = Mode::Existing;
  if (!saveMore(created)) return;
  SaveOk = true;
  Dirty = false;
  refreshLists();
  setEnabled(!id_.empty(), commands.copy, commands.remove);
  SetFormSecurity();
  refreshNumbers();
}

bool InventoryWindow::holdBack() {
  heldBack_ = true;
  return false;
}

bool InventoryWindow::send(bool created) {
  if (!created) app_.message.Add(kind_.idTag, id_);
  addRecord(created);
  const std::string_view code = created ? kind_.create : kind_.update;
  const int rc = ask_.codeOf(code);
  if (rc == codes::NotFound && id_.empty()) {
    warningBox(app_.desktop,
               "This record is not stored, since its first save was refused.\n\nPlease enter it again.");
    return false;
  }
  if (!recordSucceeded(ask_, rc, code)) return false;
  if (created) {
    id_ = app_.message.Get(kind_.idTag);
    Tag = recordTag(opening().kind, id_);
  }
  takeReply(created);
  return true;
}

void InventoryWindow::showAsStored() {
  strip_.Visible = true;
  if (stripOfNew_) stripOfNew_->Visible = false;
  mnuView.Enabled = true;
  commands.print.Enabled = true;
}

RecordOpening InventoryWindow::nextOpening() {
  return {kind_.window.kind, "", kind_.nextSource};
}

void InventoryWindow::refreshTrees(bool countsChanged) {
  if (countsChanged)
    LoadCategoryLists(app_);  // which shows them
  else
    app_.main().BuildMainTrees();
}

// Copying, deleting, closing

void InventoryWindow::recordChanged() {
  disable(commands.copy);  // what is copied is the stored record
}

void InventoryWindow::mnuFileCopy_Click() {
  RecordOpening copy(kind_.window.kind, id_, kSourceMainWindow);
  copy.copy = true;
  OpenRecordWindow(app_, copy);
}

void InventoryWindow::mnuFileDelete_Click() {
  if (!RemoveInventoryRecord(app_, ask_, kind_.window.kind, id_)) return;
  app_.main().dropInventoryRow(kind_.window.kind, category());
  recordIsDeleted();
  closeNow();
}

bool InventoryWindow::Form_Unload() {
  const bool silent = Closing || (SaveOk && !Dirty);
  const bool asksForRecord = !SaveOk && Dirty && maySave();
  heldBack_ = false;
  if (!RecordWindow::Form_Unload() || heldBack_) return false;
  NotesPanel* notes = notesPanel();
  return !notes || silent || asksForRecord || !notesAreAsked() || notes->mayClose();
}

// Rights

void InventoryWindow::DisableEditing() {
  RecordWindow::DisableEditing();
  disable(saveAndClose);
  fields().lock();
}

void InventoryWindow::SetFormSecurity() {
  RecordWindow::SetFormSecurity();
  saveAndClose.Allowed = maySave();
  if (!maySave()) DisableEditing();
  if (NotesPanel* notes = notesPanel()) notes->secure(maySave());
}

// Other windows

std::string_view InventoryWindow::helpTopic() const {
  const std::string_view ofPage = kind_.pages.at(static_cast<std::size_t>(pages_->selected())).helpTopic;
  return ofPage.empty() ? RecordWindow::helpTopic() : ofPage;
}

void InventoryWindow::mnuToolsSearch_Click() {
  app_.makers.search(app_, kind_.search);
}

InventoryWindow* InventoryWindow::windowOf(int kind, std::string_view id) const {
  return dynamic_cast<InventoryWindow*>(FindRecordWindow(app_, kind, id));
}

}  // namespace vantry
