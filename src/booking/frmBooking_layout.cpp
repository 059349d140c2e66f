// The tables of the booking editor, and where its controls are.
#include "booking/frmBooking.h"
#include "words/tags.h"

namespace vantry {

std::vector<RecordField> frmBooking::fieldTable() {
  const auto shown = [](Control& control, std::string_view tag) {
    return RecordField{control, tag, FieldUse::Shown};
  };
  const auto staff = [this](ComboBox& combo, std::string_view tag) {
    RecordField field{combo, tag};
    field.show = [this, &combo](const std::string& id) { selectStaff(combo, id); };
    return field;
  };
  return {
      {txtBookingNote, tags::SCHCOM},      staff(cboSetupStaff, tags::ODE),
      staff(cboCleanupStaff, tags::OPU),   shown(txtConfirmationNumber, tags::CNUM),
      shown(txtCreateOperator, tags::CNM), shown(txtCreateLocation, tags::CLN),
      shown(fpdCreateDate, tags::CDT),     shown(txtUpdateOperator, tags::UNM),
      shown(txtUpdateLocation, tags::ULN), shown(fpdUpdateDate, tags::UDT),
  };
}

void frmBooking::placeCommands() {
  linkCommands(barBooking,
               {{commands.save, &mnuFileSave, "Ctrl+S", "abSaveAndClose", "Save and Close", "save"},
                {commands.saveAndNew, nullptr, "", "abSaveAndNew", "Save and New", "new"},
                {commands.copy, &mnuFileCopyBooking, "", "abCopy", "Copy", "copy", true},
                {commands.remove, &mnuFileDeleteBooking, "", "abDelete", "Delete", "delete"},
                {cancel, &mnuBookingCancel, "", "abCancel", "Cancel", "cancel"},
                {charge, &mnuBookingCharge, "", "abCharge", "Charge", "charge", true},
                {discharge, &mnuBookingDischarge, "", "abDischarge", "Discharge", "discharge"},
                {commands.print, &mnuFilePrint, "Ctrl+P", "abPrint", "Print", "print", true},
                {commands.close, &mnuFileClose, "Ctrl+F4"},
                {commands.mergeCells, &mnuViewMergeCells},
                {commands.search, &mnuToolsFind, "Ctrl+F"},
                {commands.options, &mnuToolsOptions},
                {commands.topics, &mnuHelpTopics, "F1"},
                {commands.about, &mnuHelpAbout}});
}

void frmBooking::arrange() {
  arrangeHead();
  fraNotes.Layout = Column{lblBookingNote, txtBookingNote};
  fraStaff.Layout = Row{Fields{lblSetupStaff, Row{LayoutNode(cboSetupStaff).share(1)}, lblCleanupStaff,
                               Row{LayoutNode(cboCleanupStaff).share(1)}}
                            .share(1),
                        LayoutNode(Stretch{}).share(2)};
  fraProperties.Layout = Row{Fields{lblCreateOperator, txtCreateOperator, lblCreateLocation,
                                    txtCreateLocation, lblCreateDate, fpdCreateDate}
                                 .share(1),
                             Gap{},
                             Fields{lblUpdateOperator, txtUpdateOperator, lblUpdateLocation,
                                    txtUpdateLocation, lblUpdateDate, fpdUpdateDate}
                                 .share(1)};
  Layout = Column{fraHead,
                  Gap{},
                  tabBooking,
                  LayoutNode(fraSchedule).share(1),
                  LayoutNode(fraMedia).share(1),
                  LayoutNode(fraPlace).share(1),
                  LayoutNode(fraEquipment).share(1),
                  LayoutNode(fraNotes).share(1),
                  LayoutNode(fraStaff).share(1),
                  LayoutNode(fraProperties).share(1)};
}

void frmBooking::arrangeHead() {
  for (Label* label : {&lblStatus, &lblPlace, &lblThings}) label->ReadOnlyField = true;
  lblStatus.AccessibleName = "Status of the booking";
  fraHead.Layout = Row{requester.layout().share(3), Gap{},
                       Fields{lblConfirmation, Row{txtConfirmationNumber, lblStatusCaption, lblStatus},
                              lblPlaceCaption, lblPlace, lblThingsCaption, lblThings}
                           .share(2)};
}

}  // namespace vantry
