#include <algorithm>
#include <map>
#include <set>

#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"
#include "booking/frmSupervisor.h"
#include "booking/modBooking_patrons.h"
#include "booking/modBooking_policy.h"
#include "booking/real_fixture.h"
#include "transport/sealed_box.h"

// What the real server refuses, validator by validator, in the sentences that the operator reads.

namespace vantry::test {
namespace {

/// A group of the demo library that is trusted with little, and one that is trusted with everything.
constexpr const char* kAlumni = "7";
constexpr const char* kFaculty = "3";
/// Types with rules of their own there.
constexpr const char* kSlides = "3";
constexpr const char* kMaps = "6";
constexpr const char* kCamcorder = "8";
constexpr const char* kScreen = "14";

constexpr int kRooms = 40;
constexpr int kPieces = 400;
constexpr int kPatrons = 1500;
/// Each item with a number of this step is lost.
constexpr int kLostStep = 97;

struct RealRefusals : RealLibrary {
  SealedBox sealer{transport};

  void SetUp() override {
    RealLibrary::SetUp();
    app.session.setSealer(sealer);
    grant(true);
  }
  void grant(bool mayOverride) {
    std::array<std::string, kRights> values;
    if (mayOverride) values[static_cast<std::size_t>(Right::OVOTR)] = "Y";
    app.context.rights.set(values);
  }
  void expectOverride(const std::string& pattern, bool yes = true) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [pattern, yes](frmOverride& window) {
      EXPECT_THAT(window.lblMessage.Caption.get(), testing::MatchesRegex(pattern));
      (yes ? window.cmdOverride : window.cmdCancel).press();
    });
  }
  /// The tags of a check for a group and a stretch of time, and what else it needs.
  static std::vector<TagValue> asked(const char* group, const char* end, std::vector<TagValue> rest) {
    std::vector<TagValue> tags = {{"BOOKID", "0"}, {"PGID", group}};
    if (rest.front().tag == "BTID") {
      tags.push_back(rest.front());
      rest.erase(rest.begin());
    }
    tags.push_back({"STIME", "2026-11-25 09:00:00"});
    tags.push_back({"ETIME", end});
    tags.insert(tags.end(), rest.begin(), rest.end());
    return tags;
  }
  static std::vector<TagValue> limitOf(const char* end, const std::vector<TagValue>& thing, int times) {
    std::vector<TagValue> rest = {{"BTID", "2"}};
    for (int i = 0; i < times; ++i) rest.insert(rest.end(), thing.begin(), thing.end());
    return asked(kAlumni, end, std::move(rest));
  }
  std::string nameOf(std::string_view code, std::string_view key, std::string_view id,
                     std::string_view name) {
    EXPECT_EQ(send(code, {}), 0);
    while (app.message.NextRecord(key)) {
      if (get(key) == id) return get(name);
    }
    ADD_FAILURE() << code << " knows no " << id;
    return {};
  }
};

constexpr const char* kAnHour = "2026-11-25 10:00:00";
constexpr const char* kElevenHours = "2026-11-25 20:00:00";
constexpr const char* kThreeDays = "2026-11-28 09:00:00";

TEST_F(RealRefusals, MediaTypesAndTheirNumber) {
  const std::string slides = nameOf("GMTYP", "MTID", kSlides, "MTY");
  const auto wish = [](const char* type) {
    return std::vector<TagValue>{{"MTID", type}, {"BI", "1"}, {"MI", "0"}, {"IM", "0"}};
  };
  expectOverride("Requester is not authorized to book items of media type " + slides + "\\.");
  expectOverride("");  // too long, which has no sentence
  EXPECT_TRUE(ValidateItemLimit(app, send("VIUL", limitOf(kThreeDays, wish(kSlides), 1))));
  expectOverride("Media item count has exceeded requester's authorized limit of 2\\.", false);
  EXPECT_FALSE(ValidateItemLimit(app, send("VIUL", limitOf(kAnHour, wish("1"), 3))));
}

TEST_F(RealRefusals, EquipmentTypesAndTheirNumber) {
  const auto check = [&](const char* end, const char* type, int times) {
    const int rc = send("VEUL", limitOf(end, {{"ETI", type}, {"IFL", "N"}}, times));
    return ValidateEquipmentLimit(app, rc, get("ETY"));
  };
  const std::string camcorder = nameOf("GETEAVC", "ETI", kCamcorder, "ETY");
  expectOverride("Requester is not authorized to book equipment of type " + camcorder + "\\.");
  expectOverride("Equipment type " + camcorder + " cannot be booked longer than 1 day\\.");
  EXPECT_TRUE(check(kThreeDays, kCamcorder, 1));
  expectOverride("Media equipment count has exceeded requester's authorized limit of 2\\.", false);
  EXPECT_FALSE(check(kAnHour, kScreen, 3));
}

