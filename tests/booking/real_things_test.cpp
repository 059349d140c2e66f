#include "booking/modBooking_equipment.h"
#include "booking/modBooking_media.h"
#include "booking/real_fixture.h"
#include "booking/things_fixture.h"

// Things are added to a booking as the real server answers, in the demo library.

namespace vantry::test {
namespace {

/// In a week without bookings nothing is in the way but policy.
struct RealThings : RealLibrary {
  NotedCirculation circulation;
  std::unique_ptr<ThingsWindow> made;

  void SetUp() override {
    RealLibrary::SetUp();
    app.setCirculation(circulation);
    const Found found = find("GETSRM", "RID", {"RID"});
    made = std::make_unique<ThingsWindow>(app);
    made->record.BookingId = 0;
    made->record.PatronGroupId = found.record.PatronGroupId;
    made->record.RoomId = intOf(found.thing.front().value);
    made->times.showTimes("2027-02-03 10:00:00", "2027-02-03 11:00:00");
  }
  void TearDown() override { made.reset(); }
  ThingsWindow& window() { return *made; }

  std::vector<TagValue> usage(std::vector<TagValue> thing, std::vector<TagValue> last = {}) {
    std::vector<TagValue> tags{{"BOOKID", "0"}};
    tags.insert(tags.end(), thing.begin(), thing.end());
    tags.push_back({"PGID", std::to_string(window().record.PatronGroupId)});
    tags.push_back({"RID", std::to_string(window().record.RoomId)});
    tags.insert(tags.end(), last.begin(), last.end());
    tags.push_back({"STIME", "2027-02-03 10:00:00"});
    tags.push_back({"ETIME", "2027-02-03 11:00:00"});
    return tags;
  }
  static std::string barcode(const char* series, int number) {
    const std::string figures = std::to_string(number);
    return series + std::string(6 - figures.size(), '0') + figures;
  }
  /// The barcode of the first item that policy has nothing against.
  std::string freeItem() {
    for (int number = 1; number < 200; ++number) {
      if (send("GBBIB", {{"IB", barcode("3100", number)}}) != 0) continue;
      const TagValue item{"IM", get("IM")}, holdings{"MI", get("MI")}, type{"MTID", get("MTID")};
      if (intOf(type.value) != 0 && send("VITMUSG", usage({type}, {holdings, item})) == 0)
        return barcode("3100", number);
    }
    throw std::runtime_error("the demo library has no item that may be booked");
  }
  std::string freePiece(const char* series) {
    for (int number = 1; number < 500; ++number) {
      if (send("GETIBYB", {{"EPT", "3"}, {"BARORNO", "0"}, {"BNO", barcode(series, number)}}) != 0) continue;
      if (get("SRCHCNT") != "1") continue;
      const TagValue piece{"EID", get("EID")};
      if (send("VEQUSG", usage({piece})) == 0 && send("VES", {piece}) == 0) return barcode(series, number);
    }
    throw std::runtime_error("the demo library has no piece that may be booked");
  }
};

TEST_F(RealThings, AnItemIsScannedIntoTheBooking) {
  const std::string item = freeItem();
  MediaPanel& panel = window().media;
  for (int time = 0; time < 2; ++time) {
    panel.txtItemBarcode.type(item);
    panel.txtItemBarcode.pressEnter();
    ASSERT_EQ(panel.faMedia.Rows, 2) << "the same item is added once";
  }
  for (const MediaColumn column : {kMediaBib, kMediaHoldings, kMediaItem, kMediaType, kMediaTitle,
                                   kMediaTypeName, kMediaLocation, kMediaCallNumber})
    EXPECT_NE(panel.faMedia.TextMatrix(1, column), "") << column;
  panel.faMedia.click(1, kMediaTitle);
  panel.cmdRemoveMedia.press();
  EXPECT_FALSE(panel.faMedia.hasData());
  EXPECT_EQ(window().record.ItemCount, 0);

  desktop.expectInformation("No items match entered barcode.");
  panel.txtItemBarcode.type("0000");
  panel.txtItemBarcode.pressEnter();
}

TEST_F(RealThings, APieceAndAGroupAreScannedAndTheirMinutesSuggested) {
  EquipmentPanel& panel = window().equipment;
  for (const char* series : {"3800", "3900"}) {
    const std::string code = freePiece(series);
    panel.txtEquipBarcode.type(code);
    panel.txtEquipBarcode.pressEnter();
    const TreeNode& root = *panel.tvwOtherEquipment.find(roots::Specific);
    ASSERT_FALSE(root.children.empty()) << code;
    EXPECT_EQ(root.children.back()->text, code);
    EXPECT_EQ(root.children.back()->key.starts_with('-'), series == std::string("3900"));
  }
  EXPECT_EQ(window().record.EquipmentCount, 2);
  panel.txtSetupTime.type("777");
  panel.cmdSuggestTimes.press();
  EXPECT_LT(panel.txtSetupTime.number(), 777) << "the server's suggestion";
  EXPECT_EQ(window().record.SetupMinutes, panel.txtSetupTime.number());
}

TEST_F(RealThings, EquipmentOfARoomIsListed) {
  const Tree& tree = window().equipment.tvwOtherEquipment;
  std::size_t listed = 0;
  for (int room = 1; room < 40 && listed == 0; ++room) {
    window().record.RoomId = room;
    BuildEquipmentTab(window().parts);
    listed = tree.find(roots::InRoom)->children.size();
  }
  ASSERT_GT(listed, 0u);
  EXPECT_NE(tree.find(roots::InRoom)->children.front()->columns.front(), "") << "its type";
  EXPECT_FALSE(CheckEmptyBooking(window().parts));
}

}  // namespace
}  // namespace vantry::test
