#include "inventory/regular_place.h"

#include "frame/app.h"
#include "inventory/modRoom.h"
#include "inventory/pending_move.h"
#include "inventory/status_names.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

static constexpr const char* kNoRoom = "0";

RegularPlace::RegularPlace(App& app, const Ask& ask, Frame& details, const char* clickRefusal)
    : lblLOC_NAME(details, "lblLOC_NAME", "Location:"),
      cboLOC_NAME(details, "cboLOC_NAME"),
      lblROOM_NAME(details, "lblROOM_NAME", "Room:"),
      cboROOM_NAME(details, "cboROOM_NAME"),
      lblTEMP_ROOM_NAME(details, "lblTEMP_ROOM_NAME", "Currently At:"),
      txtTEMP_ROOM_NAME(details, "txtTEMP_ROOM_NAME"),
      app_(app),
      ask_(ask),
      clickRefusal_(clickRefusal) {
  txtTEMP_ROOM_NAME.Locked = true;
  on(cboLOC_NAME.Click, this, &RegularPlace::cboLOC_NAME_Click);
  on(cboROOM_NAME.Click, this, &RegularPlace::cboROOM_NAME_Click);
}

// Showing

void RegularPlace::prepare() {
  FillLocations(app_, cboLOC_NAME);
}

/// What the lists select by themselves is no move of the operator's.
void RegularPlace::show(const std::function<void()>& select) {
  showing_ = true;
  select();
  showing_ = false;
}

void RegularPlace::fillRooms() {
  show([this] { FillRoomsOfLocation(app_, ask_, cboROOM_NAME, locationId()); });
}

const std::string& RegularPlace::locationId() const {
  return cboLOC_NAME.ItemData(cboLOC_NAME.ListIndex);
}

void RegularPlace::showFirst() {
  selectLocation(cboLOC_NAME.ListCount() > 0 ? 0 : -1);
}

void RegularPlace::showNamed(const std::string& location, const std::string& room) {
  selectLocation(cboLOC_NAME.indexOf(location));
  if (const int found = cboROOM_NAME.indexOf(room); found >= 0) show([&] { cboROOM_NAME.ListIndex = found; });
}

void RegularPlace::showStored() {
  const TagMessage& message = app_.message;
  const std::string room = message.Get(tags::RID);
  const std::string location = message.Get(tags::LOC);
  txtTEMP_ROOM_NAME.Text = message.Get(tags::TRNM);
  const std::string locationName = message.Get(tags::LNA);
  const std::string name = message.Get(tags::RNM);
  selectLocation(EntryOfLocation(cboLOC_NAME, location, locationName));
  selectRoom(room, name);
}

void RegularPlace::showGroups() {
  const std::string room = app_.message.Get(tags::RID);
  const std::string name = app_.message.Get(tags::RNM);
  const int entry = cboLOC_NAME.indexOfData(app_.message.Get(tags::LOC));
  if (room.empty() || entry < 0) return;
  if (entry != cboLOC_NAME.ListIndex) selectLocation(entry);
  selectRoom(room, name);
}

void RegularPlace::selectRoom(const std::string& id, const std::string& name) {
  if (!id.empty() && cboROOM_NAME.indexOfData(id) < 0) cboROOM_NAME.AddItem(name, id);
  show([&] { cboROOM_NAME.ListIndex = cboROOM_NAME.indexOfData(id); });
}

void RegularPlace::selectLocation(int entry) {
  show([&] { cboLOC_NAME.ListIndex = entry; });
  fillRooms();
}

/// A copy asks like a new record: the answer for its model would free the model from its bookings.
void RegularPlace::probe() {
  const std::string& room = cboROOM_NAME.ItemData(cboROOM_NAME.ListIndex);
  const std::string id = record().id;
  const int rc = ask_.codeOf(
      "ADDREQP", {{tags::EID, id}, {tags::RID, id.empty() || room.empty() ? kNoRoom : room.c_str()}});
  inPendingBooking_ = rc == codes::PendingBooking;
  if (inPendingBooking_) statusChanged();
}

void RegularPlace::statusChanged() {
  if (record().status == kCharged) lock();
}

void RegularPlace::lock() {
  disable(cboLOC_NAME, cboROOM_NAME);
}

void RegularPlace::addTags() const {
  app_.message.Add(tags::LOC, locationId());
  app_.message.Add(tags::RID, cboROOM_NAME.ItemData(cboROOM_NAME.ListIndex));
  app_.message.Add(tags::RNM, cboROOM_NAME.Text());
}

void RegularPlace::takeRegularRoom() {
  txtTEMP_ROOM_NAME.Text = cboROOM_NAME.Text();
}

// Moving

void RegularPlace::cboLOC_NAME_Click() {
  if (showing_) return;
  fillRooms();
  raise(Changed);
  cboROOM_NAME_Change();
}

void RegularPlace::cboROOM_NAME_Click() {
  if (!showing_) move(clickRefusal_);
}

/// The room has changed with its location.
void RegularPlace::cboROOM_NAME_Change() {
  move(kMoveRefusal);
}

void RegularPlace::move(const char* refusal) {
  raise(Changed);
  if (!moveIsConfirmed(refusal)) return;
  if (record().status == kNotCharged) takeRegularRoom();
}

/// Without the right over bookings nobody is asked: the server decides at the save.
bool RegularPlace::moveIsConfirmed(const char* refusal) {
  const PlacedRecord placed = record();
  if (!moveQuestionArmed_ || !inPendingBooking_ || !app_.context.rights.has(Right::EBM) ||
      placed.status != kNotCharged)
    return true;
  if (!ReleaseFromBookings(app_, ask_, placed.id, refusal)) return false;
  moveQuestionArmed_ = false;
  return true;
}

}  // namespace vantry
