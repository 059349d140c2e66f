#include "platform/grid.h"

#include <algorithm>
#include <stdexcept>

#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry {

/// Room left and right of a cell's text, in twips.
static constexpr int kCellMargins = 180;

Grid::Grid(Container& parent, std::string name) : Control(parent, std::move(name), ControlKind::Grid) {
  Rows.Changed = [this] { resizeRows(); };
  Cols.Changed = [this] { resizeColumns(); };
  FormatString.Changed = [this] { readFormat(); };
  Row.Changed = [this] {
    selectOnly(Row);
    raise(RowColChange);
  };
  Redraw.Changed = [this] { tellIfDrawn(Aspect::Structure); };
  resizeColumns();
}

std::size_t Grid::place(int row, int col) const {
  if (row < 0 || row >= Rows || col < 0 || col >= Cols)
    throw std::out_of_range(Name() + ": no cell " + std::to_string(row) + ", " + std::to_string(col));
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(col);
}

void Grid::resizeRows() {
  rows_.resize(static_cast<std::size_t>(Rows));
  cells_.resize(rows_.size() * static_cast<std::size_t>(width_));
  if (Row >= Rows) Row = 0;
  tellIfDrawn(Aspect::Structure);
}

void Grid::resizeColumns() {
  const int before = width_;
  columns_.resize(static_cast<std::size_t>(Cols));
  std::vector<Cell> cells(static_cast<std::size_t>(Rows) * columns_.size());
  for (int row = 0; row < Rows && before > 0; ++row) {
    for (int col = 0; col < std::min<int>(before, Cols); ++col) {
      const auto from = static_cast<std::size_t>(row * before + col);
      cells[static_cast<std::size_t>(row * Cols + col)] = std::move(cells_[from]);
    }
  }
  cells_ = std::move(cells);
  rows_.resize(static_cast<std::size_t>(Rows));
  width_ = Cols;
  tellIfDrawn(Aspect::Structure);
}

void Grid::readFormat() {
  const std::string& format = FormatString;
  std::vector<std::string> headings(1);
  for (const char c : format) {
    if (c == '|') {
      headings.emplace_back();
    } else {
      headings.back() += c;
    }
  }
  Cols = static_cast<int>(headings.size());
  if (Rows < 1) Rows = 1;
  for (int col = 0; col < Cols; ++col) {
    std::string& text = headings[static_cast<std::size_t>(col)];
    const auto sign = std::string_view("<>^").find(text.empty() ? ' ' : text.front());
    if (sign != std::string_view::npos) {
      column(col).align = sign == 0 ? Align::Left : sign == 1 ? Align::Right : Align::Center;
      text.erase(0, 1);
    }
    cells_[place(0, col)].text = std::move(text);
  }
  tellIfDrawn(Aspect::Structure);
}

void Grid::TextMatrix(int row, int col, std::string text) {
  cells_[place(row, col)].text = std::move(text);
  tellIfDrawn(Aspect::Cells);
}

void Grid::CellColours(int row, int col, Colour back, Colour fore) {
  Cell& target = cells_[place(row, col)];
  target.back = back;
  target.fore = fore;
  tellIfDrawn(Aspect::Cells);
}

int Grid::columnOfData(int data) const {
  for (int col = 0; col < Cols; ++col) {
    if (ColData(col) == data) return col;
  }
  return -1;
}

void Grid::ColWidth(int col, int twips) {
  column(col).width = twips;
  tellIfDrawn(Aspect::Columns);
}

void Grid::MergeCol(int col, bool on) {
  column(col).merge = on;
  tellIfDrawn(Aspect::Cells);
}

void Grid::MergeRow(int row, bool on) {
  row_(row).merge = on;
  tellIfDrawn(Aspect::Cells);
}

void Grid::RemoveItem(int row) {
  const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(place(row, 0));
  cells_.erase(first, first + width_);
  rows_.erase(rows_.begin() + row);
  Rows.put(Rows - 1);
  if (Row == row) {
    Row = 0;
  } else if (Row > row) {
    Row.put(Row - 1);  // the same row at another place; the others stay selected
    raise(RowColChange);
  }
  tellIfDrawn(Aspect::Structure);
}

