#include "frame/frmVersionInfo.h"

#include "platform/desktop.h"
#include "platform/printer.h"
#include "platform/windows.h"
#include "platform/wiring.h"

namespace vantry {

/// What parts the two columns of the list.
static constexpr const char* kGap = "           ";

frmVersionInfo::frmVersionInfo(Windows& all, Desktop& desktop, const Clock& clock,
                               const std::vector<ComponentFailure>& failures)
    : Form(all, "frmVersionInfo"), desktop_(desktop), clock_(clock) {
  Caption = "Resource Version Errors";
  lstV_I_Resource.AccessibleName = lblV_I_Heading.Caption;
  for (const ComponentFailure& failure : failures)
    lstV_I_Resource.AddItem(failure.required + kGap + failure.error);
  cmdV_I_Exit.Default = true;
  cmdV_I_Exit.Cancel = true;
  on(cmdV_I_PrintList.Click, this, &frmVersionInfo::cmdV_I_PrintList_Click);
  on(cmdV_I_Exit.Click, this, &frmVersionInfo::cmdV_I_Exit_Click);
  Layout = Column{lblV_I_Heading, lstV_I_Resource, lblV_I_Corrected,
                  Row{Stretch{}, cmdV_I_PrintList, cmdV_I_Exit}};
}

void frmVersionInfo::cmdV_I_PrintList_Click() {
  Printer& printer = desktop_.printer();
  const DateTime now = clock_.now();
  printer.FontName = "Arial";
  printer.StartDoc();
  printer.Paragraph("Resource Validation Errors");
  printer.Paragraph(formatDate(now.date, desktop_.shortDateFormat()) + "  " + longTime(now.time));
  printer.Paragraph("");
  printer.Paragraph(lblV_I_Heading.Caption.get());
  for (int i = 0; i < lstV_I_Resource.ListCount(); ++i) printer.Paragraph(lstV_I_Resource.List(i));
  const PrintResult result = printer.EndDoc();
  if (result.outcome == PrintResult::Outcome::Filed)
    informationBox(desktop_, "Printed to \"" + result.text + "\"");
  if (result.outcome == PrintResult::Outcome::Failed)
    criticalBox(desktop_, "The list could not be printed.\n\n" + result.text);
}

bool ComponentsAreValid(Desktop& desktop, const Clock& clock, const ComponentFiles& files,
                        std::string_view table, std::span<const std::string_view> list) {
  const auto entries = readComponents(table, list);
  if (!entries) {
    criticalBox(desktop, "Resource List/Count and/or\n Version Table mismatch!", "Resource Error");
    return false;
  }
  const auto failures = checkComponents(*entries, files);
  if (failures.empty()) return true;
  Windows windows(desktop);
  frmVersionInfo(windows, desktop, clock, failures).ShowModal();
  return false;
}

}  // namespace vantry
