#include "desktop/grid_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <numeric>

#include "desktop/grid_delegate.h"
#include "desktop/grid_model.h"
#include "desktop/style.h"

namespace vantry {

/// A list asks for this much; what it gets is the layout's.
static constexpr int kHintRows = 9;
static constexpr int kHintWidest = 960;  // the narrowest screen shows 1024
static constexpr int kHintNarrowest = 260;

GridView::GridView(QWidget* parent) : QTableView(parent) {
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollMode(ScrollPerPixel);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setTabKeyNavigation(false);
  setContextMenuPolicy(Qt::DefaultContextMenu);
  setItemDelegate(new GridDelegate(*this));
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(0);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(std::max(style::kRowHeight, fontMetrics().height() + style::kUnit));
  setUpHeader();
}

void GridView::setUpHeader() {
  QHeaderView* header = horizontalHeader();
  header->setSectionsMovable(true);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setMinimumSectionSize(style::kUnit);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setFixedHeight(std::max(style::kFieldHeight, fontMetrics().height() + 2 * style::kUnit));
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(header, &QHeaderView::sectionClicked, this,
          [this](int column) { tell(Action::Click, kHeading, column); });
  connect(header, &QHeaderView::customContextMenuRequested, this, [this](const QPoint& position) {
    menuPlace_ = horizontalHeader()->viewport()->mapToGlobal(position);
    tell(Action::RightClick, kHeading, horizontalHeader()->logicalIndexAt(position));
  });
  connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
    if (!showingWidths_ && QApplication::mouseButtons() & Qt::LeftButton) resizedByHand(column, width);
  });
  // The grid moves its columns itself; the header goes back to its own order before it does.
  connect(header, &QHeaderView::sectionMoved, this, [this](int, int from, int to) {
    if (showingWidths_) return;
    QMetaObject::invokeMethod(
        this,
        [this, from, to] {
          showingWidths_ = true;
          horizontalHeader()->moveSection(to, from);
          showingWidths_ = false;
          if (onMoveColumn) onMoveColumn(from, to);
        },
        Qt::QueuedConnection);
  });
}

void GridView::setGridModel(GridModel* model) {
  setModel(model);
}

std::vector<int> GridView::selectedRows() const {
  std::vector<int> rows;
  if (!selectionModel()) return rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return rows;
}

int GridView::selectedRow() const {
  const auto rows = selectedRows();
  if (rows.empty()) return -1;
  const int current = currentIndex().row();
  return std::binary_search(rows.begin(), rows.end(), current) ? current : rows.front();
}

bool GridView::isReached(int row) const {
  return selectionMode() == ExtendedSelection && hasFocus() && row == currentIndex().row();
}

/// What marks the reached row is as wide as the row.
void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (selectionMode() == ExtendedSelection) viewport()->update();
}

