#include "platform/schedule_bar.h"

#include <algorithm>
#include <cmath>

namespace vantry {

void SpinTimeField::enterTime(std::optional<Time> time) {
  if (!Locked) enter(time);
}

void SpinTimeField::typeTime(std::string_view text) {
  if (!Locked) type(text);
}

void SpinTimeField::spin(int step) {
  if (usable() && !Locked) raise(step > 0 ? SpinUp : SpinDown);
}

void SpinTimeField::openDialog() {
  if (usable() && !Locked) raise(DropDialog);
}

void SpinTimeField::choose(int index) {
  if (usable() && !Locked && Chosen) Chosen(index);
}

double TimeScale::xOf(double place, int width) const {
  return std::clamp(place, 0.0, static_cast<double>(Slots)) * width / std::max<int>(1, Slots);
}

double TimeScale::placeAt(double x, int width) const {
  if (width <= 0) return 0;
  return std::clamp(x * Slots / width, 0.0, static_cast<double>(Slots));
}

Time TimeScale::timeAt(int place) const {
  const int minute = FirstHour * 60 + place * 60 / std::max<int>(1, PerHour);
  return {minute / 60 % 24, minute % 60, 0};
}

int Ruler::hourAt(int slot) const {
  const int perHour = std::max<int>(1, PerHour);
  return slot % perHour == 0 ? FirstHour + slot / perHour : -1;
}

int ScheduleBar::slotOf(double place) const {
  return std::clamp(static_cast<int>(std::lround(place)), 0, std::max<int>(0, Slots));
}

ScheduleBar::Grip ScheduleBar::gripAt(double place) const {
  const double toStart = std::abs(place - Start);
  const double toFinish = std::abs(place - Finish);
  if (std::min(toStart, toFinish) <= kGrip) return toStart < toFinish ? Grip::Start : Grip::Finish;
  return place > Start && place < Finish ? Grip::Whole : Grip::Draw;
}

void ScheduleBar::press(double place) {
  if (!canMove()) return;
  grip_ = gripAt(place);
  const int slot = slotOf(place);
  grabbed_ = std::min<int>(Start, Finish);
  length_ = std::abs(Finish - Start);
  switch (grip_) {
    case Grip::Start:
      anchor_ = Finish;
      break;
    case Grip::Finish:
      anchor_ = Start;
      break;
    default:
      anchor_ = slot;
      break;
  }
}

void ScheduleBar::dragTo(double place) {
  if (grip_ == Grip::None) return;
  const int slot = slotOf(place);
  if (grip_ != Grip::Whole) return set(anchor_, slot);
  const int start = std::clamp(grabbed_ + slot - anchor_, 0, std::max(0, Slots - length_));
  set(start, start + length_);
}

void ScheduleBar::moveBy(int slots) {
  if (!canMove()) return;
  const int length = std::abs(Finish - Start);
  const int start = std::clamp(std::min<int>(Start, Finish) + slots, 0, std::max(0, Slots - length));
  set(start, start + length);
}

void ScheduleBar::moveStartBy(int slots) {
  if (canMove()) set(std::clamp(Start + slots, 0, std::max<int>(0, Slots)), Finish);
}

void ScheduleBar::moveFinishBy(int slots) {
  if (canMove()) set(Start, std::clamp(Finish + slots, 0, std::max<int>(0, Slots)));
}

void ScheduleBar::set(int from, int to) {
  const int start = std::min(from, to);
  const int finish = std::max(from, to);
  if (start == Start && finish == Finish) return;
  Start = start;
  Finish = finish;
  raise(Drag);
}

}  // namespace vantry
