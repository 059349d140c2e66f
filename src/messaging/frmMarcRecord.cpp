#include "messaging/frmMarcRecord.h"

#include "messaging/ask.h"
#include "messaging/marc_fields.h"
#include "messaging/return_codes.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

enum Columns { kName, kTag, kIndicators, kText, kSource };
constexpr std::string_view kFormat = "<Field|<Tag|<Ind|<Text|<Subfields";
constexpr int kShown = 1;  // a width that AutoSize then makes right

}  // namespace

frmMarcRecord::frmMarcRecord(Windows& windows, TagMessage& message, MarcKind kind)
    : Form(windows, "frmMarcRecord"), message_(message), kind_(kind) {
  Caption.put(kind == MarcKind::Bib ? "Record of the Title" : "Record of the Holdings");
  faFields.AccessibleName = "Fields of the record";
  cmdClose.Default = true;
  cmdClose.Cancel = true;
  on(chkDetails.Click, this, &frmMarcRecord::chkDetails_Click);
  on(cmdClose.Click, this, &frmMarcRecord::cmdClose_Click);
  Layout = Column{faFields, Row{chkDetails, Stretch{}, cmdClose}};
}

void frmMarcRecord::Form_Load() {
  // Filled by hand: `ReplyList` is two floors above, and columns come and go here.
  faFields.Redraw = false;
  faFields.FormatString = std::string(kFormat);
  faFields.Rows = faFields.FixedRows;
  while (message_.NextRecord(tags::FLDT)) {
    const int row = faFields.Rows;
    faFields.Rows = row + 1;
    const std::string tag = message_.Get(tags::FLDT);
    const std::string text = message_.Get(tags::FLDV);
    faFields.TextMatrix(row, kName, std::string(marcFieldName(kind_, tag)));
    faFields.TextMatrix(row, kTag, tag);
    faFields.TextMatrix(row, kIndicators, message_.Get(tags::FLDI));
    faFields.TextMatrix(row, kText, marcFieldText(text));
    faFields.TextMatrix(row, kSource, marcFieldSource(text));
  }
  fit();
  faFields.Redraw = true;
}

/// Either the text alone or what a cataloguer reads.
void frmMarcRecord::fit() {
  const bool details = chkDetails.Value;
  faFields.ColWidth(kName, kShown);
  faFields.ColWidth(kTag, details ? kShown : 0);
  faFields.ColWidth(kIndicators, details ? kShown : 0);
  faFields.ColWidth(kText, details ? 0 : kShown);
  faFields.ColWidth(kSource, details ? kShown : 0);
  faFields.AutoSize(0, faFields.Cols - 1);
}

void frmMarcRecord::chkDetails_Click() {
  fit();
}

void frmMarcRecord::cmdClose_Click() {
  Unload();
}

void showMarcRecord(Windows& windows, TagMessage& message, modGlobal& global, MarcKind kind,
                    std::string_view id) {
  const TagMessage::Inner inner(message);
  const Ask ask(global, "frmMarcRecord");
  const int rc = ask.codeOf("CATREC", {{kind == MarcKind::Bib ? tags::BI : tags::MI, id}});
  if (rc == codes::NotFound) {
    informationBox(windows.desktop(), "The catalogue holds no such record.");
    return;
  }
  if (!ask.succeeded(rc, "CATREC")) return;
  frmMarcRecord window(windows, message, kind);
  window.ShowModal();
}

}  // namespace vantry
