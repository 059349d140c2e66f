#pragma once

#include <string>
#include <utility>

#include "frame/makers.h"

namespace vantry {

/// Which window opens a record.
enum RecordSource {
  kSourceEquipment = 0,
  kSourceGroup = 1,
  kSourceRoom = 2,
  kSourceMaintenance = 3,
  kSourceGroupMembers = 4,  ///< the main window's pane of members
  kSourceMainWindow = 5,
  kSourceStatus = 6,
  kSourceNextEquipment = 10,  ///< the four record windows after Save and New
  kSourceNextGroup = 11,
  kSourceNextRoom = 12,
  kSourceNextMaintenance = 13
};

/// Id and name of the requester whom "Save and New" hands to the next new editor; id 0 for none.
struct NextRequester {
  int id = 0;
  std::string name;
};

/// The requester that a copy of a booking gets.
struct CopyRequester {
  int PatronId = 0;  ///< -2 for an administrative copy, 0 where the copy keeps what its model has
  int PatronGroupId = 0;
  std::string PatronName;
  std::string PatronGroupName;
  std::string ExpireDate;  ///< as the server writes it
};
inline constexpr int kCopyCancelled = -1;
inline constexpr int kCopyAdministrative = -2;

/// What a record window is told when it opens.
struct RecordOpening {
  RecordOpening() = default;
  /// An empty id is a new record.
  RecordOpening(int ofKind, std::string recordId, int openedFrom)
      : kind(ofKind), id(std::move(recordId)), source(openedFrom) {}

  int kind = 0;
  std::string id;
  int source = 0;
  bool copy = false;    ///< the record is the model of a new one
  bool hidden = false;  ///< the window is loaded and not shown, for printing; whoever opens it unloads it
  bool pickUp = false;  ///< a new booking that starts now and is picked up
  NextRequester nextRequester;  ///< of a new booking
  CopyRequester copyRequester;  ///< of a copy of a booking

  bool isNew() const { return id.empty(); }
};

}  // namespace vantry
