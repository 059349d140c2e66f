#pragma once

#include "booking/time_line.h"
#include "frame/app.h"
#include "platform/controls.h"

namespace vantry {

/// Asks for the two times of a booking, on a time line. `Tag` brings the texts of the two time fields and
/// their places, joined by "|", and takes them back; empty afterwards: cancelled.
class frmTimeLine : public Form {
 public:
  explicit frmTimeLine(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  /// Whether both times lie on one day; set before the window is shown.
  bool SameDay = true;

  Label lblNeedTime{*this, "lblNeedTime", "Time &Needed:"};
  SpinTimeField txtNeedTime{*this, "txtNeedTime"};
  Label lblFinishTime{*this, "lblFinishTime", "Time &Finished:"};
  SpinTimeField txtFinishTime{*this, "txtFinishTime"};
  Ruler rulTimeLine{*this, "rulTimeLine"};
  ScheduleBar schTimeLine{*this, "schTimeLine"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  TimeLine timeLine_;
};

/// The four values that travel in the tag of `frmTimeLine`.
struct TimeLineTag {
  std::optional<Time> need;
  std::optional<Time> finish;
  TimeIndices indices;
};
[[nodiscard]] std::string joined(const TimeLineTag& values);
[[nodiscard]] TimeLineTag timeLineTag(std::string_view text);

}  // namespace vantry