TEST_F(RealRefusals, ARoomIsBookedForTooLong) {
  expectOverride("Room cannot be booked longer than 8 hours\\.", false);
  EXPECT_FALSE(ValidateRoomTime(app, send("CRMTM", {{"PGID", kAlumni},
                                                    {"ADBK", "N"},
                                                    {"STIME", "2026-11-25 09:00:00"},
                                                    {"SDOW", "4"},
                                                    {"ETIME", kElevenHours},
                                                    {"EDOW", "4"},
                                                    {"RID", "1"}})));
}

TEST_F(RealRefusals, WhatCannotBeBroughtOrFetched) {
  TestWindow window(app);
  BookingRecord& record = window.record;
  record.PatronGroupId = intOf(kFaculty);
  record.RoomId = 1;
  window.addMedia("1", "0", "0", kMaps);
  TestWindow::add(window.tvwEquipment, roots::Types, kScreen);
  expectOverride("Media of type " + nameOf("GMTYP", "MTID", kMaps, "MTY") + " cannot be delivered\\.");
  EXPECT_TRUE(ValidateDeliveryLocation(window.form(app), record));
  record.RoomId = 0;
  record.PickupLocationId = 1;
  expectOverride("Equipment of type .+ cannot be picked up\\.", false);
  EXPECT_FALSE(ValidatePickupLocation(window.form(app), record));
}

TEST_F(RealRefusals, ARoomsStatusAndItsLongestTime) {
  TestWindow window(app);
  const auto check = [&](int room, const char* group) {
    window.record.RoomId = room;
    window.record.PatronGroupId = intOf(group);
    return ValidateLibSchedRoom(window.form(app), window.record);
  };
  const auto expectStatus = [&](std::string caption, std::string status) {
    desktop.expectModalWindow<frmOverrideLibSched>("frmOverrideLibSched", [=](frmOverrideLibSched& w) {
      EXPECT_EQ(w.Caption, caption);
      EXPECT_EQ(w.txtMessage.Text, status);
      EXPECT_FALSE(w.dtDate.isEmpty() || w.txtStatusNote.Text.get().empty());
      (w.cmdOK.Visible ? w.cmdOK : w.cmdOverride).press();
    });
  };
  expectStatus("Room Status Override", "Under Renovation");
  desktop.expectQuestion("Room may be scheduled for 8 hours.  Continue with booking?  ", false);
  EXPECT_FALSE(check(3, kAlumni));
  expectStatus("Room Status Warning", "Equipment Faulty");
  EXPECT_TRUE(check(7, kFaculty)) << "who may use it without limit is not asked";
}

TEST_F(RealRefusals, APieceOutsideTheStoreAndPiecesWithAStatus) {
  std::string inRoom;
  for (int room = 1; room <= kRooms && inRoom.empty(); ++room) {
    send("GETREQP", {{"RID", std::to_string(room)}, {"BRTY", "1"}});
    if (app.message.NextRecord("EID")) inRoom = get("EID");
  }
  desktop.expectCritical("Equipment not in a storage room.  Cannot be booked.");
  const int rc = send("VALEAVL", asked(kFaculty, kAnHour, {{"EID", inRoom}}));
  EXPECT_FALSE(ValidateEquipmentUsage(app, rc, get("ETY")));

  std::set<std::string> kinds;
  for (int piece = 1; piece <= kPieces && kinds.size() < 3; ++piece) {
    const int status = send("VES", {{"EID", std::to_string(piece)}});
    if (status != 151 || app.message.Count("VD1") != 1 || !kinds.insert(get("VD1")).second) continue;
    const std::string kind = get("VD1");
    if (kind == "1")
      desktop.expectQuestion("Equipment Status:  " + get("VD3") + ".  Book anyway?", true);
    else if (kind == "3")
      expectOverride("Cannot book equipment\\.  .+\n\rEquipment Status:  (Missing|Out for Repair)", false);
    EXPECT_EQ(ValidateEquipmentStatus(app, status), kind != "3");
  }
  EXPECT_EQ(kinds.size(), 3U) << "the demo library has pieces of each kind";
}

TEST_F(RealRefusals, ALostItem) {
  for (int item = kLostStep; item < kLostStep * 6; item += kLostStep) {
    const int rc = send(
        "VALIAVL",
        asked(kFaculty, kAnHour, {{"MTID", "1"}, {"BI", "0"}, {"MI", "0"}, {"IM", std::to_string(item)}}));
    if (get("MTY") != "Lost") continue;  // of the college, which has other refusals as well
    expectOverride("Cannot book item\\.  Item Status:  Lost", false);
    EXPECT_FALSE(ValidateItemUsage(app, rc));
    return;
  }
  FAIL() << "no lost item";
}

