#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tab_pages.h"
#include "records/edit_menu.h"
#include "records/record_fields.h"
#include "records/record_window.h"

namespace vantry {

class NotesPanel;

/// A page of a record window: its tab, its entry of the View menu, and what help says about it.
struct RecordPage {
  const char* caption;
  const char* entry;  ///< name of the menu entry
  const char* entryCaption;
  std::string_view helpTopic = {};  ///< empty: that of the window
};

/// What differs between the record windows of the inventory before any of their code runs.
struct InventoryWindowKind {
  RecordWindowKind window;
  const char* caption;      ///< the window's own; the record's number follows
  std::string_view read;    ///< request that reads a record
  std::string_view create;  ///< request that stores a new record
  std::string_view update;  ///< request that stores a changed one
  std::string_view idTag;
  bool refusalEndsSave;  ///< otherwise a refused save goes on, and counts as saved
  int nextSource;        ///< of the window that Save and New opens
  SearchCategory search;
  const char* tabStrip;
  const char* tabStripOfNew;  ///< the strip of one tab that a new record has; nullptr: it has all tabs
  std::vector<RecordPage> pages;
};

/// The window of one record of the inventory: menus, tools, the edit menu, and the steps of its save, copy,
/// deletion and closing. A deriving window has the fields and pages, and what it does differently.
class InventoryWindow : public RecordWindow {
 public:
  bool Form_Unload() override;
  void mnuFileSave_Click() { save(); }
  void saveAndClose_Click() { RecordWindow::saveAndClose(); }
  void abSaveAndNew_Click() { saveAndNew(); }
  void mnuFileCopy_Click();
  void mnuFileDelete_Click();
  void mnuToolsSearch_Click();
  /// Shows a page, as its tab does.
  void mnuViewPage_Click(int page) { strip_.choose(page); }

  /// The record's id; empty while the server has none. A copy has that of its model until it is saved.
  [[nodiscard]] const std::string& recordId() const { return id_; }
  [[nodiscard]] bool isNew() const { return mode_ == Mode::New; }
  [[nodiscard]] bool isCopy() const { return copy_; }

  // What other windows tell this one.
  /// The replacement value of a group, after one of its members was stored.
  virtual void takeMembersValue(const std::string&) {}
  /// A maintenance record of the piece was stored or deleted.
  virtual void BuildMaintenanceTab() {}
  /// A maintenance record has set the piece's next date.
  virtual void takeNextMaintenance(const std::optional<Date>&) {}

  Command saveAndClose;  ///< a tool of its own: the menu entry only saves
  EditMenu edit;

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuFileSave{mnuFile, "mnuFileSave", "&Save"};
  MenuItem mnuFileLine1{mnuFile, "mnuFileLine1", "-"};
  MenuItem mnuFileCopy{mnuFile, "mnuFileCopy", "C&opy"};
  MenuItem mnuFileDelete{mnuFile, "mnuFileDelete", "&Delete"};
  MenuItem mnuFilePrint{mnuFile, "mnuFilePrint", "&Print"};
  MenuItem mnuFileLine2{mnuFile, "mnuFileLine2", "-"};
  MenuItem mnuFileClose{mnuFile, "mnuFileClose", "&Close"};
  MenuItem mnuEdit{*this, "mnuEdit", "&Edit"};
  MenuItem mnuEditCut{mnuEdit, "mnuEditCut", "Cu&t"};
  MenuItem mnuEditCopy{mnuEdit, "mnuEditCopy", "&Copy"};
  MenuItem mnuEditPaste{mnuEdit, "mnuEditPaste", "&Paste"};
  MenuItem mnuView{*this, "mnuView", "&View"};  ///< the pages, then what follows
  std::vector<std::unique_ptr<MenuItem>> mnuViewPages;
  MenuItem mnuViewLine1;
  MenuItem mnuViewMergeCells;
  MenuItem mnuTools{*this, "mnuTools", "&Tools"};
  MenuItem mnuToolsSearch{mnuTools, "mnuToolsSearch", "&Search"};
  MenuItem mnuToolsOptions{mnuTools, "mnuToolsOptions", "&Options..."};
  MenuItem mnuHelp{*this, "mnuHelp", "&Help"};
  MenuItem mnuHelpTopics{mnuHelp, "mnuHelpTopics", "&Help Topics"};
  MenuItem mnuHelpAbout{mnuHelp, "mnuHelpAbout", "&About Vantry..."};

