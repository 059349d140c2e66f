#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "frame/app.h"
#include "messaging/return_codes.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/grid.h"

namespace vantry {

struct ErrorReportRow;

/// Lists what conflicts with a booking: other bookings, the calendar, the state of what would be charged. It
/// reads the reply of the last request, and sends none.
class frmErrorReport : public Form {
 public:
  frmErrorReport(App& app, int reportCode);
  /// A code without a report shows nothing: the window does not open.
  void Form_Load() override;
  void Form_Activate() override;
  void cmdOK_Click();

  int ReportCode;

  Label lblHeading{*this, "lblHeading"};
  Grid faErrors{*this, "faErrors"};
  Label lblGeneric{*this, "lblGeneric"};
  Grid faErrorsGeneric{*this, "faErrorsGeneric"};
  Label lblSpecific{*this, "lblSpecific"};
  Grid faErrorsSpecific{*this, "faErrorsSpecific"};
  DateField dtDate{*this, "dtDate"};  ///< hidden, as the next one
  TimeField txtTime{*this, "txtTime"};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  using Cells = std::vector<std::string>;

  void layOut(const ErrorReportRow& report);
  void fillMedia();
  void fillEquipment();
  void fillLines(const ErrorReportRow& report);
  void addLines(const ErrorReportRow& report, int code);
  std::string lineText(std::string_view text, std::string_view boundary);
  std::string valueOf(std::string_view mark, std::string_view boundary);
  Cells withTimes(std::string error, std::initializer_list<std::string_view> lastTags);
  std::string equipmentName() const;
  void hideEmpty();
  std::string dateText(std::string_view serverTime);
  std::string timeText(std::string_view serverTime);
  static void addRow(Grid& grid, Cells cells);

  App& app_;
};

/// Shows a report of the reply: `codes::NotCharged`, `MediaConflict`, `EquipmentConflict` or
/// `CalendarConflict`.
void ShowErrorReport(App& app, int reportCode);

}  // namespace vantry
