#include "support/server_contests.h"

#include <algorithm>

namespace vantry::server {

namespace {

/// Soon enough to be charged now.
const std::string soon = times(2, "09:30", "11:00");
const std::string fromNow = times(2, "09:00", "11:00");
const std::string untilThen = times(2, "09:00", "09:30");

DeskMessage save(const std::string& things, const std::string& at = soon) {
  return {"NEWBK", booking(at, "LOC=1", 3, things)};
}

DeskMessage saveRoom(const std::string& things) {
  return {"NEWBK", booking(soon, "RID=1", 1, things)};
}

DeskMessage change(const std::string& which, const std::string& things) {
  return {"UPDBK", "BOOKID=" + which + "; " + booking(soon, "LOC=1", 3, things)};
}

DeskMessage charge(const std::string& which) {
  return {"CBK", "BOOKID=" + which};
}

DeskMessage by(const std::string& login, DeskMessage message) {
  message.login = login;
  return message;
}

DeskMessage as(const std::string& id, DeskMessage message) {
  message.id = id;
  return message;
}

/// There is one projector that wishes can get, the piece 3; of televisions there are 1 and 2. The group 5 has
/// the members 6 and 7. Of the second title there is one item, 4.
const std::string lastPiece = "EID=3";
const std::string wishForIt = "ETI=2; IFL=N";
const std::string lastItem = "MTID=2; BI=2; MI=3; IM=4";
const std::string wishForItem = "MTID=2; BI=2; MI=0; IM=0";
const std::string search = "LOC=1; DHRS=8784; RHRS=8784; PHRS=8784";

/// Nobody overrides anything for the clerk. What rounds before have changed is put back.
const std::string statusReset = "delete from equipment_statuses where status_id = 9 and equipment_id = 2";
const std::string spare =
    "insert into equipment (id, equipment_type_id, number, location_id, room_id, created_at) values "
    "(20, 1, 'TV20', 1, 3, 0)";
/// The same piece in a storage room of its own, 7; and the classroom 8.
const std::vector<std::string> spareRooms{
    "insert into rooms (id, location_id, room_type_id, number, name, created_at) values "
    "(7, 1, 2, '002', 'Store 2', 0), (8, 1, 1, '103', 'Classroom C', 0)",
    spare, "update equipment set room_id = 7 where id = 20"};
const std::string spareGroup =
    "insert into equipment (id, is_group, equipment_type_id, number, location_id, room_id, created_at) "
    "values "
    "(20, 1, 3, 'SET20', 1, 3, 0)";
const DeskMessage saveOfSpareRoom{"NEWBK", booking(soon, "RID=8", 1, ""), "clerk"};
const std::set<std::string> movedOrBooked{"0 174", "0 179"};

const std::vector<Contest> all{
    {"two saves, one piece", {}, {save("EID=1"), save("EID=1")}, {"0 149"}},
    {"two saves, one item", {}, {save(lastItem), save(lastItem)}, {"0 150"}},
    {"two saves, one room", {}, {saveRoom(""), saveRoom("")}, {"0 107"}},
    {"a piece in a room, and that piece",
     {},
     {saveRoom("EID=4; EQIR=Y"), saveRoom("EID=4; EQIR=Y")},
     {"0 107"}},
    {"a group and its member", {}, {save("EID=5"), save("EID=6")}, {"0 149"}},
    {"two members in other order", {}, {save("EID=6; EID=7"), save("EID=7; EID=6")}, {"0 149"}},
    {"two wishes, one piece", {}, {save(wishForIt), save(wishForIt)}, {"0 149"}},
    {"a wish and the last piece", {}, {save(wishForIt), save(lastPiece)}, {"0 149"}},
    {"a wish and the last item", {}, {save(wishForItem), save(lastItem)}, {"0 150"}},
    {"a change and a save", {save("")}, {change("$1", lastPiece), save(lastPiece)}, {"0 149"}},
    {"two changes", {save(""), save("")}, {change("$1", lastPiece), change("$2", wishForIt)}, {"0 149"}},
    {"a change twice", {save("")}, {change("$1", lastPiece), change("$1", "EID=1")}, {"0 0"}},
    {"a charge and a save before it",
     {save("EID=1")},
     {charge("$1"), save("EID=1", untilThen)},
     {"0 128", "0 149"}},
    {"two charges", {save("EID=1")}, {charge("$1"), charge("$1")}, {"0 128"}},
    {"two charges, one piece for two wishes",
     {save("ETI=1; IFL=N", fromNow),
      save("ETI=1; IFL=N", fromNow),
      {"NEWEGSTS", "EID=2; SID=9; SNO=; ULI=1"}},
     {charge("$1"), charge("$2")},
     {"0 128"}},
    {"a charge and a change", {save("EID=1")}, {charge("$1"), change("$1", "EID=2")}, {"0 0", "0 106"}},
    {"a charge and a cancellation",
     {save("EID=1")},
     {charge("$1"), {"CANBK", "BOOKID=$1"}},
     {"0 7", "0 114"}},
    {"a charge and a deletion", {save("EID=1")}, {charge("$1"), {"DELBK", "BOOKID=$1"}}, {"0 2", "0 106"}},
    {"two returns",
     {save("EID=1"), charge("$1")},
     {DeskMessage{"DBK", "BOOKID=$1; EID=1"}, DeskMessage{"DBK", "BOOKID=$1; EID=1"}},
     {"0 7"}},
    {"a return and a save",
     {save("EID=1"), charge("$1")},
     {DeskMessage{"DBK", "BOOKID=$1; EID=1"}, save("EID=1", untilThen)},
     {"0 0", "0 149"}},
    {"a piece that breaks, and a save",
     {},
     {DeskMessage{"NEWEGSTS", "EID=20; SID=9; SNO=; ULI=1"}, by("clerk", save("EID=20"))},
     {"0 0", "0 151"},
     {spare}},
    {"a piece that is removed, and a save",
     {},
     {DeskMessage{"REMEQIP", "EID=20"}, save("EID=20")},
     {"-98 0", "0 100"},
     {spare}},
    {"a group that is removed, and a save",
     {},
     {DeskMessage{"REMGRP", "EID=20"}, by("clerk", save("EID=20"))},
     {"-98 0", "0 100"},
     {spareGroup}},
    {"a room that is removed, and a save",
     {},
     {DeskMessage{"REMROOM", "RID=8"}, saveOfSpareRoom},
     {"-98 0", "0 107"},
     spareRooms},
    {"a room that becomes a storage room, and a save",
     {},
     {DeskMessage{"UPDROOMD", "RID=8; RTI=2; RTY=; RNO=103; RNM=; LOC=1; RCA=0"}, saveOfSpareRoom},
     {"-98 0", "0 107"},
     spareRooms},
    {"a piece that is put into a classroom, and a save",
     {},
     {DeskMessage{"ADDREQP", "EID=20; RID=1; ULI=1"}, by("clerk", save("EID=20"))},
     movedOrBooked,
     spareRooms},
    {"a piece that is stored in a classroom, and a save",
     {},
     {DeskMessage{"UPDEQIPD",
                  "EID=20; ETI=1; ETY=; ENO=TV20; EMA=; EFO=; EMO=; ESN=; EQVP=; EQVR=; ESU=; EDP=; ENM=; "
                  "LOC=1; RID=1; RNM="},
      by("clerk", save("EID=20"))},
     movedOrBooked,
     spareRooms},
    {"a group that is stored in a classroom, and a save",
     {},
     {DeskMessage{"UPDGRPD", "EID=5; ETI=3; ETY=; ENO=SET1; LOC=1; RID=1; RNM="}, by("clerk", save("EID=5"))},
     movedOrBooked},
    {"a storage room that becomes a classroom, and a save",
     {},
     {DeskMessage{"UPDROOMD", "RID=7; RTI=1; RTY=; RNO=002; RNM=; LOC=1; RCA=0"},
      by("clerk", save("EID=20"))},
     movedOrBooked,
     spareRooms},
    {"a storage room that moves, and a save",
     {},
     {DeskMessage{"UPDROOMD", "RID=7; RTI=2; RTY=; RNO=002; RNM=; LOC=2; RCA=0"},
      by("clerk", save("EID=20"))},
     {"0 0", "0 174"},
     spareRooms},
    {"a piece that joins a booked group, and a save",
     {save("EID=5")},
     {DeskMessage{"NEWGITM", "EID=20; GRPID=5; ULI=1"}, by("clerk", save("EID=20"))},
     {"0 183", "149 182"},
     {spare}},
    {"a piece that stays in its group's bookings, and a save",
     {save("EID=5")},
     {DeskMessage{"AETGB", "EID=6; GRPID=5"}, save("EID=6")},
     {"0 149", "0 183"},
     {"update equipment set group_id = null where id = 6"}},
    {"a piece that is freed from its bookings, and a charge",
     {saveRoom("EID=1; EQIR=N")},
     {DeskMessage{"DLTEBFR", "EID=1"}, charge("$1")},
     {"0 0", "0 100"}},
    {"two searches for a wish's thing",
     {save(wishForIt + "; " + wishForItem)},
     {DeskMessage{"GECN", search}, DeskMessage{"GECN", search}},
     {"0 0"}},
    {"a search and a save",
     {save("ETI=1; IFL=N")},
     {DeskMessage{"GECN", search}, save("EID=1")},
     {"0 0", "0 149"}},
    {"one request sent twice", {}, {as("twice", save("EID=1")), as("twice", save("EID=1"))}, {"0 0"}},
};

/// Writes the keys of the bookings into the tags.
DeskMessage withBookings(DeskMessage message, const std::vector<std::string>& made) {
  for (std::size_t at = message.tags.find('$'); at != std::string::npos; at = message.tags.find('$')) {
    const auto number = static_cast<std::size_t>(message.tags[at + 1] - '1');
    message.tags.replace(at, 2, made.at(number));
  }
  return message;
}

constexpr std::array<std::pair<const char*, const char*>, 2> never{{
    {"a thing has two bookings",
     "select count(*) from occupancy a join occupancy b on a.kind = b.kind and a.thing = b.thing and a.id < "
     "b.id "
     "and a.starts_at < b.ends_at and b.starts_at < a.ends_at where a.kind < 10"},
    {"a thing is out twice",
     "select count(*) from booking_equipment a join booking_equipment b on a.equipment_id = b.equipment_id "
     "and "
     "a.id < b.id where a.charged_at is not null and b.charged_at is not null and a.returned_at is null and "
     "b.returned_at is null"},
}};

class Game {
 public:
  Game(DeskLibrary& library, const Contest& contest) : library_(library), contest_(contest) {}

