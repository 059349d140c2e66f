#pragma once

// The codes of the protocol by which the server refuses. Those of calendars and of conflicts are in the
// tables that choose among them: policy/policy_calendar.cpp and requests/usage_reply.cpp.

namespace vantry::server {

/// The code of a whole reply; 0 is success.
namespace rc {
inline constexpr int searchTooLong = -94;
inline constexpr int notJudged = -93;  ///< nobody can say now whether a login is right
inline constexpr int wrongLogin = -95;
inline constexpr int noRight = -96;
inline constexpr int storeFailed = -97;
inline constexpr int badMessage = -98;
inline constexpr int notFound = 2;
inline constexpr int wrongState = 7;  ///< what the booking's status does not allow
inline constexpr int bookingsExist = 100;
inline constexpr int roomInUse = 103;
inline constexpr int inProgress = 106;
inline constexpr int roomTaken = 107;
inline constexpr int barcodeInactive = 108;
inline constexpr int mailHeld = 109;
inline constexpr int overLimit = 110;
inline constexpr int equipmentOut = 114;
inline constexpr int itemOut = 115;
inline constexpr int tooMuchEquipment = 118;  ///< of a patron; also of a record
inline constexpr int tooManyItems = 119;      ///< likewise
inline constexpr int notAuthorized = 120;
inline constexpr int alreadyCharged = 123;
inline constexpr int groupStatus = 125;
inline constexpr int notCharged = 128;
inline constexpr int satisfiedByRoom = 137;
inline constexpr int patronExpired = 144;
inline constexpr int noPickup = 145;
inline constexpr int noDelivery = 146;
inline constexpr int equipment = 149;
inline constexpr int media = 150;
inline constexpr int equipmentStatus = 151;
inline constexpr int roomRules = 157;
inline constexpr int calendarConflict = 167;
inline constexpr int inPendingBooking = 174;
inline constexpr int notInStorage = 179;
inline constexpr int changedMeanwhile = 180;
inline constexpr int timesOverlap = 181;
inline constexpr int bookingsFollow = 182;
inline constexpr int bothBooked = 183;
inline constexpr int roomPolicy = 185;
}  // namespace rc

/// The code of one record in the reply of a check, `VUF`: what an operator may override.
namespace refusal {
inline constexpr int foreignLocation = 138;
inline constexpr int roomStatus = 147;
inline constexpr int roomDuration = 148;
inline constexpr int itemStatus = 152;
inline constexpr int equipmentTooLong = 153;
inline constexpr int mediaTooLong = 154;
inline constexpr int equipmentNotBookable = 155;
inline constexpr int mediaNotBookable = 156;
inline constexpr int foreignSecurity = 184;
inline constexpr int nearAnother = 187;
inline constexpr int roomTooLong = 188;
}  // namespace refusal

/// Why a charge fails, `CHFA`. The numbers have meanings of their own there.
namespace failure {
inline constexpr int roomOut = 107;
inline constexpr int pieceOut = 125;
inline constexpr int itemOut = 126;
inline constexpr int tooEarly = 127;
inline constexpr int noRoom = 134;
inline constexpr int noItem = 135;
inline constexpr int noPiece = 136;
inline constexpr int pieceStatus = 175;
inline constexpr int roomStatus = 176;
inline constexpr int itemStatus = 177;
}  // namespace failure

}  // namespace vantry::server