  ToolBar barBooking{*this, "barBooking"};

 protected:
  InventoryWindow(App& app, const InventoryWindowKind& kind);

  // What a window tells of itself.
  /// The number that the caption shows.
  [[nodiscard]] virtual std::string number() const = 0;
  /// The node of the main window's tree that lists it.
  [[nodiscard]] virtual std::string category() const = 0;
  /// Its table of fields.
  [[nodiscard]] virtual const RecordFields& fields() const = 0;
  /// Its panel of notes; nullptr for none.
  [[nodiscard]] virtual NotesPanel* notesPanel() { return nullptr; }

  /// Reads what a page reads at its first visit, for a report. A record that is not stored has nothing there.
  void readPage(int page) {
    if (isStored()) pages_->visit(page);
  }

  // Opening. `readRecord` asks for the record and shows it; a refused request leaves empty fields.
  virtual void readRecord() = 0;
  /// Asks for the record. A refusal is reported.
  [[nodiscard]] bool askForStored();
  /// Shows what a new record starts with.
  virtual void showNew() = 0;
  /// The number that the copy's caption shows: that of its model.
  std::string modelNumber;

  // Saving, in this order.
  /// Whether no required field is empty. What is missing has been told.
  [[nodiscard]] virtual bool requiredAreFilled();
  /// Adds the tags of the save behind the id.
  virtual void addRecord(bool created) = 0;
  /// Reads from the reply of the save what only the server knows. `id` is taken by the window itself.
  virtual void takeReply(bool created) = 0;
  /// A copy was saved: it is a record of its own from now on, with all its commands.
  virtual void copyEnds() {}
  /// A new record shows the pages and commands of a stored one.
  virtual void showAsStored();
  /// What belongs to the save beyond the record itself; false ends it here.
  [[nodiscard]] virtual bool saveMore(bool created) {
    (void)created;
    return true;
  }
  /// Shows the stored record in the windows that list it.
  virtual void refreshLists() = 0;
  /// Shows the numbers in use anew, if they are open.
  virtual void refreshNumbers() {}
  /// Ends a save with what was typed still there, since only the operator can settle what prevents it. A
  /// window that was about to close stays open.
  [[nodiscard]] bool holdBack();
  /// The record was deleted; the window closes.
  virtual void recordIsDeleted() {}

  /// Another page is shown: nothing is selected any more in the lists.
  virtual void DisableButtons() {}

  /// Whether the command that closes the window leaves a note that was typed unasked.
  [[nodiscard]] virtual bool notesAreAsked() const { return true; }

  void prepare() override;
  void loadNew() override;
  [[nodiscard]] bool loadRecord() override;
  void recordIsShown() override;
  void recordChanged() override;
  [[nodiscard]] bool isStored() const override { return !isNew() && !copy_ && !id_.empty(); }
  void Save() override;
  [[nodiscard]] RecordOpening nextOpening() override;
  [[nodiscard]] std::string_view helpTopic() const override;
  void DisableEditing() override;
  void SetFormSecurity() override;

  /// Gives the pages their frames, in the order of the kind's pages. Called once, by the constructor.
  void placePages(const std::vector<TabPages::Page>& pages);
  /// Tools, tab strips and pages from top to bottom.
  [[nodiscard]] LayoutNode pagesLayout();
  [[nodiscard]] std::string captionNow() const;
  /// Reads the types of the main window's trees anew and shows them, after the count of one has changed.
  void refreshTrees(bool countsChanged);
  /// The window of another record of the inventory, or nullptr.
  [[nodiscard]] InventoryWindow* windowOf(int kind, std::string_view id) const;

  const InventoryWindowKind& kind() const { return kind_; }

 private:
  enum class Mode { New, Existing };
  void placeCommands();
  [[nodiscard]] bool send(bool created);

  const InventoryWindowKind& kind_;
  TabStrip strip_;
  std::optional<TabStrip> stripOfNew_;
  std::optional<TabPages> pages_;
  std::vector<Frame*> frames_;
  std::string id_;
  Mode mode_ = Mode::Existing;
  bool copy_ = false;
  bool wasRead_ = false;  ///< the fields hold the stored record: it can be printed
  bool heldBack_ = false;
};

}  // namespace vantry