void GridView::showSelectedRows(const std::vector<int>& rows) {
  if (rows == selectedRows()) return;
  QItemSelection selection;
  for (const int row : rows) selection.select(model()->index(row, 0), model()->index(row, 0));
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void GridView::showSelected(int row, int column) {
  if (!model()) return;
  if (row < 0) {
    clearSelection();
    selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    return;
  }
  if (row == selectedRow()) return;
  setCurrentIndex(model()->index(row, column));
}

void GridView::showWidths(std::vector<int> widths) {
  widths_ = std::move(widths);
  showingWidths_ = true;
  for (int column = 0; column < static_cast<int>(widths_.size()); ++column) {
    const int width = widths_[static_cast<std::size_t>(column)];
    if (columnWidth(column) != width) setColumnWidth(column, width);
  }
  showingWidths_ = false;
  fillWidth();
}

void GridView::fillWidth() {
  if (widths_.empty() || showingWidths_) return;
  const int others = std::accumulate(widths_.begin(), widths_.end() - 1, 0);
  showingWidths_ = true;
  setColumnWidth(static_cast<int>(widths_.size()) - 1,
                 std::max(widths_.back(), viewport()->width() - others));
  showingWidths_ = false;
}

void GridView::resizedByHand(int column, int width) {
  if (width <= 0 || column >= static_cast<int>(widths_.size())) return;
  widths_[static_cast<std::size_t>(column)] = width;
  if (onResizeColumn) onResizeColumn(column, width);
}

QSize GridView::sizeHint() const {
  const int rows = kHintRows * verticalHeader()->defaultSectionSize();
  const int width =
      std::accumulate(widths_.begin(), widths_.end(), 0) + verticalScrollBar()->sizeHint().width() + 2;
  return {std::clamp(width, kHintNarrowest, kHintWidest), rows + horizontalHeader()->height() + 2};
}

void GridView::tell(Action action, int row, int column) {
  if (!onAction) return;
  const auto listener = onAction;  // whoever listens may go while it does
  listener(action, row, column);
}

void GridView::tellRows() {
  if (!onSelectRows) return;
  const auto listener = onSelectRows;  // whoever listens may go while it does
  listener(selectedRows(), std::max(0, currentIndex().row()));
}

void GridView::tellAt(Action action, const QPoint& position) {
  const QModelIndex index = indexAt(position);
  tell(action, index.isValid() ? index.row() : kBeyond,
       index.isValid() ? index.column() : columnAt(position.x()));
}

void GridView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton;
  pressedOn_ = selectedRows();
  // The menu of several rows leaves them selected.
  if (event->button() == Qt::RightButton && onSelectRows &&
      selectionModel()->isSelected(indexAt(event->pos())))
    return;
  QTableView::mousePressEvent(event);
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (!pressed_) return;
  pressed_ = false;
  // Dragging over rows has selected the one below the pointer.
  const auto rows = selectedRows();
  const bool severalChanged = rows != pressedOn_ && (rows.size() > 1 || event->modifiers() != Qt::NoModifier);
  if (onSelectRows && severalChanged) return tellRows();
  const int row = selectedRow();
  const QModelIndex under = indexAt(event->pos());
  if (under.isValid() && under.row() != row && row >= 0) return tell(Action::Select, row, under.column());
  tellAt(Action::Click, event->pos());
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  pressed_ = false;
  if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid())
    tellAt(Action::DoubleClick, event->pos());
}

void GridView::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  menuPlace_ = event->globalPos();
  if (event->reason() != QContextMenuEvent::Keyboard) return tellAt(Action::RightClick, event->pos());
  const int row = selectedRow();
  const QPoint below = row < 0 ? QPoint() : visualRect(currentIndex()).bottomLeft();
  menuPlace_ = viewport()->mapToGlobal(below);
  tell(Action::RightClick, row < 0 ? kBeyond : row, std::max(0, currentIndex().column()));
}

bool GridView::startSelection(int key) {
  if (selectedRow() >= 0 || !model() || model()->rowCount() == 0) return false;
  const bool first = key == Qt::Key_Down || key == Qt::Key_PageDown || key == Qt::Key_Home;
  const bool last = key == Qt::Key_Up || key == Qt::Key_PageUp || key == Qt::Key_End;
  if (!first && !last) return false;
  showSelected(first ? 0 : model()->rowCount() - 1, 0);
  return true;
}

void GridView::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    if (takesEnter && takesEnter() && selectedRow() >= 0) return tell(Action::Choose, selectedRow(), 0);
    return event->ignore();
  }
  const int before = selectedRow();
  const auto rowsBefore = selectedRows();
  // Home and End mean the rows here, since a row is what can be selected.
  const bool rowEnd = key == Qt::Key_Home || key == Qt::Key_End;
  if (!startSelection(key)) {
    if (rowEnd && model() && model()->rowCount() > 0) {
      showSelected(key == Qt::Key_Home ? 0 : model()->rowCount() - 1, 0);
    } else {
      QTableView::keyPressEvent(event);
    }
  }
  // With Ctrl the keys only move to a row that may be selected then.
  if (selectedRows() == rowsBefore) return;
  if (onSelectRows) return tellRows();
  const int row = selectedRow();
  if (row >= 0 && row != before) tell(Action::Select, row, std::max(0, currentIndex().column()));
}

void GridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fillWidth();
}

}  // namespace vantry
