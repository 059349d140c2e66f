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

  bool isNew() const { return id.empty(); }
};

}  // namespace vantry
