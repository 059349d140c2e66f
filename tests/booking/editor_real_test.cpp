#include <cstdlib>
#include <filesystem>
#include <map>

#include "booking/editor_fixture.h"
#include "booking/frmRequester.h"
#include "booking/real_fixture.h"
#include "platform/text.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

// Whole stories of the editor against the real server, in the demo library, on 24 November 2026 at nine.

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kNow = 1795510800;
constexpr const char* kStart = "2026-12-16 10:00:00";
constexpr const char* kEnd = "2026-12-16 11:00:00";
constexpr const char* kEmptyQuestion = "There is no media or equipment in this booking.  Save anyway?";

/// One desk with its operator.
struct Station {
  ScriptedDesktop desktop;
  HttpTransport transport;
  FixedClock clock;
  MemorySettings settings;
  NotedComponents components;
  App app;
  CountingMain main{app};
  ScriptedCirculation circulation;

  Station(const std::string& address, const char* login, const char* password)
      : transport({address}), app({desktop, transport, clock, settings, components, {}, {}}, "") {
    app.setMain(main);
    app.setCirculation(circulation);
    app.makers.addRecord(kBooking, [](App& program) { return std::make_unique<frmBooking>(program); });
    app.daySlots = daySlots(6, 10, 1);
    EXPECT_EQ(transport.logon(login, password), LogonResult::Accepted);
    EXPECT_EQ(send("RLL", {{"OI", login}}), 0);
    EXPECT_TRUE(app.message.NextRecord("LNA"));
    EXPECT_EQ(send("SLL", {{"LOC", get("LOC")}}), 0);
    std::array<std::string, kRights> values;
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = get(kRightCodes[i]);
    app.context.rights.set(values);
    EXPECT_EQ(send("GETLOCS", {}), 0);
    while (app.message.NextRecord("LOC")) app.context.allLocations.push_back({get("LNA"), get("LOC"), {}});
  }

  int send(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app.message.Add(tag, value);
    return app.message.Send(code);
  }
  std::string get(std::string_view tag) { return app.message.Get(tag); }

  frmBooking& open(std::string_view id) {
    OpenRecordWindow(app, kBooking, id);
    for (int i = app.windows.Count() - 1; i >= 0; --i) {
      if (auto* window = dynamic_cast<frmBooking*>(&app.windows[i])) return *window;
    }
    throw std::runtime_error("the editor has not opened");
  }
};

/// A requester whom nothing stands against.
struct Requester {
  std::string id, group, barcode;
};

struct RealEditor : testing::Test {
  static inline fs::path folder;
  static inline std::unique_ptr<EmbeddedServer> embedded;

