#include "booking/time_line.h"

#include "platform/wiring.h"

#include <algorithm>
#include <utility>

namespace vantry {

TimeLine::TimeLine(const DaySlots& scale, const Parts& parts, std::function<bool()> sameDay)
    : scale_(scale), parts_(parts), sameDay_(std::move(sameDay)) {
  const auto connect = [this](SpinTimeField& field, int TimeIndices::*which) {
    field.Choices = scale_.captions;
    field.SpinUp = [this, which] { step(which, 1); };
    field.SpinDown = [this, which] { step(which, -1); };
    field.Chosen = [this, which](int index) { choose(which, index); };
    field.Change = [this, which, &field] {
      typed(which, field);
      raise(Changed);
    };
  };
  connect(parts_.txtNeedTime, &TimeIndices::need);
  connect(parts_.txtFinishTime, &TimeIndices::finish);
  on(parts_.schTimeLine.Drag, this, &TimeLine::dragged);
  setScale();
}

void TimeLine::setScale() {
  for (TimeScale* control :
       {static_cast<TimeScale*>(&parts_.rulTimeLine), static_cast<TimeScale*>(&parts_.schTimeLine)}) {
    control->Slots = std::max(1, scale_.count);
    control->PerHour = std::max(1, scale_.perHour);
    control->FirstHour = scale_.startMinute / 60;
  }
  showPlaces();
}

void TimeLine::step(int TimeIndices::*which, int by) {
  TimeIndices indices = indices_;
  indices.*which = std::clamp(indices.*which + by, 0, kLastTimeIndex);
  move(indices);
}

void TimeLine::choose(int TimeIndices::*which, int index) {
  TimeIndices indices = indices_;
  indices.*which = index;
  move(indices);
}

void TimeLine::dragged() {
  const auto [need, finish] = std::minmax<int>(parts_.schTimeLine.Start, parts_.schTimeLine.Finish);
  move({need, finish});
}

void TimeLine::typed(int TimeIndices::*which, const SpinTimeField& field) {
  if (setting_ || field.isEmpty()) return;
  indices_.*which = timeIndexOf(scale_, *field.Value.get());
  if (&field == &parts_.txtNeedTime) moveEndAlong();
  showPlaces();
}

/// A start that was typed past the end of the same day takes the end along to its next label.
void TimeLine::moveEndAlong() {
  const bool passes = parts_.txtNeedTime.Value.get() > parts_.txtFinishTime.Value.get();
  if (!passes || parts_.txtFinishTime.isEmpty() || !sameDay_()) return;
  const int next = std::min(indices_.need + 1, kLastTimeIndex);
  const auto label = timeAt(scale_, next);
  if (!label) return;  // nothing of the day is left
  indices_.finish = next;
  setting_ = true;
  parts_.txtFinishTime.Value = label;
  setting_ = false;
}

void TimeLine::move(TimeIndices indices) {
  show(sameDay_() ? keptApart(indices) : indices, false);
}

void TimeLine::setIndices(TimeIndices indices) {
  show(indices, true);
}

/// With `relabel` both fields take their labels; otherwise only one whose place has changed, so that a time
/// that was typed stays as long as nobody moves it.
void TimeLine::show(TimeIndices indices, bool relabel) {
  const auto timeOf = [&](const SpinTimeField& field, int before, int now) {
    if (before == now && !relabel) return field.Value.get();
    const auto label = timeAt(scale_, now);
    return label ? label : field.Value.get();  // a place past midnight has no time
  };
  const auto need = timeOf(parts_.txtNeedTime, indices_.need, indices.need);
  const auto finish = timeOf(parts_.txtFinishTime, indices_.finish, indices.finish);
  restore(need, finish, indices);
}

void TimeLine::restore(std::optional<Time> need, std::optional<Time> finish, TimeIndices indices) {
  indices_ = indices;
  showPlaces();
  setting_ = true;
  parts_.txtNeedTime.Value = need;
  parts_.txtFinishTime.Value = finish;
  setting_ = false;
}

void TimeLine::lock() {
  parts_.txtNeedTime.Locked = true;
  parts_.txtFinishTime.Locked = true;
  parts_.schTimeLine.Locked = true;
}

void TimeLine::showPlaces() {
  for (TimeScale* control :
       {static_cast<TimeScale*>(&parts_.rulTimeLine), static_cast<TimeScale*>(&parts_.schTimeLine)}) {
    control->Start = indices_.need;
    control->Finish = indices_.finish;
  }
}

}  // namespace vantry
