#pragma once

namespace vantry::codes {

// Return codes that the program tests by itself, before or instead of a report; 0 is success. Codes that are
// only worded are in the tables of words: the reporter's, the override window's, the report of conflicts.

// Made on this side of the line.
inline constexpr int Lost = -999;      ///< no server, and the operator gave up: the program ends
inline constexpr int NotTaken = -998;  ///< the server will never take this request as it is
inline constexpr int Busy = -99;       ///< another request waits for its reply

inline constexpr int NoRight = -96;
inline constexpr int SearchTooLong = -94;  ///< the server has ended a search
inline constexpr int NotJudged = -93;      ///< nobody can say now whether a login is right
inline constexpr int TagMissing = -98;     ///< `CANTREAD` names the tag
inline constexpr int NotFound = 2;

// Removing and storing a booking.
inline constexpr int InProgress = 106;
inline constexpr int EquipmentOut = 114;
inline constexpr int ItemOut = 115;
inline constexpr int SatisfiedByRoom = 137;  ///< stored; the room holds what was wished for
inline constexpr int UpdatedByOther = 180;
inline constexpr int TimesOverlap = 181;

// Moving and grouping equipment.
inline constexpr int PendingBooking = 174;  ///< a booking that has not begun needs it where it is

// Patrons and operators.
inline constexpr int BarcodeInactive = 108;
inline constexpr int AddressOnHold = 109;
inline constexpr int OverLimits = 110;
inline constexpr int EquipmentLimit = 118;
inline constexpr int ItemLimit = 119;
inline constexpr int NotAuthorized = 120;
inline constexpr int PatronExpired = 144;

// Policy and availability. The reply's records tell what failed.
inline constexpr int RoomTaken = 107;
inline constexpr int AlreadyCharged = 123;  ///< of a search for what can be charged
inline constexpr int NotCharged = 128;
inline constexpr int NoPickUp = 145;
inline constexpr int NoDelivery = 146;
inline constexpr int RoomStatus = 147;    ///< of a record of `RoomRules`
inline constexpr int RoomDuration = 148;  ///< likewise
inline constexpr int Equipment = 149;
inline constexpr int Media = 150;
inline constexpr int EquipmentStatus = 151;
inline constexpr int RoomRules = 157;
inline constexpr int MediaConflict = 158;      ///< of a record of `Media`
inline constexpr int EquipmentConflict = 159;  ///< of a record of `Equipment`
inline constexpr int CalendarConflict = 167;
inline constexpr int NotInStorage = 179;
inline constexpr int RoomUsage = 185;
inline constexpr int WarningLimit = 187;  ///< of a record: within the warning limit of another booking

// Inventory.
inline constexpr int HeldByBookings = 100;
inline constexpr int GroupStatus = 125;     ///< the group's status forbids the change
inline constexpr int BookingsFollow = 182;  ///< done, and bookings were changed with it

}  // namespace vantry::codes
