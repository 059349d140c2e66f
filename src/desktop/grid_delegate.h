#pragma once

#include <QStyledItemDelegate>

namespace vantry {

class GridView;

/// Paints the cells of a grid with their own colours, quiet lines and merged neighbours.
class GridDelegate : public QStyledItemDelegate {
 public:
  explicit GridDelegate(GridView& view);
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  GridView& view_;
};

}  // namespace vantry
