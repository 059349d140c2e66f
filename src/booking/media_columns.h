#pragma once

#include <string_view>

#include "lists/reply_list.h"
#include "words/tags.h"

namespace vantry {

/// Columns of a list of media. The first four are hidden and hold the keys.
enum MediaColumn {
  kMediaBib,
  kMediaHoldings,
  kMediaItem,  ///< 0: any item of the title or the holdings
  kMediaType,  ///< 0: no media type
  kMediaTitle,
  kMediaTypeName,
  kMediaLocation,
  kMediaCopy,
  kMediaCallNumber,
  kMediaEnumeration,
  kMediaChronology,
  kMediaYear
};
inline constexpr std::string_view kNoMediaType = "No Media Type";

/// The columns, and how the reply of a charge fills them. It does not carry what has no tag here.
inline constexpr ReplyColumn kMediaColumns[] = {
    {"Bib ID", {}, CellKind::Own, 0},
    {"MFH ID", {}, CellKind::Own, 0},
    {"Item ID", tags::IM, CellKind::Plain, 0},
    {"Media Type ID", {}, CellKind::Own, 0},
    {"Title", tags::TITL, CellKind::Plain, 4200},
    {"Media Type", tags::MDSC, CellKind::Plain, 1700},
    {"Location", tags::LO, CellKind::Plain, 1700},
    {"Copy Number", tags::CP, CellKind::Plain, 1200},
    {"Call Number", {}, CellKind::Own, 1700},
    {"Enumeration", tags::EN, CellKind::Plain, 1300},
    {"Chronology", tags::CH, CellKind::Plain, 1300},
    {"Year", tags::YR, CellKind::Plain, 900},
};

}  // namespace vantry
