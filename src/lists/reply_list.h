#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

#include "frame/main_parts.h"
#include "platform/grid.h"

namespace vantry {

/// How a cell is made of the current record of the walk.
enum class CellKind {
  Plain,      ///< the tag's value
  Number,     ///< the tag's value as a whole number; 0 for other texts
  YesNo,      ///< "Y", or "N" for everything else
  Requester,  ///< the tag's value, or "Administrative" for a blank one
  Date,       ///< the day of the moment under the tag; empty for none
  Time24,     ///< its time, in the form that sorts
  Time,       ///< its time, as people read it
  Piece,      ///< the barcode of a piece, or its number where the operator prefers numbers
  Own         ///< the text that the list's owner gives (`ReplyHooks::ownText`)
};

/// One column of a list.
struct ReplyColumn {
  std::string_view heading;  ///< of a `Piece` column: "Barcode", which becomes "Number" with the numbers
  std::string_view tag = {};
  CellKind kind = CellKind::Plain;
  int width = 1500;  ///< twips; 0 hides the column for good
  SortKind sort = SortKind::Text;
  Align align = Align::Left;
};

/// What a list is made of: its columns, and the tag of the walk over the reply.
struct ReplyLayout {
  std::span<const ReplyColumn> columns;
  std::string_view walk = {};
  /// The tag of a key that only one row may have: further records with it are passed over. Empty where every
  /// record is a row.
  std::string_view uniqueKey = {};
};

/// The controls through which server moments become texts.
struct MomentFields {
  DateField& date;
  TimeField& time;
};

/// What the owner of a list adds to the filling. All are optional.
struct ReplyHooks {
  std::function<bool()> accepts = {};                           ///< whether the current record becomes a row
  std::function<std::string(const ReplyColumn&)> ownText = {};  ///< of an `Own` column
  std::function<void(int row)> filled = {};  ///< the row has its texts; the walk is still on its record
  std::function<void(int row, int total)> progress = {};  ///< a record is about to be read
};

/// A reply of the server as a list: the one filler of all grids that show records. Each column carries its
/// place in the layout as data word, so that columns which the operator has moved are filled, read and sorted
/// by what they hold.
class ReplyList {
 public:
  ReplyList(App& app, Grid& grid, MomentFields moments);
  /// A list without dates and times.
  ReplyList(App& app, Grid& grid);
  ReplyList(const MainParts& parts, Grid& grid)
      : ReplyList(parts.app, grid, {parts.dtServerDate, parts.txtServerTime}) {}
  ReplyList(const ReplyList&) = delete;

  ReplyHooks hooks;
  Grid& grid() const { return grid_; }

  /// Gives the grid the columns of a layout, without rows. Moved columns are back in their places. The
  /// layout's columns must outlive the list.
  void build(const ReplyLayout& layout);
  /// Takes all rows away.
  void clear();
  /// Fills the grid anew from the last reply and shows it; no row is selected. The number of rows.
  int fill();
  /// Does the same with the records behind the rows that are there. The number of all rows.
  int add();

  /// Adds a row with its texts, in the order of the layout. The row.
  int addRow(std::initializer_list<std::string_view> texts);

  /// The text of a row in the column of this place in the layout, wherever that column is now.
  [[nodiscard]] const std::string& text(int row, int column) const;
  void setText(int row, int column, std::string text);
  /// The value of a row under this tag; empty where the list has no column of it.
  [[nodiscard]] std::string valueOf(int row, std::string_view tag) const;

  /// Sorts by the column under the pointer at the last right click and by the columns that belong to it; no
  /// row is selected afterwards.
  void sort(SortOrder order);
  /// Moves that column to the front, with the columns that belong to it, and sorts by all columns from left to
  /// right; the first row is selected afterwards.
  void sortWhole(SortOrder order);
  /// Sorts ascending by the columns between these places in the layout, the first of them first, wherever
  /// they are now; no row is selected afterwards.
  void sortBy(int firstColumn, int lastColumn);

 private:
  void fillRow(int row);
  std::string cellText(const ReplyColumn& column) const;
  std::string momentText(CellKind kind, std::string_view moment) const;
  bool isRepeated();
  void dress();

  App& app_;
  Grid& grid_;
  std::optional<MomentFields> moments_;  ///< of a list with dates or times
  ReplyLayout layout_;
  std::unordered_set<std::string> keys_;  ///< of the rows so far, where they must differ
};

/// The requester of a booking as the lists show it: "Administrative" where there is none.
[[nodiscard]] std::string requesterText(std::string_view value);

/// Keeps the dates and times of a booking list together after the operator has moved one of them: a date,
/// then its time in the form that sorts, then its time as people read it.
void SetColumnOrderBookings(Grid& grid, int movedColumn);

}  // namespace vantry
