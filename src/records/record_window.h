#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/bars.h"
#include "platform/command.h"

namespace vantry {

/// How a record window asks before changes are lost. Nobody is asked who may not update the record.
struct CloseRule {
  std::string_view question;
  Box::Kind box = Box::Kind::Question;
  bool staysOnFailedSave = true;  ///< otherwise the window closes after either answer
};

/// What differs between the kinds of record windows before any of their code runs.
struct RecordWindowKind {
  int kind;  ///< of the opener
  std::string_view name;
  std::string_view icon;
  std::string_view helpTopic;
  Subject subject;  ///< whose rights count
  CloseRule close;
};

/// The commands that every record window has.
struct RecordCommands {
  Command save, saveAndNew, copy, remove, print, close;
  Command mergeCells, search, options, topics, about;
};

/// Where a command is reached: a menu entry with its keys, a tool, or both.
struct CommandPlace {
  Command& command;
  MenuItem* entry = nullptr;
  std::string_view keys = {};
  std::string_view tool = {};  ///< name of its tool; empty for none
  std::string_view caption = {};
  std::string_view picture = {};
  bool lineBefore = false;  ///< the tool begins a group
};

/// The window of one record: opening, saving, closing, the commands that all record windows have, and the
/// operator's rights. A deriving window reads, shows and stores its record.
class RecordWindow : public Form {
 public:
  void Form_Load() override;
  bool Form_Unload() override;
  void mnuFileClose_Click() { Unload(); }
  void mnuViewMergeCells_Click();
  void mnuToolsOptions_Click();
  void mnuHelpTopics_Click();
  void mnuHelpAbout_Click();

  bool SaveOk = false;   ///< the last save reached its end
  bool Dirty = false;    ///< a field was changed since the window opened
  bool Closing = false;  ///< a command closes the window: nothing is asked any more
  int CallerView = 0;    ///< the source that opened the window
  RecordCommands commands;

 protected:
  RecordWindow(App& app, const RecordWindowKind& kind);

  /// Before anything is read.
  virtual void prepare() {}
  /// Shows a new record.
  virtual void loadNew() = 0;
  /// Reads and shows the record of the opening, as a model in a copy. False closes the window.
  [[nodiscard]] virtual bool loadRecord() = 0;
  /// The record is shown, the operator's rights count, and the windows are ready.
  virtual void recordIsShown() {}
  /// Whether the server holds the record, which decides between the rights to add and to update.
  [[nodiscard]] virtual bool isStored() const = 0;
  /// Stores the record. `SaveOk` tells whether the end was reached.
  virtual void Save() = 0;
  /// The page that help opens.
  [[nodiscard]] virtual std::string_view helpTopic() const { return kind_.helpTopic; }
  /// What Save and New opens afterwards.
  [[nodiscard]] virtual RecordOpening nextOpening() = 0;
  /// The record can only be read from now on.
  virtual void DisableEditing();
  /// Takes from the window what the operator's rights forbid.
  virtual void SetFormSecurity();
  /// A field has changed.
  virtual void recordChanged() {}
  /// Merges equal cells of the window's grids, or no longer.
  virtual void merge(bool on) = 0;

  /// Saves as a command does: the field that is being edited is left first, with its checks. False when an
  /// entry has to be mended before.
  bool save();
  void saveAndClose();
  void saveAndNew();
  /// Closes without a question.
  void closeNow();
  /// A field has changed: told by every field that is edited.
  void touch();
  /// Lets the window change its fields by itself, which makes nothing dirty.
  void showQuietly(const std::function<void()>& change);
  /// Makes the tools, in the order of the rows, and lets menu entries and tools run the commands.
  static void linkCommands(ToolBar& bar, std::initializer_list<CommandPlace> places);

  const RecordOpening& opening() const { return opening_; }
  bool isLoading() const { return loading_; }
  /// Whether the rights permit a save: to add what is new, else to update.
  [[nodiscard]] bool maySave() const;

  App& app_;
  Ask ask_;  ///< in the name of this window

 private:
  const RecordWindowKind& kind_;
  RecordOpening opening_;
  bool loading_ = false;
  bool merged_ = false;
};

}  // namespace vantry
