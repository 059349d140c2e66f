#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScrollBar>

#include "desktop/desktop_test.h"
#include "desktop/grid_delegate.h"
#include "desktop/grid_view.h"
#include "desktop/style.h"
#include "platform/controls.h"
#include "platform/grid.h"

namespace vantry::test {
namespace {

class GridForm : public Form {
 public:
  explicit GridForm(Windows& all, bool several = false) : Form(all, "frmGrid") {
    faList.MultiSelect = several;
    faList.FormatString = "<ID|<Name|>Count";
    faList.ColWidth(0, 0);
    faList.ColWidth(1, 2000);
    for (int col = 0; col < 3; ++col) faList.ColData(col, col);
    faList.DblClick = [this] { log += "double " + std::to_string(faList.MouseRow) + " "; };
    faList.Click = [this] { log += "click " + std::to_string(faList.MouseRow) + " "; };
    faList.RightClick = [this] { log += "right " + std::to_string(faList.MouseCol) + " "; };
    Layout = Column{faList};
  }
  void fill(int rows) {
    faList.Redraw = false;
    faList.Rows = rows + 1;
    for (int row = 1; row <= rows; ++row) {
      const std::string number = std::to_string(row);
      faList.TextMatrix(row, faList.columnOfData(0), number);
      faList.TextMatrix(row, faList.columnOfData(1), "Name " + number);
      faList.TextMatrix(row, faList.columnOfData(2), std::to_string(row * 2));
    }
    faList.Row = 0;
    faList.Redraw = true;
  }
  Grid faList{*this, "faList"};
  std::string log;
};

class GridTest : public DesktopTest {
 protected:
  GridForm form{windows};
  GridView* view = nullptr;
  void SetUp() override {
    form.fill(5);
    show(form);
    view = &find<GridView>(form, "faList");
  }
  QString text(int row, int column) { return view->model()->index(row, column).data().toString(); }
  QPoint place(int row, int column) { return view->visualRect(view->model()->index(row, column)).center(); }
  std::string take() { return std::exchange(form.log, {}); }
};

TEST_F(GridTest, ShowsHeadingsRowsAndWidthsOfTheVisibleColumns) {
  EXPECT_EQ(view->model()->rowCount(), 5);
  EXPECT_EQ(view->model()->headerData(0, Qt::Horizontal).toString(), "Name");
  EXPECT_EQ(text(4, 0), "Name 5");
  EXPECT_EQ(view->columnWidth(0), style::pixels(2000));
  form.faList.Row = 2;
  form.faList.ColWidth(1, 0);
  form.faList.TextMatrix(5, 2, "new");
  desktop.handleEvents();
  EXPECT_EQ(view->model()->columnCount(), 1);
  EXPECT_EQ(text(4, 0), "new");
  EXPECT_EQ(view->selectedRow(), 1);
  form.faList.ColWidth(0, 700);
  desktop.handleEvents();
  EXPECT_EQ(text(4, 0), "5");
}

/// Plain letters, the tint, the stripe and the frame are what people tell rows apart by.
TEST_F(GridTest, ARowIsTintedWithAStripeAndTheSelectedOneHasAFrame) {
  struct Look {
    style::Scheme scheme;
    QRgb tint;
  };
  for (const Look& look :
       {Look{style::Scheme::Light, qRgb(255, 209, 209)}, Look{style::Scheme::Dark, qRgb(90, 21, 24)}}) {
    style::apply(*qApp, look.scheme);
    for (int col = 0; col < 3; ++col) form.faList.CellColours(1, col, Colour(255), kOwnColour);
    form.faList.Row = 1;
    view->setFocus();
    desktop.handleEvents();
    const QRect cell = view->visualRect(view->model()->index(0, 0));
    const auto pixel = [&](int x, int y) {
      return view->viewport()->grab().toImage().pixel(cell.left() + x, cell.top() + y);
    };
    constexpr int kAboveText = 3;
    EXPECT_EQ(pixel(4, kAboveText), qRgb(255, 0, 0));
    EXPECT_EQ(pixel(5, kAboveText), look.tint);
    EXPECT_EQ(pixel(20, 1), style::accent().rgb());
    EXPECT_EQ(pixel(8, 2), look.tint);
    view->clearFocus();
    desktop.handleEvents();
    EXPECT_EQ(pixel(20, 1), style::outline().rgb()) << "the keys go elsewhere";
  }
  style::apply(*qApp, style::Scheme::Light);
}

TEST_F(GridTest, MouseActionsReachTheGrid) {
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place(2, 0));
  EXPECT_EQ(form.faList.Row.get(), 3);
  EXPECT_EQ(take(), "click 3 ");
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place(3, 1));
  EXPECT_EQ(take(), "click 4 double 4 ");
  QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {},
                    QPoint(view->columnViewportPosition(1) + 20, 10));
  EXPECT_EQ(take(), "click 0 ");
  QContextMenuEvent menu(QContextMenuEvent::Mouse, place(1, 1), view->viewport()->mapToGlobal(place(1, 1)));
  QApplication::sendEvent(view->viewport(), &menu);
  EXPECT_EQ(take(), "click 2 right 2 ");
  EXPECT_EQ(form.faList.Row.get(), 2);
}

