#include "booking/frmTimeLine.h"

#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

static constexpr std::string_view kSeparator = "|";

std::string joined(const TimeLineTag& values) {
  const auto text = [](const std::optional<Time>& time) {
    return time ? hourMinuteAmPm(*time) : std::string();
  };
  std::string tag = text(values.need);
  for (const std::string& part :
       {text(values.finish), std::to_string(values.indices.need), std::to_string(values.indices.finish)}) {
    tag += kSeparator;
    tag += part;
  }
  return tag;
}

TimeLineTag timeLineTag(std::string_view text) {
  int position = 1;
  const auto next = [&] { return ServerTools::NextToken(position, text, kSeparator); };
  TimeLineTag values;
  values.need = parseClockTime(next());
  values.finish = parseClockTime(next());
  values.indices.need = intOf(next());
  values.indices.finish = intOf(next());
  return values;
}

frmTimeLine::frmTimeLine(App& app)
    : Form(app.windows, "frmTimeLine"),
      app_(app),
      timeLine_(app.daySlots, {txtNeedTime, txtFinishTime, rulTimeLine, schTimeLine},
                [this] { return SameDay; }) {
  Caption = "Select Times";
  schTimeLine.AccessibleName = "Time of the booking";
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  on(cmdOK.Click, this, &frmTimeLine::cmdOK_Click);
  on(cmdCancel.Click, this, &frmTimeLine::cmdCancel_Click);
  Layout = Column{Row{lblNeedTime, txtNeedTime, Gap{}, lblFinishTime, txtFinishTime, Stretch{}},
                  Gap{},
                  rulTimeLine,
                  schTimeLine,
                  Gap{},
                  Row{Stretch{}, cmdOK, cmdCancel}};
}

void frmTimeLine::Form_Load() {
  app_.tools.PrepareForm(*this);
  const TimeLineTag values = timeLineTag(Tag.get());
  timeLine_.restore(values.need, values.finish, values.indices);
}

void frmTimeLine::Form_Activate() {
  schTimeLine.SetFocus();
}

bool frmTimeLine::Form_Unload() {
  if (isShown()) Tag = "";  // closed by the system's command
  return true;
}

void frmTimeLine::cmdOK_Click() {
  if (!entriesAreReadable(*this)) return;
  Tag = joined({txtNeedTime.Value.get(),
                txtFinishTime.Value.get(),
                {timeLine_.NeedTimeIndex(), timeLine_.FinishTimeIndex()}});
  Hide();
}

void frmTimeLine::cmdCancel_Click() {
  Tag = "";
  Hide();
}

}  // namespace vantry
