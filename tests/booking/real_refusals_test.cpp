#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"
#include "booking/modBooking_policy.h"
#include "booking/real_fixture.h"

// Each refusal of policy, as the real server gives it and as the operator meets it. Examples stand in the
// demo library or are made in it.

namespace vantry::test {
namespace {

struct RealRefusals : RealLibrary {
  static std::string one(const std::string& sql) { return valueIn(folder / "library.sqlite", sql); }

  /// Works as the administrator at another desk.
  void workAt(std::string_view location) {
    transport.logoff();
    ASSERT_EQ(transport.logon("admin", "admin-demo"), LogonResult::Accepted);
    ASSERT_EQ(send("SLL", {{"LOC", std::string(location)}}), 0);
  }
  /// The override window says this, and the operator gives up.
  void expectOverride(std::string text) {
    desktop.expectModalWindow<frmOverride>("frmOverride", [text](frmOverride& window) {
      EXPECT_EQ(window.lblMessage.Caption, text);
      window.cmdCancel.press();
    });
  }
  /// The report of conflicts; `generic` and `specific` are how many rows its two lists have.
  void expectConflicts(std::string caption, int generic, int specific) {
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [=](frmErrorReport& window) {
      EXPECT_EQ(window.Caption, caption);
      const auto rows = [](const Grid& grid) { return grid.Rows - grid.FixedRows; };
      EXPECT_EQ(rows(window.faErrorsGeneric), generic);
      EXPECT_EQ(rows(window.faErrorsSpecific), specific);
      window.cmdOK.press();
    });
  }
  /// The report names the booking in the way.
  void expectReport(std::string caption, std::string confirmation) {
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [=](frmErrorReport& window) {
      EXPECT_EQ(window.Caption, caption);
      const Grid& grid = window.faErrorsSpecific;
      ASSERT_TRUE(grid.hasData());
      EXPECT_EQ(grid.TextMatrix(1, grid.Cols - 1), confirmation);
      EXPECT_THAT(grid.TextMatrix(1, 0), testing::EndsWith(" not available"));
      window.cmdOK.press();
    });
  }
};

TEST_F(RealRefusals, AnItemThatIsOutAtTheTimeIsReported) {
  const Found found = find("GETSITM", "IM", {"MTID", "BI", "MI", "IM"});
  expectReport("Media Items Unavailable for Booking", found.record.ConfirmationNumber);
  EXPECT_FALSE(ValidateItemUsage(app, send("VALIAVL", withTimes(found, {{"BOOKID", "0"}}))));
}

TEST_F(RealRefusals, APieceThatIsOutAtTheTimeIsReported) {
  const Found found = find("GETSEQ", "EID", {"EID"});
  expectReport("Equipment Unavailable for Booking", found.record.ConfirmationNumber);
  const int rc = send("VALEAVL", withTimes(found, {{"BOOKID", "0"}}));
  EXPECT_FALSE(ValidateEquipmentUsage(app, rc, get("ETY")));
}

TEST_F(RealRefusals, ATakenRoomIsTold) {
  Found found = find("GETSRM", "RID", {"RID"});
  TestWindow window(app);
  window.times.showTimes(found.record.StartTime, found.record.EndTime);
  window.record.RoomId = intOf(found.thing.front().value);
  window.record.PatronGroupId = found.record.PatronGroupId;
  const BookingTime time = window.times.times().front();
  desktop.expectInformation("The selected room is not available for the following booking:  " +
                            time.startDate + " @ " + time.startTime);
  EXPECT_FALSE(ValidateRoomAvailability(window.parts));
}

// Patron groups and types of the demo library.
const std::string kUndergraduate = "1";
const std::string kFaculty = "3";
const std::string kCityResident = "8";
const std::string kRiverside = "1";
const std::string kCollege = "3";

/// A quiet hour that the demo library has no bookings for.
const std::vector<TagValue> kQuiet{{"STIME", "2026-12-16 10:00:00"}, {"ETIME", "2026-12-16 11:00:00"}};
/// The same day for all of its open hours.
const std::vector<TagValue> kLong{{"STIME", "2026-12-16 09:00:00"}, {"ETIME", "2026-12-16 19:00:00"}};
/// Four days.
const std::vector<TagValue> kDays{{"STIME", "2026-12-14 10:00:00"}, {"ETIME", "2026-12-18 10:00:00"}};