TEST_F(GridTest, TheMenuKeyIsForTheCellThatTheKeysAreAt) {
  view->setFocus();
  for (const auto pressed : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}) QTest::keyClick(view, pressed);
  take();
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(view->viewport(), &menu);
  EXPECT_EQ(take(), "click 2 right 2 ");
  EXPECT_EQ(form.faList.Row.get(), 2);
}

TEST_F(GridTest, KeysSelectRowsAndEnterChooses) {
  view->setFocus();
  QTest::keyClick(view, Qt::Key_Down);
  EXPECT_EQ(form.faList.Row.get(), 1) << "the first key selects the first row";
  QTest::keyClick(view, Qt::Key_End);
  EXPECT_EQ(form.faList.Row.get(), 5);
  QTest::keyClick(view, Qt::Key_Up);
  EXPECT_EQ(form.faList.Row.get(), 4);
  take();
  QTest::keyClick(view, Qt::Key_Return);
  EXPECT_EQ(take(), "double 4 ");
}

TEST_F(GridTest, AWindowMayAnswerKeysOfAGrid) {
  form.faList.KeyDown = [this](std::string_view key) {
    form.log += std::string(key) + " ";
    return key == "Ctrl+C";
  };
  QGuiApplication::clipboard()->clear();
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(take(), "Ctrl+C ");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "") << "the widget copies nothing of its own";
  QTest::keyClick(view, Qt::Key_Down);
  EXPECT_EQ(take(), "Down click 1 ");
}

TEST_F(GridTest, TheSelectionFollowsTheGrid) {
  form.faList.Row = 4;
  desktop.handleEvents();
  EXPECT_EQ(view->selectedRow(), 3);
  EXPECT_EQ(take(), "") << "showing a selection is no click";
  form.faList.RemoveItem(4);
  desktop.handleEvents();
  EXPECT_EQ(view->selectedRow(), -1);
  EXPECT_EQ(view->model()->rowCount(), 4);
}

TEST_F(GridTest, AMovedColumnMovesInTheGridAndTheHeaderKeepsItsOrder) {
  int moves = 0;
  form.faList.AfterMoveColumn = [&] { ++moves; };
  view->horizontalHeader()->moveSection(1, 0);  // as dragging does
  desktop.handleEvents();
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(form.faList.columnOfData(2), 1);
  EXPECT_EQ(view->model()->headerData(0, Qt::Horizontal).toString(), "Count");
  EXPECT_EQ(view->horizontalHeader()->visualIndex(1), 1);
  EXPECT_GE(view->columnWidth(1), style::pixels(2000)) << "the width goes with the column";
  form.fill(3);  // a later fill keeps to the data of the columns
  desktop.handleEvents();
  EXPECT_EQ(text(2, 0), "6");
}

TEST_F(GridTest, NothingIsReadBeyondTheGridWhileItIsFilledAnew) {
  form.fill(200);
  desktop.handleEvents();
  form.faList.Redraw = false;
  form.faList.Rows = 1;
  window(form).grab();  // paints while the view still knows 200 rows
  EXPECT_EQ(text(150, 0), "");
  form.fill(2);
  desktop.handleEvents();
  EXPECT_EQ(view->model()->rowCount(), 2);
}

TEST_F(GridTest, AGridInTheMiddleOfItsChangesIsNeitherShownNorMoved) {
  int moves = 0;
  form.faList.AfterMoveColumn = [&] { ++moves; };
  form.faList.ColWidth(1, 500);  // still to be shown
  form.faList.Redraw = false;
  form.faList.Cols = 2;
  form.faList.FixedRows = 0;
  form.faList.Row = 2;
  desktop.handleEvents();
  EXPECT_EQ(view->model()->columnCount(), 2);
  EXPECT_EQ(view->columnWidth(0), style::pixels(2000));
  EXPECT_EQ(view->selectedRow(), -1);
  view->horizontalHeader()->moveSection(1, 0);
  desktop.handleEvents();
  EXPECT_EQ(view->horizontalHeader()->visualIndex(1), 1);
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place(1, 0));
  EXPECT_EQ(take(), "");
  form.faList.FixedRows = 1;
  form.faList.Redraw = true;
  desktop.handleEvents();
  EXPECT_EQ(view->model()->columnCount(), 1);
  EXPECT_EQ(view->selectedRow(), 1);
  EXPECT_EQ(moves, 0);
}