/// The marks of rows are kept only where several can be selected: a long list would be walked at each step.
void Grid::selectOnly(int row) {
  if (!MultiSelect) return;
  for (RowInfo& info : rows_) info.selected = false;
  if (row >= FixedRows && row < Rows) row_(row).selected = true;
}

bool Grid::IsSelected(int row) const {
  if (row < FixedRows) return false;
  return MultiSelect ? row_(row).selected : row == Row;
}

void Grid::IsSelected(int row, bool on) {
  if (!MultiSelect || row < FixedRows) return;
  row_(row).selected = on;
  tellIfDrawn(Aspect::Selection);
}

std::vector<int> Grid::SelectedRows() const {
  std::vector<int> rows;
  for (int row = FixedRows; row < Rows; ++row) {
    if (IsSelected(row)) rows.push_back(row);
  }
  return rows;
}

void Grid::AutoSize(int fromCol, int toCol, int widest) {
  Desktop& desktop = form().windows().desktop();
  for (int col = fromCol; col <= toCol; ++col) {
    if (column(col).width == 0) continue;
    int needed = 0;
    for (int row = 0; row < Rows; ++row) {
      // Any data row can be the selected one, which is shown in bold.
      const TextWeight weight = row < FixedRows ? TextWeight::Normal : TextWeight::Bold;
      needed = std::max(needed, desktop.textWidth(TextMatrix(row, col), weight));
    }
    column(col).width = std::min(needed + kCellMargins, widest);
  }
  tellIfDrawn(Aspect::Columns);
}

void Grid::click(int row, int col) {
  if (!usable()) return;
  MouseRow = row;
  MouseCol = col;
  if (row >= FixedRows && row < Rows) {
    Row = row;
    Col = col;
    selectOnly(row);
  }
  raise(Click);
}

void Grid::doubleClick(int row, int col) {
  if (!usable()) return;
  click(row, col);
  raise(DblClick);
}

void Grid::rightClick(int row, int col) {
  if (!usable()) return;
  const bool amongSelected = MultiSelect && row >= FixedRows && row < Rows && IsSelected(row);
  if (amongSelected) {
    Col = col;
    MouseCol = col;
    selectRows(SelectedRows(), row);  // the menu is for all of them
  } else {
    click(row, col);
  }
  raise(RightClick);
}

void Grid::selectRow(int row) {
  if (row >= FixedRows && row < Rows && row != Row) click(row, Col);
}

void Grid::selectRows(const std::vector<int>& rows, int current) {
  if (!usable() || !MultiSelect || current < FixedRows || current >= Rows) return;
  MouseRow = current;
  Row = current;
  selectOnly(0);
  for (const int row : rows) IsSelected(row, true);
  raise(Click);
}

void Grid::chooseRow() {
  if (!usable() || Row < FixedRows) return;
  MouseRow = Row;
  raise(DblClick);
}

bool Grid::pressKey(std::string_view key) {
  return usable() && KeyDown && KeyDown(key);
}

void Grid::moveColumn(int from, int to) {
  if (!usable() || !Redraw || from == to || from < 0 || to < 0 || from >= Cols || to >= Cols) return;
  ColPosition(from, to);
  MovedCol = to;
  raise(AfterMoveColumn);
}

void Grid::ColPosition(int col, int place) {
  const auto move = [col, place](auto first) {
    if (col < place) {
      std::rotate(first + col, first + col + 1, first + place + 1);
    } else {
      std::rotate(first + place, first + col, first + col + 1);
    }
  };
  if (col == place) return;
  move(columns_.begin());
  for (int row = 0; row < Rows; ++row) move(cells_.begin() + row * width_);
  tellIfDrawn(Aspect::Structure);
}

void Grid::resizeColumn(int col, int twips) {
  if (col >= 0 && col < Cols) column(col).width = twips;
}

}  // namespace vantry
