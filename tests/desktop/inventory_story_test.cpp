// The lists of the inventory, as whoever keeps it works with them.
#include <QTreeWidget>

#include "desktop/desk_story.h"
#include "inventory/inventory_view.h"

namespace vantry::test {
namespace {

struct InventoryStory : DeskStory {
  void open(ViewId view) {
    desktop.dispatch([&] { mainWindow().showView(view); });
    desktop.handleEvents();
  }
  /// Clicks the node whose text begins so.
  void clickNode(const char* tree, const QString& text) {
    auto& widget = find<QTreeWidget>(mainWindow(), tree);
    for (QTreeWidgetItemIterator item(&widget); *item; ++item) {
      if (!(*item)->text(0).startsWith(text)) continue;
      widget.scrollToItem(*item);
      QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, widget.visualItemRect(*item).center());
      desktop.handleEvents();
      return;
    }
    FAIL() << tree << " has no node " << text.toStdString();
  }
  QString node(const char* tree, const QString& text) {
    const auto found =
        find<QTreeWidget>(mainWindow(), tree).findItems(text, Qt::MatchStartsWith | Qt::MatchRecursive);
    return found.isEmpty() ? QString() : found.front()->text(0);
  }
  GridView& grid(const char* name) { return find<GridView>(mainWindow(), name); }
  int rowsOf(const char* name) { return grid(name).model()->rowCount(); }
  /// Clicks the row with this text in one of its columns.
  void clickText(const char* name, const QString& text) {
    GridView& list = grid(name);
    for (int row = 0; row < list.model()->rowCount(); ++row) {
      for (int column = 0; column < list.model()->columnCount(); ++column) {
        if (list.model()->index(row, column).data().toString() != text) continue;
        clickRow(list, row + 1, 0);
        desktop.handleEvents();
        return;
      }
    }
    FAIL() << name << " has no row with " << text.toStdString();
  }
  std::string typeId(std::string_view name) {
    for (const Category& type : app().context.categories.equipment) {
      if (type.name == name) return type.id;
    }
    throw std::runtime_error("no such type");
  }
  static constexpr int kBookingsExist = 100;
  /// The first piece of the list that the server keeps for its bookings.
  int rowOfBooked() {
    const Grid& list = viewAs<InventoryView>(mainWindow(), inventoryViewOf(kEquipment).id).fa;
    for (int row = 1; row < list.Rows; ++row) {
      if (ask("VERDELE", {{"VID", list.TextMatrix(row, 0)}, {"VTY", "1"}}) == kBookingsExist) return row;
    }
    throw std::runtime_error("no piece is booked");
  }
  /// A television that nobody has booked.
  void buyTelevision() {
    ASSERT_EQ(ask("GETARLOC", {{"LOC", app().context.locationId}}), 0);
    ASSERT_TRUE(app().message.NextRecord("RID"));
    const std::string room = get("RID");
    const int rc = ask("NEWEQIPD", {{"BNO", "NEW1"},
                                    {"ETI", typeId("Television")},
                                    {"ETY", "Television"},
                                    {"ENO", "NEW1"},
                                    {"EMA", ""},
                                    {"EFO", ""},
                                    {"EMO", ""},
                                    {"ESN", ""},
                                    {"EQVP", "0"},
                                    {"EQVR", "0"},
                                    {"ESU", ""},
                                    {"EDP", ""},
                                    {"ENM", ""},
                                    {"LOC", app().context.locationId},
                                    {"RID", room},
                                    {"RNM", ""}});
    ASSERT_EQ(rc, 0) << get("CANTREAD");
    desktop.dispatch([&] { LoadCategoryLists(app()); });
    desktop.handleEvents();
  }
};

TEST_F(InventoryStory, APieceIsFoundDeletedAndCountedOut) {
  logOnAs("admin", 3);
  start();
  const int before = 26;
  ASSERT_EQ(node("tvwDB(0)", "Television"), QString("Television (%1)").arg(before));
  buyTelevision();
  open(ViewId::Equipment);
  clickNode("tvwDB(0)", "Television");
  EXPECT_EQ(find<QLabel>(mainWindow(), "lblDetails(0)").text(), "Television List");
  EXPECT_EQ(rowsOf("fa(0)"), before + 1);
  EXPECT_FALSE(button("cmdDeleteInv(0)").isEnabled());

  // A piece that bookings need stays, with the server's word.
  clickRow(grid("fa(0)"), rowOfBooked(), 0);
  answerBox("Unable To Delete!\n\nBookings Exist!", "OK");
  button("cmdDeleteInv(0)").click();
  desktop.handleEvents();
  EXPECT_EQ(sent("REMEQIP"), 0);

  clickText("fa(0)", "NEW1");
  answerBox("Are you sure you want to DELETE this record?", "Yes");
  button("cmdDeleteInv(0)").click();
  desktop.handleEvents();
  EXPECT_EQ(rowsOf("fa(0)"), before);
  EXPECT_EQ(node("tvwDB(0)", "Television"), QString("Television (%1)").arg(before));
  EXPECT_FALSE(button("cmdDeleteInv(0)").isEnabled());
}

TEST_F(InventoryStory, MembersOpenBelowTheirGroupAndMonthsBelowTheirYear) {
  logOnAs("admin", 3);
  start();
  open(ViewId::Groups);
  auto& pane = find<QWidget>(mainWindow(), "fraMembers");
  clickNode("tvwDB(1)", "Video Set");
  EXPECT_EQ(rowsOf("fa(1)"), 8);
  EXPECT_FALSE(pane.isVisible());
  clickRow(grid("fa(1)"), 1, 0);
  button("cmdMembers").click();
  desktop.handleEvents();
  EXPECT_TRUE(pane.isVisible());
  EXPECT_EQ(button("cmdMembers").text(), "<< &Members");
  EXPECT_EQ(rowsOf("fa(4)"), 3);
  clickRow(grid("fa(1)"), 2, 0);
  desktop.handleEvents();
  EXPECT_FALSE(pane.isVisible());

  open(ViewId::Maintenance);
  const auto asked = sent("GETMITM");
  clickNode("tvwDB(3)", "2026");
  EXPECT_EQ(sent("GETMITM"), asked);
  clickNode("tvwDB(3)", "November");
  EXPECT_EQ(sent("GETMITM"), asked + 1);
  EXPECT_EQ(find<QLabel>(mainWindow(), "lblDetails(3)").text(), "November 2026 Maintenance List");
}

}  // namespace
}  // namespace vantry::test