  static void SetUpTestSuite() {
    std::string name = (fs::temp_directory_path() / "vantry-editor-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
    copyLibrary(folder / "library.sqlite");
    embedded = std::make_unique<EmbeddedServer>(
        EmbeddedServer::Options{folder / "library.sqlite", {}, true, [] { return kNow; }});
  }
  static void TearDownTestSuite() {
    embedded.reset();
    fs::remove_all(folder);
  }

  Station desk{embedded->address(), "desk", "desk-demo"};

  std::vector<std::string> liveBookings() {
    std::vector<std::string> ids;
    for (const char* date : {"2026-11-25", "2026-11-26", "2026-11-27", "2026-11-28"}) {
      if (desk.send("BOOKDAY", {{"DATE", date}, {"HBK", "N"}}) != 0) continue;
      while (desk.app.message.NextRecord("BOOKID")) {
        if (intOf(desk.get("BKRES")) == 0) ids.push_back(desk.get("BOOKID"));
      }
    }
    return ids;
  }

  /// Whether the patron of a booking may make another one, with rooms that things are delivered to.
  std::optional<Requester> requesterOf(const std::string& booking) {
    if (desk.send("GETMSD", {{"BOOKID", booking}}) != 0) return {};
    Requester found{desk.get("PID"), desk.get("PGID"), {}};
    if (intOf(found.id) == 0 || desk.send("GPBAR", {{"PID", found.id}}) != 0) return {};
    if (desk.app.message.Count("BNO") != 1 || desk.get("PGID") != found.group) return {};
    found.barcode = desk.get("BNO");
    if (desk.send("VALRP", {{"PID", found.id}, {"PGID", found.group}, {"PUP", "N"}}) != 0) return {};
    if (desk.send("PATPRIV", {{"PGID", found.group}, {"PID", found.id}}) != 0) return {};
    const int most = intOf(desk.get("BKM"));
    if (most >= 0 && most < intOf(desk.get("BCNT")) + 8) return {};
    if (desk.send("GDRM", {{"ADBK", "N"}, {"PGID", found.group}}) != 0) return {};
    return desk.app.message.Count("RID") > 0 ? std::optional(found) : std::nullopt;
  }
  /// One who may book; with `group` and `but` of this group, and another than that one.
  Requester requester(std::string_view group = {}, std::string_view but = {}) {
    for (const std::string& booking : liveBookings()) {
      const auto found = requesterOf(booking);
      if (found && found->id != but && (group.empty() || found->group == group)) return *found;
    }
    throw std::runtime_error("nobody may book in the demo library");
  }

  static std::string one(const std::string& sql) { return valueIn(folder / "library.sqlite", sql); }

  /// A new delivery of nothing, ready to be saved.
  frmBooking& newDelivery(const Requester& who) {
    desk.app.slots.source = kSourceMainWindow;
    frmBooking& window = desk.open("");
    EditorTest::scan(window.requester.requester, who.barcode.c_str());
    EXPECT_EQ(window.record.RequesterId, intOf(who.id));
    EXPECT_NE(window.record.RoomId, 0);
    window.times.showTimes(kStart, kEnd);
    return window;
  }
  std::string save(frmBooking& window) {
    desk.desktop.expectBox(Box::Kind::Question, kEmptyQuestion, 0);
    window.mnuFileSave.choose();
    EXPECT_TRUE(window.SaveOk);
    return std::to_string(window.record.BookingId);
  }
};

TEST_F(RealEditor, ANewDeliveryComesBackAsItWasSaved) {
  const Requester who = requester();
  frmBooking& window = newDelivery(who);
  window.tabBooking.choose(4);
  window.txtBookingNote.type("Ring twice");
  window.tabBooking.choose(3);
  window.equipment.txtSetupTime.enter(15);
  const int room = window.record.RoomId;
  const std::string item = one("select id from items where status = '' and location_id = 1 limit 1");
  const std::string piece = one(
      "select b.barcode from equipment e join equipment_barcodes b on b.equipment_id = e.id join rooms r on "
      "r.id = e.room_id join room_types t on t.id = r.room_type_id where t.storage = 1 and e.group_id is "
      "null "
      "and e.location_id = 1 and e.equipment_type_id = 10 and not exists (select 1 from equipment_statuses s "
      "where s.equipment_id = e.id) limit 1");
  window.tabBooking.choose(1);
  window.media.txtItemBarcode.type(item);
  window.media.cmdAddMediaViaNumber.press();
  window.tabBooking.choose(3);
  window.equipment.txtEquipBarcode.type(piece);
  window.equipment.txtEquipBarcode.pressEnter();  // as a wand ends a scan
  ASSERT_TRUE(window.media.faMedia.hasData());
  EXPECT_EQ(window.lblThings.Caption, "1 media, 1 equipment");
  window.mnuFileSave.choose();
  ASSERT_TRUE(window.SaveOk);
  const std::string id = std::to_string(window.record.BookingId);
  EXPECT_NE(id, "0");
  EXPECT_EQ(desk.main.refreshes, 1);
  frmBooking& again = desk.open(id);
  EXPECT_EQ(again.Caption, "Booking - Confirmation Number:  " + window.record.ConfirmationNumber);
  EXPECT_EQ(again.record.RequesterId, intOf(who.id));
  EXPECT_EQ(again.record.RoomId, room);
  ASSERT_EQ(again.media.faMedia.Rows, 2);
  EXPECT_EQ(again.media.faMedia.TextMatrix(1, kMediaItem), item);
  EXPECT_EQ(again.equipment.tvwOtherEquipment.find(roots::Specific)->children.size(), 1U);
  EXPECT_EQ(again.txtBookingNote.Text, "Ring twice");
  EXPECT_EQ(again.equipment.txtSetupTime.number(), 15);
  EXPECT_EQ(again.times.txtFinishTime.textAmPm(), "11:00 AM");
  EXPECT_EQ(again.fpdCreateDate.shortDate(), "24/11/2026");
}

TEST_F(RealEditor, TwoTimesThatOverlapAreRefused) {
  frmBooking& window = newDelivery(requester());
  window.times.cmdMultipleBookings.press();
  window.times.cmdAddDate.press();
  window.times.showTimes("2026-12-16 10:30:00", "2026-12-16 11:30:00");
  window.times.cmdAddDate.press();
  desk.desktop.expectBox(Box::Kind::Question, kEmptyQuestion, 0);
  desk.desktop.expectCritical("Multiple booking times overlap.  Please correct and save again.");
  window.mnuFileSave.choose();
  EXPECT_FALSE(window.SaveOk);
  // Corrected, two bookings come of it.
  window.times.faDatesTimes.Row = 2;
  window.times.cmdEditDate.press();
  window.times.showTimes("2026-12-16 12:00:00", "2026-12-16 13:00:00");
  window.times.cmdAddDate.press();
  desk.desktop.expectBox(Box::Kind::Question, kEmptyQuestion, 0);
  desk.desktop.expectQuestion("Multiple bookings created.  Display all?", true);
  window.mnuFileSave.choose();
  EXPECT_TRUE(window.SaveOk);
  EXPECT_EQ(desk.app.windows.Count(), 2) << "each of the two in its own window";
}

TEST_F(RealEditor, ACopyForAnotherRequesterBecomesABookingOfItsOwn) {
  const Requester who = requester();
  const Requester another = requester(who.group, who.id);
  const std::string id = save(newDelivery(who));
  frmBooking& model = desk.open(id);
  desk.desktop.expectModalWindow<frmRequester>("frmRequester", [&](frmRequester& window) {
    EditorTest::scan(window.requester, another.barcode.c_str());
    window.cmdOK.press();
  });
  model.mnuFileCopyBooking.choose();
  frmBooking* copy = nullptr;
  for (int i = 0; i < desk.app.windows.Count(); ++i) {
    auto* window = dynamic_cast<frmBooking*>(&desk.app.windows[i]);
    if (window && window != &model) copy = window;
  }
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->record.BookingId, 0);
  copy->times.showTimes("2026-11-27 10:00:00", "2026-11-27 11:00:00");
  const std::string copied = save(*copy);
  EXPECT_NE(copied, id);
  frmBooking& again = desk.open(copied);
  EXPECT_EQ(again.record.RoomId, model.record.RoomId);
  EXPECT_EQ(again.record.RequesterId, intOf(another.id));
}

