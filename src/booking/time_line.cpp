#include "booking/time_line.h"

#include <algorithm>
#include <utility>

namespace vantry {

TimeLine::TimeLine(const DaySlots& scale, const Parts& parts) : scale_(scale), parts_(parts) {
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
  parts_.schTimeLine.Drag = [this] { dragged(); };
  setScale();
}

void TimeLine::setScale() {
  for (TimeScale* control :
       {static_cast<TimeScale*>(&parts_.rulTimeLine), static_cast<TimeScale*>(&parts_.schTimeLine)}) {
    control->Slots = std::max(1, scale_.count);
    control->PerHour = std::max(1, scale_.perHour);
  }
  parts_.rulTimeLine.FirstHour = scale_.startMinute / 60;
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
  showPlaces();
}

void TimeLine::move(TimeIndices indices) {
  setIndices(!sameDay || sameDay() ? keptApart(indices) : indices);
}

void TimeLine::setIndices(TimeIndices indices) {
  // A place past midnight has no time: the field keeps what it shows.
  const auto need = timeAt(scale_, indices.need);
  const auto finish = timeAt(scale_, indices.finish);
  restore(need ? need : parts_.txtNeedTime.Value.get(), finish ? finish : parts_.txtFinishTime.Value.get(),
          indices);
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
