#pragma once

#include <QCache>
#include <QFont>
#include <QStaticText>
#include <QStyledItemDelegate>

namespace vantry {

class GridView;

/// Paints the cells of a grid: their colour as a tint, with a stripe of the full colour at the row's start,
/// quiet lines, merged neighbours, and a frame around a selected row.
class GridDelegate : public QStyledItemDelegate {
 public:
  explicit GridDelegate(GridView& view);
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  /// Draws the text with an ellipsis where it does not fit.
  void drawText(QPainter& painter, const QRect& room, Qt::Alignment alignment, const QString& text) const;
  /// The text laid out; valid until the next call.
  const QStaticText& layOut(const QString& text, const QFont& font) const;

  GridView& view_;
  /// Laying a text out costs most of painting a cell, and lists are painted over and over.
  mutable QCache<QString, QStaticText> texts_;
  mutable QFont font_;  ///< of the texts that are not bold
};

}  // namespace vantry