std::vector<TagValue> joined(std::vector<TagValue> first,
                             std::initializer_list<std::vector<TagValue>> others) {
  for (const auto& other : others) first.insert(first.end(), other.begin(), other.end());
  return first;
}

/// Nothing of chance holds the thing in these hours.
std::string freeToday(const std::string& kind, const std::string& thing) {
  return " and not exists (select 1 from occupancy o where o.kind = " + kind + " and o.thing = " + thing +
         " and o.starts_at < " + std::to_string(noon() + 2 * 3600) + " and o.ends_at > " +
         std::to_string(noon() - 3600) + ")";
}

struct RealLimits : RealRefusals {
  static std::vector<TagValue> item(const std::string& where, int nth = 0) {
    const std::string id =
        one("select id from items where " + where + " order by id limit 1 offset " + std::to_string(nth));
    const std::string from = " from items where id = " + id;
    return {{"MTID", one("select coalesce(media_type_id, 0)" + from)},
            {"BI", one("select title_id" + from)},
            {"MI", one("select holding_id" + from)},
            {"IM", id}};
  }
  static std::vector<TagValue> ownItem(int type, int nth = 0) {
    return item("status = '' and location_id = 1 and media_type_id = " + std::to_string(type) +
                    freeToday("2", "items.id"),
                nth);
  }
  /// A piece at the desk that can be fetched, and has no status and no group.
  static std::vector<TagValue> piece(int type, int nth = 0, const std::string& location = "1") {
    return {{"EID",
             one("select e.id from equipment e join rooms r on r.id = e.room_id join room_types t on t.id = "
                 "r.room_type_id where t.storage = 1 and e.group_id is null and e.location_id = " +
                 location + " and e.equipment_type_id = " + std::to_string(type) +
                 " and not exists (select 1 from equipment_statuses s where s.equipment_id = e.id)" +
                 freeToday("1", "e.id") + " order by e.id limit 1 offset " + std::to_string(nth))}};
  }
  std::vector<TagValue> limitsOf(const std::string& group, const std::vector<TagValue>& times) {
    return joined({{"BOOKID", "0"}, {"PGID", group}, {"BTID", "3"}}, {times});
  }
  std::vector<TagValue> freedomOf(const std::string& group, const std::vector<TagValue>& times) {
    return joined({{"BOOKID", "0"}, {"LOC", kRiverside}, {"PGID", group}}, {times});
  }
};

TEST_F(RealLimits, OfMedia) {
  expectOverride("Media item count has exceeded requester's authorized limit of 2.");
  EXPECT_FALSE(ValidateItemLimit(app, send("VIUL", joined(limitsOf(kCityResident, kQuiet),
                                                          {ownItem(1), ownItem(1, 1), ownItem(1, 2)}))));
  expectOverride("Requester is not authorized to book items of media type Slide Set.");
  EXPECT_FALSE(ValidateItemLimit(app, send("VIUL", joined(limitsOf(kCityResident, kQuiet), {ownItem(3)}))));
  expectOverride("");  // too long has no sentence
  EXPECT_FALSE(ValidateItemLimit(app, send("VIUL", joined(limitsOf(kCityResident, kDays), {ownItem(1)}))));
  EXPECT_TRUE(ValidateItemLimit(app, send("VIUL", joined(limitsOf(kFaculty, kDays), {ownItem(3)}))));
}

TEST_F(RealLimits, OfEquipment) {
  const auto check = [&](const std::string& group, const std::vector<TagValue>& times,
                         std::initializer_list<std::vector<TagValue>> things) {
    const int rc = send("VEUL", joined(limitsOf(group, times), things));
    return ValidateEquipmentLimit(app, rc, get("ETY"));
  };
  expectOverride("Media equipment count has exceeded requester's authorized limit of 2.");
  EXPECT_FALSE(check(kCityResident, kQuiet, {piece(10), piece(10, 1), piece(10, 2)}));
  expectOverride("Requester is not authorized to book equipment of type Camcorder.");
  EXPECT_FALSE(check(kCityResident, kQuiet, {piece(8)}));
  expectOverride("Equipment type Microphone cannot be booked longer than 1 day.");
  EXPECT_FALSE(check(kCityResident, kDays, {piece(10)}));
  EXPECT_TRUE(check(kFaculty, kDays, {piece(8)}));
}

