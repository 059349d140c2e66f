#pragma once

// Who books what in the stories of bookings, and what is stored of it.
#include <QPlainTextEdit>

#include "booking/frmBooking.h"
#include "desktop/desk_story.h"
#include "platform/text.h"

namespace vantry::test {

/// A day later than all bookings of the library.
inline constexpr Date kDay{2027, 1, 12};

/// Who may book and have things delivered.
struct Requester {
  std::string id, group, barcode, name;
  std::vector<std::string> rooms;
};
struct Piece {
  std::string id, barcode, number;
};

inline std::string at(const Date& day, const char* time) {
  return serverDate(day) + " " + time;
}

struct BookingStory : DeskStory {
  using DeskStory::DeskStory;

  /// The first one in the small library; with `like` another of the same group.
  Requester requester(const Requester& like = {}) {
    std::vector<std::string> bookings;
    for (const char* date : {"2026-11-25", "2026-11-26", "2026-11-27"}) {
      EXPECT_EQ(ask("BOOKDAY", {{"DATE", date}, {"HBK", "N"}}), 0);
      while (app().message.NextRecord("BOOKID")) bookings.push_back(get("BOOKID"));
    }
    for (const std::string& booking : bookings) {
      const Requester found = requesterOf(booking);
      const bool other = found.id != like.id && (like.id.empty() || found.group == like.group);
      if (found.rooms.size() > 1 && other) return found;
    }
    throw std::runtime_error("nobody may book in the small library");
  }
  /// Without rooms: not one who may book several times more in the weeks to come.
  Requester requesterOf(const std::string& booking) {
    if (ask("GETMSD", {{"BOOKID", booking}}) != 0 || intOf(get("PID")) == 0) return {};
    Requester found{get("PID"), get("PGID"), {}, get("PATNM"), {}};
    if (found.name.empty() || ask("GPBAR", {{"PID", found.id}}) != 0) return {};
    if (app().message.Count("BNO") != 1 || get("PGID") != found.group) return {};
    found.barcode = get("BNO");
    const TagValue id{"PID", found.id}, group{"PGID", found.group};
    if (ask("VALRP", {id, group, {"PUP", "N"}}) != 0 || ask("PATPRIV", {group, id}) != 0) return {};
    const int most = intOf(get("BKM"));
    if (get("PVALD") < "2027-02" || (most >= 0 && most < intOf(get("BCNT")) + 4)) return {};
    if (ask("GDRM", {{"ADBK", "N"}, group}) != 0) return {};
    while (app().message.NextRecord("RID")) found.rooms.push_back(get("RID"));
    return found;
  }

  /// Whether policy lets the requester have a thing in the first room of the list.
  bool mayHave(std::string_view code, const Requester& who, std::vector<TagValue> thing,
               const std::vector<TagValue>& last = {}) {
    thing.insert(thing.begin(), {"BOOKID", "0"});
    thing.push_back({"PGID", who.group});
    thing.push_back({"RID", who.rooms.front()});
    thing.insert(thing.end(), last.begin(), last.end());
    thing.push_back({"STIME", at(kDay, "10:00:00")});
    thing.push_back({"ETIME", at(kDay, "11:00:00")});
    return ask(code, thing) == 0;
  }
  static std::string barcode(const char* series, int number) {
    return series + std::to_string(1000000 + number).substr(1);
  }
  /// Another free one at each call.
  Piece freePiece(const Requester& who) {
    for (++lastPiece_; lastPiece_ < 500; ++lastPiece_) {
      const std::string code = barcode("3800", lastPiece_);
      if (ask("GETIBYB", {{"EPT", "3"}, {"BARORNO", "0"}, {"BNO", code}}) != 0) continue;
      if (get("SRCHCNT") != "1") continue;
      const Piece piece{get("EID"), code, get("ENO")};
      if (ask("VES", {{"EID", piece.id}}) == 0 && mayHave("VEQUSG", who, {{"EID", piece.id}})) return piece;
    }
    throw std::runtime_error("no free piece in the small library");
  }
  std::string freeItem(const Requester& who) {
    for (int number = 1; number < 200; ++number) {
      const std::string code = barcode("3100", number);
      if (ask("GBBIB", {{"IB", code}}) != 0 || intOf(get("MTID")) == 0) continue;
      if (mayHave("VITMUSG", who, {{"MTID", get("MTID")}}, {{"MI", get("MI")}, {"IM", get("IM")}}))
        return code;
    }
    throw std::runtime_error("no free item in the small library");
  }
  /// A delivery of this piece to the requester's first room.
  static std::vector<TagValue> delivery(const Requester& who, const Piece& piece, const std::string& start,
                                        const std::string& end, const std::string& note = {}) {
    return bookingTags(start, end, {{"PID", who.id}, {"PGID", who.group}},
                       {{"RID", who.rooms.front()}, {"BTID", "2"}, {"EID", piece.id}}, note);
  }

