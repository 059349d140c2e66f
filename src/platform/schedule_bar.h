#pragma once

#include <string>
#include <vector>

#include "platform/fields.h"

namespace vantry {

/// A time of day that is stepped along a scale by its spin buttons, or picked from a list below it.
class SpinTimeField : public TimeField {
 public:
  SpinTimeField(Container& parent, std::string name)
      : TimeField(parent, std::move(name), ControlKind::SpinTimeField) {}

  Property<bool> Locked{*this, Aspect::State};
  /// Whether a button beside it opens the list of `Choices`.
  Property<bool> DropDown{*this, Aspect::Structure};
  std::vector<std::string> Choices;

  Event SpinUp;
  Event SpinDown;
  Event DropDialog;                 ///< the operator pressed F4
  std::function<void(int)> Chosen;  ///< the operator picked an entry of the list

  // The operator's actions.
  void enterTime(std::optional<Time> time);
  void typeTime(std::string_view text);
  void spin(int step);
  void openDialog();
  void choose(int index);
};

/// What ruler and bar have in common: places from 0 to the number of slots, and the stretch between two of
/// them. A stretch whose end is before its start runs past the scale's end and on from its beginning.
class TimeScale : public Control {
 public:
  Property<int> Slots{*this, Aspect::Structure, 1};
  Property<int> PerHour{*this, Aspect::Structure, 1};
  Property<int> Start{*this, Aspect::Value};
  Property<int> Finish{*this, Aspect::Value};
  Property<int> FirstHour{*this, Aspect::Structure};  ///< at the first place

  /// The time of day at a place.
  Time timeAt(int place) const;
  /// The pixel of a place on a scale of so many pixels, and the place at a pixel, as a fraction.
  double xOf(double place, int width) const;
  double placeAt(double x, int width) const;

 protected:
  TimeScale(Container& parent, std::string name, ControlKind kind) : Control(parent, std::move(name), kind) {}
};

/// The hours above a schedule bar.
class Ruler : public TimeScale {
 public:
  Ruler(Container& parent, std::string name) : TimeScale(parent, std::move(name), ControlKind::Ruler) {}
  /// The hour that starts at the slot, as a figure of the day; -1 within an hour.
  int hourAt(int slot) const;
};

/// One row of time with a bar on it. The operator draws a bar, moves it, or drags one of its ends, by mouse
/// or keyboard.
class ScheduleBar : public TimeScale {
 public:
  ScheduleBar(Container& parent, std::string name)
      : TimeScale(parent, std::move(name), ControlKind::ScheduleBar) {}
  Property<bool> Locked{*this, Aspect::State};

  /// Raised while the operator moves the bar; `Start` is the smaller end then.
  Event Drag;

  /// How near to an end, in slots, a press takes hold of it.
  static constexpr double kGrip = 0.6;
  enum class Grip { None, Start, Finish, Whole, Draw };
  Grip gripAt(double place) const;

  // The operator's actions; places are in slots, as fractions.
  void press(double place);
  void dragTo(double place);
  void release() { grip_ = Grip::None; }
  void moveBy(int slots);
  void moveStartBy(int slots);
  void moveFinishBy(int slots);

 private:
  bool canMove() const { return usable() && !Locked; }
  int slotOf(double place) const;
  void set(int from, int to);

  Grip grip_ = Grip::None;
  int anchor_ = 0;   ///< the end that stays; for a whole bar the place of the press
  int grabbed_ = 0;  ///< for a whole bar, its start at the press
  int length_ = 0;
};

}  // namespace vantry
