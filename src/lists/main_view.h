#pragma once

#include <functional>

#include "frame/main_parts.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/command.h"

namespace vantry {

/// One view of the main window: a class in the folder of its subject, made by its row of the view table. The
/// window calls these functions; a view overrides what concerns it.
class MainView {
 public:
  /// The view shows while its frame is visible.
  MainView(const MainParts& parts, Frame& frame);
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
  /// What the title of the printed list tells: the date, the hours, the room, the node of what was read.
  virtual std::string reportText() const { return {}; }
  /// The list was sorted: what belonged to a row belongs to it no longer.
  virtual void sorted() {}
  /// Takes the preferences that one step of their reading has completed.
  virtual void takePreferences(Applies what);
  /// Allows the view's commands as the rights say.
  virtual void secure(const Rights&) {}
  /// The day view shows another day; calendars follow it.
  virtual void followDay(const Date&) {}

  // What concerns the lists of the inventory.
  /// Shows the categories that were read last.
  virtual void BuildMainTrees() {}
  /// Reads the list anew if it shows this category.
  virtual void refill(std::string_view) {}
  /// Takes the selected row away, if there is one, and lowers the count of this category, since a record of
  /// it was deleted.
  virtual void dropSelectedRow(std::string_view) {}
  /// Does the same with the row of a record. The category is given by its name.
  virtual void dropRecord(std::string_view, std::string_view) {}
  /// Opens the pane of a group's members, or closes it.
  virtual void mnuPopupGroupMembers_Click() {}

  // What the window does for its views.
  /// Shows the day view, on the date that all views share.
  Event showDay;
  /// Lets the other views follow the day view's date.
  std::function<void(const Date&)> dayChanged;
  /// Shows the view's heading with this text behind it.
  std::function<void(std::string_view)> showHeading;
  /// A member of a group was deleted: its id, and its type by name.
  std::function<void(std::string_view id, std::string_view type)> pieceDeleted;

  // Commands on the list and on its selected row. The entries of the popup menus belong to the view that
  // shows; a command that the view does not have cannot be used.
  Command create, edit, remove, cancel, charge, discharge;
  Command sort, print;  ///< the submenus of these names

 protected:
  const MainParts& parts() const { return parts_; }
  App& app() const { return parts_.app; }
  /// Asks the server; failures are reported for the main window.
  const Ask& ask() const { return ask_; }
  bool isVisible() const { return frame_.Visible; }

  // What can be printed. The commands are shared by all views, so that only the view that shows sets them.
  void allowListing(bool on);
  void allowDetail(bool on);
  void allowAllDetails(bool on);

 private:
  void allow(bool on, Command MainCommands::*shared);

  MainParts parts_;
  Frame& frame_;
  Ask ask_;
};

}  // namespace vantry
