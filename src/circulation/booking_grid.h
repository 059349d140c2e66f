#pragma once

#include "lists/reply_list.h"

namespace vantry {

/// Places of the columns that commands read, in the lists of charge and discharge and of the day.
inline constexpr int kBookingIdColumn = 0;
inline constexpr int kBookingStatusColumn = 1;

/// Lays out the list of the charge view or of the discharge view, empty.
void BuildChargeDischargeFlexArray(ReplyList& list);
/// Fills it from the reply of a search.
void FillChargeDischargeGrid(ReplyList& list);

}  // namespace vantry