  void round(const SendBoth& sendBoth) {
    const std::vector<std::string> made = setUp();
    std::array<DeskMessage, 2> sent;
    for (std::size_t desk = 0; desk < 2; ++desk) sent[desk] = withBookings(contest_.sent[desk], made);
    std::array<int, 2> codes = sendBoth(sent);
    std::ranges::sort(codes);
    const std::string outcome = std::to_string(codes[0]) + " " + std::to_string(codes[1]);
    ++played.outcomes[outcome];
    if (!contest_.outcomes.contains(outcome)) fault("ends with " + outcome);
    for (const auto& [what, count] : never) {
      if (library_.value(count) != "0") fault(what);
    }
    if (!sent[0].id.empty() && library_.value("select count(*) from bookings") != "1") fault("was run twice");
  }

  Played played;

 private:
  std::vector<std::string> setUp() {
    library_.execute("delete from bookings");
    library_.execute("delete from replies");
    library_.execute("delete from equipment where id = 20");
    library_.execute("delete from rooms where id in (7, 8)");
    library_.execute("update equipment set group_id = 5 where id in (6, 7)");
    library_.execute("update equipment set room_id = 3 where id in (5, 6, 7)");
    library_.execute(statusReset);
    for (const std::string& each : contest_.sql) library_.execute(each);
    std::vector<std::string> made;
    for (const DeskMessage& each : contest_.before) {
      const DeskMessage message = withBookings(each, made);
      const Got got = library_.send(message.code, message.tags, message.login);
      if (got.rc != 0) fault("cannot be prepared: " + got.text());
      if (message.code == "NEWBK") made.push_back(got.first("BOOKID"));
    }
    return made;
  }

  void fault(const std::string& what) {
    if (played.faults.size() < 5) played.faults.push_back(contest_.name + ": " + what);
  }

  DeskLibrary& library_;
  const Contest& contest_;
};

}  // namespace

std::span<const Contest> contests() {
  return all;
}

Played play(DeskLibrary& library, const Contest& contest, int rounds, const SendBoth& sendBoth) {
  Game game(library, contest);
  for (int round = 0; round < rounds; ++round) game.round(sendBoth);
  return game.played;
}

}  // namespace vantry::server
