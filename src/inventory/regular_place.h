#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "messaging/ask.h"
#include "platform/controls.h"
#include "records/record_fields.h"

namespace vantry {

class App;

/// What the place of a piece or group has to know of its record at the moment.
struct PlacedRecord {
  std::string id;
  std::string status;
};

/// Where a piece or group is kept, and where it is now. A thing in a pending booking is moved only after a
/// question, and not at all while it is charged.
class RegularPlace {
 public:
  /// `clickRefusal` tells, after a move to another room of the location, that a booking prevents it.
  RegularPlace(App& app, const Ask& ask, Frame& details, const char* clickRefusal);
  RegularPlace(const RegularPlace&) = delete;

  Label lblLOC_NAME;
  ComboBox cboLOC_NAME;
  Label lblROOM_NAME;
  ComboBox cboROOM_NAME;
  Label lblTEMP_ROOM_NAME;
  TextBox txtTEMP_ROOM_NAME;

  std::function<PlacedRecord()> record;
  Event Changed;  ///< the operator chose another location or room

  /// Fills the locations and arms the question.
  void prepare();
  /// The first location and its first room.
  void showFirst();
  /// A location and a room by their names, as far as they are there.
  void showNamed(const std::string& location, const std::string& room);
  /// Those of the reply that was read.
  void showStored();
  /// Those of the group that the piece has joined, of the same reply: a member is kept where its group is.
  void showGroups();
  /// Asks the server whether a pending booking holds the thing. Nothing is reported.
  void probe();
  /// The status was looked at or changed: what is charged stays in its place.
  void statusChanged();
  /// Adds the location and the room to the message of a save.
  void addTags() const;
  /// A new thing is in its regular room.
  void takeRegularRoom();
  void lock();

  [[nodiscard]] const std::string& locationId() const;

  void cboLOC_NAME_Click();
  void cboROOM_NAME_Click();
  void cboROOM_NAME_Change();

 private:
  void show(const std::function<void()>& select);
  void selectLocation(int entry);
  void selectRoom(const std::string& id, const std::string& name);
  void fillRooms();
  void move(const char* refusal);
  [[nodiscard]] bool moveIsConfirmed(const char* refusal);

  App& app_;
  const Ask& ask_;
  const char* clickRefusal_;
  bool inPendingBooking_ = false;
  bool moveQuestionArmed_ = true;
  bool showing_ = false;
};

}  // namespace vantry
