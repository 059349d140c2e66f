#include "circulation/booking_grid.h"

#include "words/tags.h"

namespace vantry {

static constexpr ReplyColumn kColumns[] = {
    {"ID", tags::BOOKID, CellKind::Plain, 0},
    {"Booking Status", tags::BKRES, CellKind::Plain, 0},
    {"Start Date", tags::STIME, CellKind::Date, 900, SortKind::ShortDate},
    {"Start Time24", tags::STIME, CellKind::Time24, 0, SortKind::ClockTime},
    {"Start Time", tags::STIME, CellKind::Time, 900, SortKind::ClockTime},
    {"End Date", tags::ETIME_, CellKind::Date, 900, SortKind::ShortDate},
    {"End Time24", tags::ETIME_, CellKind::Time24, 0, SortKind::ClockTime},
    {"End Time", tags::ETIME_, CellKind::Time, 900, SortKind::ClockTime},
    {"Requester", tags::REQ, CellKind::Requester, 2200},
    {"Confirmation #", tags::CNUM},
    {"Booking Type", tags::BTYP, CellKind::Plain, 1400},
    {"Delivery Room/Pickup Location", tags::DPL, CellKind::Plain, 2800},
    {"Equipment Count", tags::ECNT, CellKind::Plain, 1300},
    {"Item Count", tags::ICNT, CellKind::Plain, 1000},
};

void BuildChargeDischargeFlexArray(ReplyList& list) {
  list.build({.columns = kColumns, .walk = tags::BOOKID});
}

void FillChargeDischargeGrid(ReplyList& list) {
  list.fill();
}

}  // namespace vantry
