#include "inventory/properties_panel.h"

#include "messaging/server_tools.h"
#include "words/tags.h"

namespace vantry {

PropertiesPanel::PropertiesPanel(Frame& frame)
    : lblCreatedBy(frame, "lblCreatedBy", "Created By:"),
      lblCreateDate(frame, "lblCreateDate", "Create Date:"),
      lblCreateLocation(frame, "lblCreateLocation", "Create Location:"),
      txtCR_OPNAME(frame, "txtCR_OPNAME"),
      dtCR_DATE(frame, "dtCR_DATE"),
      txtCR_LOC_NAME(frame, "txtCR_LOC_NAME"),
      lblUpdatedBy(frame, "lblUpdatedBy", "Updated By:"),
      lblUpdateDate(frame, "lblUpdateDate", "Update Date:"),
      lblUpdateLocation(frame, "lblUpdateLocation", "Update Location:"),
      txtUP_OPNAME(frame, "txtUP_OPNAME"),
      dtUP_DATE(frame, "dtUP_DATE"),
      txtUP_LOC_NAME(frame, "txtUP_LOC_NAME") {}

void PropertiesPanel::addFields(std::vector<RecordField>& rows) {
  const auto shown = [&rows](Control& control, std::string_view tag) {
    rows.push_back({control, tag, FieldUse::Shown});
  };
  shown(txtCR_OPNAME, tags::CNM);
  shown(txtUP_OPNAME, tags::UNM);
  shown(dtCR_DATE, tags::CDT);
  shown(dtUP_DATE, tags::UDT);
  shown(txtCR_LOC_NAME, tags::CLN);
  shown(txtUP_LOC_NAME, tags::ULN);
}

LayoutNode PropertiesPanel::layout(std::initializer_list<LayoutNode> more) {
  LayoutNode updated =
      Fields{lblUpdatedBy, txtUP_OPNAME, lblUpdateDate, dtUP_DATE, lblUpdateLocation, txtUP_LOC_NAME};
  LayoutNode created =
      Fields{lblCreatedBy, txtCR_OPNAME, lblCreateDate, dtCR_DATE, lblCreateLocation, txtCR_LOC_NAME};
  created.children.insert(created.children.end(), more.begin(), more.end());
  return Row{created.share(1), Gap{}, updated.share(1)};
}

void PropertiesPanel::clear() {
  const auto nothing = [](std::string_view) { return std::string(); };
  showCreated(nothing);
  showUpdated(nothing);
}

void PropertiesPanel::showCreated(const RecordFields::ValueOf& valueOf) {
  txtCR_LOC_NAME.Text = valueOf(tags::CLN);
  ServerTools::PutControlDate(valueOf(tags::CDT), dtCR_DATE);
  txtCR_OPNAME.Text = valueOf(tags::CNM);
}

void PropertiesPanel::showUpdated(const RecordFields::ValueOf& valueOf) {
  ServerTools::PutControlDate(valueOf(tags::UDT), dtUP_DATE);
  txtUP_LOC_NAME.Text = valueOf(tags::ULN);
  txtUP_OPNAME.Text = valueOf(tags::UNM);
}

}  // namespace vantry
