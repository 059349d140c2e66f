#include "booking/media_panel.h"

#include "booking/booking_parts.h"
#include "booking/modBooking_media.h"
#include "booking/modBooking_tags.h"
#include "messaging/marc_viewer.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

MediaPanel::MediaPanel(BookingParts& parts, Container& place)
    : lblMediaBarcodeOrID(place, "lblMediaBarcodeOrID", "Media Barcode or Item ID:"),
      txtItemBarcode(place, "txtItemBarcode"),
      cmdAddMediaViaBarcode(place, "cmdAddMediaViaBarcode", "Add by &Barcode"),
      cmdAddMediaViaNumber(place, "cmdAddMediaViaNumber", "Add by &Item ID"),
      cmdSearchMedia(place, "cmdSearchMedia", "&Search..."),
      faMedia(place, "faMedia"),
      cmdRemoveMedia(place, "cmdRemoveMedia", "Remo&ve"),
      cmdMARC(place, "cmdMARC", "&MARC"),
      cmdNewMedia(place, "cmdNewMedia", "&New..."),
      mnuPopupMarc(place.form(), "mnuPopupMarc", "MARC"),
      mnuPopupMarcBib(mnuPopupMarc, "mnuPopupMarcBib", "&Bibliographic Record"),
      mnuPopupMarcHoldings(mnuPopupMarc, "mnuPopupMarcHoldings", "&Holdings Record"),
      parts_(parts),
      app_(parts.app) {
  mnuPopupMarc.Visible = false;
  faMedia.AccessibleName = "Media items of the booking";
  // No command of this program creates an item.
  cmdNewMedia.Enabled = false;
  // The columns keep their widths: a list that grows row by row would jump.
  list_.build({.columns = kMediaColumns, .fit = ColumnFit::Never, .merges = false});
  connect();
  arrange(place);
  enableCommands();
}

void MediaPanel::arrange(Container& place) {
  place.Layout = Column{Row{Fields{lblMediaBarcodeOrID, txtItemBarcode}.share(1), cmdAddMediaViaBarcode,
                            cmdAddMediaViaNumber, Gap{}, cmdSearchMedia},
                        faMedia, Row{cmdRemoveMedia, cmdMARC, Stretch{}, cmdNewMedia}};
}

void MediaPanel::connect() {
  txtItemBarcode.TakesScans = true;
  on(txtItemBarcode.Enter, this, &MediaPanel::cmdAddMediaViaBarcode_Click);
  on(cmdAddMediaViaBarcode.Click, this, &MediaPanel::cmdAddMediaViaBarcode_Click);
  on(cmdAddMediaViaNumber.Click, this, &MediaPanel::cmdAddMediaViaNumber_Click);
  on(cmdSearchMedia.Click, this, &MediaPanel::cmdSearchMedia_Click);
  on(cmdRemoveMedia.Click, this, &MediaPanel::cmdRemoveMedia_Click);
  on(cmdMARC.Click, this, &MediaPanel::cmdMARC_Click);
  on(mnuPopupMarcBib.Click, this, &MediaPanel::mnuPopupMarcBib_Click);
  on(mnuPopupMarcHoldings.Click, this, &MediaPanel::mnuPopupMarcHoldings_Click);
}

void MediaPanel::enableCommands() {
  cmdRemoveMedia.Enabled = editable_ && faMedia.hasData();
  cmdMARC.Enabled = faMedia.hasData();
}

void MediaPanel::disableEditing() {
  editable_ = false;
  txtItemBarcode.Locked = true;
  for (Button* button : {&cmdAddMediaViaBarcode, &cmdAddMediaViaNumber, &cmdSearchMedia})
    button->Enabled = false;
  enableCommands();
}

void MediaPanel::addByText(Adding add) {
  if (!editable_) return;
  const int before = faMedia.Rows;
  add(parts_);
  txtItemBarcode.SetFocus();
  txtItemBarcode.SelectText();
  if (faMedia.Rows != before) raise(Changed);
}

void MediaPanel::cmdAddMediaViaBarcode_Click() {
  addByText(AddMediaByBarcode);
}

void MediaPanel::cmdAddMediaViaNumber_Click() {
  addByText(AddMediaByItemId);
}

void MediaPanel::cmdSearchMedia_Click() {
  bool dirty = false;
  AddMediaFromSearch(parts_, dirty);
  if (dirty) raise(Changed);
}

void MediaPanel::cmdRemoveMedia_Click() {
  if (faMedia.Row < faMedia.FixedRows) return;
  faMedia.RemoveItem(faMedia.Row);
  --parts_.record.ItemCount;
  RefreshMediaEquipment(parts_);
  enableCommands();
  raise(Changed);
}

void MediaPanel::cmdMARC_Click() {
  const bool selected = faMedia.Row >= faMedia.FixedRows;
  const auto has = [&](MediaColumn column) {
    return selected && intOf(list_.text(faMedia.Row, column)) != 0;
  };
  mnuPopupMarcBib.Enabled = has(kMediaBib);
  mnuPopupMarcHoldings.Enabled = has(kMediaHoldings);
  app_.desktop.popupMenu(mnuPopupMarc, &cmdMARC);
}

void MediaPanel::mnuPopupMarcBib_Click() {
  ShowMarcRecord(parts_, MarcKind::Bib);
}

void MediaPanel::mnuPopupMarcHoldings_Click() {
  ShowMarcRecord(parts_, MarcKind::Holdings);
}

}  // namespace vantry
