#include "circulation/quick_discharge_view.h"

#include <algorithm>

#include "frame/auto_truncate.h"
#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {
namespace {

/// What the text can mean: the tag of its search, and the tag that names what was found.
struct QuickType {
  std::string_view text;
  std::string_view tag;
  std::string_view found;
  std::string_view notFound;
};

constexpr std::string_view kNoItem = "Unable to find item information.";
constexpr std::string_view kNoPiece = "Unable to find equipment information.";

constexpr QuickType kTypes[] = {
    {"Media Barcode", tags::MEDBAR, tags::IM, kNoItem},
    {"Item ID", tags::IM, tags::IM, kNoItem},
    {"Equipment Barcode", tags::EQBAR, tags::EID, kNoPiece},
    {"Equipment Number", tags::ENO, tags::EID, kNoPiece},
};

constexpr std::string_view kDone = " has been discharged successfully!";

// Whose note, and for which occasion: its coming back.
constexpr std::string_view kOfRoom = "0";
constexpr std::string_view kOfPiece = "1";
constexpr std::string_view kPieceReturned = "3";
constexpr std::string_view kRoomReturned = "8";

std::string twoBlanks(const std::string& date, const std::string& time) {
  return date + "  " + time;
}

}  // namespace

/// The line that holds what was scanned.
struct QuickDischargeView::Found {
  const QuickType& type;
  std::string bookingId;
  std::string thingId;
  std::string roomId;
};

QuickDischargeView::QuickDischargeView(const MainParts& parts, Frame& frame)
    : MainView(parts, frame),
      lblQuickDischargeType(frame, "lblQuickDischargeType", "Discharge By:"),
      cboQuickDischargeType(frame, "cboQuickDischargeType"),
      lblQuickDischargeItem(frame, "lblQuickDischargeItem"),
      txtQuickDischargeItem(frame, "txtQuickDischargeItem"),
      cmdQuickDischarge(frame, "cmdQuickDischarge", "D&ischarge..."),
      cmdQuickClear(frame, "cmdQuickClear", "C&lear"),
      cmdBackDate(frame, "cmdBackDate", "Bac&kdate..."),
      fraBackDate(frame, "fraBackDate", "Backdate Discharge Date/Time To..."),
      lblDischargeDate(fraBackDate, "lblDischargeDate", "D&ate:"),
      dtDischargeDate(fraBackDate, "dtDischargeDate"),
      lblDischargeTime(fraBackDate, "lblDischargeTime", "Ti&me:"),
      txtDischargeTime(fraBackDate, "txtDischargeTime"),
      lblDischargeLog(frame, "lblDischargeLog", "Transaction Log:"),
      txtDischargeLog(frame, "txtDischargeLog") {
  cmdQuickDischarge.Default = true;  // counts while its view shows
  txtQuickDischargeItem.AccessibleName = "What to discharge";
  dtDischargeDate.AccessibleName = "Discharge Date";
  txtDischargeTime.AccessibleName = "Discharge Time";
  txtDischargeLog.MultiLine = true;
  txtDischargeLog.Locked = true;
  fraBackDate.Visible = false;
  allowByText();
  arrange(frame);
  connect();
}

void QuickDischargeView::arrange(Frame& frame) {
  fraBackDate.Layout =
      Row{lblDischargeDate, dtDischargeDate, Gap{}, lblDischargeTime, txtDischargeTime, Stretch{}};
  frame.Layout = Column{Row{lblQuickDischargeType, cboQuickDischargeType, Gap{}, lblQuickDischargeItem,
                            LayoutNode(txtQuickDischargeItem).share(2), cmdQuickDischarge, cmdQuickClear,
                            cmdBackDate, Stretch{}},
                        fraBackDate, Gap{}, lblDischargeLog, txtDischargeLog};
}

void QuickDischargeView::connect() {
  on(cboQuickDischargeType.Click, this, &QuickDischargeView::typeChosen);
  on(txtQuickDischargeItem.Change, this, &QuickDischargeView::allowByText);
  txtQuickDischargeItem.TakesScans = true;
  txtQuickDischargeItem.Enter = [this] {
    if (!trim(txtQuickDischargeItem.Text.get()).empty()) cmdQuickDischarge_Click();
  };
  on(cmdQuickDischarge.Click, this, &QuickDischargeView::cmdQuickDischarge_Click);
  on(cmdQuickClear.Click, this, &QuickDischargeView::cmdQuickClear_Click);
  on(cmdBackDate.Click, this, &QuickDischargeView::cmdBackDate_Click);
}

void QuickDischargeView::load() {
  cboQuickDischargeType.Clear();
  for (const QuickType& type : kTypes) cboQuickDischargeType.AddItem(std::string(type.text));
  txtQuickDischargeItem.Text = "";
  fraBackDate.Visible = false;
  typeChosen_ = false;
}

void QuickDischargeView::open() {
  allowByText();
  if (!txtQuickDischargeItem.Text.get().empty()) typeChosen_ = true;
  if (!typeChosen_) cboQuickDischargeType.ListIndex = 0;
  focusText();
}

