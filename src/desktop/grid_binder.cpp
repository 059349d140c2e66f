#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cstdlib>

#include "desktop/binder.h"
#include "desktop/grid_model.h"
#include "desktop/grid_view.h"
#include "desktop/style.h"
#include "platform/grid.h"

namespace vantry {

class GridBinder : public Binder {
 public:
  GridBinder(Grid& grid, Host& host, GridView& view)
      : Binder(grid, host, view), grid_(grid), view_(view), model_(new GridModel(grid, this)) {
    view.setGridModel(model_);
    view.onAction = [this](GridView::Action action, int row, int column) { acted(action, row, column); };
    view.onMoveColumn = [this](int from, int to) {
      if (!grid_.Redraw) return;
      act([this, from = model_->gridColumn(from), to = model_->gridColumn(to)] {
        grid_.moveColumn(from, to);
      });
    };
    view.onResizeColumn = [this](int column, int width) {
      act([this, column = model_->gridColumn(column), width] {
        grid_.resizeColumn(column, style::twips(width));
      });
    };
    if (grid.MultiSelect) {
      view.takeSeveral();
      view.onSelectRows = [this](const std::vector<int>& rows, int current) { selectRows(rows, current); };
    }
    view.installEventFilter(this);
    view.takesEnter = [this] { return static_cast<bool>(grid_.DblClick); };
  }
  ~GridBinder() override {
    view_.onAction = nullptr;
    view_.onSelectRows = nullptr;
    view_.onMoveColumn = nullptr;
    view_.onResizeColumn = nullptr;
    view_.takesEnter = nullptr;
    view_.setModel(nullptr);
  }

  /// Many changes come one by one; they are shown together.
  void update(Aspect aspect) override {
    structure_ = structure_ || aspect == Aspect::Structure;
    columns_ = columns_ || aspect == Aspect::Columns || aspect == Aspect::Structure;
    cells_ = cells_ || aspect == Aspect::Cells;
    selection_ = selection_ || aspect == Aspect::Selection || aspect == Aspect::Structure;
    top_ = top_ || aspect == Aspect::Top;
    if (structure_ || columns_ || cells_ || selection_ || top_) host().flushLater();
    Binder::update(aspect);
  }

  /// A grid with `Redraw` off is in the middle of its changes; the view stays as it was until they are whole.
  void flush() override {
    if (!grid_.Redraw) return;
    if (columns_ && model_->hasOtherColumns()) structure_ = selection_ = true;
    if (structure_) renew();
    if (columns_) showColumns();
    if (selection_) showSelection();
    if (cells_) view_.viewport()->update();
    if (top_) view_.scrollToTop();
    structure_ = columns_ = cells_ = selection_ = top_ = false;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress && answersKey(static_cast<const QKeyEvent&>(*event))) return true;
    return Binder::eventFilter(watched, event);
  }

 private:
  bool answersKey(const QKeyEvent& event) {
    if (!grid_.KeyDown || !grid_.Redraw) return false;
    const std::string key = keyName(event);
    bool answered = false;
    if (!key.empty()) act([&] { answered = grid_.pressKey(key); });
    return answered;
  }
  /// A list that only lost or got a row keeps its place.
  void renew() {
    const int before = model_->rowCount();
    const int place = view_.verticalScrollBar()->value();
    model_->renew();
    if (std::abs(model_->rowCount() - before) <= 1) view_.verticalScrollBar()->setValue(place);
  }
  void showColumns() {
    std::vector<int> widths;
    for (int column = 0; column < model_->columnCount(); ++column)
      widths.push_back(style::pixels(grid_.ColWidth(model_->gridColumn(column))));
    view_.showWidths(std::move(widths));
  }
  void showSelection() {
    const int row = grid_.Row - grid_.FixedRows;
    view_.showSelected(row >= 0 && row < model_->rowCount() ? row : -1,
                       std::max(0, model_->columnOf(grid_.Col)));
    if (!grid_.MultiSelect) return;
    std::vector<int> rows = grid_.SelectedRows();
    for (int& each : rows) each -= grid_.FixedRows;
    view_.showSelectedRows(rows);
  }
  void selectRows(const std::vector<int>& viewRows, int current) {
    if (!grid_.Redraw) return;
    std::vector<int> rows;
    for (const int row : viewRows) rows.push_back(model_->gridRow(row));
    act([this, rows, current] { grid_.selectRows(rows, model_->gridRow(current)); });
  }

  void acted(GridView::Action action, int row, int viewColumn) {
    using Action = GridView::Action;
    if (!grid_.Redraw) return;
    const int column = viewColumn < 0 ? viewColumn : model_->gridColumn(viewColumn);
    const int gridRow = row == GridView::kHeading ? 0 : row == GridView::kBeyond ? -1 : model_->gridRow(row);
    switch (action) {
      case Action::Click:
        return act([this, gridRow, column] { grid_.click(gridRow, column); });
      case Action::DoubleClick:
        return act([this, gridRow, column] { grid_.doubleClick(gridRow, column); });
      case Action::RightClick:
        host().popupAt(view_.menuPlace());
        return act([this, gridRow, column] { grid_.rightClick(gridRow, column); });
      case Action::Select:
        return act([this, gridRow] { grid_.selectRow(gridRow); });
      case Action::Choose:
        return act([this] { grid_.chooseRow(); });
    }
  }

  Grid& grid_;
  GridView& view_;
  GridModel* model_;
  bool structure_ = false;
  bool columns_ = false;
  bool cells_ = false;
  bool selection_ = false;
  bool top_ = false;
};

std::unique_ptr<Binder> bindGrid(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<GridBinder>(static_cast<Grid&>(control), host, *new GridView(parent));
}

}  // namespace vantry
