#include "booking/booking_record.h"

#include <algorithm>
#include <variant>

#include "messaging/tagmessage.h"
#include "platform/text.h"
#include "words/booking_results.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr BookingTypeRow kTypes[] = {
    {kLibraryScheduledRoom, 1, "&Library/Media Center Scheduled Room"},
    {kDeliver, 0, "&Deliver"},
    {kPickUp, 2, "&Pick-Up"},
};

constexpr BookingStatusRow kStatuses[] = {
    {results::Complete, "Complete", Effect::Disable, Effect::Disable, Effect::Disable},
    {results::Unclaimed, "Unclaimed", Effect::Disable, Effect::Leave, Effect::Disable},
    {results::SystemCanceled, "System Canceled", Effect::Disable, Effect::Disable, Effect::Disable},
    {results::OperatorCanceled, "Operator Canceled", Effect::Disable, Effect::Disable, Effect::Disable},
    {results::Charged, "Charged", Effect::Disable, Effect::Enable, Effect::Disable},
    {results::Overdue, "Overdue", Effect::Disable, Effect::Enable, Effect::Disable},
};

using Number = int BookingRecord::*;
using Text = std::string BookingRecord::*;

/// A tag and the field that takes its value.
struct FieldRow {
  std::string_view tag;
  std::variant<Number, Text> field;
};

const FieldRow kHead[] = {
    {tags::BTID, &BookingRecord::BookingTypeId},      {tags::ADBK, &BookingRecord::AdminBooking},
    {tags::PATNM, &BookingRecord::RequesterName},     {tags::PGNM, &BookingRecord::PatronGroupName},
    {tags::PPATNM, &BookingRecord::PickupPatronName}, {tags::PID, &BookingRecord::RequesterId},
    {tags::PPID, &BookingRecord::PickupPatronId},     {tags::PGID, &BookingRecord::PatronGroupId},
    {tags::WIZ, &BookingRecord::WizardCreated},       {tags::UTIME, &BookingRecord::SetupMinutes},
    {tags::CTIME_, &BookingRecord::CleanupMinutes},   {tags::CNUM, &BookingRecord::ConfirmationNumber},
    {tags::BKRES, &BookingRecord::BookingResult},     {tags::SCHCOM, &BookingRecord::Note},
    {tags::CNM, &BookingRecord::CreateOperator},      {tags::UNM, &BookingRecord::UpdateOperator},
    {tags::CLN, &BookingRecord::CreateLocation},      {tags::ULN, &BookingRecord::UpdateLocation},
    {tags::CDT, &BookingRecord::CreateDate},          {tags::UDT, &BookingRecord::LastUpdate},
    {tags::STIME, &BookingRecord::StartTime},         {tags::ETIME_, &BookingRecord::EndTime},
    {tags::ODE, &BookingRecord::SetupStaffId},        {tags::OPU, &BookingRecord::CleanupStaffId},
};

const FieldRow kPrivileges[] = {
    {tags::ICNT, &BookingRecord::ItemLimit},    {tags::ECNT, &BookingRecord::EquipmentLimit},
    {tags::PVALD, &BookingRecord::ExpireDate},  {tags::BKM, &BookingRecord::BookingMax},
    {tags::BCNT, &BookingRecord::BookingCount},
};

void set(const FieldRow& row, BookingRecord& record, std::string value) {
  if (const Number* number = std::get_if<Number>(&row.field))
    record.*(*number) = intOf(value);
  else
    record.*std::get<Text>(row.field) = std::move(value);
}

void read(std::span<const FieldRow> rows, const TagMessage& message, BookingRecord& record) {
  for (const FieldRow& row : rows) set(row, record, message.Get(row.tag));
}

const FieldRow* headRow(std::string_view tag) {
  const auto* found =
      std::find_if(std::begin(kHead), std::end(kHead), [&](const FieldRow& row) { return row.tag == tag; });
  return found == std::end(kHead) ? nullptr : found;
}

}  // namespace

std::span<const BookingTypeRow> bookingTypes() {
  return kTypes;
}

int optionOfType(int type) {
  for (const BookingTypeRow& row : kTypes) {
    if (row.id == type) return row.option;
  }
  return -1;
}

int typeOfOption(int option) {
  for (const BookingTypeRow& row : kTypes) {
    if (row.option == option) return row.id;
  }
  return 0;
}

void ReadBookingHead(const TagMessage& message, BookingRecord& record) {
  read(kHead, message, record);
}

std::string headValue(const BookingRecord& record, std::string_view tag) {
  const FieldRow* row = headRow(tag);
  if (!row) return {};
  const Number* number = std::get_if<Number>(&row->field);
  return number ? std::to_string(record.*(*number)) : record.*std::get<Text>(row->field);
}

void setHeadValue(BookingRecord& record, std::string_view tag, const std::string& value) {
  if (const FieldRow* row = headRow(tag)) set(*row, record, value);
}

void ReadPrivileges(const TagMessage& message, BookingRecord& record) {
  read(kPrivileges, message, record);
}

void ReadBookingPlace(const TagMessage& message, BookingRecord& record) {
  record.RoomId = intOf(message.Get(tags::RID));
  if (record.BookingTypeId == kPickUp) {
    record.PickupLocationId = intOf(message.Get(tags::LOC));
    record.GenericRoomLocationId = record.PickupLocationId;
    return;
  }
  if (record.RoomId != 0) return;
  record.GenericRoomCapacityOp = intOf(message.Get(tags::RCOP));
  record.GenericRoomCapacity = intOf(message.Get(tags::RCA));
  record.GenericRoomLocationId = intOf(message.Get(tags::LOC));
  record.GenericRoomTypeId = intOf(message.Get(tags::RTI));
}

void ForgetPrivileges(BookingRecord& record) {
  const BookingRecord nobody;
  for (const FieldRow& row : kPrivileges)
    std::visit([&](auto field) { record.*field = nobody.*field; }, row.field);
}

std::string requesterText(const BookingRecord& record) {
  if (trim(record.RequesterName).empty() && record.AdminBooking == "N")
    return std::string(kRequesterWithheld);
  return record.RequesterName;
}

std::string_view capacitySign(int capacityOp) {
  return capacityOp == 0 ? ">=" : "<=";
}

std::string genericRoomText(const GenericRoom& room, std::string_view location, std::string_view roomType) {
  std::string text = "Capacity:  ";
  text += capacitySign(room.GenericRoomCapacityOp);
  text += std::to_string(room.GenericRoomCapacity) + " *** Location:  ";
  text += location;
  text += " *** Room Type:  ";
  text += roomType;
  return text;
}

const BookingStatusRow* bookingStatus(int result) {
  const auto found = std::find_if(std::begin(kStatuses), std::end(kStatuses),
                                  [&](const BookingStatusRow& row) { return row.result == result; });
  return found == std::end(kStatuses) ? nullptr : &*found;
}

std::string statusSuffix(int result) {
  const BookingStatusRow* status = bookingStatus(result);
  return status ? "  <" + std::string(status->word) + ">" : std::string();
}

std::string savedBookingTitle(std::string_view confirmationNumber) {
  return "Booking - Confirmation Number:  " + std::string(confirmationNumber);
}

std::string copiedBookingTitle(std::string_view confirmationNumber) {
  return "Copy of Booking with Confirmation Number " + std::string(confirmationNumber);
}

}  // namespace vantry
