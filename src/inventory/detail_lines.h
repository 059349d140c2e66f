#pragma once

#include <span>
#include <string_view>

#include "frame/record_opening.h"
#include "lists/reply_list.h"
#include "platform/command.h"
#include "platform/controls.h"

namespace vantry {

struct DetailLine;

/// The details of one kind of record: where they come from and how they are sent.
struct DetailLinesKind {
  const char* grid;                      ///< name of the list
  RecordSource source;                   ///< the record window, for the editor of one line
  std::span<const ReplyColumn> columns;  ///< id of the type, its name, the text
  std::string_view walk;
  std::string_view typeTag;
  std::string_view textTag;
};
extern const DetailLinesKind kMaintenanceDetails;
extern const DetailLinesKind kRoomDetails;

/// The typed details of a room or a maintenance record. They change only in the list until the record is
/// saved, which replaces all of them.
class DetailLines {
 public:
  DetailLines(App& app, Frame& frame, const DetailLinesKind& kind);
  DetailLines(const DetailLines&) = delete;

  Grid fa;
  Button cmdAddDetail, cmdEditDetail, cmdRemoveDetail;
  MenuItem mnuPopupDetails, mnuPopupDetailsAdd, mnuPopupDetailsEdit, mnuPopupDetailsRemove;
  Command add, edit, remove;
  // Hidden: what the list needs to show moments.
  DateField dtDetailDate;
  TimeField dtDetailTime;

  Event Changed;  ///< the operator has changed a line

  /// Fills the list from the record that was read.
  void fill();
  /// Adds all lines to the message of a save.
  void addTags() const;
  void secure(bool mayUpdate);
  [[nodiscard]] LayoutNode layout();

  void cmdAddDetail_Click();
  void cmdEditDetail_Click();
  void cmdRemoveDetail_Click();
  /// Nothing is selected any more.
  void DisableButtons();

 private:
  void connect();
  void fa_Click();
  void showLine(int row, const DetailLine& line);
  [[nodiscard]] bool hasRow() const { return fa.Row >= fa.FixedRows; }

  App& app_;
  const DetailLinesKind& kind_;
  ReplyList list_;
};

}  // namespace vantry