TEST_F(RealLimits, OfWhatAnItemMayBeUsedFor) {
  const auto check = [&](const std::vector<TagValue>& media) {
    return ValidateItemUsage(app, send("VALIAVL", joined(freedomOf(kFaculty, kQuiet), {media})));
  };
  expectOverride("Cannot book item.  Item Status:  Lost");
  EXPECT_FALSE(check(item("status = 'Lost' and location_id = 1")));
  EXPECT_TRUE(check(item("status = '' and location_id = 3")))
      << "the security location passes without a word";
  const std::string title =
      one("select title_id from holdings group by title_id having min(location_id) = 3 order by title_id "
          "limit 1");
  desktop.expectCritical("No media items available in requester's policy");
  EXPECT_FALSE(check({{"MTID", "1"}, {"BI", title}, {"MI", "0"}, {"IM", "0"}}));
  workAt(kCollege);
  expectOverride("Location of media item not in booking desk's policy.");
  EXPECT_FALSE(check(item("status = '' and location_id = 1")));
}

TEST_F(RealLimits, OfWhatAPieceMayBeUsedFor) {
  const auto check = [&](const std::vector<TagValue>& things) {
    const int rc = send("VALEAVL", joined(freedomOf(kFaculty, kQuiet), {things}));
    return ValidateEquipmentUsage(app, rc, get("ETY"));
  };
  desktop.expectCritical("Equipment not in a storage room.  Cannot be booked.");
  EXPECT_FALSE(
      check({{"EID", one("select e.id from equipment e join rooms r on r.id = e.room_id join room_types t "
                         "on t.id = r.room_type_id where t.storage = 0 and e.location_id = 1 limit 1")}}));
  desktop.expectCritical("No equipment of the selected type available in requester's policy");
  EXPECT_FALSE(
      check({{"ETI", one("select id from equipment_types where name = 'Hearing Loop'")}, {"IFL", "N"}}));
  EXPECT_TRUE(check(piece(1, 0, kCollege))) << "the security location passes without a word";
  workAt(kCollege);
  expectOverride("Location of equipment not in booking desk's policy.");
  EXPECT_FALSE(check(piece(1)));
}

TEST_F(RealLimits, OfTooManyWishes) {
  std::vector<TagValue> wishes;
  for (int each = 0; each < 60; ++each) wishes = joined(wishes, {{{"ETI", "15"}, {"IFL", "N"}}});
  expectConflicts("Equipment Unavailable for Booking", 1, 0);
  int rc = send("VALEAVL", joined(freedomOf(kFaculty, kQuiet), {wishes}));
  EXPECT_FALSE(ValidateEquipmentUsage(app, rc, get("ETY")));
  // Single things that are out and too many wishes besides are one refusal with both lists.
  const Found found = find("GETSEQ", "EID", {"EID"});
  expectConflicts("Equipment Unavailable for Booking", 1, 1);
  rc = send("VALEAVL", joined(withTimes(found, {{"BOOKID", "0"}}), {wishes}));
  EXPECT_FALSE(ValidateEquipmentUsage(app, rc, get("ETY")));
  const std::vector<TagValue> media = ownItem(1);
  std::vector<TagValue> titles;
  for (int each = 0; each < 9; ++each)
    titles = joined(titles, {{media[0], media[1], {"MI", "0"}, {"IM", "0"}}});
  expectConflicts("Media Items Unavailable for Booking", 1, 0);
  EXPECT_FALSE(ValidateItemUsage(app, send("VALIAVL", joined(freedomOf(kFaculty, kQuiet), {titles}))));
}

