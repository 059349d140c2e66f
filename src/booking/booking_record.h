#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vantry {

class TagMessage;

/// Booking types (`BTID`).
enum BookingType { kLibraryScheduledRoom = 1, kDeliver = 2, kPickUp = 3 };

/// One type, with the place of its option button among the three.
struct BookingTypeRow {
  BookingType id;
  int option;
  std::string_view caption;
};
[[nodiscard]] std::span<const BookingTypeRow> bookingTypes();
[[nodiscard]] int optionOfType(int type);    ///< -1 for no type
[[nodiscard]] int typeOfOption(int option);  ///< 0 for no option

/// What a room has to be like, where any such room will do.
struct GenericRoom {
  int GenericRoomTypeId = 0;
  int GenericRoomLocationId = 0;  ///< of a pick-up booking, its location
  int GenericRoomCapacity = 0;
  int GenericRoomCapacityOp = 0;  ///< 0: at least the capacity; any other: at most
};

/// What one open booking window knows of its booking beside its controls. Ids are the server's numbers, 0 for
/// none.
struct BookingRecord : GenericRoom {
  int BookingId = 0;  ///< 0: not yet saved, or a copy
  int BookingTypeId = 0;
  std::string AdminBooking = "N";   ///< "Y": an administrative booking, without a requester
  std::string WizardCreated = "N";  ///< as read; it decides nothing

  int RequesterId = 0;
  int PatronGroupId = 0;  ///< the requester's; the key of every check of policy
  int PickupPatronId = 0;
  std::string ExpireDate;  ///< end of the requester's privileges, as the server writes it

  int RoomId = 0;  ///< 0 for a generic room and for a pick-up
  int PickupLocationId = 0;

  int SetupStaffId = 0;
  int CleanupStaffId = 0;
  int SetupMinutes = 0;
  int CleanupMinutes = 0;

  int BookingResult = 0;
  std::string LastUpdate;  ///< as read; sent back to learn whether someone else has changed the booking
  std::string ConfirmationNumber;
  std::string Note;

  std::string RequesterName;
  std::string PatronGroupName;
  std::string PickupPatronName;
  std::string CreateOperator, CreateLocation, CreateDate;
  std::string UpdateOperator, UpdateLocation;
  std::string StartTime, EndTime;  ///< as the server writes them

  // Privileges of the requester, and what counts against them.
  int ItemLimit = -1;  ///< -1: none, as long as no requester's is known
  int EquipmentLimit = -1;
  int BookingMax = 0;    ///< -1: no maximum
  int BookingCount = 0;  ///< as the server counts them: this window's not among them
  int ItemCount = 0;     ///< things in the booking now
  int EquipmentCount = 0;

  bool isAdministrative() const { return AdminBooking == "Y"; }
  bool isGenericRoom() const { return RoomId == 0 && PickupLocationId == 0 && GenericRoomLocationId != 0; }
  /// Whether the booking says where it takes place; without that it cannot be saved.
  bool hasPlace() const { return RoomId != 0 || PickupLocationId != 0 || GenericRoomLocationId != 0; }
};

inline constexpr int kUnlimitedBookings = -1;
inline constexpr std::string_view kRequesterWithheld = "Requester Withheld";

/// Takes all that the reply of `GETMSD` carries into the record.
void ReadBookingHead(const TagMessage& message, BookingRecord& record);
/// The value of one of these tags as text, and a new value for it. Other tags have none.
[[nodiscard]] std::string headValue(const BookingRecord& record, std::string_view tag);
void setHeadValue(BookingRecord& record, std::string_view tag, const std::string& value);
/// What `GETSRM` brings, by the record's type.
void ReadBookingPlace(const TagMessage& message, BookingRecord& record);
/// What `PATPRIV` brings.
void ReadPrivileges(const TagMessage& message, BookingRecord& record);
/// Leaves the record as it is while no requester's privileges are known.
void ForgetPrivileges(BookingRecord& record);

/// What is shown as the requester: the name, or that the server withholds it; empty for an administrative
/// booking.
[[nodiscard]] std::string requesterText(const BookingRecord& record);
/// "Capacity:  >=20 *** Location:  Main *** Room Type:  Hall".
[[nodiscard]] std::string genericRoomText(const GenericRoom& room, std::string_view location,
                                          std::string_view roomType);
/// ">=" or "<=".
[[nodiscard]] std::string_view capacitySign(int capacityOp);

/// A command's part in a booking's result: it is left as it was, switched off or switched on.
enum class Effect { Leave, Disable, Enable };

/// One booking result (`BKRES`) that has a word. All of them end the editing.
struct BookingStatusRow {
  int result;
  std::string_view word;
  Effect charge, discharge, cancel;
};

/// The row of a result; nullptr for a live booking and for results without a word.
[[nodiscard]] const BookingStatusRow* bookingStatus(int result);
/// "  <Charged>", the end of a window's title; empty for a live booking.
[[nodiscard]] std::string statusSuffix(int result);

/// The titles of a saved booking's window and of a copy's.
[[nodiscard]] std::string savedBookingTitle(std::string_view confirmationNumber);
[[nodiscard]] std::string copiedBookingTitle(std::string_view confirmationNumber);

}  // namespace vantry
