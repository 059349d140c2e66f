#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/control.h"

namespace vantry {

enum class Align { Left, Right, Center };
enum class SortOrder { None, Ascending, Descending };
/// How the texts of a column compare. `Text`: numbers as numbers where both texts are numbers, before all
/// other texts, which compare without regard to case. `ShortDate`, `ClockTime`: as the moments that they read
/// as.
enum class SortKind { Text, ShortDate, ClockTime };
/// `Free`: neighbouring cells of equal text are drawn as one where their row or column may merge.
enum class MergeMode { Never, Free };

/// A table of texts: fixed rows with headings above data rows. Rows and columns count from 0, the fixed ones
/// included. `Row` 0 (a fixed row) is no selection.
///
/// With `MultiSelect` further rows may be selected beside `Row`, the one that has the operator's attention.
/// A new `Row`, a click and a sort leave only that row selected.
///
/// What belongs to a column (data, width, alignment, cells) stays with it when the operator moves it. While
/// `Redraw` is off the grid may be told of changes and be in the middle of them: its shower shows nothing new
/// and hands on no action of the operator's until the `Structure` that tells it is on again.
class Grid : public Control {
 public:
  struct Cell {
    std::string text;
    Colour back = kOwnColour;
    Colour fore = kOwnColour;
  };

  Grid(Container& parent, std::string name);

  Property<int> Rows{*this, Aspect::State, 1};
  Property<int> Cols{*this, Aspect::State, 1};
  Property<int> FixedRows{*this, Aspect::Structure, 1};
  Property<int> Row{*this, Aspect::Selection, 0};
  Property<int> Col{*this, Aspect::Selection, 0};
  Property<bool> Redraw{*this, Aspect::State, true};
  Property<MergeMode> MergeCells{*this, Aspect::Cells, MergeMode::Never};
  bool MultiSelect = false;
  /// Headings joined by "|", each led by "<", "^" or ">" for its alignment; sets the number of columns.
  Property<std::string> FormatString{*this, Aspect::State};

  Event Click;     ///< the operator selected a row, by mouse or keyboard, or clicked a heading
  Event DblClick;  ///< the operator chose a row, by double-click or Enter
  Event RightClick;
  Event AfterMoveColumn;
  Event RowColChange;  ///< another row is selected, by the operator or by code
  /// The operator presses a key, named as in `MenuItem::Shortcut`. True keeps the key from its usual effect.
  std::function<bool(std::string_view key)> KeyDown;

  /// Where the pointer was at the last click; -1 beyond the cells.
  int MouseRow = -1;
  int MouseCol = -1;
  /// The place of the column that the operator moved last.
  int MovedCol = -1;

  const std::string& TextMatrix(int row, int col) const { return cell(row, col).text; }
  void TextMatrix(int row, int col, std::string text);
  const Cell& cell(int row, int col) const { return cells_[place(row, col)]; }
  void CellColours(int row, int col, Colour back, Colour fore);

  int ColData(int col) const { return column(col).data; }
  void ColData(int col, int data) { column(col).data = data; }
  /// The column that holds this data now, or -1.
  int columnOfData(int data) const;
  /// In twips; 0 hides the column.
  int ColWidth(int col) const { return column(col).width; }
  void ColWidth(int col, int twips);
  Align ColAlignment(int col) const { return column(col).align; }
  SortKind ColSortKind(int col) const { return column(col).sortKind; }
  void ColSortKind(int col, SortKind kind) { column(col).sortKind = kind; }
  void ColSort(int col, SortOrder order) { column(col).order = order; }
  /// Moves a column to a place, also while `Redraw` is off. Raises nothing.
  void ColPosition(int col, int place);
  bool MergeCol(int col) const { return column(col).merge; }
  void MergeCol(int col, bool on);

  const std::string& RowData(int row) const { return row_(row).data; }
  void RowData(int row, std::string data) { row_(row).data = std::move(data); }
  /// What the row's colour means, in words, for who does not see it.
  const std::string& RowStatus(int row) const { return row_(row).status; }
  void RowStatus(int row, std::string words) { row_(row).status = std::move(words); }
  bool IsSelected(int row) const;
  /// Selects a row beside the others, or takes that back; a row that is no data row never is.
  void IsSelected(int row, bool on);
  /// The selected rows from top to bottom.
  std::vector<int> SelectedRows() const;
  bool MergeRow(int row) const { return row_(row).merge; }
  void MergeRow(int row, bool on);

  /// Shows the first data row at the top.
  void ScrollToTop() const { tell(Aspect::Top); }
  void RemoveItem(int row);
  /// The widest that a fitted column usually becomes, in twips.
  static constexpr int kWidestFit = 5400;
  /// Fits the columns from one to the other to their texts; hidden ones stay hidden.
  void AutoSize(int fromCol, int toCol, int widest = kWidestFit);
  /// Sorts the data rows by the orders given to columns, the leftmost first; rows that compare equal keep
  /// their places. The orders are forgotten afterwards.
  void Sort();

  // The operator's actions, for the front end and for tests; they need a grid that can be used.
  void click(int row, int col);
  void doubleClick(int row, int col);
  void rightClick(int row, int col);
  void selectRow(int row);  ///< by the keyboard
  /// All rows that are selected now, where several can be, and the one that has the attention.
  void selectRows(const std::vector<int>& rows, int current);
  void chooseRow();                     ///< Enter on the selected row
  bool pressKey(std::string_view key);  ///< whether the window has answered the key
  void moveColumn(int from, int to);
  void resizeColumn(int col, int twips);

  bool hasData() const { return Rows > FixedRows; }

 private:
  struct ColumnInfo {
    int data = 0;
    int width = 1000;
    Align align = Align::Left;
    SortKind sortKind = SortKind::Text;
    SortOrder order = SortOrder::None;
    bool merge = false;
  };
  struct RowInfo {
    std::string data;
    std::string status;
    bool merge = false;
    bool selected = false;
  };

  void selectOnly(int row);
  std::size_t place(int row, int col) const;
  const ColumnInfo& column(int col) const { return columns_.at(static_cast<std::size_t>(col)); }
  ColumnInfo& column(int col) { return columns_.at(static_cast<std::size_t>(col)); }
  const RowInfo& row_(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  RowInfo& row_(int row) { return rows_.at(static_cast<std::size_t>(row)); }
  void resizeRows();
  void resizeColumns();
  void readFormat();
  void tellIfDrawn(Aspect aspect) const {
    if (Redraw) tell(aspect);
  }

  std::vector<Cell> cells_;  ///< row by row
  std::vector<ColumnInfo> columns_;
  std::vector<RowInfo> rows_;
  int width_ = 0;  ///< columns that `cells_` is laid out for
};

/// Compares two texts of a column; below, at or above 0. `shortDate` is the system's format.
[[nodiscard]] int compareCells(std::string_view a, std::string_view b, SortKind kind,
                               std::string_view shortDate);

}  // namespace vantry
