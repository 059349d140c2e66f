#include "desktop/grid_model.h"

#include <algorithm>

#include "desktop/qtext.h"
#include "platform/grid.h"

namespace vantry {

int GridModel::gridRow(int row) const {
  return row + grid_.FixedRows;
}

std::vector<int> GridModel::visibleColumns() const {
  std::vector<int> columns;
  for (int column = 0; column < grid_.Cols; ++column) {
    if (grid_.ColWidth(column) > 0) columns.push_back(column);
  }
  return columns;
}

int GridModel::columnOf(int gridColumn) const {
  const auto found = std::find(columns_.begin(), columns_.end(), gridColumn);
  return found == columns_.end() ? -1 : static_cast<int>(found - columns_.begin());
}

bool GridModel::stands(int row, int column) const {
  return row >= 0 && column >= 0 && column < columnCount() && gridRow(row) < grid_.Rows &&
         gridColumn(column) < grid_.Cols;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!stands(index.row(), index.column())) return {};
  // What the row's colour says to the eye.
  if (role == Qt::AccessibleDescriptionRole) return qt(grid_.RowStatus(gridRow(index.row())));
  if (role != Qt::DisplayRole) return {};
  return qt(grid_.TextMatrix(gridRow(index.row()), gridColumn(index.column())));
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
  if (section < 0 || section >= columnCount() || gridColumn(section) >= grid_.Cols) return {};
  const int column = gridColumn(section);
  if (role == Qt::TextAlignmentRole) {
    static constexpr Qt::AlignmentFlag kAligned[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    return int(kAligned[static_cast<int>(grid_.ColAlignment(column))] | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  QString heading;
  for (int row = 0; row < std::min<int>(grid_.FixedRows, grid_.Rows); ++row) {
    if (row > 0) heading += '\n';
    heading += qt(grid_.TextMatrix(row, column));
  }
  // A column without a heading is at least counted.
  return heading.isEmpty() && role == Qt::AccessibleTextRole ? QObject::tr("Column %1").arg(section + 1)
                                                             : heading;
}

void GridModel::renew() {
  beginResetModel();
  rows_ = std::max(0, grid_.Rows - grid_.FixedRows);
  columns_ = visibleColumns();
  endResetModel();
}

}  // namespace vantry
