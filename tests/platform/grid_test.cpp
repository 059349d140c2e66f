#include "platform/grid.h"

#include <gtest/gtest.h>

#include "platform/form.h"
#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

struct GridTest : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  Form form{windows, "frmTest"};
  Grid grid{form, "fa"};

  void fill(const std::vector<std::vector<std::string>>& rows) {
    grid.Rows = static_cast<int>(rows.size()) + grid.FixedRows;
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
      const auto& texts = rows[static_cast<std::size_t>(row)];
      for (int col = 0; col < static_cast<int>(texts.size()); ++col)
        grid.TextMatrix(row + grid.FixedRows, col, texts[static_cast<std::size_t>(col)]);
      grid.RowData(row + grid.FixedRows, texts.front());
    }
  }
  std::string columnText(int col) const {
    std::string text;
    for (int row = grid.FixedRows; row < grid.Rows; ++row) text += grid.TextMatrix(row, col) + ' ';
    return text;
  }
  std::string headings() const {
    std::string text;
    for (int col = 0; col < grid.Cols; ++col) text += grid.TextMatrix(0, col) + ' ';
    return text;
  }
  void sortBy(std::initializer_list<int> columns, SortOrder order = SortOrder::Ascending) {
    for (const int col : columns) grid.ColSort(col, order);
    grid.Sort();
  }
};

TEST_F(GridTest, TheFormatStringMakesColumnsHeadingsAndAlignments) {
  grid.FormatString = "<ID|>Count|^Day||Plain";
  EXPECT_EQ(grid.Cols, 5);
  EXPECT_EQ(headings(), "ID Count Day  Plain ");
  EXPECT_EQ(grid.ColAlignment(0), Align::Left);
  EXPECT_EQ(grid.ColAlignment(1), Align::Right);
  EXPECT_EQ(grid.ColAlignment(2), Align::Center);
  EXPECT_EQ(grid.ColAlignment(4), Align::Left);
  fill({{"1", "2", "3", "4", "5"}});
  grid.FormatString = "<A|<B";
  EXPECT_EQ(headings(), "A B ");
  EXPECT_EQ(grid.TextMatrix(1, 1), "2") << "cells keep their columns";
  EXPECT_THROW((void)grid.TextMatrix(1, 2), std::out_of_range);
  EXPECT_THROW((void)grid.TextMatrix(2, 0), std::out_of_range);
  EXPECT_THROW((void)grid.TextMatrix(-1, 0), std::out_of_range);
}

TEST_F(GridTest, RowsComeEmptyAndGoWithWhatTheyHeld) {
  grid.FormatString = "<A|<B";
  fill({{"1", "x"}, {"2", "y"}});
  grid.CellColours(2, 0, 0x112233, 0x445566);
  grid.Row = 2;
  grid.Rows = 1;
  EXPECT_FALSE(grid.hasData());
  EXPECT_EQ(grid.Row, 0) << "the selected row is gone";
  grid.Rows = 3;
  EXPECT_EQ(columnText(0), "  ");
  EXPECT_EQ(grid.cell(2, 0).back, kOwnColour);
  EXPECT_EQ(grid.RowData(2), "");
  EXPECT_EQ(headings(), "A B ");
}

TEST_F(GridTest, ARemovedRowMovesTheSelectionWithItsRow) {
  grid.FormatString = "<A";
  struct Case {
    int selected;
    int removed;
    int after;
  };
  for (const Case& c : {Case{3, 1, 2}, Case{1, 3, 1}, Case{2, 2, 0}, Case{3, 3, 0}, Case{0, 1, 0}}) {
    SCOPED_TRACE(c.selected * 10 + c.removed);
    fill({{"1"}, {"2"}, {"3"}});
    grid.Row = c.selected;
    grid.RemoveItem(c.removed);
    EXPECT_EQ(grid.Row, c.after);
    EXPECT_EQ(grid.Rows, 3);
    EXPECT_EQ(columnText(0).find(std::to_string(c.removed)), std::string::npos);
  }
  EXPECT_EQ(grid.RowData(1), "2") << "data go with their rows";
}

