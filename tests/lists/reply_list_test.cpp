#include "lists/reply_list.h"

#include "frame/app.h"
#include "lists/grids.h"
#include "support/desk.h"
#include "words/tags.h"

namespace vantry::test {
namespace {

constexpr ReplyColumn kPieces[] = {{"ID", tags::EID, CellKind::Plain, 0},
                                   {"Barcode", {}, CellKind::Piece},
                                   {"Type", tags::ETY},
                                   {"Group?", tags::EIU, CellKind::YesNo}};

constexpr ReplyColumn kMoments[] = {{"ID", {}, CellKind::Plain, 0},
                                    {"Start Date"},
                                    {"Start Time24", {}, CellKind::Plain, 0},
                                    {"Start Time"},
                                    {"End Date"},
                                    {"End Time24", {}, CellKind::Plain, 0},
                                    {"End Time"},
                                    {"Requester"}};

/// A list of pieces, filled from the reply of a look-up.
struct ReplyListTest : Desk {
  void SetUp() override {
    start();
    form = std::make_unique<Form>(app->windows, "frmList");
    grid = std::make_unique<Grid>(*form, "fa");
    list = std::make_unique<ReplyList>(*app, *grid, MomentFields{main().dtServerDate, main().txtServerTime});
  }
  void fill(std::string_view records) {
    server.expect("GETIBYB", "BARORNO=0 BNO=1").replies(records);
    app->message.Add(tags::BARORNO, "0");
    app->message.Add(tags::BNO, "1");
    ASSERT_EQ(app->message.Send("GETIBYB"), 0);
    list->fill();
  }
  std::vector<std::string> column(int data) {
    std::vector<std::string> texts;
    for (int row = 1; row < grid->Rows; ++row) texts.push_back(list->text(row, data));
    return texts;
  }
  std::string headings() {
    std::string text;
    for (int col = 0; col < grid->Cols; ++col) text += grid->TextMatrix(0, col) + "|";
    return text;
  }
  std::unique_ptr<Form> form;
  std::unique_ptr<Grid> grid;
  std::unique_ptr<ReplyList> list;
};

constexpr const char* kTwice =
    "head: SRCHCNT=3 | EID=5 ENO=TV1 BNO=B5 STY=S ETY=TV EIU=Y RID=1 | EID=6 ENO=TV2 BNO=B6 STY=S ETY=TV "
    "EIU= RID=1 | "
    "EID=5 ENO=TV1 BNO=B5 STY=S ETY=TV EIU=Y RID=1";

TEST_F(ReplyListTest, MovedColumnsAreFilledByWhatTheyHold) {
  list->build({.columns = kPieces, .walk = tags::EID});
  grid->moveColumn(2, 0);
  fill(kTwice);
  EXPECT_EQ(headings(), "Type|ID|Barcode|Group?|");
  EXPECT_THAT(column(0), testing::ElementsAre("5", "6", "5"));
  EXPECT_THAT(column(1), testing::ElementsAre("B5", "B6", "B5"));
  EXPECT_THAT(column(2), testing::ElementsAre("TV", "TV", "TV"));
  EXPECT_THAT(column(3), testing::ElementsAre("Y", "N", "Y"));
  EXPECT_EQ(grid->ColWidth(1), 0) << "a hidden column stays hidden, wherever it is";
  list->build({.columns = kPieces, .walk = tags::EID});
  EXPECT_EQ(headings(), "ID|Barcode|Type|Group?|") << "built anew, the columns are in their places";
}

TEST_F(ReplyListTest, AKeyThatARowHasIsPassedOver) {
  list->build({.columns = kPieces, .walk = tags::EID, .uniqueKey = tags::EID});
  fill(kTwice);
  EXPECT_THAT(column(0), testing::ElementsAre("5", "6"));
  fill(kTwice);
  EXPECT_EQ(grid->Rows, 3) << "the keys of the list before count no longer";
}

TEST_F(ReplyListTest, TheOwnerChoosesRowsAndHearsOfEach) {
  list->build({.columns = kPieces, .walk = tags::EID});
  std::string seen;
  list->hooks.accepts = [&] { return app->message.Get(tags::EID) == "6"; };
  list->hooks.progress = [&](int row, int total) {
    seen += std::to_string(row) + "/" + std::to_string(total) + " ";
  };
  list->hooks.filled = [&](int row) { seen += "[" + list->text(row, 0) + "] "; };
  fill(kTwice);
  EXPECT_THAT(column(0), testing::ElementsAre("6"));
  EXPECT_EQ(seen, "1/3 1/3 [6] 2/3 ");
}

TEST_F(ReplyListTest, RowsThatTheOwnerHasFollowTheColumnsToo) {
  list->build({.columns = kPieces, .fit = ColumnFit::Always, .merges = false});
  grid->moveColumn(3, 0);
  EXPECT_EQ(list->fill({{"5", "B5", "TV", "Y"}, {"6", "B6", "Screen on a stand", "N"}}), 2);
  list->addRow({"7", "B7", "TV", "N"});
  list->setRow(1, {"8", "B8", "Lamp", "N"});
  EXPECT_EQ(headings(), "Group?|ID|Barcode|Type|");
  EXPECT_THAT(column(0), testing::ElementsAre("8", "6", "7"));
  EXPECT_THAT(column(3), testing::ElementsAre("N", "N", "N"));
  EXPECT_THAT(list->row(2), testing::ElementsAre("6", "B6", "Screen on a stand", "N"));
  EXPECT_GT(grid->ColWidth(3), grid->ColWidth(2));
  EXPECT_EQ(grid->ColWidth(1), 0);
  EXPECT_EQ(grid->MergeCells.get(), MergeMode::Never);
}

TEST_F(ReplyListTest, ColumnsAreFittedAsTheLayoutOrTheOperatorWants) {
  const auto isFitted = [&](ColumnFit fit, bool preferred) {
    app->preferences.AutoSizeCells = preferred;
    list->build({.columns = kPieces, .fit = fit});
    list->fill({{"5", "B5", "TV", "Y"}});
    return grid->ColWidth(2) != 1500;
  };
  for (const bool preferred : {true, false}) {
    EXPECT_EQ(isFitted(ColumnFit::Preferred, preferred), preferred);
    EXPECT_TRUE(isFitted(ColumnFit::Always, preferred));
    EXPECT_FALSE(isFitted(ColumnFit::Never, preferred));
  }
}

TEST_F(ReplyListTest, AddedRowsAndTheOrderFollowTheLayoutWhereverItsColumnsAre) {
  list->build({.columns = kPieces, .walk = tags::EID});
  grid->moveColumn(1, 3);
  list->addRow({"3", "B2", "TV", "N"});
  list->addRow({"10", "B10", "Camera", "Y"});
  EXPECT_EQ(list->addRow({"2", "B2", "Camera", "N"}), 3);
  grid->Row = 2;
  list->sortBy(0, 0);
  EXPECT_THAT(column(0), testing::ElementsAre("2", "3", "10")) << "numbers as numbers";
  list->sortBy(1, 2);
  EXPECT_THAT(column(0), testing::ElementsAre("10", "2", "3")) << "the barcode first, then the type";
  EXPECT_EQ(grid->Row, 0);
  EXPECT_EQ(gridText(*grid), "Type\tGroup?\tBarcode\nCamera\tY\tB10\nCamera\tN\tB2\nTV\tN\tB2\n");
}

TEST_F(ReplyListTest, DatesAndTimesMoveTogether) {
  const struct {
    const char* heading;
    int to;
    const char* order;
  } cases[] = {
      {"Start Date", 7, "ID|End Date|End Time24|End Time|Requester|Start Date|Start Time24|Start Time|"},
      {"Start Time", 6, "ID|End Date|End Time24|End Time|Start Date|Start Time24|Start Time|Requester|"},
      {"End Time", 1, "ID|End Date|End Time24|End Time|Start Date|Start Time24|Start Time|Requester|"},
      {"End Date", 1, "ID|End Date|End Time24|End Time|Start Date|Start Time24|Start Time|Requester|"},
      {"Requester", 1, "ID|Requester|Start Date|Start Time24|Start Time|End Date|End Time24|End Time|"}};
  for (const auto& c : cases) {
    list->build({.columns = kMoments, .walk = tags::EID});
    for (int col = 0; col < grid->Cols; ++col) {
      if (grid->TextMatrix(0, col) != c.heading) continue;
      grid->moveColumn(col, c.to);
      break;
    }
    EXPECT_EQ(headings(), c.order) << c.heading;
  }
}

}  // namespace
}  // namespace vantry::test