TEST_F(RealLimits, OfTheStatusOfAPiece) {
  const auto pieceWith = [](int effect) {
    return one(
        "select a.equipment_id from equipment_statuses a join status_types t on t.id = a.status_id where "
        "t.effect = " +
        std::to_string(effect) +
        " and 1 = (select count(*) from equipment_statuses b where b.equipment_id = a.equipment_id) limit 1");
  };
  const auto nameOf = [](const std::string& id) {
    return one(
        "select t.name from equipment_statuses a join status_types t on t.id = a.status_id where "
        "a.equipment_id = " +
        id);
  };
  const std::string asks = pieceWith(1);
  desktop.expectQuestion("Equipment Status:  " + nameOf(asks) + ".  Book anyway?", false);
  EXPECT_FALSE(ValidateEquipmentStatus(app, send("VES", {{"EID", asks}})));
  EXPECT_TRUE(ValidateEquipmentStatus(app, send("VES", {{"EID", pieceWith(2)}})));
  const std::string forbidden = pieceWith(3);
  const std::string piece =
      one("select t.name || ' ' || e.number from equipment e join equipment_types t on t.id = "
          "e.equipment_type_id "
          "where e.id = " +
          forbidden);
  expectOverride("Cannot book equipment.  " + piece + "\n\rEquipment Status:  " + nameOf(forbidden));
  EXPECT_FALSE(ValidateEquipmentStatus(app, send("VES", {{"EID", forbidden}})));
}

struct RealPlaces : RealLimits {
  static std::string room(const std::string& location) {
    return one("select id from rooms where room_type_id = 2 and location_id = " + location +
               " and not exists (select 1 from room_statuses s where s.room_id = rooms.id)" +
               freeToday("3", "rooms.id") + " limit 1");
  }
  static std::string roomWithStatus(const std::string& name) {
    return one(
        "select s.room_id from room_statuses s join status_types t on t.id = s.status_id where t.name = '" +
        name + "'");
  }
  int roomTimes(const std::string& group, const std::string& id, const std::vector<TagValue>& times) {
    return send(
        "CRMTM",
        {{"PGID", group}, {"ADBK", "N"}, times[0], {"SDOW", "4"}, times[1], {"EDOW", "4"}, {"RID", id}});
  }
};

TEST_F(RealPlaces, RoomsAreHeldAgainstTheirPolicy) {
  expectOverride("Room cannot be booked longer than 8 hours.");
  EXPECT_FALSE(ValidateRoomTime(app, roomTimes(kUndergraduate, room(kRiverside), kLong)));
  EXPECT_TRUE(ValidateRoomTime(app, roomTimes(kFaculty, room(kRiverside), kLong)));
  expectOverride("Security location of room not in booking desk's policy.");
  EXPECT_FALSE(ValidateRoomTime(app, roomTimes(kFaculty, room(kCollege), kQuiet)));
  workAt(kCollege);
  expectOverride("Location of room not in booking desk's policy.");
  EXPECT_FALSE(ValidateRoomTime(app, roomTimes(kFaculty, room(kRiverside), kQuiet)));
}

TEST_F(RealPlaces, ANeighbourOfTheRoomIsWarnedOf) {
  const std::string from =
      " from occupancy o where o.kind = 3 and not exists (select 1 from occupancy n where n.kind = 3 and "
      "n.thing = "
      "o.thing and n.starts_at < o.ends_at + 10800 and n.ends_at > o.ends_at) order by o.id limit 1";
  const int rc = send("VALRMAVL", {{"BOOKID", "0"},
                                   {"STIME", one("select datetime(o.ends_at + 300, 'unixepoch')" + from)},
                                   {"ETIME", one("select datetime(o.ends_at + 3600, 'unixepoch')" + from)},
                                   {"RID", one("select o.thing" + from)},
                                   {"PGID", kFaculty}});
  ASSERT_EQ(rc, 185);
  expectOverride("Within the warning limit of another booking.");
  EXPECT_FALSE(ValidateRoomUsage(app, rc));
}

