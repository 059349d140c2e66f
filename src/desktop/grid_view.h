#pragma once

#include <QTableView>
#include <functional>
#include <vector>

namespace vantry {

class GridModel;

/// The table that shows a grid. It reports the operator's actions in the grid's rows and columns; what
/// follows from them is the listener's.
class GridView : public QTableView {
 public:
  explicit GridView(QWidget* parent);

  enum class Action { Click, DoubleClick, RightClick, Select, Choose };
  /// Row of the model; -1 is beyond the rows, -2 the heading. Called last in an event.
  std::function<void(Action, int row, int column)> onAction;
  /// Where several rows can be selected: all that are now, and the current one. Called last in an event.
  std::function<void(const std::vector<int>& rows, int current)> onSelectRows;
  std::function<void(int from, int to)> onMoveColumn;
  std::function<void(int column, int width)> onResizeColumn;
  /// Where the last right click was, on the screen; for the keyboard, below the selected row.
  QPoint menuPlace() const { return menuPlace_; }
  /// Whether Enter chooses a row here.
  std::function<bool()> takesEnter;

  static constexpr int kBeyond = -1;
  static constexpr int kHeading = -2;

  void setGridModel(GridModel* model);
  /// The selected row of the model, or -1.
  int selectedRow() const;
  /// Lets the operator select several rows.
  void takeSeveral() { setSelectionMode(ExtendedSelection); }
  std::vector<int> selectedRows() const;
  /// Whether the keys are on that row, of a list of which several may be selected.
  bool isReached(int row) const;
  /// Shows these rows as selected, beside the current one.
  void showSelectedRows(const std::vector<int>& rows);
  /// Shows this row as the selected one; -1 for none.
  void showSelected(int row, int column);
  /// The columns' widths. The last one takes the rest of the list's width.
  void showWidths(std::vector<int> widths);

  QSize sizeHint() const override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void tell(Action action, int row, int column);
  void tellRows();
  void tellAt(Action action, const QPoint& position);
  void setUpHeader();
  bool startSelection(int key);
  void fillWidth();
  void resizedByHand(int column, int width);
  std::vector<int> widths_;
  QPoint menuPlace_;
  bool showingWidths_ = false;
  bool pressed_ = false;
  std::vector<int> pressedOn_;  ///< the selected rows before the button was pressed
};

}  // namespace vantry
