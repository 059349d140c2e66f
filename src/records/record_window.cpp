#include "records/record_window.h"

#include <utility>

#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "records/records.h"

namespace vantry {

RecordWindow::RecordWindow(App& app, const RecordWindowKind& kind)
    : Form(app.windows, std::string(kind.name)), app_(app), ask_(app.global, kind.name), kind_(kind) {
  Icon = kind.icon;
  on(commands.close.Run, this, &RecordWindow::mnuFileClose_Click);
  on(commands.mergeCells.Run, this, &RecordWindow::mnuViewMergeCells_Click);
  on(commands.options.Run, this, &RecordWindow::mnuToolsOptions_Click);
  on(commands.topics.Run, this, &RecordWindow::mnuHelpTopics_Click);
  on(commands.about.Run, this, &RecordWindow::mnuHelpAbout_Click);
}

void RecordWindow::linkCommands(ToolBar& bar, std::initializer_list<CommandPlace> places) {
  int id = 0;
  for (const CommandPlace& row : places) {
    if (row.entry) row.command.link(*row.entry, std::string(row.keys));
    if (row.tool.empty()) continue;
    if (row.lineBefore) bar.addLine();
    row.command.link(
        bar.addButton(++id, std::string(row.tool), std::string(row.caption), std::string(row.picture)));
  }
}

void RecordWindow::Form_Load() {
  app_.tools.PrepareForm(*this);
  app_.global.BusyAllForms();
  opening_ = app_.slots.opening;  // the next window overwrites it
  CallerView = opening_.source;
  loading_ = true;
  merged_ = app_.preferences.MergeCells;
  merge(merged_);
  prepare();
  if (intOf(opening_.id) == 0) {
    loadNew();
  } else if (!loadRecord()) {
    return closeNow();
  }
  SetFormSecurity();
  app_.global.ReadyAllForms();
  recordIsShown();
  loading_ = false;
  Dirty = opening_.copy;
}

// Saving and closing.

void RecordWindow::touch() {
  if (loading_) return;
  Dirty = true;
  recordChanged();
}

void RecordWindow::showQuietly(const std::function<void()>& change) {
  const bool before = std::exchange(loading_, true);
  change();
  loading_ = before;
}

bool RecordWindow::save() {
  SaveOk = false;
  if (!leaveField() || !entriesAreReadable(*this)) return false;
  Save();
  return true;
}

void RecordWindow::saveAndClose() {
  save();
  if (SaveOk) closeNow();
}

void RecordWindow::saveAndNew() {
  save();
  if (!SaveOk) return;
  const RecordOpening next = nextOpening();
  closeNow();
  OpenRecordWindow(app_, next);
}

void RecordWindow::closeNow() {
  Closing = true;
  Unload();
}

bool RecordWindow::Form_Unload() {
  // A save that reached its end settles it, whatever was typed after it; this is deliberate.
  if (Closing || SaveOk || !Dirty || !app_.context.rights.has(rightsOf(kind_.subject).update)) return true;
  const CloseRule& rule = kind_.close;
  if (!askBox(app_.desktop, rule.box, std::string(rule.question))) return true;
  // What cannot be read only the operator can mend. A command that is off cannot save any more, as after a
  // failed save.
  if (commands.save.usable() && !save()) return false;
  return SaveOk || !rule.staysOnFailedSave;
}

// Rights.

bool RecordWindow::maySave() const {
  const SubjectRights rights = rightsOf(kind_.subject);
  return app_.context.rights.has(isStored() ? rights.update : rights.add);
}

void RecordWindow::DisableEditing() {
  disable(commands.save, commands.saveAndNew);
}

void RecordWindow::SetFormSecurity() {
  const Rights& rights = app_.context.rights;
  const SubjectRights needed = rightsOf(kind_.subject);
  if (viewOnly(rights, kind_.subject)) DisableEditing();
  commands.save.Allowed = maySave();
  commands.saveAndNew.Allowed = maySave() && rights.has(needed.add);
  commands.copy.Allowed = rights.has(needed.add);
  commands.remove.Allowed = rights.has(needed.remove);
}

// What all record windows open.

void RecordWindow::mnuViewMergeCells_Click() {
  merged_ = !merged_;
  merge(merged_);
}

void RecordWindow::mnuToolsOptions_Click() {
  app_.makers.run("frmOptions", app_);
}

void RecordWindow::mnuHelpTopics_Click() {
  app_.desktop.showHelp(helpTopic());
}

void RecordWindow::mnuHelpAbout_Click() {
  app_.makers.run("About", app_);
}

}  // namespace vantry