TEST_F(RealPlaces, TypesThatCannotBeBroughtOrFetchedAreNamed) {
  TestWindow window(app);
  window.record.PatronGroupId = intOf(kFaculty);
  window.record.PickupLocationId = intOf(kRiverside);
  window.record.RoomId = intOf(room(kRiverside));
  EXPECT_TRUE(ValidatePickupLocation(window.parts));
  EXPECT_TRUE(ValidateDeliveryLocation(window.parts));
  const std::vector<TagValue> map = ownItem(6);
  window.addMedia(map[1].value, map[2].value, map[3].value, "6");
  expectOverride("Media of type Map cannot be delivered.");
  EXPECT_FALSE(ValidateDeliveryLocation(window.parts));
  EXPECT_TRUE(ValidatePickupLocation(window.parts));
  TestWindow::add(window.tvwOtherEquipment, roots::Specific, piece(14)[0].value);
  expectOverride("Equipment of type Projection Screen cannot be picked up.");
  EXPECT_FALSE(ValidatePickupLocation(window.parts));
}

TEST_F(RealPlaces, RoomsWithAStatusOrALimitAreToldOf) {
  TestWindow window(app);
  window.record.PatronGroupId = intOf(kUndergraduate);
  window.record.RoomId = intOf(roomWithStatus("Under Renovation"));
  desktop.expectModalWindow<frmOverrideLibSched>("frmOverrideLibSched", [](frmOverrideLibSched& asked) {
    EXPECT_EQ(asked.Caption, "Room Status Override");
    EXPECT_EQ(asked.txtMessage.Text, "Under Renovation");
    EXPECT_EQ(asked.txtStatusNote.Text, "Until the end of the term.");
    asked.cmdCancel.press();
  });
  EXPECT_FALSE(ValidateLibSchedRoom(window.parts));
  window.record.RoomId = intOf(roomWithStatus("Equipment Faulty"));  // which only warns
  desktop.expectModalWindow<frmOverrideLibSched>("frmOverrideLibSched", [](frmOverrideLibSched& asked) {
    EXPECT_EQ(asked.Caption, "Room Status Warning");
    asked.cmdOK.press();
  });
  desktop.expectQuestion("Room may be scheduled for 8 hours.  Continue with booking?  ", true);
  EXPECT_TRUE(ValidateLibSchedRoom(window.parts));
}

/// Saves and charges, each at a time of its own.
struct RealCharges : RealPlaces {
  std::vector<TagValue> booking(const std::vector<TagValue>& times, const std::vector<TagValue>& place,
                                const std::string& type, const std::vector<TagValue>& things) {
    return joined(
        times, {{{"PID", "0"}, {"PGID", "0"}, {"PPID", "0"}, {"ADBK", "Y"}},
                place,
                {{"BTID", type}},
                things,
                {{"SCHCOM", ""}, {"ODE", "0"}, {"OPU", "0"}, {"WIZ", "N"}, {"UTIME", "0"}, {"CTIME", "0"}}});
  }
  std::string save(const std::vector<TagValue>& times, const std::vector<TagValue>& place,
                   const std::string& type, const std::vector<TagValue>& things) {
    EXPECT_EQ(send("NEWBK", booking(times, place, type, things)), 0);
    return get("BOOKID");
  }
  /// The charge is refused, and one line of the report begins so.
  void expectRefused(const std::string& booking, std::string line) {
    ASSERT_EQ(send("CBK", {{"BOOKID", booking}}), 128);
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [line](frmErrorReport& window) {
      EXPECT_EQ(window.Caption, "Booking Not Charged");
      std::vector<std::string> lines;
      for (int row = window.faErrors.FixedRows; row < window.faErrors.Rows; ++row)
        lines.push_back(window.faErrors.TextMatrix(row, 0));
      EXPECT_THAT(lines, testing::Contains(testing::StartsWith(line)));
      window.cmdOK.press();
    });
    ShowErrorReport(app, codes::NotCharged);
  }
  std::string now(int minutes) {
    EXPECT_EQ(send("ASKT", {}), 0);
    const std::string sql =
        "select datetime('" + get("STIME") + "', '" + std::to_string(minutes) + " minutes')";
    return one(sql);
  }
  std::vector<TagValue> soon() { return {{"STIME", now(1)}, {"ETIME", now(50)}}; }
  std::vector<TagValue> later() { return {{"STIME", now(55)}, {"ETIME", now(58)}}; }
  const std::vector<TagValue> pickUp{{"LOC", kRiverside}};
};

