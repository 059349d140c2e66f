#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

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

/// Whether the columns are fitted to their texts as soon as there are new rows.
enum class ColumnFit {
  Preferred,  ///< all but the first, where the operator prefers it
  Always,     ///< all
  Never
};

/// What a list is made of: its columns, and the tag of the walk over the reply.
struct ReplyLayout {
  std::span<const ReplyColumn> columns;
  std::string_view walk = {};
  /// The tag of a key that only one row may have: further records with it are passed over. Empty where every
  /// record is a row.
  std::string_view uniqueKey = {};
  ColumnFit fit = ColumnFit::Preferred;
  int widest = Grid::kWidestFit;  ///< twips that a fitted column takes at most
  bool merges = true;             ///< cells of equal text, where the operator prefers it
};

/// The list of a dialog, always fitted. Its cells do not merge, since a row of it is to be read by itself.
[[nodiscard]] constexpr ReplyLayout dialogLayout(std::span<const ReplyColumn> columns,
                                                 std::string_view walk = {}) {
  return {.columns = columns, .walk = walk, .fit = ColumnFit::Always, .merges = false};
}

/// The texts of a row, in the order of the layout's columns.
using ListRow = std::vector<std::string>;

/// The controls through which server moments become texts.
struct MomentFields {
  DateField& date;
  TimeField& time;
};

/// What the owner of a list adds to the filling. All are optional.
struct ReplyHooks {
  std::function<bool()> accepts = {};                           ///< whether the current record becomes a row
  std::function<std::string(const ReplyColumn&)> ownText = {};  ///< of an `Own` column
  /// The tag of a column whose value the current record may have under another one.
  std::function<std::string_view(const ReplyColumn&)> tagOf = {};
  std::function<void(int row)> filled = {};  ///< the row has its texts; the walk is still on its record
  std::function<void(int row, int total)> progress = {};  ///< a record is about to be read
};

/// A list of records: the one filler of all grids that show some. The rows are the records of a reply, or
/// texts that the owner has. Each column carries its place in the layout as data word, so that columns which
/// the operator has moved are filled, read and sorted by what they hold.
class ReplyList {
 public:
  /// `moments` only where the layout has columns of dates or times.
  ReplyList(App& app, Grid& grid, std::optional<MomentFields> moments = {});
  ReplyList(const MainParts& parts, Grid& grid)
      : ReplyList(parts.app, grid, MomentFields{parts.dtServerDate, parts.txtServerTime}) {}
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
  /// Adds the records of the last reply behind the rows that are there. The number of all rows.
  int add();
  /// Fills the grid anew with these rows instead.
  int fill(const std::vector<ListRow>& rows);
  /// Adds a last row; its place.
  int addRow(const ListRow& texts);
  /// Gives a row other texts.
  void setRow(int row, const ListRow& texts);

  /// The texts of a row, wherever their columns are now.
  [[nodiscard]] ListRow row(int row) const;
  /// The text of a row in the column of this place in the layout, wherever that column is now.
  [[nodiscard]] const std::string& text(int row, int column) const;
  void setText(int row, int column, std::string text);
  /// The value of a row under this tag; empty where the list has no column of it.
  [[nodiscard]] std::string valueOf(int row, std::string_view tag) const;

  /// Sorts by the column under the pointer at the last right click and by the columns that belong to it; no
  /// row is selected afterwards.
  void sort(SortOrder order);
  /// Moves that column to the front, with the columns that belong to it, and sorts by all columns from left
  /// to right; the first row is selected afterwards.
  void sortWhole(SortOrder order);
  /// Sorts ascending by the columns between these places in the layout, the first of them first, wherever
  /// they are now; no row is selected afterwards.
  void sortBy(int firstColumn, int lastColumn);

 private:
  int finish(int rows);
  void fillRow(int row);
  std::string cellText(const ReplyColumn& column);
  std::string momentText(CellKind kind, std::string_view moment);
  bool isRepeated();
  void dress();

  App& app_;
  Grid& grid_;
  std::optional<MomentFields> moments_;  ///< of a list with dates or times
  std::string moment_;                   ///< what they show of the row
  ReplyLayout layout_;
  std::unordered_set<std::string> keys_;  ///< of the rows so far, where they must differ
};

/// Under which tag a reply has what a piece is known by, its barcode or its number as preferred.
[[nodiscard]] std::string_view pieceTag(const App& app);

/// The requester of a booking as the lists show it: "Administrative" where there is none. Of bookings that
/// are over, the server tells some without their names, as a negative number.
[[nodiscard]] std::string requesterText(std::string_view value);

/// Keeps the dates and times of a booking list together after the operator has moved one of them: a date,
/// then its time in the form that sorts, then its time as people read it.
void SetColumnOrderBookings(Grid& grid, int movedColumn);

}  // namespace vantry
