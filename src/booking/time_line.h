#pragma once

#include <functional>

#include "booking/modBooking_times.h"
#include "platform/schedule_bar.h"

namespace vantry {

/// Two time fields, a ruler and a schedule bar that show the same two places of the day's scale. When one of
/// them gets a place, the others follow.
class TimeLine {
 public:
  struct Parts {
    SpinTimeField& txtNeedTime;
    SpinTimeField& txtFinishTime;
    Ruler& rulTimeLine;
    ScheduleBar& schTimeLine;
  };
  /// `sameDay` tells whether start and end lie on one day, so that the end has to stay behind the start.
  TimeLine(const DaySlots& scale, const Parts& parts, std::function<bool()> sameDay);

  /// One of the two times has changed.
  Event Changed;

  int NeedTimeIndex() const { return indices_.need; }
  int FinishTimeIndex() const { return indices_.finish; }
  /// Gives the fields the labels of two places.
  void setIndices(TimeIndices indices);
  /// Gives back what was copied from a time line: the times as they were, and their places.
  void restore(std::optional<Time> need, std::optional<Time> finish, TimeIndices indices);
  void lock();

 private:
  void setScale();
  void step(int TimeIndices::*which, int by);
  void choose(int TimeIndices::*which, int index);
  void dragged();
  void typed(int TimeIndices::*which, const SpinTimeField& field);
  void moveEndAlong();
  void move(TimeIndices indices);
  void show(TimeIndices indices, bool relabel);
  void showPlaces();

  DaySlots scale_;
  Parts parts_;
  std::function<bool()> sameDay_;
  TimeIndices indices_;
  bool setting_ = false;  ///< the fields change because their places did
};

}  // namespace vantry