  std::vector<frmBooking*> editors() {
    std::vector<frmBooking*> all;
    for (int i = 0; i < app().windows.Count(); ++i) {
      if (auto* found = dynamic_cast<frmBooking*>(&app().windows[i])) all.push_back(found);
    }
    return all;
  }
  frmBooking& onlyEditor() {
    if (editors().size() != 1) throw std::runtime_error("not one editor stands");
    return *editors().front();
  }
  frmBooking& openNew(const char* entry) {
    chooseFromMenu(entry);
    click(mainWindow(), "cmdNewBooking");
    return onlyEditor();
  }
  /// Opens the booking of this row of the day's list.
  frmBooking& edit(int row) {
    clickRow(row);
    click(mainWindow(), "cmdEditBooking");
    return onlyEditor();
  }
  void writeTimes(const Form& form, const Date& day, const char* start, const char* end) {
    write(form, "fpdNeedDate", formatDate(day, desktop.shortDateFormat()));
    write(form, "txtNeedTime", start);
    write(form, "txtFinishTime", end);
  }
  /// Adds times of one day to the open list of several bookings.
  void addTimes(const Form& form, std::initializer_list<std::pair<const char*, const char*>> times) {
    for (const auto& [start, end] : times) {
      writeTimes(form, kDay, start, end);
      click(form, "cmdAddDate");
    }
  }
  void correctTime(const Form& form, int row, const char* start, const char* end) {
    clickRow(find<GridView>(form, "faDatesTimes"), row, 0);
    click(form, "cmdEditDate");
    addTimes(form, {{start, end}});
  }
  void scanRequester(const Form& form, const Requester& who) {
    scan(form, "txtRequester", who.barcode);
    EXPECT_EQ(text(form, "txtRequester"), who.name);
  }
  void expectNote(const std::string& room) {
    if (ask("GETPMSG", {{"PWHI", "0"}, {"PTYP", "1"}, {"PWID", room}}) != 0 || get("PMSG").empty()) return;
    whenShown("txtPopupNote", [note = QString::fromStdString(get("PMSG"))](QWidget& window) {
      EXPECT_TRUE(window.findChild<QPlainTextEdit*>("txtPopupNote")->toPlainText().endsWith(note));
      QTest::keyClick(&window, Qt::Key_Return);
    });
  }
  using DeskStory::stored;
  /// The tag's values in the list that this request gives of a stored booking.
  std::vector<std::string> stored(std::string_view code, const std::string& booking, std::string_view tag) {
    EXPECT_EQ(ask(code, {{"BOOKID", booking}}), 0);
    std::vector<std::string> values;
    while (app().message.NextRecord(tag)) values.push_back(get(tag));
    return values;
  }
  std::string roomOf(const std::string& booking) {
    EXPECT_EQ(ask("GETSRM", {{"BOOKID", booking}}), 0);
    return get("RID");
  }

  static constexpr int kConfirmation = 8;  ///< columns of the day's list

 private:
  int lastPiece_ = 0;
};

}  // namespace vantry::test
