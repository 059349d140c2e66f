#include "desktop/grid_model.h"

#include <algorithm>

#include "desktop/qtext.h"
#include "platform/grid.h"

namespace vantry {

int GridModel::gridRow(int row) const {
  return row + grid_.FixedRows;
}

bool GridModel::stands(int row, int column) const {
  return row >= 0 && column >= 0 && gridRow(row) < grid_.Rows && column < grid_.Cols;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !stands(index.row(), index.column())) return {};
  return qt(grid_.TextMatrix(gridRow(index.row()), index.column()));
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= grid_.Cols) return {};
  if (role == Qt::TextAlignmentRole) {
    static constexpr Qt::AlignmentFlag kAligned[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};
    return int(kAligned[static_cast<int>(grid_.ColAlignment(section))] | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) return {};
  QString heading;
  for (int row = 0; row < std::min<int>(grid_.FixedRows, grid_.Rows); ++row) {
    if (row > 0) heading += '\n';
    heading += qt(grid_.TextMatrix(row, section));
  }
  return heading;
}

void GridModel::renew() {
  beginResetModel();
  rows_ = std::max(0, grid_.Rows - grid_.FixedRows);
  columns_ = grid_.Cols;
  endResetModel();
}

}  // namespace vantry
