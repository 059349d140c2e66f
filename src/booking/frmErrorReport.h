#pragma once

#include <string>
#include <vector>

#include "frame/app.h"
#include "lists/reply_list.h"
#include "messaging/return_codes.h"
#include "platform/controls.h"
#include "platform/fields.h"

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
  /// Sentences are to be read to their end; in twips, and narrow enough for a window on every screen.
  static constexpr int kWidestSentence = 12000;

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
  void layOut(const ErrorReportRow& report);
  void fillConflicts();
  bool isSpecific() const;
  std::string thingName() const;
  void fillLines(const ErrorReportRow& report);
  void addLines(std::vector<ListRow>& lines, int code);
  std::string lineText(std::string_view text, std::string_view boundary);
  std::string valueOf(std::string_view mark, std::string_view boundary);
  ListRow withTimes(std::string error, std::initializer_list<std::string_view> lastTags);
  void hideEmpty();
  std::string dateText(std::string_view serverTime);
  std::string timeText(std::string_view serverTime);

  App& app_;
  ReplyList errors_{app_, faErrors};
  ReplyList generic_{app_, faErrorsGeneric};
  ReplyList specific_{app_, faErrorsSpecific};
};

/// Shows a report of the reply: `codes::NotCharged`, `MediaConflict`, `EquipmentConflict` or
/// `CalendarConflict`.
void ShowErrorReport(App& app, int reportCode);

}  // namespace vantry