/// Ten minutes after a booking and what is cleaned up behind it, for ten minutes.
std::vector<TagValue> soonAfter(const BookingRecord& record) {
  const auto end = parseServerTime(record.EndTime);
  const int minute = end->time.hour * 60 + end->time.minute + record.CleanupMinutes + 10;
  const auto at = [&](int m) { return serverTime({end->date, Time{m / 60 % 24, m % 60, 0}}); };
  return {{"STIME", at(minute)}, {"ETIME", at(minute + 10)}};
}

TEST_F(RealRefusals, AnotherBookingOfTheRoomIsNear) {
  const std::vector<std::string> ids = liveBookings();
  for (const std::string& id : ids) {
    BookingRecord record;
    send("GETMSD", {{"BOOKID", id}});
    ReadBookingHead(app.message, record);
    if (send("GETSRM", {{"BOOKID", id}}) != 0 || intOf(get("RID")) == 0) continue;
    std::vector<TagValue> tags = soonAfter(record);
    tags.insert(tags.begin(), {"BOOKID", "0"});
    tags.push_back({"RID", get("RID")});
    tags.push_back({"PGID", kFaculty});
    const int rc = send("VALRMAVL", tags);
    if (rc != 185) continue;  // the next one has begun
    expectOverride("Within the warning limit of another booking\\.", false);
    EXPECT_FALSE(ValidateRoomUsage(app, rc));
    return;
  }
  FAIL() << "no room with a free quarter of an hour behind a booking";
}

TEST_F(RealRefusals, PatronsWhoMayNotBook) {
  const std::pair<int, const char*> boxes[] = {{108, "Patron barcode not active!"},
                                               {109, "Patron address marked for hold mail!"},
                                               {144, "Patron id has expired!"}};
  std::map<int, int> patrons;
  const auto isComplete = [&] {
    return patrons.contains(110) && std::all_of(std::begin(boxes), std::end(boxes),
                                                [&](const auto& box) { return patrons.contains(box.first); });
  };
  for (int patron = 1; patron <= kPatrons && !isComplete(); ++patron)
    patrons.emplace(send("VALRP", {{"PID", std::to_string(patron)}, {"PGID", kAlumni}, {"PUP", "N"}}),
                    patron);
  ASSERT_TRUE(isComplete()) << "the demo library has patrons of each kind";
  BookingRecord record;
  record.PatronGroupId = intOf(kAlumni);
  for (const auto& [rc, text] : boxes) {
    SCOPED_TRACE(rc);
    record.RequesterId = patrons[rc];
    desktop.expectInformation(text);
    EXPECT_FALSE(ValidatePatron(app, record, PatronMode::Requester));
    EXPECT_EQ(record.RequesterId, 0);
  }
  record.RequesterId = patrons[110];
  expectOverride("Requester has .+\\.\n\rRequester is authorized for .+\\.");
  EXPECT_TRUE(ValidatePatron(app, record, PatronMode::Requester));
  EXPECT_EQ(record.BookingMax, 2) << "his privileges are read then";
}

TEST_F(RealRefusals, ASupervisorOverridesTwiceInOneWalk) {
  grant(false);
  const auto logIn = [](frmSupervisor& window, const char* login, const char* password) {
    window.txtLogin.type(login);
    window.txtPassword.type(password);
    window.cmdOK.press();
  };
  const auto expectSupervised = [&](const std::string& pattern) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [pattern](frmOverride& window) {
      EXPECT_THAT(window.lblMessage.Caption.get(), testing::MatchesRegex(pattern));
      EXPECT_FALSE(window.cmdOverride.Visible);
      window.cmdSupervisor.press();
      EXPECT_EQ(window.OverrideResult, "1");
    });
    desktop.expectModalWindow<frmSupervisor>("frmSupervisor", [logIn](frmSupervisor& window) {
      logIn(window, "desk", "desk-demo");
      logIn(window, "admin", "wrong");
      logIn(window, "admin", "admin-demo");
      EXPECT_EQ(window.OperatorId, "admin");
    });
    desktop.expectCritical("Operator not authorized to perform override");
    desktop.expectCritical("Invalid Login -- Access Denied");
  };
  expectSupervised("Requester is not authorized to book equipment of type .+");
  expectSupervised("Equipment type .+ cannot be booked longer than 1 day\\.");
  const int rc = send("VEUL", limitOf(kThreeDays, {{"ETI", kCamcorder}, {"IFL", "N"}}, 1));
  EXPECT_TRUE(ValidateEquipmentLimit(app, rc, get("ETY")));
}

}  // namespace
}  // namespace vantry::test