TEST_F(GridTest, AMovedColumnTakesAllThatIsItsOwn) {
  grid.FormatString = "<A|>B|<C|<D";
  for (int col = 0; col < 4; ++col) {
    grid.ColData(col, 10 + col);
    grid.ColWidth(col, 100 * (col + 1));
  }
  grid.ColSortKind(1, SortKind::ClockTime);
  grid.MergeCol(1, true);
  fill({{"a1", "b1", "c1", "d1"}, {"a2", "b2", "c2", "d2"}});
  grid.CellColours(2, 1, 1, 2);
  int moved = 0;
  grid.AfterMoveColumn = [&] { ++moved; };

  grid.moveColumn(1, 3);
  EXPECT_EQ(headings(), "A C D B ");
  EXPECT_EQ(columnText(3), "b1 b2 ");
  EXPECT_EQ(grid.columnOfData(11), 3);
  EXPECT_EQ(grid.ColWidth(3), 200);
  EXPECT_EQ(grid.ColAlignment(3), Align::Right);
  EXPECT_EQ(grid.ColSortKind(3), SortKind::ClockTime);
  EXPECT_TRUE(grid.MergeCol(3));
  EXPECT_EQ(grid.cell(2, 3).back, 1U);

  grid.moveColumn(3, 0);
  EXPECT_EQ(headings(), "B A C D ");
  EXPECT_EQ(grid.columnOfData(11), 0);
  EXPECT_EQ(moved, 2);

  grid.moveColumn(0, 4);
  grid.moveColumn(-1, 0);
  grid.moveColumn(2, 2);
  EXPECT_EQ(moved, 2) << "there is nothing to move";
  EXPECT_EQ(grid.columnOfData(99), -1);
}

TEST_F(GridTest, AColumnIsMovedByTheProgramWhileRedrawIsOff) {
  grid.FormatString = "<A|<B|<C";
  fill({{"a", "b", "c"}});
  int moved = 0;
  grid.AfterMoveColumn = [&] { ++moved; };
  grid.Redraw = false;
  grid.moveColumn(2, 0);
  EXPECT_EQ(headings(), "A B C ") << "the operator cannot";
  grid.ColPosition(2, 0);
  EXPECT_EQ(headings(), "C A B ");
  EXPECT_EQ(columnText(0), "c ");
  EXPECT_EQ(moved, 0);
}

TEST_F(GridTest, SeveralRowsStaySelectedUntilOneIsMeant) {
  grid.FormatString = "<A";
  fill({{"d"}, {"c"}, {"b"}, {"a"}});
  const auto selected = [this] {
    std::string text;
    for (const int row : grid.SelectedRows()) text += grid.TextMatrix(row, 0);
    return text + " " + grid.TextMatrix(grid.Row, 0);
  };
  grid.Row = 2;
  grid.selectRows({1, 3}, 3);
  EXPECT_EQ(selected(), "c c") << "one row at a time";
  grid.MultiSelect = true;
  grid.selectRows({1, 3, 4}, 3);
  EXPECT_EQ(selected(), "dba b");
  grid.rightClick(4, 0);
  EXPECT_EQ(selected(), "dba a") << "the menu is for all of them";
  grid.RemoveItem(1);
  EXPECT_EQ(selected(), "ba a") << "rows keep their selection when they move up";
  grid.IsSelected(1, true);
  grid.IsSelected(0, true);
  EXPECT_EQ(selected(), "cba a") << "a heading is no row to select";
  grid.click(1, 0);
  EXPECT_EQ(selected(), "c c");
  grid.selectRows({1, 2}, 1);
  sortBy({0});
  EXPECT_EQ(selected(), "a a") << "after a sort other rows are in these places";
  grid.Rows = 1;
  EXPECT_TRUE(grid.SelectedRows().empty());
}

TEST_F(GridTest, TextsSortAsNumbersWhereTheyAre) {
  grid.FormatString = "<A";
  fill({{"10"}, {"b"}, {"9"}, {""}, {"A"}, {"-1"}, {"1.5"}, {"nan"}, {"Inf"}, {" 2 "}, {"2e3"}});
  sortBy({0});
  EXPECT_EQ(columnText(0), "-1 1.5  2  9 10  2e3 A b Inf nan ");
  sortBy({0}, SortOrder::Descending);
  EXPECT_EQ(columnText(0), "nan Inf b A 2e3  10 9  2  1.5 -1 ");
}

TEST_F(GridTest, DatesAndTimesSortAsMoments) {
  grid.FormatString = "<Date|<Time";
  grid.ColSortKind(0, SortKind::ShortDate);
  grid.ColSortKind(1, SortKind::ClockTime);
  fill({{"02/12/2026", "10:00 AM"}, {"10/01/2027", "12:30 AM"}, {"", ""}, {"24/11/2026", "01:00 PM"}});
  sortBy({0});
  EXPECT_EQ(columnText(0), " 24/11/2026 02/12/2026 10/01/2027 ");
  sortBy({1});
  EXPECT_EQ(columnText(1), " 12:30 AM 10:00 AM 01:00 PM ");
}

