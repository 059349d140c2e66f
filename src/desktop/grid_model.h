#pragma once

#include <QAbstractTableModel>

namespace vantry {

class Grid;

/// A platform's grid, read in place; its fixed rows are the header. Rows are counted without the fixed ones.
class GridModel : public QAbstractTableModel {
 public:
  GridModel(const Grid& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid) {}

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// The grid has other rows or columns now. Costs the same for ten rows and for many thousands.
  void renew();

  const Grid& grid() const { return grid_; }
  /// The cells that this index stands for still exist in the grid.
  bool stands(int row, int column) const;
  int gridRow(int row) const;

 private:
  const Grid& grid_;
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace vantry
