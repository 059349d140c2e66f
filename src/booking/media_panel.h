#pragma once

#include "booking/media_columns.h"
#include "frame/app.h"
#include "platform/controls.h"
#include "platform/grid.h"
#include "platform/menu.h"

namespace vantry {

class BookingParts;

/// The media of a booking: the list, and what adds to it and removes from it.
class MediaPanel {
 public:
  /// Makes the controls in `place`, as one of the parts.
  MediaPanel(BookingParts& parts, Container& place);

  /// Something was added or removed.
  Event Changed;

  Label lblMediaBarcodeOrID;
  TextBox txtItemBarcode;
  Button cmdAddMediaViaBarcode, cmdAddMediaViaNumber;
  Button cmdSearchMedia;
  Grid faMedia;
  Button cmdRemoveMedia;
  Button cmdMARC;
  Button cmdNewMedia;
  MenuItem mnuPopupMarc;  ///< shown by `cmdMARC` only
  MenuItem mnuPopupMarcBib, mnuPopupMarcHoldings;

  /// The list, by the columns of `MediaColumn`.
  ReplyList& list() { return list_; }
  /// Allows what the list allows: removing and MARC need a row.
  void enableCommands();
  /// The booking can only be read from now on.
  void disableEditing();

  void cmdAddMediaViaBarcode_Click();
  void cmdAddMediaViaNumber_Click();
  void cmdSearchMedia_Click();
  void cmdRemoveMedia_Click();
  void cmdMARC_Click();
  void mnuPopupMarcBib_Click();
  void mnuPopupMarcHoldings_Click();

 private:
  void connect();
  void arrange(Container& place);
  using Adding = void (&)(BookingParts&);
  /// Adds by the text; afterwards the field is ready for the next one.
  void addByText(Adding add);

  BookingParts& parts_;
  App& app_;
  ReplyList list_{app_, faMedia};
  bool editable_ = true;
};

}  // namespace vantry