TEST_F(RealEditor, AnUpdateThatAnotherDeskOvertookIsRefused) {
  const std::string id = save(newDelivery(requester()));
  Station other(embedded->address(), "admin", "admin-demo");
  frmBooking& mine = desk.open(id);
  frmBooking& theirs = other.open(id);
  theirs.tabBooking.choose(4);
  theirs.txtBookingNote.type("theirs");
  other.desktop.expectBox(Box::Kind::Question, kEmptyQuestion, 0);
  theirs.mnuFileSave.choose();
  EXPECT_TRUE(theirs.SaveOk);
  EXPECT_EQ(theirs.txtUpdateOperator.Text.get().empty(), false);
  mine.tabBooking.choose(4);
  mine.txtBookingNote.type("mine");
  desk.desktop.expectCritical(
      "This booking has been updated by another user.\r\n"
      "Please close this window and retrieve the booking again.");
  mine.mnuFileSave.choose();
  EXPECT_FALSE(mine.SaveOk);
  desk.desktop.expectQuestion("Changes will be lost!  Do you wish to SAVE this Booking before closing?",
                              false);
  mine.closeByOperator();
  EXPECT_EQ(desk.open(id).txtBookingNote.Text, "theirs");
}

TEST_F(RealEditor, AnImmediatePickUpStartsNow) {
  const Requester who = requester();
  desk.app.slots.newPickup = true;
  frmBooking& window = desk.open("");
  EditorTest::scan(window.requester.requester, who.barcode.c_str());
  EXPECT_EQ(window.times.txtNeedTime.textAmPm(), "09:00 AM") << "the server's time";
  const std::string id = save(window);
  frmBooking& again = desk.open(id);
  EXPECT_TRUE(again.place.optRoom(2).Value);
  EXPECT_EQ(again.lblPlace.Caption, "Pick-Up:  " + desk.app.context.allLocations.front().name);
}

TEST_F(RealEditor, AViewOnlyOperatorLooksAndCannotSave) {
  const std::string id = save(newDelivery(requester()));
  Station viewer(embedded->address(), "view", "view-demo");
  frmBooking& window = viewer.open(id);
  EXPECT_EQ(window.record.BookingId, intOf(id));
  EXPECT_FALSE(window.mnuFileSave.Enabled);
  EXPECT_FALSE(window.times.fpdNeedDate.Enabled);
  EXPECT_FALSE(window.mnuBookingCharge.Enabled);
}

}  // namespace
}  // namespace vantry::test
