#pragma once

#include <QAbstractTableModel>
#include <vector>

namespace vantry {

class Grid;

/// The rows and the visible columns of a platform's grid, read in place. Rows are counted without the fixed
/// ones, which are the header; columns without the hidden ones, which nobody is to meet, by key or by ear.
class GridModel : public QAbstractTableModel {
 public:
  GridModel(const Grid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {}

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// The grid has other rows or columns now. Costs the same for ten rows and for many thousands.
  void renew();
  /// Whether the grid shows other columns than at the last `renew`.
  bool hasOtherColumns() const { return columns_ != visibleColumns(); }

  const Grid& grid() const { return grid_; }
  /// Whether the grid still has the cell of this index.
  bool stands(int row, int column) const;
  int gridRow(int row) const;
  int gridColumn(int column) const { return columns_.at(static_cast<std::size_t>(column)); }
  /// The place of a column of the grid; -1 while it is hidden.
  int columnOf(int gridColumn) const;

 private:
  std::vector<int> visibleColumns() const;
  const Grid& grid_;
  int rows_ = 0;
  std::vector<int> columns_;  ///< of the grid
};

}  // namespace vantry