TEST_F(GridTest, TheLeftmostSortColumnDecidesFirstAndEqualRowsKeepTheirPlaces) {
  grid.FormatString = "<Id|<Name|<Count";
  fill({{"r1", "b", "2"}, {"r2", "a", "10"}, {"r3", "b", "1"}, {"r4", "a", "10"}, {"r5", "B", "1"}});
  grid.CellColours(1, 0, 7, 8);
  grid.Row = 0;
  sortBy({2, 1});
  EXPECT_EQ(columnText(0), "r2 r4 r3 r5 r1 ");
  EXPECT_EQ(grid.RowData(5), "r1");
  EXPECT_EQ(grid.cell(5, 0).back, 7U) << "colours go with their rows";
  EXPECT_EQ(headings(), "Id Name Count ") << "fixed rows stay";
  grid.Sort();
  EXPECT_EQ(columnText(0), "r2 r4 r3 r5 r1 ") << "the orders are forgotten";
  grid.moveColumn(2, 0);
  sortBy({0, 2});
  EXPECT_EQ(columnText(1), "r3 r5 r1 r2 r4 ") << "the leftmost as they stand now";
  grid.Rows = 1;
  sortBy({0});
  EXPECT_EQ(grid.Rows, 1) << "nothing to sort";
}

TEST_F(GridTest, AutoSizeFitsTheWidestTextWithinReason) {
  grid.FormatString = "<A long heading|<B|<C|<D";
  grid.ColWidth(3, 0);
  fill({{"x", "a longer text", std::string(500, 'w'), "hidden"}});
  grid.AutoSize(0, 2);
  EXPECT_EQ(grid.ColWidth(0), 14 * 100 + 180);
  EXPECT_EQ(grid.ColWidth(1), 13 * 100 + 180);
  EXPECT_LT(grid.ColWidth(2), 6000);
  EXPECT_EQ(grid.ColWidth(3), 0);
}

TEST_F(GridTest, WithoutRedrawNothingOfItsCellsIsTold) {
  grid.FormatString = "<A|<B";
  int cells = 0;
  int structure = 0;
  grid.Shower = [&](Aspect aspect) {
    cells += aspect == Aspect::Cells || aspect == Aspect::Columns ? 1 : 0;
    structure += aspect == Aspect::Structure ? 1 : 0;
  };
  grid.Redraw = false;
  fill({{"1", "2"}, {"3", "4"}});
  grid.CellColours(1, 0, 1, 2);
  grid.AutoSize(0, 1);
  grid.ColWidth(0, 500);
  sortBy({0});
  grid.RemoveItem(1);
  EXPECT_EQ(cells + structure, 0);
  grid.Redraw = true;
  EXPECT_EQ(cells, 0);
  EXPECT_EQ(structure, 1) << "all of it at once";
  grid.TextMatrix(1, 0, "5");
  EXPECT_EQ(cells, 1);
}

TEST_F(GridTest, TheOperatorSelectsChoosesAndClicksHeadings) {
  grid.FormatString = "<A|<B";
  fill({{"1", "2"}, {"3", "4"}});
  std::string log;
  grid.Click = [&] { log += "click" + std::to_string(grid.MouseRow) + std::to_string(grid.MouseCol) + ' '; };
  grid.DblClick = [&] { log += "double" + std::to_string(grid.Row) + ' '; };
  grid.RightClick = [&] { log += "right" + std::to_string(grid.MouseCol) + ' '; };
  grid.click(0, 1);
  EXPECT_EQ(grid.Row, 0) << "a heading is no selection";
  grid.chooseRow();
  grid.selectRow(1);
  grid.selectRow(1);
  grid.chooseRow();
  grid.doubleClick(2, 1);
  grid.rightClick(2, 0);
  grid.click(-1, -1);
  EXPECT_EQ(grid.Row, 2) << "beyond the cells nothing is selected anew";
  EXPECT_EQ(log, "click01 click10 double1 click21 double2 click20 right0 click-1-1 ");
  log.clear();
  grid.Enabled = false;
  grid.click(1, 0);
  grid.selectRow(1);
  grid.chooseRow();
  grid.doubleClick(1, 0);
  grid.moveColumn(0, 1);
  EXPECT_EQ(log, "");
  EXPECT_EQ(headings(), "A B ");
}

}  // namespace
}  // namespace vantry::test
