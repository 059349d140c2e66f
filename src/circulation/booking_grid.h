#pragma once

#include "lists/reply_list.h"

namespace vantry {

/// Places of the columns that commands read, in the lists of charge and discharge and of the day.
inline constexpr int kBookingIdColumn = 0;
inline constexpr int kBookingStatusColumn = 1;

/// Gives the list of the charge view or of the discharge view its columns, without rows.
void BuildChargeDischargeFlexArray(ReplyList& list);
/// Fills the list from the reply of a search.
void FillChargeDischargeGrid(ReplyList& list);

}  // namespace vantry
