#pragma once

#include <span>
#include <string>

#include "lists/legend.h"
#include "lists/main_view.h"
#include "platform/fields.h"

namespace vantry {

struct MonitorKind;
struct ViewRow;

/// A list of the Schedule Monitor, which reads the bookings that come due. The views differ by a row of a
/// table: the columns, the request, the hours that it looks ahead, the sound.
class MonitorView : public MainView {
 public:
  MonitorView(const MainParts& parts, Frame& frame, const ViewRow& view);

  Grid faDaemon;
  Button cmdEditDaemon, cmdPrintDaemon;

  void BuildDaemonFlexArray();
  void load() override { BuildDaemonFlexArray(); }
  /// Reads the list anew. The frame and the heading stay, so that a refresh by the timer does not flicker.
  void refresh() override;
  ReplyList* list() override { return &list_; }
  void sorted() override { forgetSelection(); }
  void secure(const Rights& rights) override;

  void cmdEditDaemon_Click();
  void faDaemon_Click();
  void faDaemon_DblClick();
  void faDaemon_RightClick();

 protected:
  /// No row is selected any more.
  virtual void forgetSelection();
  /// A row was selected.
  virtual void rowSelected() {}
  /// The hours that the list looks ahead, where its title tells them.
  std::string reportText() const override { return hoursRead_; }
  /// Adds what the request has before the hours.
  virtual void addTags();
  /// Whether there is something to ask for.
  virtual bool asks() const { return true; }
  virtual std::string ownText(const ReplyColumn& column);
  virtual std::string_view tagOf(const ReplyColumn& column) const;
  /// The row has its texts; the walk is still on its record.
  virtual void filled(int row);
  /// Which entries the popup menu of the list has.
  virtual void showEntries(MainMenus& menus);

  const std::string& selectedId() const { return selectedId_; }
  void enablePrinting(bool on);
  ReplyList list_{parts(), faDaemon};

 private:
  void request();
  void fillList();

  const MonitorKind& kind_;
  std::string selectedId_;
  std::string hoursRead_;
};

/// What is in the way of the bookings that come due.
class ConflictView : public MonitorView {
 public:
  ConflictView(const MainParts& parts, Frame& frame, const ViewRow& view);

 protected:
  std::string ownText(const ReplyColumn& column) override;
};

/// Deliveries and clean-ups. The bookings can be charged and discharged from here.
class DeliveryView : public MonitorView {
 public:
  DeliveryView(const MainParts& parts, Frame& frame, const ViewRow& view);

  LegendLabels legend;
  Button cmdDCancel, cmdChargeDelClean, cmdDischargeDelClean;

  void takePreferences(Applies what) override;
  void secure(const Rights& rights) override;
  void cmdDCancel_Click();
  void cmdChargeDelClean_Click();
  void cmdDischargeDelClean_Click();

 protected:
  void forgetSelection() override;
  void rowSelected() override;
  std::string ownText(const ReplyColumn& column) override;
  std::string_view tagOf(const ReplyColumn& column) const override;
  void filled(int row) override;
  void showEntries(MainMenus& menus) override;

 private:
  int selectedStatus() const;
  void rowHasChanged();
};

/// The schedule of one room, which the operator chooses.
class RoomScheduleView : public MonitorView {
 public:
  RoomScheduleView(const MainParts& parts, Frame& frame, const ViewRow& view);

  Label lblMediaSchedRooms;
  ComboBox cboMediaSchedRooms;

  void load() override;
  /// Reads the rooms; the one that was chosen stays so.
  void open() override;
  std::string reportText() const override;

 protected:
  void addTags() override;
  bool asks() const override;
};

/// Bookings of the rooms that the library schedules, and what is in the selected one.
class LibRoomsView : public MonitorView {
 public:
  LibRoomsView(const MainParts& parts, Frame& frame, const ViewRow& view);

  Label lblLibRoomsDetail;
  Grid faLibRoomsDetail;
  Button cmdDaemonItems;

  void load() override;
  void cmdDaemonItems_Click();

 protected:
  void forgetSelection() override;
  void rowSelected() override;
  void showEntries(MainMenus& menus) override;

 private:
  bool detailsAreOpen() const { return cmdDaemonItems.Tag.get() == "1"; }
  void openDetails(bool open);
  void readDetails();

  Command items_;
  ReplyList details_{parts(), faLibRoomsDetail};
};

/// Adds the locations whose bookings the monitor watches: those chosen in the options or, where none are, all
/// that the operator may work at; the desk's own is always the last.
void addWatchedLocations(App& app);
/// Adds those chosen in the options, of which there are some.
void addChosenLocations(App& app);

}  // namespace vantry
