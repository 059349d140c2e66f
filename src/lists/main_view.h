#pragma once

#include "frame/main_parts.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/command.h"

namespace vantry {

/// One view of the main window: a class in the folder of its subject, made by its row of the view table. The
/// window calls these functions; a view overrides what concerns it.
class MainView {
 public:
  explicit MainView(const MainParts& parts);
  virtual ~MainView() = default;
  MainView(const MainView&) = delete;
  MainView& operator=(const MainView&) = delete;

  /// The window loads, also for another operator: lists and fields are as at the start.
  virtual void load() {}
  /// The view was chosen and its frame shows.
  virtual void open() { refresh(); }
  /// Reads the view's data anew.
  virtual void refresh() {}
  /// The list that the window sorts and merges; nullptr for a view without one.
  virtual ReplyList* list() { return nullptr; }
  /// The list was sorted: what belonged to a row belongs to it no longer.
  virtual void sorted() {}
  /// Takes the preferences that one step of their reading has completed.
  virtual void takePreferences(Applies what);
  /// Allows the view's commands as the rights say.
  virtual void secure(const Rights&) {}

  // Commands on the list and on its selected row. The entries of the popup menus belong to the view that
  // shows; a command that the view does not have cannot be used.
  Command create, edit, remove, cancel, charge, discharge;
  Command sort, print;  ///< the submenus of these names

 protected:
  const MainParts& parts() const { return parts_; }
  App& app() const { return parts_.app; }
  /// Asks the server; failures are reported for the main window.
  const Ask& ask() const { return ask_; }

 private:
  MainParts parts_;
  Ask ask_;
};

}  // namespace vantry
