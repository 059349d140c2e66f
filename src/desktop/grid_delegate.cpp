#include "desktop/grid_delegate.h"

#include <QPainter>
#include <memory>

#include "desktop/grid_model.h"
#include "desktop/grid_view.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/grid.h"

namespace vantry {

static constexpr Qt::AlignmentFlag kAligned[] = {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter};

/// Which neighbours a cell is drawn as one with.
struct Merge {
  bool above = false;
  bool below = false;
  bool left = false;
  bool right = false;
};

static int neighbour(const GridView& view, int column, int step) {
  const int columns = view.model()->columnCount();
  do column += step;
  while (column >= 0 && column < columns && view.isColumnHidden(column));
  return column;
}

static Merge mergeOf(const GridView& view, const Grid& grid, int row, int column) {
  Merge merge;
  if (grid.MergeCells != MergeMode::Free) return merge;
  const std::string& text = grid.TextMatrix(row, column);
  const auto same = [&](int otherRow, int otherColumn) {
    return otherRow >= grid.FixedRows && otherRow < grid.Rows && otherColumn >= 0 &&
           otherColumn < grid.Cols && grid.TextMatrix(otherRow, otherColumn) == text;
  };
  if (grid.MergeCol(column)) {
    merge.above = same(row - 1, column);
    merge.below = same(row + 1, column);
  }
  if (grid.MergeRow(row)) {
    merge.left = same(row, neighbour(view, column, -1));
    merge.right = same(row, neighbour(view, column, 1));
  }
  return merge;
}

/// Some screens' worth of cells.
static constexpr int kKeptTexts = 4000;

GridDelegate::GridDelegate(GridView& view) : QStyledItemDelegate(&view), view_(view), texts_(kKeptTexts) {}

static void paintLines(QPainter& painter, const QRect& rect, const Merge& merge) {
  painter.setPen(style::hairline());
  if (!merge.below) painter.drawLine(rect.bottomLeft(), rect.bottomRight());
  if (!merge.right) painter.drawLine(rect.topRight(), rect.bottomRight());
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const auto& model = static_cast<const GridModel&>(*index.model());
  if (!model.stands(index.row(), index.column())) return;
  const Grid& grid = model.grid();
  const int row = model.gridRow(index.row());
  const Grid::Cell& cell = grid.cell(row, index.column());
  const Merge merge = mergeOf(view_, grid, row, index.column());

  const bool selected = option.state & QStyle::State_Selected;
  const QPalette& palette = option.palette;
  const bool strong = selected && view_.hasFocus();
  QColor ground = style::colour(cell.back, palette.color(QPalette::Base));
  QColor ink = style::readable(style::colour(cell.fore, palette.color(QPalette::Text)), ground);
  if (selected) ground = strong ? palette.color(QPalette::Highlight) : style::tint();
  if (selected) ink = palette.color(strong ? QPalette::HighlightedText : QPalette::Text);
  if (!view_.isEnabled()) ink = palette.color(QPalette::Disabled, QPalette::Text);
  painter->fillRect(option.rect, ground);
  paintLines(*painter, option.rect, merge);

  // The text of merged cells stands in the first of them that can be seen.
  const bool hidden = (merge.above && index.row() != view_.rowAt(0)) || merge.left;
  if (hidden || cell.text.empty()) return;
  const QRect room = option.rect.adjusted(style::kCellMargin, 0, -style::kCellMargin, 0);
  QString text = qt(cell.text);
  text.replace('\n', ' ');
  painter->setFont(option.font);
  painter->setPen(ink);
  drawText(*painter, room, kAligned[static_cast<int>(grid.ColAlignment(index.column()))], text);
}

void GridDelegate::drawText(QPainter& painter, const QRect& room, Qt::Alignment alignment,
                            const QString& text) const {
  const QStaticText& laidOut = layOut(text, painter.font());
  const QSizeF size = laidOut.size();
  if (size.width() > room.width()) {
    const QFontMetrics metrics(painter.font());
    painter.drawText(room, static_cast<int>(alignment | Qt::AlignVCenter),
                     metrics.elidedText(text, Qt::ElideRight, room.width()));
    return;
  }
  const QRect place =
      QStyle::alignedRect(painter.layoutDirection(), alignment | Qt::AlignVCenter, size.toSize(), room);
  painter.drawStaticText(place.topLeft(), laidOut);
}

const QStaticText& GridDelegate::layOut(const QString& text, const QFont& font) const {
  if (font != font_) texts_.clear();
  font_ = font;
  if (const QStaticText* known = texts_.object(text)) return *known;
  auto fresh = std::make_unique<QStaticText>(text);
  fresh->setTextFormat(Qt::PlainText);
  fresh->prepare({}, font);
  const QStaticText& kept = *fresh;
  texts_.insert(text, fresh.release());
  return kept;
}

}  // namespace vantry