TEST_F(RealCharges, ThatAreRefusedTellEachReason) {
  const std::vector<TagValue> camera = piece(9);
  const std::string first = save(soon(), pickUp, "3", camera);
  ASSERT_EQ(send("CBK", {{"BOOKID", first}}), 0);
  expectRefused(save(later(), pickUp, "3", camera), "Equipment already charged:  DIG");

  const std::vector<TagValue> film = ownItem(1);
  ASSERT_EQ(send("CBK", {{"BOOKID", save(soon(), pickUp, "3", film)}}), 0);
  expectRefused(save(later(), pickUp, "3", film), "Media already charged:  ");

  const std::vector<TagValue> inRoom{{"RID", room(kRiverside)}};
  ASSERT_EQ(send("CBK", {{"BOOKID", save(soon(), inRoom, "1", {})}}), 0);
  expectRefused(save(later(), inRoom, "1", {}), "Room already charged:  Conference Room");

  expectRefused(save(kQuiet, pickUp, "3", piece(9, 1)), "Booking charged too early:  cannot charge before ");
}

TEST_F(RealCharges, OfThingsWhoseStatusForbidsItTellTheStatus) {
  const std::string lost =
      one("select e.id from equipment e join rooms r on r.id = e.room_id join room_types t on t.id = "
          "r.room_type_id join "
          "equipment_statuses a on a.equipment_id = e.id join status_types s on s.id = a.status_id where "
          "s.effect = 3 and "
          "t.storage = 1 and e.location_id = 1 and e.group_id is null limit 1");
  EXPECT_EQ(send("NEWBK", booking(soon(), pickUp, "3", {{"EID", lost}})), codes::EquipmentStatus)
      << "nobody has overridden it";
  desktop.expectCritical(
      "Cannot book equipment.  " +
      one("select t.name || ' ' || e.number from equipment e join equipment_types t on t.id = "
          "e.equipment_type_id where e.id = " +
          lost) +
      "\n\rEquipment Status:  " + get("VD3"));
  TellTaken(app, codes::EquipmentStatus);
  workAt(kRiverside);
  expectRefused(save(soon(), pickUp, "3", {{"EID", lost}}), "Equipment cannot be charged:  ");
  expectRefused(save(soon(), pickUp, "3", item("status = 'Lost' and location_id = 1")),
                "Media cannot be charged:  ");
  expectRefused(save(soon(), {{"RID", roomWithStatus("Under Renovation")}}, "1", {}),
                "Room cannot be charged:  ");
}

TEST_F(RealRefusals, EveryCalendarRefusalHasItsWords) {
  struct Row {
    const char* starts;
    const char* ends;
    const char* text;
  };
  const Row rows[] = {
      {"2029-05-01 10:00:00", "2029-05-01 11:00:00", "01/05/2029 not valid for any calendars"},
      {"2026-12-06 13:00:00", "2026-12-06 14:00:00",
       "Library/Media Center not open on 06/12/2026 when booking starts"},
      {"2026-12-25 10:00:00", "2026-12-28 11:00:00",
       "Exception Date:  Library/Media Center not open on 25/12/2026"},
      {"2026-12-16 07:00:00", "2026-12-16 10:00:00",
       "Booking starts (07:00 AM) before Library/Media Center opens at"},
      {"2026-12-16 10:00:00", "2026-12-16 21:30:00",
       "Booking ends (09:30 PM) after Library/Media Center closes at"},
      {"2026-12-16 21:30:00", "2026-12-17 10:00:00",
       "Booking starts (09:30 PM) after Library/Media Center closes at"},
      {"2026-12-16 10:00:00", "2026-12-17 07:00:00",
       "Booking ends (07:00 AM) before Library/Media Center opens at"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    ASSERT_EQ(send("CDELTM", {{"PGID", "3"},
                              {"ADBK", "N"},
                              {"STIME", row.starts},
                              {"SDOW", "1"},
                              {"ETIME", row.ends},
                              {"EDOW", "1"}}),
              167);
    desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [&](frmErrorReport& window) {
      ASSERT_TRUE(window.faErrors.hasData());
      EXPECT_THAT(window.faErrors.TextMatrix(1, 0), testing::StartsWith(row.text));
      window.cmdOK.press();
    });
    ShowCalendarConflict(app);
  }
}

}  // namespace
}  // namespace vantry::test