void QuickDischargeView::typeChosen() {
  lblQuickDischargeItem.Caption = cboQuickDischargeType.Text() + ":";
  typeChosen_ = true;
}

void QuickDischargeView::allowByText() {
  const bool any = !trim(txtQuickDischargeItem.Text.get()).empty();
  setEnabled(any, cmdQuickDischarge, cmdQuickClear, cmdBackDate);
}

void QuickDischargeView::focusText() {
  txtQuickDischargeItem.SetFocus();
  txtQuickDischargeItem.SelectText();
}

/// Empties the status bar as well: deliberate, or it would go on telling of a discharge that has failed.
void QuickDischargeView::stop() {
  parts().showMessage("");
}

void QuickDischargeView::cmdQuickDischarge_Click() {
  // The server takes a missing moment for now.
  if (fraBackDate.Visible && !entriesAreGiven(fraBackDate)) return;
  parts().showMessage("Discharging...");
  Found found{kTypes[std::max(0, cboQuickDischargeType.ListIndex.get())], {}, {}, {}};
  std::string stamp;
  if (!find(found) || !send(found, stamp)) return focusText();
  const std::string note = noteOf(found);
  const std::string& text = txtQuickDischargeItem.Text;
  if (!note.empty()) informationBox(app().desktop, text + std::string(kDone) + "\n\n" + note);
  log(stamp);
  cmdQuickClear_Click();
}

bool QuickDischargeView::find(Found& found) {
  const TagMessage& message = app().message;
  const auto say = [this](std::string_view text) {
    stop();
    informationBox(app().desktop, std::string(text));
    return false;
  };
  const std::string sought = ApplyAutoTruncate(app().preferences, txtQuickDischargeItem.Text.get());
  if (!ask().orWarn("An error occurred while searching for item/equipment to discharge.", "SSD",
                    {{found.type.tag, sought}, {tags::QD, "Y"}})) {
    parts().showMessage("0 Booking(s) Found");
    return false;
  }
  found.bookingId = message.Get(tags::BOOKID);
  if (found.bookingId.empty()) return say("Unable to find booking information.");
  found.thingId = message.Get(found.type.found);
  if (found.thingId.empty()) return say(found.type.notFound);
  found.roomId = message.Get(tags::RID);
  return true;
}

void QuickDischargeView::addMoment(std::string& stamp) {
  if (fraBackDate.Visible) {
    app().message.Add(tags::ETIME_, ServerTools::GetControlDate(dtDischargeDate, &txtDischargeTime));
    stamp = twoBlanks(dtDischargeDate.shortDate(), txtDischargeTime.textAmPm());
    return;
  }
  const DateTime now = app().clock.now();
  parts().dtServerDate.Value = now.date;
  parts().txtServerTime.Value = now.time;
  stamp = twoBlanks(parts().dtServerDate.shortDate(), parts().txtServerTime.textAmPm());
}

bool QuickDischargeView::send(const Found& found, std::string& stamp) {
  TagMessage& message = app().message;
  message.Add(tags::BOOKID, found.bookingId);
  message.Add(found.type.found, found.thingId);
  addMoment(stamp);
  if (ask().codeOf("DBK") == 0) return true;
  stop();
  warningBox(app().desktop, "An error occurred while trying to discharge the booking.");
  return false;
}

/// The note to show. Both oddities are deliberate: a media item never brings one, and the room's note shows
/// only where the piece has one, in its place.
std::string QuickDischargeView::noteOf(const Found& found) {
  if (found.type.found != tags::EID) return {};
  const std::string ofPiece =
      readNote(kOfPiece, kPieceReturned, found.thingId,
               "An error occurred while retreiving the booking note for the selected equipment.");
  const std::string ofRoom =
      readNote(kOfRoom, kRoomReturned, found.roomId,
               "An error occurred while retreiving the booking note for the selected room.");
  return !ofPiece.empty() && !ofRoom.empty() ? ofRoom : ofPiece;
}

/// Empty for none; a failure is said and counts as none.
std::string QuickDischargeView::readNote(std::string_view whose, std::string_view occasion,
                                         const std::string& id, std::string_view failure) {
  if (!ask().orWarn(failure, "GETPMSG", {{tags::PWHI, whose}, {tags::PTYP, occasion}, {tags::PWID, id}}))
    return {};
  std::string note = app().message.Get(tags::PMSG);
  return trim(note).empty() ? std::string() : note;
}

void QuickDischargeView::log(const std::string& stamp) {
  std::string lines = txtDischargeLog.Text;
  if (!lines.empty()) lines += '\n';
  txtDischargeLog.Text = lines + stamp + "  " + txtQuickDischargeItem.Text.get() + std::string(kDone);
}

void QuickDischargeView::cmdQuickClear_Click() {
  txtQuickDischargeItem.Text = "";
  cmdQuickClear.Enabled = false;
  fraBackDate.Visible = false;
  parts().showMessage("");
  focusText();
}

void QuickDischargeView::cmdBackDate_Click() {
  const DateTime now = app().clock.now();
  txtDischargeTime.Value = now.time;
  dtDischargeDate.Value = now.date;
  fraBackDate.Visible = true;
  dtDischargeDate.SetFocus();
}

}  // namespace vantry