/// Counts the cells that are painted.
struct CountingDelegate : GridDelegate {
  using GridDelegate::GridDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    ++cells;
    GridDelegate::paint(painter, option, index);
  }
  mutable int cells = 0;
};

TEST_F(GridTest, OnlyTheCellsInSightArePainted) {
  auto* delegate = new CountingDelegate(*view);
  view->setItemDelegate(delegate);
  const auto painted = [&](int rows) {
    form.fill(rows);
    desktop.handleEvents();
    delegate->cells = 0;
    window(form).grab();
    return delegate->cells;
  };
  const int few = painted(1000);
  EXPECT_GT(few, 0);
  EXPECT_EQ(painted(100000), few);
}

TEST_F(GridTest, TheLastColumnFillsTheListAndKeepsItsOwnWidth) {
  window(form).resize(900, 300);
  desktop.handleEvents();
  EXPECT_EQ(view->horizontalHeader()->length(), view->viewport()->width());
  window(form).resize(340, 300);
  form.faList.ColWidth(2, 6000);
  desktop.handleEvents();
  EXPECT_EQ(view->columnWidth(1), style::pixels(6000));
}

TEST_F(GridTest, AFittedColumnHoldsItsTextAlsoWhenTheRowIsSelected) {
  form.faList.TextMatrix(1, 1, "Wörter, die in fetter Schrift merklich breiter sind");
  form.faList.AutoSize(1, 1);
  form.faList.Row = 1;
  desktop.handleEvents();
  const QRect cell = view->visualRect(view->model()->index(0, 0));
  const QRect inside = cell.adjusted(0, 0, -style::kCellMargin, 0);
  const QImage fitted = view->viewport()->grab(inside).toImage();
  view->setColumnWidth(0, 2 * cell.width());
  EXPECT_EQ(view->viewport()->grab(inside).toImage(), fitted) << "no letter is left out";
  EXPECT_LT(cell.width(), view->fontMetrics().horizontalAdvance(text(0, 0)) * 5 / 4) << "nor room wasted";
}

TEST_F(GridTest, ARefreshedListKeepsItsPlaceAndAnotherListStartsAtItsTop) {
  form.fill(200);
  desktop.handleEvents();
  view->scrollToBottom();
  const int bottom = view->verticalScrollBar()->value();
  form.fill(200);
  desktop.handleEvents();
  EXPECT_EQ(view->verticalScrollBar()->value(), bottom);
  form.fill(200);
  form.faList.ScrollToTop();
  desktop.handleEvents();
  EXPECT_EQ(view->verticalScrollBar()->value(), 0);
}

TEST_F(GridTest, SeveralRowsAreSelectedByMouseAndKeys) {
  GridForm several(windows, true);
  several.fill(5);
  show(several);
  auto& list = find<GridView>(several, "faList");
  const auto click = [&](int row, Qt::KeyboardModifiers keys, Qt::MouseButton button = Qt::LeftButton) {
    const QPoint at = list.visualRect(list.model()->index(row, 0)).center();
    QTest::mouseClick(list.viewport(), button, keys, at);
  };
  using Rows = std::vector<int>;
  click(0, {});
  click(2, Qt::ControlModifier);
  EXPECT_EQ(several.faList.SelectedRows(), (Rows{1, 3}));
  EXPECT_EQ(several.faList.Row.get(), 3);
  click(4, Qt::ShiftModifier);
  EXPECT_EQ(several.faList.SelectedRows(), (Rows{1, 3, 4, 5}));
  QTest::keyClick(&list, Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(several.faList.SelectedRows(), (Rows{1, 3, 4}));
  click(2, {}, Qt::RightButton);
  EXPECT_EQ(several.faList.SelectedRows(), (Rows{1, 3, 4})) << "the menu is for all";
  click(1, {});
  EXPECT_EQ(several.faList.SelectedRows(), Rows{2});
  const auto press = [&](int key, Qt::KeyboardModifiers keys = Qt::ControlModifier) {
    QTest::keyClick(&list, static_cast<Qt::Key>(key), keys);
    desktop.handleEvents();
    return several.faList.SelectedRows();
  };
  press(Qt::Key_Down);
  EXPECT_EQ(press(Qt::Key_Down), Rows{2}) << "on the way to another row";
  EXPECT_EQ(press(Qt::Key_Space), (Rows{2, 4}));
  press(Qt::Key_Up);
  EXPECT_EQ(press(Qt::Key_Up, {}), Rows{2});
  EXPECT_EQ(press(Qt::Key_Space), Rows{});
  EXPECT_EQ(press(Qt::Key_Space), Rows{2});
  several.faList.IsSelected(5, true);
  desktop.handleEvents();
  EXPECT_EQ(list.selectedRows(), (Rows{1, 4}));
}

}  // namespace
}  // namespace vantry::test
