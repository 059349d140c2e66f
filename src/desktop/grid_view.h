#pragma once

#include <QTableView>
#include <functional>

namespace vantry {

class GridModel;

/// The table that shows a grid. It tells of the operator's actions in the grid's rows and columns and leaves
/// all that follows from them to who listens.
class GridView : public QTableView {
 public:
  explicit GridView(QWidget* parent);

  enum class Action { Click, DoubleClick, RightClick, Select, Choose };
  /// Row of the model; -1 is beyond the rows, -2 the heading. Called last in an event.
  std::function<void(Action, int row, int column)> onAction;
  std::function<void(int from, int to)> onMoveColumn;
  std::function<void(int column, int width)> onResizeColumn;
  /// Whether Enter chooses a row here.
  bool enterChooses = false;

  static constexpr int kBeyond = -1;
  static constexpr int kHeading = -2;

  void setGridModel(GridModel* model);
  /// The selected row of the model, or -1.
  int selectedRow() const;
  /// Shows this row as the selected one; -1 for none.
  void showSelected(int row, int column);
  /// Width 0 hides the column.
  void showWidth(int column, int width);

  QSize sizeHint() const override;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void tell(Action action, int row, int column);
  void tellAt(Action action, const QPoint& position);
  void setUpHeader();
  bool startSelection(int key);
  bool showingWidths_ = false;
  bool pressed_ = false;
};

}  // namespace vantry
