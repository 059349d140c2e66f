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

static Merge mergeOf(const GridModel& model, const QModelIndex& index) {
  const Grid& grid = model.grid();
  Merge merge;
  if (grid.MergeCells != MergeMode::Free) return merge;
  const auto same = [&](int rows, int columns) {
    const int row = index.row() + rows;
    const int column = index.column() + columns;
    if (row < 0 || !model.stands(row, column)) return false;
    return grid.TextMatrix(model.gridRow(row), model.gridColumn(column)) ==
           grid.TextMatrix(model.gridRow(index.row()), model.gridColumn(index.column()));
  };
  if (grid.MergeCol(model.gridColumn(index.column()))) {
    merge.above = same(-1, 0);
    merge.below = same(1, 0);
  }
  if (grid.MergeRow(model.gridRow(index.row()))) {
    merge.left = same(0, -1);
    merge.right = same(0, 1);
  }
  return merge;
}

/// More than fits into the widest column, and less than a note, which would take seconds to lay out.
static constexpr std::size_t kShownBytes = 4000;

/// Some screens' worth of cells.
static constexpr int kKeptTexts = 4000;

GridDelegate::GridDelegate(GridView& view) : QStyledItemDelegate(&view), view_(view), texts_(kKeptTexts) {}

static void paintLines(QPainter& painter, const QRect& rect, const Merge& merge) {
  painter.setPen(style::hairline());
  if (!merge.below) painter.drawLine(rect.bottomLeft(), rect.bottomRight());
  if (!merge.right) painter.drawLine(rect.topRight(), rect.bottomRight());
}

static void paintFrame(QPainter& painter, const QRect& rect, bool first, bool last, const QColor& colour) {
  constexpr int kWidth = style::kRowFrame;
  painter.fillRect(rect.left(), rect.top(), rect.width(), kWidth, colour);
  painter.fillRect(rect.left(), rect.bottom() + 1 - kWidth, rect.width(), kWidth, colour);
  if (first) painter.fillRect(rect.left(), rect.top(), kWidth, rect.height(), colour);
  if (last) painter.fillRect(rect.right() + 1 - kWidth, rect.top(), kWidth, rect.height(), colour);
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const auto& model = static_cast<const GridModel&>(*index.model());
  if (!model.stands(index.row(), index.column())) return;
  const Grid& grid = model.grid();
  const Grid::Cell& cell = grid.cell(model.gridRow(index.row()), model.gridColumn(index.column()));
  const Merge merge = mergeOf(model, index);
  const bool selected = option.state & QStyle::State_Selected;
  const bool first = index.column() == 0;
  const bool last = index.column() == model.columnCount() - 1;
  const QPalette& palette = option.palette;

  QColor ground = palette.color(QPalette::Base);
  QColor ink = style::readable(style::colour(cell.fore, palette.color(QPalette::Text)), ground);
  const bool marked = cell.back != kOwnColour;
  const QColor mark = style::colour(cell.back, ground);
  if (marked) {
    ground = style::rowTint(mark);
    ink = palette.color(QPalette::Text);
  }
  if (!view_.isEnabled()) ink = palette.color(QPalette::Disabled, QPalette::Text);
  painter->fillRect(option.rect, ground);
  paintLines(*painter, option.rect, merge);
  if (marked && first)
    painter->fillRect(option.rect.left(), option.rect.top(), style::kRowStripe, option.rect.height(), mark);
  // A selected row keeps its colour and gets a frame, whose colour tells whether the list has the focus. The
  // keys may also be on a row that is not selected.
  if (selected || view_.isReached(index.row()))
    paintFrame(*painter, option.rect, first, last,
               selected && view_.hasFocus() ? style::accent() : style::outline());

  // The text of merged cells is in the first of them that can be seen.
  const bool hidden = (merge.above && index.row() != view_.rowAt(0)) || merge.left;
  if (hidden || cell.text.empty()) return;
  const QRect room = option.rect.adjusted(style::kCellMargin, 0, -style::kCellMargin, 0);
  QString text = qt(std::string_view(cell.text).substr(0, kShownBytes));
  text.replace('\n', ' ');
  QFont font = option.font;
  font.setBold(selected);
  painter->setFont(font);
  painter->setPen(ink);
  drawText(*painter, room, kAligned[static_cast<int>(grid.ColAlignment(model.gridColumn(index.column())))],
           text);
}

void GridDelegate::drawText(QPainter& painter, const QRect& room, Qt::Alignment alignment,
                            const QString& text) const {
  const QStaticText& laidOut = layOut(text, painter.font());
  const QSizeF size = laidOut.size();
  if (size.width() > room.width() && painter.font().bold()) {
    // Columns are fitted to plain letters, so that the bold ones of the selected row may not fit.
    QFont plain = painter.font();
    plain.setBold(false);
    painter.setFont(plain);
    return drawText(painter, room, alignment, text);
  }
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
  QFont plain = font;
  plain.setBold(false);
  if (plain != font_) texts_.clear();
  font_ = plain;
  const QString key = (font.bold() ? QChar('b') : QChar('p')) + text;
  if (const QStaticText* known = texts_.object(key)) return *known;
  auto fresh = std::make_unique<QStaticText>(text);
  fresh->setTextFormat(Qt::PlainText);
  fresh->prepare({}, font);
  const QStaticText& kept = *fresh;
  texts_.insert(key, fresh.release());
  return kept;
}

}  // namespace vantry
